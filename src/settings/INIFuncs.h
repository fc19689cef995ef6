#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Event.h"
#include "platform/Files.h"

// The settings: everything that the program keeps from one run to the next. They are stored in one ini file,
// corvex.ini, in the program's folder.
//
// - The file is not created in advance. Every read has a default, so the program also works without the file.
// - There is no cache. The next read sees every value that the program has written and every edit that the
//   user has made to the file.
// - A read that fails returns the default. A write that fails is lost. The caller is not notified; the event
//   SettingsStore::failed is raised instead.
//
// Class SettingsStore below is the table of all keys. The classes before it are the types of the settings.

namespace corvex {

class SettingsStore;

/// A key of the settings file, with its default value.
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

/// A text, returned unchanged. Set also replaces the line ends in a variable that is passed by non-const
/// reference; see SettingsStore::WriteSetting.
struct TextSetting : Setting {
  using Setting::Setting;
  std::string Get() const { return Read(); }
  void Set(std::string& value) const { Write(value); }
  void Set(const std::string& value) const { WriteWord(value); }
};

/// A number that the program writes but never reads.
struct UnreadNumber : Setting {
  using Setting::Setting;
  void Set(std::int32_t number) const;
};

/// A whole number. If the text starts with a number, Get returns that number, otherwise 0 (see WholePrefix).
struct NumberSetting : UnreadNumber {
  using UnreadNumber::UnreadNumber;
  std::int32_t Get() const;
};

/// A truth value. True only if the text is exactly "yes"; "YES" is false.
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

/// "file" or "print". With any other text, IsFile and IsPrint are both false.
struct PrintTarget : Setting {
  using Setting::Setting;
  bool IsFile() const { return Read() == "file"; }
  bool IsPrint() const { return Read() == "print"; }
  void SetFile() const { WriteWord("file"); }
  void SetPrint() const { WriteWord("print"); }
};

/// "append" or "new". Any other text means "new".
struct FileUse : Setting {
  using Setting::Setting;
  bool IsAppend() const { return Read() == "append"; }
  void SetAppend() const { WriteWord("append"); }
  void SetNew() const { WriteWord("new"); }
};

/// The name of the phone family. Get returns it in upper case.
struct PhoneSetting : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The number of the serial port. It also shows whether a port has ever been saved.
struct ComSetting : TextSetting {
  using TextSetting::TextSetting;
  /// Returns "?" until a port has been saved. Get returns the default in that case.
  std::string GetOrUnsaved() const { return Read("?"); }
};

/// The path of a file. The value "?" means that no file is set; Get then returns an empty text.
struct UnsetFile : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The path of a folder. For the value "?", Get returns the program's folder with a separator at its end.
struct FolderSetting : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// The path of the file for printouts. If the value is "?", Get saves and returns the path of printer.txt in
/// the program's folder.
struct PrinterPath : TextSetting {
  using TextSetting::TextSetting;
  std::string Get() const;
};

/// Removes one "/" at the end of a folder path that the system has returned. Intentional: a backslash at the
/// end is not removed.
std::string AppFolderOf(std::string_view applicationPath);

/// The table of all settings: type, section, key, default, meaning.
class SettingsStore {
 public:
  /// `appFolder` is an absolute path in the system's narrow file name encoding. `copy` is the number of this
  /// copy of the program among the copies that run in the same folder, starting at 1.
  SettingsStore(std::string_view appFolder, Files& files, int copy = 1)
      : appFolder_(AppFolderOf(appFolder)), files_(files), copy_(copy) {}

  // clang-format off
  struct Config {
    SettingsStore& ini;
    TextSetting   brand{ini, "config", "brand", "Quil"};                  // Brand name in window titles.
    TextSetting   logo{ini, "config", "logo", "logo.gif"};                // Logo, a file in AppFolder.
    TruthSetting  showgps{ini, "config", "showgps", "yes"};               // GPS panel is shown.
    PhoneSetting  phone{ini, "config", "phone", "R2"};                    // Set of menus: "R1" or "R2".
    FolderSetting doidpath{ini, "config", "doidpath", "?"};               // Last configuration folder.
    UnsetFile     doidfile{ini, "config", "doidfile", "?"};               // Last configuration file.
    SoundWord     sound{ini, "config", "sound", "beep"};                  // Sound of key presses.
    TruthSetting  testmode{ini, "config", "testmode", "no"};              // Test menu is available.
    TruthSetting  configmode{ini, "config", "configmode", "yes"};         // Device Manager is available.
    TruthSetting  trace{ini, "config", "trace", "no"};                    // Trace menu is available.
    TruthSetting  atmode{ini, "config", "atmode", "yes"};                 // AT command menu is available.
    NumberSetting mmiphase{ini, "config", "mmiphase", "2"};               // Last start command that worked.
    TruthSetting  lan{ini, "config", "lan", "no"};                        // Link uses LAN, not serial port.
    TextSetting   lanaddress{ini, "config", "lanaddress", "192.168.1.1"};  // LAN host.
    TextSetting   lanport{ini, "config", "lanport", "3000"};              // LAN TCP port if no ERB is used.
    TruthSetting  erbaccess{ini, "config", "erbaccess", "no"};            // LAN link goes through the ERB.
    TextSetting   promptusername{ini, "config", "promptusername", "ERB login"};  // ERB text: user prompt.
    TextSetting   promptpassword{ini, "config", "promptpassword", "Password"};  // ERB text: password prompt.
    TextSetting   prompttelnet{ini, "config", "prompttelnet", "ERB>"};    // ERB text: ready for commands.
    TextSetting   username{ini, "config", "username", "root"};            // ERB user name.
    TextSetting   password{ini, "config", "password", "zzz"};             // ERB password, in plain text.
    TextSetting   mubselect{ini, "config", "mubselect", "0"};             // MUB number at the ERB, 0 to 3.
    TextSetting   connected{ini, "config", "connected", "connected to modem"};  // ERB text: MUB is connected.
    TextSetting   muberror{ini, "config", "muberror", "serial_open"};     // ERB text: MUB cannot be reached.
    TextSetting   incorrect{ini, "config", "incorrect", "Login incorrect"};  // ERB text: login is refused.
    TextSetting   download{ini, "config", "download", "unknown"};         // Last downloaded image.
    TextSetting   blocks{ini, "config", "blocks", "600"};                 // Number of blocks in that image.
  };
  struct Info {
    SettingsStore& ini;
    TextSetting   downloadtime{ini, "info", "downloadtime", ""};          // Duration of the last download, s.
  };
  struct Port {
    SettingsStore& ini;
    ComSetting    com{ini, "port", "com", "1"};                           // Serial port number.
    TextSetting   settings{ini, "port", "settings", "38400,n,8,1"};       // Speed, parity, data, stop bits.
    NumberSetting flow{ini, "port", "flow", "2"};                         // Flow control, see SerialControl.
  };
  struct Logging {
    SettingsStore& ini;
    TruthSetting  active{ini, "logging", "active", "no"};                 // Periodic log is on.
    NumberSetting interval{ini, "logging", "interval", "5"};              // Minutes between log entries.
    TextSetting   lasttime{ini, "logging", "lasttime", ""};               // Time of the last log entry.
    TruthSetting  wirelog{ini, "logging", "wirelog", "no"};               // Link is recorded to a file.
  };
  struct Printer {
    SettingsStore& ini;
    PrinterPath   path{ini, "printer", "path", "?"};                      // File for printouts.
    PrintTarget   always{ini, "printer", "always", "file"};               // Destination of print jobs.
    FileUse       fileuse{ini, "printer", "fileuse", "append"};           // Append to the file or replace it.
    TextSetting   font{ini, "printer", "font", "Arial"};                  // Font for printing.
    NumberSetting fontsize{ini, "printer", "fontsize", "12"};             // Font size in points.
    TruthSetting  bold{ini, "printer", "bold", "no"};
    TruthSetting  italic{ini, "printer", "italic", "no"};
    TruthSetting  underline{ini, "printer", "underline", "no"};
  };
  struct Screen {
    SettingsStore& ini;
    TextSetting   font{ini, "screen", "font", "Courier"};                 // Font of the text views.
    NumberSetting fontsize{ini, "screen", "fontsize", "12"};              // Font size in points.
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
    /// The device that the user has assigned to a COM port number (keys com1 to com16). Empty if none.
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

  /// Returns the value of a key, or `fallback` if the key does not exist. Leading and trailing blanks and one
  /// pair of enclosing quotes are removed. Values are cut to 255 characters.
  std::string ReadSetting(std::string_view section, std::string_view key, std::string_view fallback) const;

  /// Writes the value of a key. Intentional: each CR and LF in the caller's variable `value` is replaced by a
  /// blank, but the file gets the original value.
  void WriteSetting(std::string_view section, std::string_view key, std::string& value) const;

  enum class Failure { Reading, Writing };
  /// Raised if the file could not be read or written, during the call that needed the value.
  Event<Failure> failed;

  /// The path of the settings file.
  std::string File() const;
  /// Cleans up after a copy of the program that was killed while it wrote the settings. Call it only while no
  /// other copy runs.
  void TidyUp() const;

  const std::string& AppFolder() const { return appFolder_; }
  Files& files() const { return files_; }
  /// The path of a file in AppFolder. For an empty name, the path of the folder with a separator at its end.
  std::string InAppFolder(std::string_view name) const;
  /// Returns a file name that no other running copy of the program uses. For "trace" and ".log", the first
  /// copy gets "trace.log" and the second copy gets "trace-2.log".
  std::string OwnName(std::string_view name, std::string_view ending) const;

 private:
  std::string appFolder_;
  Files& files_;
  int copy_;
};

}  // namespace corvex
