#pragma once

#include <cstdint>

#include "trace/TraceWindow.h"

namespace corvex {

/// The window of one trace channel. It sends nothing to the modem. After the user has closed it, it stays
/// hidden but still collects the channel's records.
class frmTraceInstance : public TraceWindow {
 public:
  frmTraceInstance(const Platform& platform, SettingsStore& settings);

  void Open();
  /// Sets the channel number, given as text. The log file's name contains the text as it is.
  void NameInstance(std::string_view text);
  void TraceText(std::string_view text);

  Event<> quit;  ///< The user has clicked Quit.

 private:
  void ShowLogging(bool on) override;

  std::int32_t instance_ = 0;
};

}  // namespace corvex
