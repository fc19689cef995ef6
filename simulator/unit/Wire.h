#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// What the unit puts on the wire in its tag stream, byte by byte. Nothing here knows what is shown, or when.
///
/// The stream interleaves three things: packets `<tml><Tag>payload</tml>`, plain text moved about by the
/// escape sequences of a small display, and trace records. The display has rows 2 to 8 and columns 2 to 40.
namespace corvex::simulation {

inline constexpr int kDisplayRows = 7;
inline constexpr int kDisplayColumns = 39;
inline constexpr int kFirstRow = 2;
inline constexpr int kFirstColumn = 2;

inline constexpr std::string_view kHideCursor = "\x1b[?25l";
inline constexpr std::string_view kClearDisplay = "\x1b[2J";
inline constexpr std::string_view kHome = "\x1b[H";
inline constexpr std::string_view kPlain = "\x1b[0m";
inline constexpr std::string_view kBold = "\x1b[1m";
inline constexpr std::string_view kReverse = "\x1b[7m";

/// `tag` without its angle brackets.
std::string Packet(std::string_view tag, std::string_view payload = {});

/// The cursor to a row and column of the display, counted from 1.
std::string MoveTo(int row, int column);

struct ListEntry {
  int id = 0;
  std::string text;
};

/// The payload of a menu or choice packet: `<Title>` title, `<id>` text for each entry, and the id on which
/// the cursor stands: `<Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2`.
std::string ListRecord(std::string_view title, const std::vector<ListEntry>& entries, int current);

/// An entry's text in a menu: three digits, the label, "|" and the number of its icon, 1 to 63.
std::string MenuEntryText(int number, std::string_view label, int icon);

struct SoftKeyLabel {
  std::string_view text;
  int code = 0;
};

/// The payload of a soft key line: text and code of the four keys, a blank within a text sent as character
/// 127.
std::string SoftKeyLine(const std::array<SoftKeyLabel, 4>& keys);

/// `<Trace>`, a length of four digits, the text, and two characters that nobody is shown. The length counts
/// the text and one of the two; it is 3 to 200, so that a text is filled up with blanks or cut.
std::string TraceRecord(std::string_view text);

/// The text at exactly this width, cut or filled up with blanks.
std::string Fit(std::string_view text, int width);

}  // namespace corvex::simulation
