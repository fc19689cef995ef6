#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// Builds the bytes of the unit's tag stream. These functions do not know what is shown or when.
///
/// The stream mixes three things: packets `<tml><Tag>payload</tml>`, plain text positioned by the escape
/// sequences of a small display, and trace records. The display has rows 2 to 8 and columns 2 to 40.
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

/// `tag` is given without angle brackets.
std::string Packet(std::string_view tag, std::string_view payload = {});

/// Moves the cursor to a row and column of the display, counted from 1.
std::string MoveTo(int row, int column);

struct ListEntry {
  int id = 0;
  std::string text;
};

/// Returns the payload of a menu or choice packet: `<Title>` and the title, `<id>` and the text of each
/// entry, and the id of the current entry. Example: `<Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2`.
std::string ListRecord(std::string_view title, const std::vector<ListEntry>& entries, int current);

/// Returns the text of a menu entry: three digits, the label, "|" and the number of its icon, 1 to 63.
std::string MenuEntryText(int number, std::string_view label, int icon);

struct SoftKeyLabel {
  std::string_view text;
  int code = 0;
};

/// Returns the payload of a soft key line: the texts and codes of the four keys. A blank in a text is sent as
/// character 127.
std::string SoftKeyLine(const std::array<SoftKeyLabel, 4>& keys);

/// Returns a trace record: `<Trace>`, a length of four digits, the text, and two characters that are not
/// shown. The length counts the text and one of the two characters. It is 3 to 200: shorter texts are filled
/// up with blanks, longer ones are cut.
std::string TraceRecord(std::string_view text);

/// Cuts the text to this width or fills it up with blanks.
std::string Fit(std::string_view text, int width);

}  // namespace corvex::simulation
