#include "trace/frmTracer.h"

#include <chrono>

namespace corvex {

namespace {

constexpr char kHold = 5;
constexpr char kOff = 4;
constexpr std::string_view kScreenName = "trace ";
constexpr auto kQuitPause = std::chrono::milliseconds(100);

}  // namespace

frmTracer::frmTracer(const Platform& platform, SettingsStore& settings)
    : TraceWindow(platform, settings, "frmTracer", {"Logging On", "Quit", "Show Log", "Flush"}) {
  caption = "TRACE.LOG";
  path_ = settings.InAppFolder(settings.OwnName("trace", ".log"));
  cmdTrace[1].click = [this] { Quit(); };
  cmdTrace[3].click = [this, &sound = platform.sound] {
    send(kHold);
    lblText.SetText({});
    sound.Bell();
    send(kHold);
  };
  activate = [this] {
    if (rect.Get().left > 0) SavePosition();
  };
  deactivate = [this] {
    CaretToEnd();
    if (loaded_) SavePosition();
  };
  queryUnload = [this] { Unload(); };
}

void frmTracer::Open() {
  ++turns_;
  if (loaded_) return;
  loaded_ = true;
  rect = Rect{0, 0, kWidth, kHeight};
  MoveTo(settings_.positions.trcleft.Get(), settings_.positions.trctop.Get());
  SetLogging(false);
  visible = true;
}

void frmTracer::TraceText(std::string_view text) {
  Append(text);
  LogLine(text);
}

void frmTracer::ShowLogging(bool) {
  caption = kScreenName;
}

void frmTracer::Quit() {
  if (quitTurn_ == turns_) return;  // already waiting
  const unsigned turn = quitTurn_ = turns_;
  ends();
  send(kHold);
  // Uses a timer instead of Pause. A mode change abandons a pause, but the window must close in any case.
  quitting_ = loop().After(kQuitPause, [this, turn] {
    if (turn != turns_) return;  // the window has been closed in another way, or opened again
    send(kOff);
    Unload();  // sends kHold and kOff again
  });
}

void frmTracer::Unload() {
  if (!loaded_) return;
  // Pump handles events, and one of them may open the window again. Everything except kOff is therefore done
  // first.
  loaded_ = false;
  ++turns_;
  ends();
  SavePosition();
  Clear();
  send(kHold);
  loop().Pump(loop().Now());
  if (!loaded_) send(kOff);
}

void frmTracer::SavePosition() {
  const Rect outer = rect;
  settings_.positions.trctop.Set(outer.top);
  settings_.positions.trcleft.Set(outer.left);
}

}  // namespace corvex
