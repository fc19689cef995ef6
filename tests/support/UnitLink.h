#pragma once

#include <type_traits>
#include <utility>

#include "support/FakePlatform.h"
#include "unit/ErbFront.h"
#include "unit/Faults.h"
#include "unit/Unit.h"

namespace corvex::test {

/// Connects a FakeSerial or a FakeSocket with a simulated terminal unit, or with an ERB unit and its MUBs.
/// When the port is opened or closed, the unit's line goes up or down. With faults the answers come through a
/// FaultyLine. When a unit on a socket restarts, it closes the connection. The port must outlive the link.
template <typename Port, typename FarSide = simulation::Unit>
class UnitLink {
 public:
  UnitLink(EventLoop& loop, Port& port, typename FarSide::Options options = {},
           simulation::Faults faults = {})
      : port_(port),
        hangUp_(loop),
        line_(
            loop, faults, [&port](std::string_view bytes) { port.Arrive(bytes); }, [this] { PostHangUp(); }),
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
    if constexpr (std::is_same_v<Port, FakeSocket> && std::is_same_v<FarSide, simulation::Unit>) {
      unit.onRestart = [this] { PostHangUp(); };
    }
  }
  UnitLink(const UnitLink&) = delete;
  UnitLink& operator=(const UnitLink&) = delete;
  ~UnitLink() {
    port_.onSent = nullptr;
    port_.onOpened = nullptr;
    port_.onClosed = nullptr;
  }

  void SetFaults(simulation::Faults faults) { line_.SetFaults(faults); }
  /// The far side takes the line down: it closes a socket, or a serial port loses its adapter.
  void HangUp() { HangUp(port_); }

  /// Called with each send of the program before the unit receives it.
  std::function<void(std::string_view)> onHeard;

 private:
  void PostHangUp() {
    hangUp_.Start(EventLoop::Time::zero(), [this] { HangUp(); });
  }
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
