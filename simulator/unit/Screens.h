#pragma once

#include <array>
#include <string_view>
#include <vector>

/// The unit's user interface as a table: the contents of each screen, and the target of each key. Mmi knows
/// how each kind of screen is drawn and operated, but nothing about individual screens.
///
/// Texts may contain placeholders such as {position}, which are replaced when the screen is drawn; see
/// Status::Text.
namespace corvex::simulation {

enum class Kind {
  Text,    ///< `rows`, updated while shown
  Menu,    ///< `items`
  Choice,  ///< `options`, one of which is active; the choice is stored under `value`
  Field,   ///< `fields` to fill in, below `rows`; Enter in the last field leads to `target`
  Table,   ///< `rows` that scroll under a cursor in the third row; Enter leads to `target`
  Pages,  ///< `rows` in pages of five under a title; the cursor stops at the first and last line of each page
  Message,    ///< `title`, shown over the previous screen for a moment or until a key; applies `effect`
  Print,      ///< not a screen: prints `rows` below the common heading
  SwitchOff,  ///< not a screen: ends the session
};

/// A change of the unit's condition and the packet that reports it. Effects of one group replace each other:
/// of "Sim" and "NoSim", the later one is in force. An effect without a group is reported once and not
/// stored.
struct Effect {
  std::string_view group;
  std::string_view tag;
  std::string_view payload;
};

struct Item {
  int number = 0;  ///< the number that is shown, also the id on the wire
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
  std::string_view value;  ///< the name under which the entry is stored
  int width = 0;
  bool digitsOnly = false;
  bool hidden = false;
};

struct SoftKey {
  std::string_view text;
  int code = 0;
  std::string_view target;  ///< the name of a screen, or one of kBack, kSelect, kUp, kDown, kPrint
};

inline constexpr std::string_view kBack = "<back>";
inline constexpr std::string_view kSelect = "<select>";
inline constexpr std::string_view kUp = "<up>";
inline constexpr std::string_view kDown = "<down>";
inline constexpr std::string_view kPrint = "<print>";  ///< prints the current screen below the common heading

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
  int times = 1;  ///< how often a print job repeats its rows; the placeholder {line} counts them
};

inline constexpr std::string_view kIdleScreen = "idle";
inline constexpr std::string_view kMainMenu = "main";
inline constexpr std::string_view kPrintHeading = "heading";  ///< the heading of every print job

const std::vector<Screen>& Screens();

/// Returns null if no screen has this name.
const Screen* FindScreen(std::string_view name);

}  // namespace corvex::simulation
