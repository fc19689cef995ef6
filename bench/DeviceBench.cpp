#include <QApplication>
#include <QEvent>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "QtProgram.h"
#include "devices/frmDev.h"

// Measures the device manager: the time from a reply with many entries to the trees on screen, and how long a
// click can wait meanwhile. The last line takes two minutes, because the terminal is given 0.4 s for each
// entry.

namespace {

using namespace corvex;

/// Entries of all kinds that the trees show, with different Ids.
std::string Entry(int i) {
  const std::string start =
      std::to_string(i + 1) + " 0 " + std::to_string(i % 5) + ' ' + std::to_string(1000 + i) + " 0 0 1 255 ";
  if (i % 3 > 0) return start + "255 255 0 0 1 ffffff unset 0";
  const std::string handset = std::to_string(i / 6 % 250 + 1);
  return start + handset + " 255 0 0 1 ffffff CABIN-" + std::to_string(i / 6) + " 0";
}

std::string Entries(int count, std::string_view before, std::string_view after) {
  std::string all;
  for (int i = 0; i < count; ++i) all.append(before).append(Entry(i)).append(after);
  return all;
}

/// Notes when a tree is painted.
class PaintedTrees : public QObject {
 public:
  PaintedTrees() { qApp->installEventFilter(this); }
  QElapsedTimer last;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<QTreeView*>(object->parent()) != nullptr) last.start();
    return false;
  }
};

class Bench {
 public:
  Bench() {
    modem_.reply = [this](std::string_view line) { return ReplyTo(line); };
    p_.dialogs.answer = Answer::No;
    for (const int count : {250, 2500, 25000, 250}) {
      steps_.push_back({std::to_string(count) + " entries read", [this, count] {
                          configuration_ = Configuration(count);
                          Manager()->Toolbar1.buttonClick(3);
                        }});
    }
    for (const int count : {250, 25000}) {
      steps_.push_back({"summary of " + std::to_string(count) + " entries", [this, count] {
                          configuration_ = Configuration(count);
                          Manager()->mnuPrint.click();
                        }});
      steps_.push_back({"changes of a file of " + std::to_string(count) + " entries",
                        [this, count] { Load(Entries(count, "", "\r\n")); }});
    }
    steps_.push_back({"changes of a file of 16 MB of garbage", [this] {
                        std::string lines;
                        for (int i = 0; i < 32'000; ++i)
                          lines.append("0 0 0 ").append(480, 'x').append("\r\n");
                        Load(lines);
                      }});
    steps_.push_back({"5 MB without a mark", [this] {
                        configuration_ = std::string(5'000'000, 'x');
                        Manager()->Toolbar1.buttonClick(3);
                      }});
    steps_.push_back({"5 MB of entries without an end", [this] {
                        configuration_ = "<SL>001" + Entries(90'000, "<dd>", "|");
                        Manager()->Toolbar1.buttonClick(3);
                      }});
    steps_.push_back({"load of 250 entries", [this] {
                        configuration_ = Configuration(250);
                        loads_ = true;
                        Load(Entries(250, "", "\r\n"));
                      }});
  }

  void Run() {
    p_.loop.After(std::chrono::seconds(3), [this] {
      turns_.Start();
      configuration_ = Configuration(1);
      p_.loop.After(std::chrono::seconds(3), [this] { Begin(); });
      p_.term.cmdTop[1].click();
    });
    p_.Run();
  }

 private:
  struct Step {
    std::string name;
    EventLoop::Task begin;
  };

  static std::string Configuration(int count) { return "<SL>001" + Entries(count, "<dd>", "|") + "<EOL>"; }
  frmDev* Manager() const { return p_.windows.Shown<frmDev>(); }

  std::string ReplyTo(std::string_view line) {
    if (line.ends_with("wquilconfig")) return "<CONFIG ACTIVE>";
    if (line == "gfd") return "<dd>";
    if (line == "gtlevel") return "OWNER";
    if (line.starts_with("updd") || line == "ladd" || line == "cadd" || line == "badd") return "<dduo>";
    if (line != "gadd") return {};
    asked_.start();
    return configuration_;
  }

  void Load(const std::string& content) {
    p_.dialogs.file = p_.folder.Path("bench.cfg");
    std::ofstream(*p_.dialogs.file, std::ios::binary) << content;
    Manager()->mnuLoad.click();
  }

  void Begin() {
    if (Manager() == nullptr || Manager()->StatusBar1.Text(1) != "Ready") {
      std::printf("no device manager\n");
      return p_.loop.End();
    }
    painted_.last.start();
    quiet_.start();
    opened_.start();
    asked_.invalidate();
    turns_.Start();
    running_ = true;
    p_.loop.Post(steps_[next_].begin);
  }

  /// Closes windows half a second after the step has opened them, and goes on when all has been quiet for
  /// half a second.
  void Look() {
    if (!running_) return;
    auto* const changes = p_.windows.Shown<frmChanges>();
    auto* const view = p_.windows.Shown<frmSDI>();
    if (changes == nullptr && view == nullptr) opened_.start();
    if (opened_.elapsed() > 500) {
      opened_.start();
      p_.loop.Post([this, changes, view] {
        if (changes != nullptr) (loads_ ? changes->cmdLoad : changes->cmdCancel).click();
        if (view != nullptr) view->queryUnload();
      });
    }
    auto* const manager = Manager();
    const bool busy = manager != nullptr && !manager->Toolbar1.Enabled(3);
    if (busy || changes != nullptr || view != nullptr) quiet_.start();
    if (std::min(quiet_.elapsed(), painted_.last.elapsed()) < 500) return;
    running_ = false;
    // The program looks for the reply 100 ms after its request.
    const auto shown = (asked_.isValid() ? asked_.nsecsElapsed() : 0) - painted_.last.nsecsElapsed();
    const bool read = steps_[next_].name.ends_with("read");
    std::printf("%-38s longest turn of the event loop %6.1f ms", steps_[next_].name.c_str(),
                turns_.LongestMs());
    if (read) {
      const int nodes = manager->treedev.tree().Count() + manager->treeQuil.tree().Count();
      std::printf(", %d nodes on screen after %.1f ms", nodes, static_cast<double>(shown) / 1e6 - 100);
    }
    std::printf("\n");
    std::fflush(stdout);
    if (++next_ == steps_.size()) return p_.loop.End();
    Begin();
  }

  bench::Modem modem_;
  bench::QtProgram p_{modem_, "corvex-device-bench"};
  PaintedTrees painted_;
  QElapsedTimer asked_;
  QElapsedTimer opened_;  ///< Since a window with changes or a summary has opened.
  QElapsedTimer quiet_;
  bench::Turns turns_{[this] { Look(); }};
  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::string configuration_;
  bool running_ = false;
  bool loads_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  Bench().Run();
  return 0;
}
