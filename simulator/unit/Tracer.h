#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

#include "unit/Status.h"
#include "unit/Timer.h"

namespace corvex::simulation {

/// The unit's trace output, sent on request: trace records, and the channels of a second stream. Each stream
/// sends several lines a second.
class Tracer {
 public:
  static constexpr EventLoop::Time kRecordTime = std::chrono::milliseconds(200);
  static constexpr EventLoop::Time kChannelTime = std::chrono::milliseconds(300);

  Tracer(EventLoop& loop, const Status& status, std::function<void(std::string_view)> send)
      : status_(status), send_(std::move(send)), records_(loop), channels_(loop) {}

  void SwitchRecords(bool on);
  void SwitchChannels(bool on);
  /// Sends a pending record immediately.
  void Flush();
  void Stop();

 private:
  void TellRecord();
  void TellChannel();

  const Status& status_;
  std::function<void(std::string_view)> send_;
  Timer records_;
  Timer channels_;
  std::size_t recordCount_ = 0;
  std::size_t channelCount_ = 0;
};

}  // namespace corvex::simulation
