#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <utility>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "support/DiskRoom.h"
#include "support/Script.h"
#include "support/Seen.h"

namespace corvex::test {

/// The whole program with its user, its modem and its surroundings, as the lines of a script tell.
class ProgramScript {
 public:
  void Run(const Words& quoted) {
    if (skipsRest_) return;
    if (quoted[0] == "after") return After(quoted);
    const auto command = commands_.find(quoted[0]);
    if (command == commands_.end()) throw std::runtime_error("unknown command");
    const bool counts = quoted[0] == "feed" || quoted[0] == "file" || quoted[0] == "printed";
    Words words = counts ? Repeated(quoted) : Words();
    for (std::size_t i = 1; !counts && i < quoted.size(); ++i) words.push_back(Unquote(quoted[i]));
    command->second(words);
  }
  void Finish() {
    EXPECT_EQ(p().dialogs.shown, Words()) << "boxes that are not expected";
    EXPECT_EQ(pending_, 0) << "what comes after a time has not come";
  }

 private:
  struct Stage {
    explicit Stage(double timeOfDay) : p(timeOfDay) {}
    Program p;
    Responder serial{p.comPort, {}};
    Responder lan{p.sock, {}};
  };
  Stage& stage() { return stage_ ? *stage_ : stage_.emplace(36000); }
  Program& p() { return stage().p; }

  /// Of both lines only the one that is open takes it.
  void Feed(std::string_view bytes) {
    p().comPort.Arrive(bytes);
    p().sock.Arrive(bytes);
    Wait(0.5);
  }
  /// What happens during a wait takes no time itself.
  void Wait(double seconds) {
    if (!within_) p().loop.Run(seconds);
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
  std::string TakeSent() {
    p().comPort.LetLeave();
    return std::exchange(p().comPort.sent, {}) + std::exchange(p().sock.sent, {});
  }

  // ---- The user. In lists he acts on the one with the focus.

  void Do(const EventLoop::Task& task) {
    p().Do(task);
    Wait(0);
  }
  /// A control by its name, and its index if the next word is one; both are taken off.
  Control& Find(Words& words) {
    const std::string name = words.at(0);
    const bool indexed = words.size() > 1 && !words[1].empty() &&
                         words[1].find_first_not_of("0123456789") == std::string::npos &&
                         Named(name, std::stoi(words[1])) != nullptr;
    Control* control = Named(name, indexed ? std::stoi(words[1]) : -1);
    if (control == nullptr) throw std::runtime_error("no such control");
    words.erase(words.begin(), words.begin() + (indexed ? 2 : 1));
    return *control;
  }
  /// The window that was shown last of those that are to be seen.
  Form& Front() {
    const auto& forms = p().windows.attached;
    const auto front =
        std::find_if(forms.rbegin(), forms.rend(), [](Form* form) { return form->visible.Get(); });
    return front == forms.rend() ? p().term : **front;
  }
  /// A window by its name, and of several the first, or "frmTraceInstance:2" the second; the main window for
  /// none.
  Form& FormNamed(const std::string& path) {
    if (path.empty()) return p().term;
    const std::size_t colon = path.find(':');
    int place = colon == std::string::npos ? 1 : std::stoi(path.substr(colon + 1));
    for (Form* form : p().windows.attached) {
      if (form->name() == path.substr(0, colon) && --place == 0) return *form;
    }
    throw std::runtime_error("no such window");
  }
  /// One that is gone is not shown either.
  bool Shown(const std::string& name) {
    const auto& forms = p().windows.attached;
    return std::any_of(forms.begin(), forms.end(),
                       [&](Form* form) { return form->name() == name && form->visible; });
  }
  /// "txtRx" stands in the main window, "frmSDI.txtNote" in another.
  Control* Named(const std::string& path, int index) {
    const std::size_t dot = path.find('.');
    const std::string name = path.substr(dot == std::string::npos ? 0 : dot + 1);
    Form& form = FormNamed(path.substr(0, dot == std::string::npos ? 0 : dot));
    for (Control* control : form.controls()) {
      if (control->name() == name && control->index() == index) return control;
    }
    return nullptr;
  }
  static void Click(Control& control) {
    if (auto* button = dynamic_cast<Button*>(&control)) return button->click();
    if (auto* image = dynamic_cast<Image*>(&control)) return image->click();
    if (auto* label = dynamic_cast<Label*>(&control)) return label->click();
    if (auto* item = dynamic_cast<MenuItem*>(&control)) return item->click();
    if (auto* check = dynamic_cast<CheckBox*>(&control)) return Put(control, check->value ? "no" : "yes");
    if (auto* option = dynamic_cast<OptionButton*>(&control)) return Choose(*option);
    throw std::runtime_error("not to be clicked");
  }
  static void Choose(OptionButton& chosen) {
    for (Control* control : chosen.form().controls()) {
      auto* other = dynamic_cast<OptionButton*>(control);
      if (other != nullptr && &other->parent() == &chosen.parent()) other->value.Adopt(other == &chosen);
    }
    chosen.click();
  }
  static void Put(Control& control, const std::string& value) {
    if (auto* box = dynamic_cast<TextBox*>(&control)) {
      box->AdoptText(value);
      box->selection.Adopt({value.size(), 0});
      box->change();
    } else if (auto* arrows = dynamic_cast<UpDown*>(&control)) {
      arrows->AdoptValue(arrows->value + std::stoi(value));
      arrows->change();
    } else if (auto* check = dynamic_cast<CheckBox*>(&control)) {
      check->value.Adopt(value == "yes");
      check->click();
    } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
      option->value.Adopt(value == "yes");
    } else {
      auto& tabs = dynamic_cast<TabStrip&>(control);
      tabs.selected.Adopt(std::stoi(value));
      tabs.click();
    }
  }
  bool InChoice() { return p().term.ListChoice.HasFocus(); }
  void Type(const char& c) {
    frmTerm& term = p().term;
    if (InChoice()) return term.ListChoice.keyPress(c);
    if (term.ListMenu.HasFocus()) return term.ListMenu.keyPress(c);
    term.CorvexFocus1.keys({&c, 1});
  }
  void KeyDown(const Words& words) {
    const auto says = [&](const char* word) { return std::count(words.begin(), words.end(), word) > 0; };
    for (const std::string& code : words) {
      if (!IsDigit(code[0])) return;
      KeyEvent key{
          .keyCode = std::stoi(code), .ctrl = says("ctrl"), .alt = says("alt"), .repeated = says("held")};
      Do([&] { Front().TakeKey(key); });
      EXPECT_EQ(key.handled, !says("goes-on"));
    }
  }
  void Window(const std::string& what) {
    frmTerm& term = p().term;
    Do([&] {
      if (what == "close") return Front().queryUnload();
      if (what == "close-main") return term.queryUnload();
      if (what == "leave" || what == "activate") return Front().SetActive(what == "activate");
      term.windowState.Adopt(what == "minimise" ? WindowState::Minimized : WindowState::Normal);
      term.resize();
    });
  }

  /// Drops files of the program's folder; a number before them is the effect.
  void DropFiles(Words& words) {
    Control& control = Find(words);
    Drop drop;
    for (const std::string& word : words) {
      if (word.find_first_not_of("0123456789") == word.npos) {
        drop.effect = std::stoi(word);
      } else {
        drop.files.push_back((p().folder.Path() / word).string());
      }
    }
    Do([&] { control.drop(drop); });
  }
  void MoveFocus(Control& control) {
    Do([&] {
      control.form().AdoptFocus(&control);
      control.gotFocus();
    });
  }

  // ---- What surrounds the program.

  void Given(const std::string& what) {
    const std::map<std::string, std::function<void()>> kinds{
        {"heron",
         [this] {
           for (const auto& [command, reply] : HeronModem()) Answer(command, reply);
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
    const auto says = [&](const char* word) { return std::count(words.begin(), words.end(), word) > 0; };
    p().dialogs.chosenFont = Font{.name = words.at(0),
                                  .size = std::stod(words.at(1)),
                                  .bold = says("bold"),
                                  .italic = says("italic"),
                                  .underline = says("underline")};
  }
  static std::string Described(const Font& font) {
    return font.name + ' ' + std::to_string(static_cast<int>(font.size)) + (font.bold ? " bold" : "") +
           (font.italic ? " italic" : "") + (font.underline ? " underline" : "");
  }
  /// The user marks so many characters from a place on.
  void Mark(Words words) {
    auto& box = dynamic_cast<TextBox&>(Find(words));
    box.selection.Adopt({std::stoul(words.at(0)), std::stoul(words.at(1))});
  }

  // ---- What is to be found.

  /// The lines are looked for one behind the other, with single blanks and none at their beginning.
  void See(const Words& lines, bool there) {
    std::string seen = std::regex_replace(Seen(p().term), std::regex(" +"), " ");
    seen = std::regex_replace(seen, std::regex("\n "), "\n");
    std::string all = lines.at(0);
    for (std::size_t i = 1; i < lines.size(); ++i) all += '\n' + lines[i];
    EXPECT_EQ(seen.find(all) != std::string::npos, there) << all << "\nin\n" << seen;
  }
  static std::string PropertyOf(const Control& control, const std::string& name) {
    const auto word = [](bool holds) { return std::string(holds ? "yes" : "no"); };
    if (name == "visible") return word(control.visible);
    if (name == "enabled") return word(control.enabled);
    if (name == "focus") return word(control.HasFocus());
    if (name == "checked") return word(Checked(control));
    if (name == "caption") return Caption(control);
    if (name == "tip") return control.toolTip;
    if (name == "selected") return std::to_string(dynamic_cast<const TabStrip&>(control).selected);
    if (name == "left") return std::to_string(control.rect.Get().left);
    if (name == "tag") return control.tag;
    if (name == "spoken") return control.accessible;
    if (name == "dimmed") return word(dynamic_cast<const Frame&>(control).dimmed);
    if (name == "font") return Described(control.font);
    if (name == "marked") {
      const TextBox::Selection marked = dynamic_cast<const TextBox&>(control).selection;
      return std::to_string(marked.start) + ' ' + std::to_string(marked.length);
    }
    if (name == "marked-text") return std::string(dynamic_cast<const TextBox&>(control).SelText());
    if (name == "default") return word(control.form().defaultButton.Get() == &control);
    if (name == "length") return std::to_string(dynamic_cast<const TextBox&>(control).Text().size());
    if (name == "end") {
      const std::string& text = dynamic_cast<const TextBox&>(control).Text();
      return text.substr(text.size() - std::min<std::size_t>(text.size(), 10));
    }
    if (name == "text") return dynamic_cast<const TextBox&>(control).Text();
    throw std::runtime_error("no such property");
  }
  static bool Checked(const Control& control) {
    if (const auto* item = dynamic_cast<const MenuItem*>(&control)) return item->checked;
    if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->value;
    return dynamic_cast<const CheckBox&>(control).value;
  }
  static std::string Caption(const Control& control) {
    if (const auto* button = dynamic_cast<const Button*>(&control)) return button->caption;
    if (const auto* item = dynamic_cast<const MenuItem*>(&control)) return item->caption;
    return dynamic_cast<const Label&>(control).caption;
  }
  void Has(Words words) {
    const Control& control = Find(words);
    for (std::size_t i = 0; i < words.size(); i += 2) {
      EXPECT_EQ(PropertyOf(control, words[i]), words.at(i + 1)) << words[i];
    }
  }
  std::string Mode() {
    constexpr const char* kNames[] = {"",        "AwaitIntro", "Offline", "PortSetup", "TestInterface",
                                      "AtMode",  "",           "",        "Terminal",  "DeviceManager",
                                      "Closing", "Failed",     "Upgrade"};
    return kNames[static_cast<int>(p().term.main().mode)];
  }
  /// Texts with the program's folder left out of the paths in them.
  Words InFolder(Words texts) {
    const std::string folder = p().settings.InAppFolder("");
    for (std::string& text : texts) {
      if (const std::size_t at = text.find(folder); at != std::string::npos) text.erase(at, folder.size());
    }
    return texts;
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

  /// These texts stand in the file, in this order.
  void FileHas(const Words& words) {
    const std::string text = p().folder.Read(words.at(0));
    std::size_t at = 0;
    for (std::size_t i = 1; i < words.size() && at != text.npos; ++i) at = text.find(words[i], at);
    EXPECT_NE(at, text.npos) << text;
  }
  /// The names with this ending.
  Words FilesLike(const std::string& ending) {
    Words names;
    for (const auto& entry : std::filesystem::directory_iterator(p().folder.Path())) {
      if (entry.path().extension() == ending) names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  /// Also in the place of a file.
  static void MakeFolder(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) std::filesystem::remove(path);
    std::filesystem::create_directories(path);
  }

  DiskRoom room_;
  bool skipsRest_ = false;  ///< Here no disk can be made to look full.
  std::optional<Stage> stage_;
  int pending_ = 0;      ///< `after` lines whose time has not come.
  bool within_ = false;  ///< What is run happens during a wait of the script.
  const std::map<std::string, std::function<void(Words&)>> commands_{
      {"clock", [this](Words& w) { stage_.emplace(std::stod(w.at(0))); }},
      {"set", [this](Words& w) { p().settings.WriteSetting(w.at(0), w[1], w.at(2)); }},
      {"given", [this](Words& w) { Given(w.at(0)); }},
      {"reply", [this](Words& w) { Reply(w); }},
      {"pick-font", [this](Words& w) { PickFont(w); }},
      {"mark", [this](Words& w) { Mark(w); }},
      {"clipboard", [this](Words& w) { EXPECT_EQ(p().shell.clipboard, w.at(0)); }},
      {"print-font", [this](Words& w) { EXPECT_EQ(Described(p().printers.fonts.back()), w.at(0)); }},
      {"answer", [this](Words& w) { Answer(w.at(0), w.at(1)); }},
      {"start", [this](Words& w) { p().Start(std::stod(w.at(0))); }},
      {"program", [this](Words&) { StartSession(); }},
      {"wait", [this](Words& w) { Wait(std::stod(w.at(0))); }},
      {"click", [this](Words& w) { Do([&] { Click(Find(w)); }); }},
      {"put",
       [this](Words& w) {
         Do([&] {
           Control& control = Find(w);
           Put(control, w.at(0));
         });
       }},
      {"drop", [this](Words& w) { DropFiles(w); }},
      {"focus", [this](Words& w) { MoveFocus(Find(w)); }},
      {"dsp", [this](Words& w) { EXPECT_EQ(TakeDsp(), w); }},
      {"keydown", [this](Words& w) { KeyDown(w); }},
      {"type",
       [this](Words& w) {
         for (const char& c : w.at(0)) p().Do([&] { Type(c); });
         Wait(0);
       }},
      {"select",
       [this](Words& w) {
         (InChoice() ? p().term.ListChoice.listIndex : p().term.ListMenu.selected).Adopt(std::stoi(w.at(0)));
       }},
      {"double-click",
       [this](Words&) {
         Do([&] { InChoice() ? p().term.ListChoice.doubleClick() : p().term.ListMenu.doubleClick(); });
       }},
      {"window", [this](Words& w) { Window(w.at(0)); }},
      {"feed", [this](Words& w) { Feed(Joined(w)); }},
      {"sent", [this](Words& w) { EXPECT_EQ(TakeSent(), Joined(w)); }},
      {"see", [this](Words& w) { See(w, true); }},
      {"gone", [this](Words& w) { See(w, false); }},
      {"has", [this](Words& w) { Has(w); }},
      {"pointer", [this](Words& w) { EXPECT_EQ(p().term.pointer == Pointer::Normal, w.at(0) == "normal"); }},
      {"mode", [this](Words& w) { EXPECT_EQ(Mode(), w.at(0)); }},
      {"link", [this](Words& w) { EXPECT_EQ(LinkOpen(), w.at(0) == "open"); }},
      {"read", [this](Words& w) { EXPECT_EQ(p().settings.ReadSetting(w.at(0), w.at(1), "none"), w.at(2)); }},
      {"box", [this](Words& w) { EXPECT_EQ(InFolder(std::exchange(p().dialogs.shown, {})), w); }},
      {"printed", [this](Words& w) { EXPECT_EQ(std::exchange(p().printers.printed, {}), w); }},
      {"file", [this](Words& w) { EXPECT_EQ(p().folder.Read(w.at(0)), Joined(w, 1)); }},
      {"file-has", [this](Words& w) { FileHas(w); }},
      {"files", [this](Words& w) { EXPECT_EQ(FilesLike(w.at(0)), Words(w.begin() + 1, w.end())); }},
      {"no-file", [this](Words& w) { EXPECT_FALSE(std::filesystem::exists(p().folder.Path() / w.at(0))); }},
      {"write-file", [this](Words& w) { p().folder.Write(w.at(0), w.at(1)); }},
      {"make-folder", [this](Words& w) { MakeFolder(p().folder.Path() / w.at(0)); }},
      {"read-only",
       [this](Words& w) {
         std::filesystem::permissions(p().folder.Path() / w.at(0), std::filesystem::perms::owner_read);
       }},
      {"disk-room",
       [this](Words& w) {
         skipsRest_ = !DiskRoom::kWorks;
         room_.Set(w.at(0) == "any" ? DiskRoom::kAny : std::stol(w[0]));
       }},
      {"boxes-stand", [this](Words& w) { p().KeepBoxesOpen(std::chrono::seconds(std::stoi(w.at(0)))); }},
      {"shown", [this](Words& w) { EXPECT_EQ(Shown(w.at(0)), w.at(1) == "yes"); }},
      {"title", [this](Words& w) { EXPECT_EQ(FormNamed(w.at(0)).caption, w.at(1)); }},
      {"bells", [this](Words& w) { EXPECT_EQ(std::exchange(p().sound.bells, 0), std::stoi(w.at(0))); }},
      {"viewed", [this](Words& w) { EXPECT_EQ(InFolder(std::exchange(p().shell.viewed, {})), w); }},
      {"tones", [this](Words& w) { EXPECT_EQ(TakeTones(), w); }},
      {"ended", [this](Words& w) { Ended(std::stod(w.at(0))); }},
  };
};

}  // namespace corvex::test
