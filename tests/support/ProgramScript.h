#pragma once

#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <utility>

#include "common/ScopedFlag.h"
#include "support/Script.h"
#include "support/Seen.h"

namespace corvex::test {

/// The whole program with its user, its modem and its surroundings, as the lines of a script tell.
class ProgramScript {
 public:
  void Run(const Words& quoted) {
    if (quoted[0] == "feed") return Feed(FeedBytes(quoted));
    if (quoted[0] == "after") return After(quoted);
    Words words;
    for (const std::string& word : quoted) words.push_back(Unquote(word));
    const auto command = commands_.find(words[0]);
    if (command == commands_.end()) throw std::runtime_error("unknown command");
    words.erase(words.begin());
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
  std::string TakeSent() { return std::exchange(p().comPort.sent, {}) + std::exchange(p().sock.sent, {}); }

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
  Control* Named(const std::string& name, int index) {
    for (Control* control : p().term.controls()) {
      if (control->name() == name && control->index() == index) return control;
    }
    return nullptr;
  }
  static void Click(Control& control) {
    if (auto* button = dynamic_cast<Button*>(&control)) return button->click();
    if (auto* image = dynamic_cast<Image*>(&control)) return image->click();
    if (auto* label = dynamic_cast<Label*>(&control)) return label->click();
    if (auto* item = dynamic_cast<MenuItem*>(&control)) return item->click();
    throw std::runtime_error("not to be clicked");
  }
  static void Put(Control& control, const std::string& value) {
    if (auto* box = dynamic_cast<TextBox*>(&control)) {
      box->AdoptText(value);
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
    KeyEvent key{.keyCode = std::stoi(words.at(0)),
                 .ctrl = says("ctrl"),
                 .alt = says("alt"),
                 .repeated = says("held")};
    Do([&] { p().term.keyDown(key); });
    EXPECT_EQ(key.handled, !says("goes-on"));
  }
  void Window(const std::string& what) {
    frmTerm& term = p().term;
    Do([&] {
      if (what == "close") return p().windows.attached.back()->queryUnload();
      if (what == "leave" || what == "activate") return term.SetActive(what == "activate");
      term.windowState.Adopt(what == "minimise" ? WindowState::Minimized : WindowState::Normal);
      term.resize();
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
        {"refusing-host", [this] { p().sock.reachable = false; }},
        {"reachable-host", [this] { p().sock.reachable = true; }},
        {"silent-host", [this] { p().sock.answers = false; }},
        {"closing-host", [this] { p().sock.fallsBack = true; }},
        {"line-lost", [this] { p().comPort.Vanish(), p().sock.PeerCloses(); }},
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
  void Reply(const std::string& answer) {
    p().dialogs.yes = answer == "yes";
    p().dialogs.input = answer == "cancel" ? std::nullopt : std::optional(answer);
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
    if (name == "checked") return word(dynamic_cast<const MenuItem&>(control).checked);
    if (name == "tip") return control.toolTip;
    if (name == "selected") return std::to_string(dynamic_cast<const TabStrip&>(control).selected);
    if (name == "left") return std::to_string(control.rect.Get().left);
    if (name == "tag") return control.tag;
    if (name == "text") return dynamic_cast<const TextBox&>(control).Text();
    throw std::runtime_error("no such property");
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
  bool LinkOpen() { return p().comPort.PortOpen() || p().sock.GetState() != SocketControl::kClosed; }
  Words TakeTones() {
    Words tones;
    for (const auto& [hertz, ms] : std::exchange(p().sound.beeps, {}))
      tones.insert(tones.end(), {std::to_string(static_cast<int>(hertz)), std::to_string(ms)});
    return tones;
  }
  void Ended(double seconds) {
    EXPECT_TRUE(p().loop.Ended());
    EXPECT_LE(std::chrono::duration<double>(p().loop.Now()).count(), seconds);
  }

  std::optional<Stage> stage_;
  int pending_ = 0;      ///< `after` lines whose time has not come.
  bool within_ = false;  ///< What is run happens during a wait of the script.
  const std::map<std::string, std::function<void(Words&)>> commands_{
      {"clock", [this](Words& w) { stage_.emplace(std::stod(w.at(0))); }},
      {"set", [this](Words& w) { p().settings.WriteSetting(w.at(0), w[1], w.at(2)); }},
      {"given", [this](Words& w) { Given(w.at(0)); }},
      {"reply", [this](Words& w) { Reply(w.at(0)); }},
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
      {"sent",
       [this](Words& w) {
         std::string all;
         for (const std::string& word : w) all += word;
         EXPECT_EQ(TakeSent(), all);
       }},
      {"see", [this](Words& w) { See(w, true); }},
      {"gone", [this](Words& w) { See(w, false); }},
      {"has", [this](Words& w) { Has(w); }},
      {"mode", [this](Words& w) { EXPECT_EQ(Mode(), w.at(0)); }},
      {"link", [this](Words& w) { EXPECT_EQ(LinkOpen(), w.at(0) == "open"); }},
      {"read", [this](Words& w) { EXPECT_EQ(p().settings.ReadSetting(w.at(0), w.at(1), "none"), w.at(2)); }},
      {"box", [this](Words& w) { EXPECT_EQ(std::exchange(p().dialogs.shown, {}), w); }},
      {"printed", [this](Words& w) { EXPECT_EQ(std::exchange(p().printers.printed, {}), w); }},
      {"tones", [this](Words& w) { EXPECT_EQ(TakeTones(), w); }},
      {"ended", [this](Words& w) { Ended(std::stod(w.at(0))); }},
  };
};

}  // namespace corvex::test
