#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// A record of the DSP as the closed library takes it. The first of the text's comma fields is the number n
/// of all of them; the array has n + 1 elements, the last of which is 0. The library is given no length but
/// that n, so the array is made by it alone: fields too many are left out, missing ones are 0. Values from
/// 32768 on become their two's complement. Empty, and not to be handed on, where n is below 1 or a value does
/// not fit.
std::vector<std::int16_t> DspMessage(std::string_view text);

/// The buttons that talk to the DSP over the modem's test shell, and the way of its records to the library.
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
