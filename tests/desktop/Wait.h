#pragma once

// Waiting in tests of Qt's event loop is the same as on any other.
#include "desktop/QtEventLoop.h"
#include "support/Waits.h"
