#include "unit/Unit.h"
