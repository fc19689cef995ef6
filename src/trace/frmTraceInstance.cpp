#include "trace/frmTraceInstance.h"

#include "base/Text.h"

namespace corvex {

frmTraceInstance::frmTraceInstance(const Platform& platform, SettingsStore& settings)
    : TraceWindow(platform, settings, "frmTraceInstance", {"Start Logging", "Quit", "Show Log"}) {
  caption = "Trace Instance";
  cmdTrace[1].click = [this] {
    quit();
    Clear();
  };
  deactivate = [this] { CaretToEnd(); };
  queryUnload = [this] { Clear(); };
}

void frmTraceInstance::Open() {
  rect = Rect{7800, 4900, kWidth, kHeight};
  visible = true;
}

void frmTraceInstance::NameInstance(std::string_view text) {
  path_ = settings_.InAppFolder(settings_.OwnName("trace" + std::string(text), ".log"));
  instance_ = WholePrefix(text);
  lblText.toolTip = "Channel " + std::to_string(instance_);
  lblText.accessible = "Trace of channel " + std::to_string(instance_);
}

void frmTraceInstance::TraceText(std::string_view text) {
  const std::string line = std::string(text).append(kCrLf);
  Append(line);
  LogLine(line);  // intentional: LogLine adds a second line end, so an empty line follows each record
}

void frmTraceInstance::ShowLogging(bool on) {
  if (on) caption = "Logging to: " + path_;
}

}  // namespace corvex
