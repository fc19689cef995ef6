#pragma once

#include <string>

#include "forms/Controls.h"

namespace corvex::test {

/// A property of a control as a script names it, as text: "visible", "caption", "font" and so on.
/// Throws std::runtime_error for an unknown name, std::bad_cast if the control has no such property.
std::string PropertyOf(const Control& control, const std::string& name);

/// "Courier 10 bold italic".
std::string Described(const Font& font);

}  // namespace corvex::test
