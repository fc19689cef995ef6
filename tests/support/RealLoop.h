#pragma once

#include "host/HostLoop.h"
#include "support/Waits.h"

namespace corvex::test {

/// An event loop on the real clock, without windows.
using RealLoop = simulation::host::HostLoop;

}  // namespace corvex::test
