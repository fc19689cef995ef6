#pragma once

#include <string_view>

#include "forms/Controls.h"
#include "platform/Services.h"

namespace corvex {

/// Sets a list's icon spacing from two numbers in pixels, horizontal and vertical, with a comma between them.
/// A text that cannot be read is told to the user and the spacing stays.
void SetListSpacing(ListView& list, std::string_view spacing, Dialogs& dialogs);

}  // namespace corvex
