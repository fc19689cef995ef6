#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "devices/ModalUser.h"
#include "devices/frmDev.h"
#include "print/frmSDI.h"
#include "session/Route.h"

// A user of the device manager. The user looks at the windows four times a second, and does the next thing of
// a plan when the device manager offers it.

namespace corvex::test {

class DeviceUser {
 public:
  /// Entries of a plan: "add", "edit", "remove", "port", "handset", "serial", "ring", "buzzer", "refresh",
  /// "save", "load", "factory" and "print".
  using Plan = std::deque<std::string>;

  DeviceUser(Routed& r, Plan things) : plan(std::move(things)), r_(r) {
    fileToSave = fileToLoad = (r.p.folder.Path() / "saved.cfg").string();
    r.p.dialogs.onBox = [this] { KeepBoxOpen(); };
    r.onHeard = [this](std::string_view bytes) { Hear(bytes); };
  }
  DeviceUser(const DeviceUser&) = delete;
  DeviceUser& operator=(const DeviceUser&) = delete;
  ~DeviceUser() { r_.p.loop.Cancel(look_); }

  Plan plan;
  std::string heard;  ///< All that has left for the unit since this user exists.
  std::vector<std::pair<double, std::string>> sends;  ///< The same: each send and its time.
  std::function<void()> onSend;                       ///< Called after each send.
  std::string fileToSave;
  std::string fileToLoad;
  double boxTime = 0.5;   ///< How long a message box stays open, in seconds.
  double patience = 120;  ///< The user closes the device manager after so many seconds.

  /// A user cannot do anything else while a message box is open.
  bool BoxOpen() const { return boxes_ > 0; }

  /// Opens the device manager and closes it after the plan. Returns when it has closed, or when the program
  /// has ended.
  void Visit() {
    visits_ = true;
    Look();
    const auto tired = r_.p.loop.After(Seconds(patience), [this] { CloseManager(); });
    r_.p.Do([this] { r_.term.cmdTop[1].click(); });
    r_.p.loop.Cancel(tired);
    r_.p.loop.Cancel(late_);
    visits_ = false;
    EXPECT_EQ(r_.p.windows.Shown<frmDev>(), nullptr);
  }

  /// Closes the device manager. It must close within a second, whatever it does. A window below a message box
  /// cannot be closed; the user answers the box first.
  void CloseManager() {
    frmDev* const manager = r_.p.windows.Shown<frmDev>();
    if (manager == nullptr) return;
    if (BoxOpen()) {
      r_.p.loop.Cancel(late_);
      late_ = r_.p.loop.After(std::chrono::milliseconds(250), [this] { CloseManager(); });
      return;
    }
    late_ = r_.p.loop.After(Seconds(1), [this, passage = r_.term.main().passage] {
      if (r_.p.windows.Shown<frmDev>() != nullptr && r_.term.main().passage == passage)
        throw std::runtime_error("the device manager does not close");
    });
    manager->queryUnload();
  }

  /// Expects that what follows the bytes that end a session does not belong to that session.
  void ExpectNothingAfterTheEnd() const {
    static const std::string kQuit = "quit\r\n";
    for (std::size_t at = heard.find(kQuit); at != std::string::npos; at = heard.find(kQuit, at)) {
      at += kQuit.size();
      std::string_view rest = std::string_view(heard).substr(at);
      for (const std::string_view more : {"at+wquilreset\r\n", "usermode\r\n"}) {
        if (rest.starts_with(more)) rest.remove_prefix(more.size());
      }
      if (rest.empty() || rest.starts_with(kQuit)) continue;
      const std::string word(rest.substr(0, rest.find_first_of(" \r\n")));
      EXPECT_FALSE(word.empty() || simulation::ConfigShell::Knows(word))
          << testing::PrintToString(rest.substr(0, 80));
    }
  }

 private:
  static EventLoop::Time Seconds(double seconds) {
    return std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(seconds));
  }

  void Hear(std::string_view bytes) {
    heard += bytes;
    sends.emplace_back(r_.Now(), bytes);
    if (onSend) onSend();
  }

  /// The user confirms every box, but does not go on without a backup.
  void KeepBoxOpen() {
    const std::string text = r_.p.dialogs.shown.back();
    struct Open {
      explicit Open(int& boxes) : count(boxes) { ++count; }
      ~Open() { --count; }
      int& count;
    };
    const Open open(boxes_);
    for (const auto until = r_.p.loop.Now() + Seconds(boxTime); r_.p.loop.Now() < until;)
      r_.p.loop.Pump(until);
    r_.p.dialogs.answer = text.find("without a backup") == std::string::npos ? Answer::Ok : Answer::Cancel;
    r_.p.dialogs.file = text.starts_with("save/") ? fileToSave : fileToLoad;
  }

  void Look() {
    r_.p.loop.Cancel(look_);
    if (!visits_) return;
    look_ = r_.p.loop.After(std::chrono::milliseconds(250), [this] { Look(); });
    if (BoxOpen()) return;
    if (auto* page = r_.p.windows.Shown<frmSDI>()) return page->queryUnload();
    if (auto* login = r_.p.windows.Shown<frmLogin>()) return Use(*login, {"txtPassword=owner", "cmdOK"});
    if (auto* changes = r_.p.windows.Shown<frmChanges>()) return Use(*changes, {"cmdLoad"});
    if (auto* port = r_.p.windows.Shown<frmComSetup>())
      return Use(*port, {"txtPortField1=" + NewMsn(), "Command10"});
    if (auto* editor = r_.p.windows.Shown<frmNewISDN>()) return Complete(*editor);
    frmDev* const manager = r_.p.windows.Shown<frmDev>();
    if (manager == nullptr || !manager->Toolbar1.Enabled(1) || manager->pointer == Pointer::Hourglass) return;
    if (plan.empty()) return CloseManager();
    const std::string next = std::exchange(plan.front(), {});
    plan.pop_front();
    tries_ = 0;
    Perform(*manager, next);
  }

  void Complete(frmNewISDN& editor) {
    if (editor.frmIntro.visible) return Use(editor, {"cmdTop1"});
    if (editor.frmConfig.visible) return Use(editor, {"txtIsdnMSN=" + NewMsn(), "cmdTop4"});
    Use(editor, {"txtName=GALLEY", "cmdTop3"});
  }

  /// Uses a window. Closes it if it has refused the same several times.
  void Use(Form& form, std::initializer_list<std::string> steps) {
    ModalUser user(form, r_.p);
    if (++tries_ > 5) return user.Do("close");
    for (const std::string& step : steps) {
      if (form.visible) user.Do(step);
    }
  }

  std::string NewMsn() { return std::to_string(70 + msns_++ % 20); }

  void Perform(frmDev& manager, const std::string& name) {
    static const std::map<std::string, std::function<void(frmDev&)>, std::less<>> kActions{
        {"add", [](frmDev& m) { m.Toolbar1.buttonClick(1); }},
        {"refresh", [](frmDev& m) { m.Toolbar1.buttonClick(3); }},
        {"edit", [](frmDev& m) { Select(m.treedev), m.mnuPopEdit.click(); }},
        {"remove", [](frmDev& m) { Select(m.treedev), m.mnuPopRemove.click(); }},
        {"port", [](frmDev& m) { Select(m.treePOTS), m.telChange.click(); }},
        {"handset", [](frmDev& m) { Select(m.treeQuil), m.EditHs.click(); }},
        {"ring", [](frmDev& m) { Select(m.treeQuil), m.HsIdentify.click(); }},
        {"buzzer", [](frmDev& m) { Select(m.treeQuil), m.tstBuzzer.click(); }},
        {"serial", [](frmDev& m) { m.cmdPortEdit[0].click(); }},
        {"save", [](frmDev& m) { m.mnuSave.click(); }},
        {"load", [](frmDev& m) { m.mnuLoad.click(); }},
        {"factory", [](frmDev& m) { m.mnuFactory.click(); }},
        {"print", [](frmDev& m) { m.mnuPrint.click(); }},
    };
    kActions.at(name)(manager);
  }

  /// Selects the first entry of a tree.
  static void Select(TreeView& view) {
    for (int node = 0; node < view.tree().Count(); ++node) {
      if (view.tree()[node].tag.empty()) continue;
      view.selected = node;
      if (view.nodeClick) view.nodeClick();
      return;
    }
  }

  Routed& r_;
  EventLoop::TimerId look_ = 0;
  EventLoop::TimerId late_ = 0;
  bool visits_ = false;
  int boxes_ = 0;  // message boxes that are open
  int tries_ = 0;
  int msns_ = 0;
};

}  // namespace corvex::test
