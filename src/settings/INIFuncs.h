#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Event.h"
#include "platform/Files.h"

// The settings: all that the program keeps from one run to the next. They stand in one ini file, corvex.ini,
// in the program's folder. Nothing is created in advance: each read names its default, so that no file at all
// is a complete configuration. There is no cache either: a value written is seen by the next read anywhere,
// and so is what the user types into the file. A read that fails gives the default, and a write that fails is
// lost; who reads or writes does not see that, but SettingsStore::failed tells it.
//
// The table of all keys is class SettingsStore, below the few shapes that its columns are made of.

namespace corvex {

class SettingsStore;

/// A key of the settings file with the default of its reads.
class Setting {
 public:
  Setting(SettingsStore& store, std::string_view section, std::string_view key, std::string_view fallback)
      : store_(store), section_(section), key_(key), fallback_(fallback) {}
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;

 protected:
  std::string Read() const { return Read(fallback_); }
  std::string Read(std::string_view fallback) const;
  void Write(std::string& value) const;
  void WriteWord(std::string word) const { Write(word); }
  const SettingsStore& Store() const { return store_; }

 private:
  SettingsStore& store_;
  std::string_view section_;
  std::string_view key_;
  std::string_view fallback_;
};

/// A text as it stands. Setting a variable cleans it of line ends, as SettingsStore::WriteSetting tells.
struct TextSetting : Setting {
  using Setting::Setting;
  std::string Get() const { return Read(); }
  void Set(std::string& value) const { Write(value); }
  void Set(const std::string& value) const { WriteWord(value); }
};

/// A number that is kept for the user and that nothing reads.
struct UnreadNumber : Setting {
  using Setting::Setting;
  void Set(std::int32_t number) const;
};

/// A whole number: what number the text begins with, or 0.
struct NumberSetting : UnreadNumber {
  using UnreadNumber::UnreadNumber;
  std::int32_t Get() const;
};

/// True if the text is "yes" in just these letters; "YES" is false.
struct TruthSetting : Setting {
  using Setting::Setting;
  bool Get() const { return Read() == "yes"; }
  void Set(bool value) const { WriteWord(value ? "yes" : "no"); }
};

/// "beep", "card" or "off".
struct SoundWord : Setting {
  using Setting::Setting;
  bool IsBeep() const { return Read() == "beep"; }
  void SetBeep() const { WriteWord("beep"); }
  void SetCard() const { WriteWord("card"); }
  void SetOff() const { WriteWord("off"); }
};

/// "file" or "print"; any other text is neither.
struct PrintTarget : Setting {
  using Setting::Setting;
  bool IsFile() const { return Read() == "file"; }
  bool IsPrint() const { return Read() == "print"; }
  void SetFile() const { WriteWord("file"); }
  void SetPrint() const { WriteWord("print"); }
};

/// "append" or "new"; any other text counts as new.
struct FileUse : Setting {
  using Setting::Setting;
  bool IsAppend() const { return Read() == "append"; }
  void SetAppend() const { WriteWord("append"); }
  void SetNew() const { WriteWord("new"); }
};

/// The phone family's word, read in capitals.
struct PhoneSetting : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The number of the serial port, which tells also whether any port was ever saved.
struct ComSetting : TextSetting {
  using TextSetting::TextSetting;
  /// "?" until a port has been saved; the other reads give the default.
  std::string GetOrUnsaved() const { return Read("?"); }
};

/// A file's path, empty while it is "?".
struct UnsetFile : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// A folder, the program's own with its closing separator while it is "?".
struct FolderSetting : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The file for printouts. While it is "?", reading it writes and gives printer.txt in the program's folder.
struct PrinterPath : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The folder of a program from the path that the system tells: without a "/" at its end. A backslash there
/// stays; that is meant.
std::string AppFolderOf(std::string_view applicationPath);

/// The one table of all keys: shape, section, key, default, meaning.
class SettingsStore {
 public:
  /// The folder as an absolute path, in the encoding of the system's narrow file names. `copy`: which of the
  /// copies of the program that run in it this one is, from 1.
  SettingsStore(std::string_view appFolder, Files& files, int copy = 1)
      : appFolder_(AppFolderOf(appFolder)), files_(files), copy_(copy) {}

  // clang-format off
  struct Config {
    SettingsStore& ini;
    TextSetting   brand{ini, "config", "brand", "Quil"};                  // Brand in titles.
    TextSetting   logo{ini, "config", "logo", "logo.gif"};                // Logo's file name in AppFolder.
    TruthSetting  showgps{ini, "config", "showgps", "yes"};               // GPS panel shown.
    PhoneSetting  phone{ini, "config", "phone", "R2"};                    // "R1" or "R2": the set of menus.
    FolderSetting doidpath{ini, "config", "doidpath", "?"};               // Last configuration folder.
    UnsetFile     doidfile{ini, "config", "doidfile", "?"};               // Last configuration file.
    SoundWord     sound{ini, "config", "sound", "beep"};                  // Sound of a key press.
    TruthSetting  testmode{ini, "config", "testmode", "no"};              // Test menu offered.
    TruthSetting  configmode{ini, "config", "configmode", "yes"};         // Device Manager offered.
    TruthSetting  trace{ini, "config", "trace", "no"};                    // Trace menu offered.
    TruthSetting  atmode{ini, "config", "atmode", "yes"};                 // AT command menu offered.
    NumberSetting mmiphase{ini, "config", "mmiphase", "2"};               // Start command that worked last.
    TruthSetting  lan{ini, "config", "lan", "no"};                        // Link over LAN, not serial.
    TextSetting   lanaddress{ini, "config", "lanaddress", "192.168.1.1"};  // Host of the LAN link.
    TextSetting   lanport{ini, "config", "lanport", "3000"};              // Its TCP port, without ERB.
    TruthSetting  erbaccess{ini, "config", "erbaccess", "no"};            // Link goes through the ERB.
    TextSetting   promptusername{ini, "config", "promptusername", "ERB login"};  // ERB asks for the user,
    TextSetting   promptpassword{ini, "config", "promptpassword", "Password"};  // for the password,
    TextSetting   prompttelnet{ini, "config", "prompttelnet", "ERB>"};    // or is ready.
    TextSetting   username{ini, "config", "username", "root"};            // User at the ERB login,
    TextSetting   password{ini, "config", "password", "zzz"};             // and the password, in the clear.
    TextSetting   mubselect{ini, "config", "mubselect", "0"};             // MUB behind the ERB, 0 to 3.
    TextSetting   connected{ini, "config", "connected", "connected to modem"};  // ERB reached the MUB,
    TextSetting   muberror{ini, "config", "muberror", "serial_open"};     // failed to,
    TextSetting   incorrect{ini, "config", "incorrect", "Login incorrect"};  // or refused the login.
    TextSetting   download{ini, "config", "download", "unknown"};         // Last image downloaded.
    TextSetting   blocks{ini, "config", "blocks", "600"};                 // Its number of blocks.
  };
  struct Info {
    SettingsStore& ini;
    TextSetting   downloadtime{ini, "info", "downloadtime", ""};          // Seconds the last download took.
  };
  struct Port {
    SettingsStore& ini;
    ComSetting    com{ini, "port", "com", "1"};                           // Serial port number.
    TextSetting   settings{ini, "port", "settings", "38400,n,8,1"};       // Speed, parity, data, stop bits.
    NumberSetting flow{ini, "port", "flow", "2"};                         // Serial handshaking.
  };
  struct Logging {
    SettingsStore& ini;
    TruthSetting  active{ini, "logging", "active", "no"};                 // Periodic log on.
    NumberSetting interval{ini, "logging", "interval", "5"};              // Minutes between its entries.
    TextSetting   lasttime{ini, "logging", "lasttime", ""};               // Time of its last entry.
    TruthSetting  wirelog{ini, "logging", "wirelog", "no"};               // Record the link into a file.
  };
  struct Printer {
    SettingsStore& ini;
    PrinterPath   path{ini, "printer", "path", "?"};                      // File for printouts.
    PrintTarget   always{ini, "printer", "always", "file"};               // Where print jobs go.
    FileUse       fileuse{ini, "printer", "fileuse", "append"};           // Whether jobs add up.
    TextSetting   font{ini, "printer", "font", "Arial"};                  // Font on paper.
    NumberSetting fontsize{ini, "printer", "fontsize", "12"};             // Its size in points.
    TruthSetting  bold{ini, "printer", "bold", "no"};
    TruthSetting  italic{ini, "printer", "italic", "no"};
    TruthSetting  underline{ini, "printer", "underline", "no"};
  };
  struct Screen {
    SettingsStore& ini;
    TextSetting   font{ini, "screen", "font", "Courier"};                 // Font of the text views.
    NumberSetting fontsize{ini, "screen", "fontsize", "12"};              // Its size in points.
    TruthSetting  bold{ini, "screen", "bold", "no"};
    TruthSetting  italic{ini, "screen", "italic", "no"};
    TruthSetting  underline{ini, "screen", "underline", "no"};
  };
  struct Positions {  // in twips
    SettingsStore& ini;
    NumberSetting termtop{ini, "positions", "termtop", "500"};            // Main window.
    NumberSetting termleft{ini, "positions", "termleft", "500"};
    NumberSetting trctop{ini, "positions", "trctop", "3000"};             // Trace window.
    NumberSetting trcleft{ini, "positions", "trcleft", "500"};
    UnreadNumber  PrtViewtop{ini, "positions", "PrtViewtop", ""};         // Print view.
    UnreadNumber  PrtViewleft{ini, "positions", "PrtViewleft", ""};
  };
  struct Devices {
    SettingsStore& ini;
    /// The device that stands for a COM port number, of com1 to com16; "" for none.
    std::string Get(std::int16_t comPort) const;
  };
  // clang-format on

  Config config{*this};
  Info info{*this};
  Port port{*this};
  Logging logging{*this};
  Printer printer{*this};
  Screen screen{*this};
  Positions positions{*this};
  Devices devices{*this};

  /// The value of a key, at most 255 characters, without outer blanks and one pair of quotes; `fallback` if
  /// there is none.
  std::string ReadSetting(std::string_view section, std::string_view key, std::string_view fallback) const;

  /// Gives a key a value. Each CR and LF in the caller's variable becomes a blank, and the file gets the
  /// value as it was before; that is meant.
  void WriteSetting(std::string_view section, std::string_view key, std::string& value) const;

  enum class Failure { Reading, Writing };
  /// The file could not be read or written. Comes in the middle of whatever needed the value.
  Event<Failure> failed;

  /// The settings file.
  std::string File() const;
  /// Cleans up after a copy of the program that was killed while it wrote. Only while no other copy runs.
  void TidyUp() const;

  const std::string& AppFolder() const { return appFolder_; }
  Files& files() const { return files_; }
  /// The path of a file in AppFolder; of the folder itself, with a closing separator, for an empty name.
  std::string InAppFolder(std::string_view name) const;
  /// The name of a file that each running copy of the program has to itself: "trace.log" of "trace" and
  /// ".log" in the first, "trace-2.log" in the second.
  std::string OwnName(std::string_view name, std::string_view ending) const;

 private:
  std::string appFolder_;
  Files& files_;
  int copy_;
};

}  // namespace corvex
