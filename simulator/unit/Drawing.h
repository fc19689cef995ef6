#pragma once

#include <string>
#include <vector>

#include "unit/Screens.h"
#include "unit/Status.h"

/// Draws each kind of screen as bytes on the wire. The functions keep no state.
namespace corvex::simulation {

/// An open screen and what its user has done on it.
struct Place {
  const Screen* screen = nullptr;
  int cursor = 0;                         // index of the current item, option, field or row
  std::vector<std::string> entries = {};  // the texts in the fields of a field screen
};

/// Returns true if the unit's display shows screens of this kind, false if the PC shows them as lists.
bool IsGrid(Kind kind);

/// Returns the number of cursor positions on a screen.
int CursorPlaces(const Screen& screen);

/// Returns the display's rows, each of the full width.
std::vector<std::string> GridRows(const Place& place, const Status& status);

std::string GridDrawing(const Screen& screen, const std::vector<std::string>& rows);
std::string ListDrawing(const Place& place);

}  // namespace corvex::simulation
