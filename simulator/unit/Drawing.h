#pragma once

#include <string>
#include <vector>

#include "unit/Screens.h"
#include "unit/Status.h"

/// How each kind of screen looks on the wire. Nothing here remembers anything.
namespace corvex::simulation {

/// A screen that is open, and how its user has left it.
struct Place {
  const Screen* screen = nullptr;
  int cursor = 0;                         // index of the item, option, field or row
  std::vector<std::string> entries = {};  // of a field screen
};

/// Whether the display shows it, as against a list of the PC's own.
bool IsGrid(Kind kind);

/// How many places the cursor of a screen has.
int CursorPlaces(const Screen& screen);

/// The rows of the display, each as wide as that.
std::vector<std::string> GridRows(const Place& place, const Status& status);

std::string GridDrawing(const Screen& screen, const std::vector<std::string>& rows);
std::string ListDrawing(const Place& place);

}  // namespace corvex::simulation
