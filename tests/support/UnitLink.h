#pragma once

#include <utility>

#include "support/FakePlatform.h"
#include "unit/ErbFront.h"
#include "unit/Faults.h"
#include "unit/Unit.h"

namespace corvex::test {

/// Puts a simulated terminal unit, or an ERB unit with its MUBs, at the far side of a FakeSerial or a
/// FakeSocket: what the program sends reaches the unit, what the unit answers arrives at the port, and
/// opening and closing the port is its line going up and down.
///
/// The port must outlive the link. With faults the answers come through a line that misbehaves as told.
template <typename Port, typename FarSide = simulation::Unit>
class UnitLink {
 public:
  UnitLink(EventLoop& loop, Port& port, typename FarSide::Options options = {},
           simulation::Faults faults = {})
      : port_(port),
        hangUp_(loop),
        line_(
            loop, faults, [&port](std::string_view bytes) { port.Arrive(bytes); },
            [this] { hangUp_.Start(EventLoop::Time::zero(), [this] { HangUp(); }); }),
        unit(loop, std::move(options), [this](std::string_view bytes) { line_.Send(bytes); }) {
    port.onSent = [this](std::string_view bytes) {
      if (onHeard) onHeard(bytes);
      unit.Receive(bytes);
    };
    port.onOpened = [this] {
      hangUp_.Stop();
      line_.Reset();
      unit.LineUp();
    };
    port.onClosed = [this] { unit.LineDown(); };
  }
  UnitLink(const UnitLink&) = delete;
  UnitLink& operator=(const UnitLink&) = delete;
  ~UnitLink() {
    port_.onSent = nullptr;
    port_.onOpened = nullptr;
    port_.onClosed = nullptr;
  }

  void SetFaults(simulation::Faults faults) { line_.SetFaults(faults); }
  /// The line goes down on the far side: a socket is closed by its peer, a serial port loses its adapter.
  void HangUp() { HangUp(port_); }

  /// Called with each send of the program, before the unit has it.
  std::function<void(std::string_view)> onHeard;

 private:
  void HangUp(FakeSerial& port) { port.Vanish(); }
  void HangUp(FakeSocket& port) {
    unit.LineDown();
    port.PeerCloses();
  }

  Port& port_;
  simulation::Timer hangUp_;
  simulation::FaultyLine line_;

 public:
  FarSide unit;
};

}  // namespace corvex::test
