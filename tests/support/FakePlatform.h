#pragma once

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "forms/Form.h"
#include "platform/Platform.h"
#include "platform/Services.h"
#include "platform/Transports.h"
#include "settings/INIFuncs.h"
#include "support/FakeFiles.h"
#include "support/ShownForms.h"
#include "support/TempFolder.h"
#include "support/VirtualLoop.h"

namespace corvex::test {

/// The far side of a port, as a test sees it.
struct FarSide {
  std::string sent;
  std::function<void(std::string_view)> onSent;  ///< Called with all bytes that have left.
  std::function<void()> onOpened;
  std::function<void()> onClosed;

 protected:
  void Take(std::string_view bytes) {
    sent += bytes;
    if (onSent) onSent(bytes);
  }
  std::string input_;
};

/// A serial port without a device. The far side speaks through Arrive. Output takes ten bits a byte at the
/// line's speed and is added to `sent` when it has left: a text as a whole after its last byte, or the part
/// that has left when the rest is discarded.
class FakeSerial : public SerialControl, public FarSide {
 public:
  explicit FakeSerial(EventLoop& loop) : loop_(loop) {}

  bool SetCommPort(std::int16_t number) override {
    if (open_ || number < 1) return false;
    port_ = number;
    return true;
  }
  std::int16_t CommPort() const override { return port_; }
  void SetSettings(const std::string& settings) override { settings_ = settings; }
  std::string Settings() const override { return settings_; }
  void SetHandshaking(std::int32_t handshaking) override { handshaking_ = handshaking; }
  std::int32_t Handshaking() const override { return handshaking_; }
  bool Open() override {
    if (open_ || !available) return open_;
    open_ = true;
    input_.clear();
    if (onOpened) onOpened();
    return true;
  }
  void Close() override {
    DiscardOutput();
    if (open_ && onClosed) onClosed();
    open_ = false;
    input_.clear();
  }
  bool PortOpen() const override { return open_; }
  std::string Input() override { return std::exchange(input_, {}); }
  void DiscardInput() override { input_.clear(); }
  bool Output(std::string_view bytes) override {
    if (!open_) return false;
    if (bytes.empty()) return true;
    free_ = std::max(free_, LineTime()) + ByteTime() * static_cast<EventLoop::Time::rep>(bytes.size());
    output_.push_back({std::string(bytes), free_, ByteTime()});
    DeliverLater();
    return true;
  }
  std::int32_t OutBufferCount() const override {
    std::size_t count = 0;
    for (const Text& text : output_) count += Unsent(text);
    return static_cast<std::int32_t>(count);
  }
  void DiscardOutput() override {
    Deliver();
    if (!output_.empty()) {
      const Text cut = output_.front();
      if (const std::size_t left = cut.bytes.size() - Unsent(cut); left > 0) Take(cut.bytes.substr(0, left));
    }
    output_.clear();
    free_ = LineTime();
  }
  std::string DeviceName() const override { return "fake" + std::to_string(port_); }

  /// The far side sends bytes.
  void Arrive(std::string_view bytes) {
    if (!open_) return;
    input_ += bytes;
    loop_.Post([this] {
      if (open_ && onComm) onComm(kEvReceive);
    });
  }
  /// The adapter is pulled out.
  void Vanish() {
    available = false;
    if (!open_) return;
    Close();
    loop_.Post([this] {
      if (onComm) onComm(kEvLineLost);
    });
  }

  /// The flow control of the far side stops the line, or releases it.
  void Hold(bool held) {
    Deliver();
    if (held == heldSince_.has_value()) return;
    if (held) {
      heldSince_ = loop_.Now();
      return;
    }
    const EventLoop::Time stood = loop_.Now() - *heldSince_;
    heldSince_.reset();
    free_ += stood;
    for (Text& text : output_) text.done += stood;
    DeliverLater();
  }

  /// Sends all output now unless the line is held, so that a test can look at `sent`.
  void LetLeave() {
    if (heldSince_) return;
    for (Text& text : output_) text.done = loop_.Now();
    free_ = loop_.Now();
    Deliver();
  }

  bool available = true;

 private:
  struct Text {
    std::string bytes;
    EventLoop::Time done;  ///< When its last byte leaves.
    EventLoop::Time byteTime;
  };

  EventLoop::Time ByteTime() const {
    const std::int64_t speed = std::max(std::atoi(settings_.c_str()), 1);
    return EventLoop::Time(10 * std::int64_t{1'000'000'000} / speed);
  }
  /// The time up to which the line has sent.
  EventLoop::Time LineTime() const { return heldSince_.value_or(loop_.Now()); }
  std::size_t Unsent(const Text& text) const {
    if (text.done <= LineTime()) return 0;
    const auto bytes = (text.done - LineTime() + text.byteTime - EventLoop::Time(1)) / text.byteTime;
    return std::min(static_cast<std::size_t>(bytes), text.bytes.size());
  }
  void Deliver() {
    while (!output_.empty() && output_.front().done <= LineTime()) {
      const std::string bytes = std::move(output_.front().bytes);
      output_.pop_front();
      Take(bytes);
    }
  }
  void DeliverLater() {
    loop_.Cancel(delivery_);
    if (output_.empty() || heldSince_) return;
    delivery_ = loop_.After(output_.front().done - loop_.Now(), [this] {
      Deliver();
      DeliverLater();
    });
  }

  EventLoop& loop_;
  std::deque<Text> output_;
  EventLoop::Time free_{0};  ///< When all output has left.
  std::optional<EventLoop::Time> heldSince_;
  EventLoop::TimerId delivery_ = 0;
  bool open_ = false;
  std::int16_t port_ = 1;
  std::string settings_ = "9600,n,8,1";
  std::int32_t handshaking_ = 0;
};

/// Serial devices that a test defines.
class FakeSerialPorts : public SerialPorts {
 public:
  std::vector<std::string> Devices() const override {
    std::vector<std::string> names;
    for (const auto& [name, info] : devices) names.push_back(name);
    return names;
  }
  PortInfo Probe(const std::string& device) const override {
    const auto found = devices.find(device);
    return found == devices.end() ? PortInfo{} : found->second;
  }
  std::map<std::string, PortInfo> devices;
};

/// A socket without a network.
class FakeSocket : public SocketControl, public FarSide {
 public:
  explicit FakeSocket(EventLoop& loop) : loop_(loop) {}

  State GetState() const override { return state_; }
  bool Connect(const std::string& host, std::int32_t port) override {
    if (state_ != kClosed || host.empty() || port < 1 || port > 65535) return false;
    ++connects;
    host_ = host;
    port_ = port;
    if (fallsBack) return true;  // stays closed, like a control that gives up at once
    state_ = kConnecting;
    const int attempt = connects;
    if (!answers) return true;
    loop_.After(std::chrono::milliseconds(5), [this, attempt] {
      if (state_ != kConnecting || attempt != connects) return;
      state_ = reachable ? kConnected : kError;
      if (reachable && onOpened) onOpened();
    });
    return true;
  }
  void Close() override {
    if (state_ == kConnected && onClosed) onClosed();
    state_ = kClosed;
    input_.clear();
  }
  void SendData(std::string_view bytes) override {
    if (state_ == kConnected) Take(bytes);
  }
  std::string GetData() override { return std::exchange(input_, {}); }
  std::string RemoteHost() const override { return host_; }
  std::int32_t RemotePort() const override { return port_; }
  std::string LocalAddress() const override { return "10.0.0.2"; }

  void Arrive(std::string_view bytes) {
    if (state_ != kConnected) return;
    input_ += bytes;
    loop_.Post([this] {
      if (state_ != kClosed && onDataArrival) onDataArrival();
    });
  }
  /// The peer closes the connection.
  void PeerCloses() {
    if (state_ != kConnected) return;
    state_ = kPeerClosing;
    loop_.Post([this] {
      if (state_ == kPeerClosing && onClose) onClose();
    });
  }

  bool reachable = true;   ///< False: a connect fails.
  bool answers = true;     ///< False: a connect neither succeeds nor fails.
  bool fallsBack = false;  ///< True: a connect leaves the socket closed at once.
  int connects = 0;

 private:
  EventLoop& loop_;
  State state_ = kClosed;
  std::string host_;
  std::int32_t port_ = 0;
};

/// A user who answers every box as the test says. Keeps the texts of the boxes.
class FakeDialogs : public Dialogs {
 public:
  void MessageBox(std::string_view text) override { Show(std::string(text)); }
  Answer Ask(const Question& question) override {
    Show(question.title.empty() ? question.text : question.text + '/' + question.title);
    return answer;
  }
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) override {
    Show(std::string(prompt) + "/" + std::string(title));
    return input;
  }
  std::optional<std::string> OpenFile(const FileQuestion& question) override {
    Show("open/" + question.title + '/' + question.filter + '/' + question.start);
    return file;
  }
  std::optional<std::string> SaveFile(const FileQuestion& question) override {
    Show("save/" + question.title + '/' + question.filter + '/' + question.start);
    return file;
  }
  std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form*) override {
    Show((forPrinter ? "printer font/" : "font/") + font.name + '/' +
         std::to_string(static_cast<int>(font.size)));
    return chosenFont;
  }
  std::vector<std::string> shown;
  Answer answer = Answer::No;
  std::optional<Font> chosenFont;
  std::optional<std::string> input;
  std::optional<std::string> file;
  std::function<void()> onBox;  ///< Called while a box is open.

 private:
  void Show(std::string text) {
    shown.push_back(std::move(text));
    if (onBox) onBox();
  }
};

/// A window system without a screen. With `activates` a form becomes active when it is first shown.
class FakeWindows : public WindowSystem {
 public:
  void Attach(Form& form) override {
    attached.push_back(&form);
    if (activates && form.takesFocus) form.SetActive(true);
  }
  void Detach(Form& form) override { std::erase(attached, &form); }
  std::int32_t ScreenWidth() const override { return 1920 * 15; }
  Rect WorkArea() const override { return {0, 0, 1920 * 15, 1080 * 15}; }
  void SetApplicationTitle(const std::string& title) override { applicationTitle = title; }
  template <typename Window>
  Window* Shown() const {
    return FindShown<Window>(attached);
  }
  std::vector<Form*> attached;
  bool activates = true;
  std::string applicationTitle;
};

/// Keeps each printed text and its font.
class FakePrinters : public Printers {
 public:
  int Count() const override { return present ? 1 : 0; }
  std::string DefaultName() const override { return present ? name : std::string(); }
  bool PrintText(const std::string& text, const Font& font) override {
    if (works) {
      printed.push_back(text);
      fonts.push_back(font);
    }
    return works;
  }
  bool PrintWindow(const Form& form) override { return PrintText("picture of " + form.name(), {}); }
  std::unique_ptr<PrintJob> Choose(const Form*) override {
    struct Job : PrintJob {
      explicit Job(FakePrinters& on) : printers(on) {}
      bool Print(const std::string& text, const Font& font) override {
        return printers.PrintText(text, font);
      }
      FakePrinters& printers;
    };
    return chooses ? std::make_unique<Job>(*this) : nullptr;
  }
  void ChooseDefault(const Form*) override { name = chosenName; }
  bool present = true;
  bool works = true;
  bool chooses = true;  ///< False: the user cancels the choice of a printer.
  std::string name = "Office";
  std::string chosenName = "Bridge";  ///< The printer that the user makes the default.
  std::vector<std::string> printed;
  std::vector<Font> fonts;
};

class FakeSound : public Sound {
 public:
  void Beep(double hertz, int milliseconds) override { beeps.emplace_back(hertz, milliseconds); }
  void Bell() override { ++bells; }
  std::vector<std::pair<double, int>> beeps;
  int bells = 0;
};

class FakeShell : public Shell {
 public:
  bool ShowText(const std::string& path) override {
    if (hasViewer) viewed.push_back(path);
    return hasViewer;
  }
  std::string ClipboardText() const override { return clipboard; }
  void SetClipboardText(const std::string& text) override { clipboard = text; }
  bool hasViewer = true;
  std::vector<std::string> viewed;
  std::string clipboard;
};

/// All fakes with a loop and a window system, and settings in a folder of their own. Each month has 31 days,
/// and a long date reads "31/3/2006".
template <typename Loop, typename Windows>
struct FakesWith {
  explicit FakesWith(const auto&... clock) : loop(clock...) {}
  ~FakesWith() { std::filesystem::current_path(before); }

  static std::string LongDate(int year, int month, int day) {
    if (month < 1 || month > 12 || day < 1 || day > 31) return {};
    return std::to_string(day) + '/' + std::to_string(month) + '/' + std::to_string(year);
  }
  static Windows MakeWindows(Loop& loop) {
    if constexpr (std::is_constructible_v<Windows, Loop&>) {
      return Windows(loop);
    } else {
      return Windows();
    }
  }

  /// From now on the user answers each box after the given time.
  void KeepBoxesOpen(EventLoop::Time time) {
    dialogs.onBox = [this, time] {
      for (const auto until = loop.Now() + time; loop.Now() < until;) loop.Pump(until);
    };
  }

  std::filesystem::path before = std::filesystem::current_path();  // the program changes its working folder
  TempFolder folder;
  FakeFiles files;
  SettingsStore settings{folder.Name(), files};
  Loop loop;
  Windows windows = MakeWindows(loop);
  FakeSerial comPort{loop};
  FakeSerialPorts serialPorts;
  FakeSocket sock{loop};
  FakeDialogs dialogs;
  FakePrinters printers;
  FakeSound sound;
  FakeShell shell;
  std::vector<std::vector<std::int16_t>> dspMessages;  ///< The messages that the library has received.
  const Platform platform{
      loop,
      windows,
      comPort,
      serialPorts,
      sock,
      dialogs,
      printers,
      sound,
      shell,
      LongDate,
      [this](const std::int16_t* numbers) { dspMessages.emplace_back(numbers, numbers + numbers[0] + 1); }};
};

/// The fakes in virtual time, without a screen.
struct FakePlatform : FakesWith<VirtualLoop, FakeWindows> {
  explicit FakePlatform(double timeOfDay = 36000) : FakesWith(timeOfDay) {}
};

}  // namespace corvex::test
