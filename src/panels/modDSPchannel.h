#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// Converts comma-separated numbers to the array that the closed-source DSP library expects.
///
/// The first field is n, the number of fields including itself. The array has n + 1 elements and ends with 0.
/// The library reads the length from n alone. Extra fields are therefore ignored, and missing fields are 0.
/// Values from 32768 to 65535 become the negative number with the same 16 bits. If n is below 1 or a value
/// does not fit into 16 bits, the result is empty and must not be passed to the library.
std::vector<std::int16_t> DspMessage(std::string_view text);

/// Sends DSP commands to the modem's test shell when their buttons are clicked, and passes DSP records to the
/// DSP library.
class DspChannel {
 public:
  DspChannel(const Platform& platform, TermControls& window, PanelLink& link)
      : platform_(platform), window_(window), panel_(window.testPanel), link_(link) {}
  void Connect();

  void SendDspMessage(std::string_view text) const;

 private:
  void PressShort(Button& button);
  void SendRaw(std::size_t index);

  const Platform& platform_;
  TermControls& window_;
  TestPanel& panel_;
  PanelLink& link_;
};

}  // namespace corvex
