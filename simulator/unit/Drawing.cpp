#include "unit/Drawing.h"

#include <algorithm>

#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

constexpr int kCursorRow = 2;  // index of the displayed row that holds the cursor in tables
constexpr int kPageLines = 5;
constexpr std::string_view kMarker = " > ";
constexpr std::string_view kNoMarker = "   ";

std::string_view GridTag(Kind kind) {
  if (kind == Kind::Field) return "FieldScreen";
  return kind == Kind::Text ? "TextScreen" : "TableScreen";
}

std::string SoftKeys(const Screen& screen) {
  std::array<SoftKeyLabel, 4> labels;
  for (std::size_t i = 0; i < labels.size(); ++i) labels[i] = {screen.keys[i].text, screen.keys[i].code};
  return Packet("Sk", SoftKeyLine(labels));
}

std::string FieldRow(const Place& place, std::size_t index) {
  const Field& field = place.screen->fields[index];
  const std::string& entry = place.entries[index];
  const bool active = static_cast<int>(index) == place.cursor;
  const std::string shown = field.hidden ? std::string(entry.size(), '*') : entry;
  std::string row(active ? kMarker : kNoMarker);
  row += Fit(field.label, 8) + '[' + shown;
  row += std::string(static_cast<std::size_t>(field.width) - entry.size(), '_') + ']';
  return row;
}

}  // namespace

bool IsGrid(Kind kind) {
  return kind == Kind::Text || kind == Kind::Field || kind == Kind::Table || kind == Kind::Pages;
}

int CursorPlaces(const Screen& screen) {
  switch (screen.kind) {
    case Kind::Menu:
      return static_cast<int>(screen.items.size());
    case Kind::Choice:
      return static_cast<int>(screen.options.size());
    case Kind::Field:
      return static_cast<int>(screen.fields.size());
    case Kind::Table:
      return static_cast<int>(screen.rows.size());
    case Kind::Pages:
      return (static_cast<int>(screen.rows.size()) + kPageLines - 1) / kPageLines * 2;
    default:
      return 1;
  }
}

std::vector<std::string> GridRows(const Place& place, const Status& status) {
  const Screen& screen = *place.screen;
  std::vector<std::string> rows(kDisplayRows);
  const auto line = [&](int index) {
    const bool exists = index >= 0 && index < static_cast<int>(screen.rows.size());
    return exists ? status.Text(screen.rows[static_cast<std::size_t>(index)]) : std::string();
  };
  const bool titled = !screen.title.empty();
  switch (screen.kind) {
    case Kind::Field:
      rows[0] = screen.title;
      for (int i = 0; i < static_cast<int>(screen.rows.size()); ++i) {
        rows[static_cast<std::size_t>(kCursorRow + i)] = line(i);
      }
      for (std::size_t i = 0; i < screen.fields.size(); ++i) {
        rows[kCursorRow + screen.rows.size() + i] = FieldRow(place, i);
      }
      break;
    case Kind::Table:
      // The title and the rule are above the first line and scroll away with it.
      for (int i = 0; i < kDisplayRows; ++i) {
        const int index = place.cursor - kCursorRow + i;
        auto& row = rows[static_cast<std::size_t>(i)];
        if (index == -kCursorRow) {
          row = screen.title;
        } else if (index == -1) {
          row = std::string(kDisplayColumns, '-');
        } else {
          row = std::string(i == kCursorRow ? kMarker : kNoMarker) + line(index);
        }
      }
      break;
    case Kind::Pages: {
      const int page = place.cursor / 2;
      rows[0] = Fit(screen.title, kDisplayColumns - 3) + std::to_string(page + 1) + '/' +
                std::to_string(CursorPlaces(screen) / 2);
      const int marked = place.cursor % 2 == 0 ? 0 : kPageLines - 1;
      for (int i = 0; i < kPageLines; ++i) {
        rows[static_cast<std::size_t>(i) + kCursorRow] =
            std::string(i == marked ? kMarker : kNoMarker) + line(page * kPageLines + i);
      }
      break;
    }
    default:
      if (titled) rows[0] = screen.title;
      for (std::size_t i = titled ? 1 : 0; i < rows.size(); ++i) {
        rows[i] = line(static_cast<int>(i) - (titled ? 1 : 0));
      }
  }
  for (std::string& row : rows) row = Fit(row, kDisplayColumns);
  return rows;
}

std::string GridDrawing(const Screen& screen, const std::vector<std::string>& rows) {
  std::string drawing = Packet(GridTag(screen.kind));
  drawing += kHideCursor;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].find_first_not_of(' ') == std::string::npos) continue;
    const bool bold = i == 0 && !screen.title.empty();
    const bool reverse = rows[i].starts_with(kMarker);
    drawing += MoveTo(kFirstRow + static_cast<int>(i), kFirstColumn);
    drawing += reverse ? kReverse : bold ? kBold : std::string_view();
    drawing += rows[i];
    if (reverse || bold) drawing += kPlain;
  }
  return drawing += SoftKeys(screen);
}

std::string ListDrawing(const Place& place) {
  const Screen& screen = *place.screen;
  const bool labelled = std::any_of(screen.keys.begin(), screen.keys.end(),
                                    [](const SoftKey& key) { return !key.text.empty(); });
  std::string drawing = labelled ? SoftKeys(screen) : std::string();
  std::vector<ListEntry> entries;
  for (const Item& item : screen.items) {
    entries.push_back({item.number, MenuEntryText(item.number, item.label, item.icon)});
  }
  for (const Option& option : screen.options) {
    entries.push_back({static_cast<int>(entries.size()) + 1, std::string(option.text)});
  }
  const int current = entries.empty() ? 0 : entries[static_cast<std::size_t>(place.cursor)].id;
  return drawing += Packet(screen.kind == Kind::Menu ? "MenuScreen" : "ChoiceScreen",
                           ListRecord(screen.title, entries, current));
}

}  // namespace corvex::simulation
