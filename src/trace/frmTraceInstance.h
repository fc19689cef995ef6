#pragma once

#include <cstdint>

#include "trace/TraceWindow.h"

namespace corvex {

/// The window of one trace channel. It has nothing to say to the modem. Once the user has closed it, what
/// comes for it goes on in there unseen.
class frmTraceInstance : public TraceWindow {
 public:
  frmTraceInstance(const Platform& platform, SettingsStore& settings);

  void Open();
  /// Names the log after a channel's number as a text, and takes over the number.
  void NameInstance(std::string_view text);
  void TraceText(std::string_view text);

  Event<> quit;  ///< The user has quit by the button.

 private:
  void ShowLogging(bool on) override;

  std::int32_t instance_ = 0;
};

}  // namespace corvex
