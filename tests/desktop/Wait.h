#pragma once

// The helpers for waiting, together with Qt's event loop.
#include "desktop/QtEventLoop.h"
#include "support/Waits.h"
