#pragma once

#include <string_view>

#include "forms/Controls.h"
#include "platform/Services.h"

namespace corvex {

/// Sets a list's icon spacing from a text with two numbers in pixels, "horizontal,vertical". If the text is
/// invalid, a message box reports it and the spacing does not change.
void SetListSpacing(ListView& list, std::string_view spacing, Dialogs& dialogs);

}  // namespace corvex
