#include "trace/TraceWindow.h"

#include <algorithm>

namespace corvex {

namespace {

constexpr Rect kFirstButton{250, 4150, 1500, 375};
constexpr Twips kButtonStep = 1650;

}  // namespace

TraceWindow::TraceWindow(const Platform& platform, SettingsStore& settings, std::string_view name,
                         std::initializer_list<std::string_view> buttons)
    : Form(platform.loop, platform.windows, name),
      settings_(settings),
      dialogs_(platform.dialogs),
      shell_(platform.shell) {
  takesFocus = false;
  lblText.multiLine = true;
  lblText.locked = true;
  Rect place = kFirstButton;
  for (const std::string_view button : buttons) {
    const int index = static_cast<int>(cmdTrace.size());
    cmdTrace.emplace_back(*this,
                          Design{.name = "cmdTrace", .index = index, .rect = place, .caption = button});
    place.left += kButtonStep;
  }
  cmdTrace[0].click = [this] { SetLogging(!logging_); };
  cmdTrace[2].click = [this] { ShowLog(); };
  resize = [this] { LayOut(); };
}

void TraceWindow::Append(std::string_view text) {
  const TextBox::Selection selection = lblText.selection;
  lblText.Edit(selection.start + selection.length, 0, text);
  const std::string& all = lblText.Text();
  if (all.size() <= kBound) return;
  lblText.SetText(std::string(all, all.size() - kKept));
  CaretToEnd();
}

void TraceWindow::LogLine(std::string_view text) {
  if (logging_) log_.WriteLine(text);
}

void TraceWindow::SetLogging(bool on) {
  logging_ = on;
  cmdTrace[0].caption = on ? "Stop Logging" : "Start Logging";
  ShowLogging(on);
  if (on) {
    // Intentional: there is no separator, so the copy is stored next to the program's folder and its name
    // starts with the folder's name.
    log_.Start(path_, settings_.AppFolder() + settings_.OwnName("prev", ".log"));
  } else {
    log_.Stop();
  }
}

void TraceWindow::ShowLog() {
  if (logging_) SetLogging(false);
  if (!shell_.ShowText(path_)) dialogs_.MessageBox("Cannot show the log file\n" + path_);
}

void TraceWindow::Clear() {
  if (logging_) SetLogging(false);
  visible = false;
  lblText.SetText({});
}

void TraceWindow::LayOut() {
  constexpr Twips kBesideBox = 500;
  constexpr Twips kAroundBox = 900;
  constexpr Twips kBelowBox = 200;
  Rect box = lblText.rect;
  box.width = std::max(InnerWidth() - kBesideBox, 0);
  box.height = std::max(InnerHeight() - cmdTrace[0].rect.Get().height - kAroundBox, 0);
  lblText.rect = box;
  for (Button& button : cmdTrace) {
    Rect place = button.rect;
    place.top = box.top + box.height + kBelowBox;
    button.rect = place;
  }
}

}  // namespace corvex
