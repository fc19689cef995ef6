#include "support/ProgramScript.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <stdexcept>
#include <utility>

#include "base/ScopedFlag.h"
#include "support/DiskRoom.h"
#include "support/Program.h"
#include "support/Properties.h"
#include "support/Seen.h"
#include "support/User.h"

namespace corvex::test {

namespace {

/// Makes a folder, in place of a file if there is one.
void MakeFolder(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) std::filesystem::remove(path);
  std::filesystem::create_directories(path);
}

}  // namespace

/// The commands and what they act on.
class ProgramScript::Impl {
 public:
  void Run(const Words& quoted) {
    if (skipsRest_) return;
    if (depth_ > 0 || quoted[0] == "modal") return Collect(quoted);
    if (quoted[0] == "after") return After(quoted);
    const auto command = commands_.find(quoted[0]);
    if (command == commands_.end()) throw std::runtime_error("unknown command");
    const bool counts =
        quoted[0] == "feed" || quoted[0] == "sent" || quoted[0] == "file" || quoted[0] == "printed";
    Words words = counts ? Repeated(quoted) : Words();
    for (std::size_t i = 1; !counts && i < quoted.size(); ++i) words.push_back(Unquote(quoted[i]));
    command->second(words);
  }
  void Finish() {
    EXPECT_EQ(p().dialogs.shown, Words()) << "boxes that are not expected";
    EXPECT_EQ(depth_, 0) << "a `modal` line without its `closed`";
    EXPECT_EQ(pending_, 0) << "the time of an `after` line has not come";
  }

 private:
  using Commands = std::map<std::string, std::function<void(Words&)>>;

  /// The program and the modem at both of its lines.
  struct Stage {
    explicit Stage(double timeOfDay) : p(timeOfDay) {}
    Program p;
    Responder serial{p.comPort, {}};
    Responder lan{p.sock, {}};
  };
  Stage& stage() { return stage_ ? *stage_ : stage_.emplace(36000); }
  Program& p() { return stage().p; }
  User user() {
    return User(p(), [this] { Wait(0); });
  }

  // ---- The program's surroundings.

  /// Only the open one of the two lines takes the bytes.
  void Feed(std::string_view bytes) {
    p().comPort.Arrive(bytes);
    p().sock.Arrive(bytes);
    Wait(0.5);
  }
  /// Takes no time within an `after` line and while a modal window is open.
  void Wait(double seconds) {
    if (!within_ && (seconds == 0 || p().loop.ModalsOpen() == 0)) p().loop.Run(seconds);
  }
  void After(const Words& quoted) {
    ++pending_;
    const std::chrono::duration<double> delay(std::stod(quoted.at(1)));
    p().loop.After(std::chrono::duration_cast<EventLoop::Time>(delay), [this, quoted] {
      --pending_;
      const ScopedFlag during(within_);
      Run({quoted.begin() + 2, quoted.end()});
    });
  }
  /// Collects the lines between a `modal` line and its `closed`, and then runs them.
  void Collect(const Words& quoted) {
    if (quoted[0] == "modal") ++depth_;
    if (quoted[0] == "closed") --depth_;
    block_.push_back(quoted);
    if (depth_ > 0) return;
    std::vector<Words> lines = std::exchange(block_, {});
    const Words opening(lines.front().begin() + 1, lines.front().end());
    RunModal(opening, {lines.begin() + 1, lines.end() - 1});
  }
  /// Lines that run while a modal window is open. A `wait` line gives the program the stack back, so that the
  /// exchange that runs below the lines can continue.
  struct Block {
    std::vector<Words> lines;
    int modals = 0;  ///< The number of modal windows before this one.
    std::size_t next = 0;
  };
  void RunModal(const Words& opening, std::vector<Words> lines) {
    const auto block = std::make_shared<Block>(Block{std::move(lines), p().loop.ModalsOpen()});
    Continue(block, 0.01);
    Run(opening);
    EXPECT_EQ(block->next, block->lines.size()) << "the window has not opened or has closed early";
    block->next = block->lines.size();
  }
  void Continue(const std::shared_ptr<Block>& block, double delay) {
    const std::chrono::duration<double> time(delay);
    p().loop.After(std::chrono::duration_cast<EventLoop::Time>(time), [this, block] { RunLines(block); });
  }
  void RunLines(const std::shared_ptr<Block>& block) {
    if (block->next == 0 && p().loop.ModalsOpen() == block->modals) return Continue(block, 0.01);
    while (block->next < block->lines.size()) {
      const Words& line = block->lines[block->next++];
      if (depth_ == 0 && line[0] == "wait") return Continue(block, std::stod(line.at(1)));
      SCOPED_TRACE(Joined(line));
      Run(line);
    }
  }
  void Answer(const std::string& command, const std::string& reply) {
    stage().serial.Answer(command, reply);
    stage().lan.Answer(command, reply);
  }
  /// Until the modem's menus are entered.
  void StartSession() {
    Given("heron");
    p().Start(3);
    EXPECT_EQ(Mode(), "Terminal");
    TakeSent();
  }
  void Given(const std::string& what) {
    const std::map<std::string, std::function<void()>> kinds{
        {"heron",
         [this] {
           for (const auto& [command, reply] : HeronModem()) Answer(command, reply);
         }},
        {"config",
         [this] {
           for (const auto& [command, reply] : ConfiguredUnit()) Answer(command, reply);
         }},
        {"inactive", [this] { p().windows.activates = false; }},
        {"no-printer", [this] { p().printers.present = false; }},
        {"printer", [this] { p().printers.present = true; }},
        {"no-choice-of-printer", [this] { p().printers.chooses = false; }},
        {"broken-printer", [this] { p().printers.works = false; }},
        {"no-viewer", [this] { p().shell.hasViewer = false; }},
        {"refusing-host", [this] { p().sock.reachable = false; }},
        {"reachable-host", [this] { p().sock.reachable = true; }},
        {"silent-host", [this] { p().sock.answers = false; }},
        {"closing-host", [this] { p().sock.fallsBack = true; }},
        {"line-lost", [this] { p().comPort.Vanish(), p().sock.PeerCloses(); }},
        {"line-held", [this] { p().comPort.Hold(true); }},
        {"line-free", [this] { p().comPort.Hold(false); }},
        {"line-back", [this] { p().comPort.available = true; }},
        {"open-boxes",
         [this] {
           p().dialogs.onBox = [this] {
             for (;;) p().loop.Pump();
           };
         }},
    };
    kinds.at(what)();
  }
  void Reply(const Words& words) {
    const std::string& answer = words.at(0);
    p().dialogs.answer = answer == "yes"      ? Answer::Yes
                         : answer == "ok"     ? Answer::Ok
                         : answer == "cancel" ? Answer::Cancel
                                              : Answer::No;
    p().dialogs.input = answer == "cancel" ? std::nullopt : std::optional(answer);
    p().dialogs.file = p().dialogs.input;
    if (words.size() > 1) p().dialogs.file = words[1] == "cancel" ? std::nullopt : std::optional(words[1]);
  }
  void PickFont(const Words& words) {
    p().dialogs.chosenFont = Font{.name = words.at(0),
                                  .size = std::stod(words.at(1)),
                                  .bold = HasWord(words, "bold"),
                                  .italic = HasWord(words, "italic"),
                                  .underline = HasWord(words, "underline")};
  }
  void SetDiskRoom(const std::string& bytes) {
    skipsRest_ = !DiskRoom::kWorks;
    room_.Set(bytes == "any" ? DiskRoom::kAny : std::stol(bytes));
  }

  // ---- What the windows show.

  /// Looks for consecutive lines. Several blanks count as one, and leading blanks do not count.
  void See(const Words& lines, bool there) {
    std::string seen = std::regex_replace(Seen(p().term), std::regex(" +"), " ");
    seen = std::regex_replace(seen, std::regex("\n "), "\n");
    std::string all = lines.at(0);
    for (std::size_t i = 1; i < lines.size(); ++i) all += '\n' + lines[i];
    EXPECT_EQ(seen.find(all) != std::string::npos, there) << all << "\nin\n" << seen;
  }
  void Has(Words words) {
    const Control& control = user().Find(words);
    for (std::size_t i = 0; i < words.size(); i += 2) {
      EXPECT_EQ(PropertyOf(control, words[i]), words.at(i + 1)) << words[i];
    }
  }
  /// The texts of all nodes of a tree, two blanks deeper at each level. Collapsed nodes show no children.
  void Nodes(Words words) {
    const Tree& tree = dynamic_cast<TreeView&>(user().Find(words)).tree();
    Words seen;
    const std::function<void(int, const std::string&)> add = [&](int node, const std::string& indent) {
      for (; node != Tree::kNone; node = tree.Next(node)) {
        seen.push_back(indent + tree[node].text);
        if (tree[node].expanded) add(tree.FirstChild(node), indent + "  ");
      }
    };
    add(tree.First(), "");
    EXPECT_EQ(seen, words);
  }
  std::string Mode() {
    constexpr const char* kNames[] = {"",        "AwaitIntro", "Offline", "PortSetup", "TestInterface",
                                      "AtMode",  "",           "",        "Terminal",  "DeviceManager",
                                      "Closing", "Failed",     "Upgrade"};
    return kNames[static_cast<int>(p().term.main().mode)];
  }
  /// Removes the path of the program's folder from each text.
  Words InFolder(Words texts) {
    const std::string folder = p().settings.InAppFolder("");
    for (std::string& text : texts) {
      if (const std::size_t at = text.find(folder); at != std::string::npos) text.erase(at, folder.size());
    }
    return texts;
  }

  // ---- What else comes out of the program: bytes, files, printouts, sound.

  std::string TakeSent() {
    p().comPort.LetLeave();
    return std::exchange(p().comPort.sent, {}) + std::exchange(p().sock.sent, {});
  }
  bool LinkOpen() { return p().comPort.PortOpen() || p().sock.GetState() != SocketControl::kClosed; }
  Words TakeTones() {
    Words tones;
    for (const auto& [hertz, ms] : std::exchange(p().sound.beeps, {}))
      tones.insert(tones.end(), {std::to_string(static_cast<int>(hertz)), std::to_string(ms)});
    return tones;
  }
  Words TakeDsp() {
    Words words;
    for (const auto& message : std::exchange(p().dspMessages, {}))
      for (const int number : message) words.push_back(std::to_string(number));
    return words;
  }
  void Ended(double seconds) {
    EXPECT_TRUE(p().loop.Ended());
    EXPECT_LE(std::chrono::duration<double>(p().loop.Now()).count(), seconds);
  }
  /// The file contains these texts in this order.
  void FileHas(const Words& words) {
    const std::string text = p().folder.Read(words.at(0));
    std::size_t at = 0;
    for (std::size_t i = 1; i < words.size() && at != text.npos; ++i) at = text.find(words[i], at);
    EXPECT_NE(at, text.npos) << text;
  }
  /// The names of the files with this extension.
  Words FilesLike(const std::string& pattern) {
    Words names;
    const std::filesystem::path like(pattern);
    for (const auto& entry : std::filesystem::directory_iterator(p().folder.Path() / like.parent_path())) {
      if (entry.path().extension() == like.filename()) names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  DiskRoom room_;
  bool skipsRest_ = false;  ///< This system cannot make a disk look full.
  std::optional<Stage> stage_;
  int pending_ = 0;           ///< `after` lines whose time has not come.
  int depth_ = 0;             ///< `modal` lines whose `closed` has not come.
  std::vector<Words> block_;  ///< The lines since the outermost of them.
  bool within_ = false;       ///< An `after` line is running, during a wait of the script.
  const Commands commands_{
      // The program's surroundings.
      {"clock", [this](Words& w) { stage_.emplace(std::stod(w.at(0))); }},
      {"set", [this](Words& w) { p().settings.WriteSetting(w.at(0), w[1], w.at(2)); }},
      {"given", [this](Words& w) { Given(w.at(0)); }},
      {"reply", [this](Words& w) { Reply(w); }},
      {"pick-font", [this](Words& w) { PickFont(w); }},
      {"answer", [this](Words& w) { Answer(w.at(0), w.at(1)); }},
      {"start", [this](Words& w) { p().Start(std::stod(w.at(0))); }},
      {"program", [this](Words&) { StartSession(); }},
      {"wait", [this](Words& w) { Wait(std::stod(w.at(0))); }},
      {"feed", [this](Words& w) { Feed(Joined(w)); }},
      {"write-file", [this](Words& w) { p().folder.Write(w.at(0), w.at(1)); }},
      {"make-folder", [this](Words& w) { MakeFolder(p().folder.Path() / w.at(0)); }},
      {"read-only",
       [this](Words& w) {
         std::filesystem::permissions(p().folder.Path() / w.at(0), std::filesystem::perms::owner_read);
       }},
      {"disk-room", [this](Words& w) { SetDiskRoom(w.at(0)); }},
      {"boxes-stand", [this](Words& w) { p().KeepBoxesOpen(std::chrono::seconds(std::stoi(w.at(0)))); }},
      // The user.
      {"click", [this](Words& w) { user().Click(user().Find(w)); }},
      {"put",
       [this](Words& w) {
         Control& control = user().Find(w);
         user().Put(control, w.at(0));
       }},
      {"mark", [this](Words& w) { user().Mark(w); }},
      {"context", [this](Words& w) { user().Context(w); }},
      {"drop", [this](Words& w) { user().DropFiles(w); }},
      {"focus", [this](Words& w) { user().Focus(user().Find(w)); }},
      {"keydown", [this](Words& w) { user().KeyDown(w); }},
      {"type", [this](Words& w) { user().Type(w.at(0)); }},
      {"select", [this](Words& w) { user().Select(std::stoi(w.at(0))); }},
      {"double-click", [this](Words&) { user().DoubleClick(); }},
      {"window", [this](Words& w) { user().Window(w.at(0), w.size() > 1 ? w[1] : ""); }},
      // What the windows show.
      {"tree", [this](Words& w) { Nodes(w); }},
      {"see", [this](Words& w) { See(w, true); }},
      {"gone", [this](Words& w) { See(w, false); }},
      {"has", [this](Words& w) { Has(w); }},
      {"pointer", [this](Words& w) { EXPECT_EQ(p().term.pointer == Pointer::Normal, w.at(0) == "normal"); }},
      {"mode", [this](Words& w) { EXPECT_EQ(Mode(), w.at(0)); }},
      {"shown", [this](Words& w) { EXPECT_EQ(user().Shown(w.at(0)), w.at(1) == "yes"); }},
      {"title", [this](Words& w) { EXPECT_EQ(user().FormNamed(w.at(0)).caption, w.at(1)); }},
      {"box", [this](Words& w) { EXPECT_EQ(InFolder(std::exchange(p().dialogs.shown, {})), w); }},
      // What else comes out of the program: bytes, files, printouts, sound.
      {"sent", [this](Words& w) { EXPECT_EQ(TakeSent(), Joined(w)); }},
      {"link", [this](Words& w) { EXPECT_EQ(LinkOpen(), w.at(0) == "open"); }},
      {"read", [this](Words& w) { EXPECT_EQ(p().settings.ReadSetting(w.at(0), w.at(1), "none"), w.at(2)); }},
      {"printed", [this](Words& w) { EXPECT_EQ(std::exchange(p().printers.printed, {}), w); }},
      {"print-font", [this](Words& w) { EXPECT_EQ(Described(p().printers.fonts.back()), w.at(0)); }},
      {"clipboard", [this](Words& w) { EXPECT_EQ(p().shell.clipboard, w.at(0)); }},
      {"file", [this](Words& w) { EXPECT_EQ(p().folder.Read(w.at(0)), Joined(w, 1)); }},
      {"file-has", [this](Words& w) { FileHas(w); }},
      {"files", [this](Words& w) { EXPECT_EQ(FilesLike(w.at(0)), Words(w.begin() + 1, w.end())); }},
      {"no-file", [this](Words& w) { EXPECT_FALSE(std::filesystem::exists(p().folder.Path() / w.at(0))); }},
      {"bells", [this](Words& w) { EXPECT_EQ(std::exchange(p().sound.bells, 0), std::stoi(w.at(0))); }},
      {"tones", [this](Words& w) { EXPECT_EQ(TakeTones(), w); }},
      {"dsp", [this](Words& w) { EXPECT_EQ(TakeDsp(), w); }},
      {"viewed", [this](Words& w) { EXPECT_EQ(InFolder(std::exchange(p().shell.viewed, {})), w); }},
      {"ended", [this](Words& w) { Ended(std::stod(w.at(0))); }},
  };
};

ProgramScript::ProgramScript() : impl_(std::make_unique<Impl>()) {}
ProgramScript::~ProgramScript() = default;
void ProgramScript::Run(const Words& quoted) {
  impl_->Run(quoted);
}
void ProgramScript::Finish() {
  impl_->Finish();
}

}  // namespace corvex::test
