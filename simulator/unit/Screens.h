#pragma once

#include <array>
#include <string_view>
#include <vector>

/// The unit's user interface as a table: what there is to see, and where each key leads. Mmi knows how a kind
/// of screen is drawn and driven and nothing of any one screen.
///
/// Texts may hold places such as {position}, filled in when they are drawn (see Status::Text).
namespace corvex::simulation {

enum class Kind {
  Text,     ///< `rows`, kept up to date while shown
  Menu,     ///< `items`
  Choice,   ///< `options`, one of which is in force; the choice is remembered under `value`
  Field,    ///< `fields` to fill in below `rows`; Enter on the last leads to `target`
  Table,    ///< `rows` that move under a cursor in the third place; Enter leads to `target`
  Pages,    ///< `rows` in pages of five under a title; the cursor stops at the first and last line of a page
  Message,  ///< `title` over the screen before, for a moment or until a key; carries out `effect`
  Print,    ///< not a screen: prints `rows` below the usual heading
  SwitchOff,  ///< not a screen: ends the session
};

/// A lasting change of the unit's condition, and the packet that tells of it. Packets of one group stand for
/// one another: of "Sim" and "NoSim" the later one holds. Without a group it is over once it is told.
struct Effect {
  std::string_view group;
  std::string_view tag;
  std::string_view payload;
};

struct Item {
  int number = 0;  ///< shown, and its id on the wire
  std::string_view label;
  int icon = 0;
  std::string_view target;
};

struct Option {
  std::string_view text;
  Effect effect = {};
};

struct Field {
  std::string_view label;
  std::string_view value;  ///< the name under which the entry is remembered
  int width = 0;
  bool digitsOnly = false;
  bool hidden = false;
};

struct SoftKey {
  std::string_view text;
  int code = 0;
  std::string_view target;  ///< a screen, or kBack, kSelect, kUp, kDown, kPrint
};

inline constexpr std::string_view kBack = "<back>";
inline constexpr std::string_view kSelect = "<select>";
inline constexpr std::string_view kUp = "<up>";
inline constexpr std::string_view kDown = "<down>";
inline constexpr std::string_view kPrint = "<print>";  ///< prints the present screen below the usual heading

struct Screen {
  std::string_view name;
  Kind kind = Kind::Text;
  std::string_view title = {};
  std::array<SoftKey, 4> keys = {};
  std::vector<std::string_view> rows = {};
  std::vector<Item> items = {};
  std::vector<Option> options = {};
  std::vector<Field> fields = {};
  std::string_view value = {};
  std::string_view target = {};
  Effect effect = {};
  int times = 1;  ///< how often a print job prints its rows, counting in the place {line}
};

inline constexpr std::string_view kIdleScreen = "idle";
inline constexpr std::string_view kMainMenu = "main";
inline constexpr std::string_view kPrintHeading = "heading";  ///< a print job: what stands above each other

const std::vector<Screen>& Screens();

/// Null if there is none of that name.
const Screen* FindScreen(std::string_view name);

}  // namespace corvex::simulation
