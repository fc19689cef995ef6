// The decoders' own functions, as others call them.

#include <gtest/gtest.h>

#include <string>

#include "session/ItemSearch.h"
#include "session/ScreenRecord.h"
#include "session/SoftKeys.h"
#include "session/TextGrid.h"
#include "session/modTML.h"

namespace corvex {
namespace {

ScanItem Item(ScanKind kind, int pos, int after, int traceLength = 0) {
  return {kind, static_cast<std::int16_t>(pos), after, static_cast<std::int16_t>(traceLength)};
}

TEST(FindNextItem, TakesTheFirstAndGivesPositionsFromOne) {
  const struct {
    const char* text;
    ScanItem item;
  } kCases[] = {
      {"", Item(ScanKind::None, 5000, 0)},
      {"abc", Item(ScanKind::None, 5000, 0)},
      {"<tml", Item(ScanKind::None, 5000, 0)},
      {"<tml>\x1B[H", Item(ScanKind::TagItem, 1, 6)},
      {"ab<Tml>", Item(ScanKind::TagItem, 3, 8)},
      {"\x1B<tml>", Item(ScanKind::EscapeItem, 1, 2)},
      {"ab\x1B<tml>", Item(ScanKind::EscapeItem, 3, 4)},
      {"ab<tml>\x1B", Item(ScanKind::TagItem, 3, 8)},
      {"a<Trace>0012xyz\x1B<tml>", Item(ScanKind::TraceItem, 2, 13, 12)},
      {"<TRACE>0200abc", Item(ScanKind::TraceItem, 1, 12, 200)},
      {"<Trace>0201abc", Item(ScanKind::TraceItem, 1, 12, 3)},
      {"<Trace>0002abc", Item(ScanKind::TraceItem, 1, 12, 3)},
      {"<Trace>9e99abc", Item(ScanKind::TraceItem, 1, 12, 3)},
      // The text must be longer by 12 than the position of a trace record.
      {"<Trace>0007ab", Item(ScanKind::None, 5000, 0)},
      {"<Trace>0007a\x1B", Item(ScanKind::EscapeItem, 13, 14)},
      {"<Trace>0007ab\x1B", Item(ScanKind::TraceItem, 1, 12, 7)},
  };
  for (const auto& [text, item] : kCases) EXPECT_EQ(FindNextItem(text), item) << text;
}

TEST(FindNextItem, SeesNothingButATagFrom5000On) {
  const auto behind = [](std::size_t count, std::string_view text) {
    return FindNextItem(std::string(count, 'x').append(text));
  };
  EXPECT_EQ(behind(4998, "\x1B"), Item(ScanKind::EscapeItem, 4999, 5000));
  EXPECT_EQ(behind(4999, "\x1B").kind, ScanKind::None);
  EXPECT_EQ(behind(4998, "<Trace>0007abcdefgh"), Item(ScanKind::TraceItem, 4999, 5010, 7));
  EXPECT_EQ(behind(4999, "<Trace>0007abcdefgh").kind, ScanKind::None);
  EXPECT_EQ(behind(9999, "\x1B.<tml>"), Item(ScanKind::EscapeItem, 10000, 10001));
  EXPECT_EQ(behind(32766, "<tml>"), Item(ScanKind::TagItem, 32767, 32772));
  EXPECT_EQ(behind(32767, "<tml>").kind, ScanKind::None);
}

TEST(Tag, TokenAndPayloadOfAPacket) {
  EXPECT_EQ(TagTokenOf("<tml><Sig>27</tml>"), TagToken::Sig);
  EXPECT_EQ(TagTokenOf("<tml><Sk1>a</tml>"), TagToken::Sk);
  EXPECT_EQ(TagTokenOf("<tml><Sig"), TagToken::None);
  EXPECT_EQ(TagTokenOf("<tml>"), TagToken::None);
  EXPECT_EQ(TagTokenOf(""), TagToken::None);
  EXPECT_EQ(TagPayload("<tml><Sig>2>7</tml>"), "2>7");
  EXPECT_EQ(TagPayload("<tml></tml>"), "");
  EXPECT_EQ(TagPayload(""), "");
  EXPECT_EQ(PrintPayload("<tml><Print>001line</tml>"), "line");
  EXPECT_EQ(PrintPayload("<tml><Print>00</tml>"), "");
}

TEST(TagStream, PrintJobWithoutEndIsKeptUpToABoundAndHandedOverWhole) {
  SessionState state;
  TextGrid grid(state);
  TagStream tags(state, grid, [](int, int, int) { return std::string(); });
  const std::string packet = "<tml><Print>001" + std::string(30000, 'x') + "</tml>";
  for (int i = 0; i < 600; ++i) {
    state.printData = false;
    tags.HandleTagPacket(packet);
    ASSERT_EQ(state.printLine.size(), 30000u);
  }
  EXPECT_EQ(state.printText.size(), 16u << 20);
}

TEST(ScreenRecord, KeepsFortyItems) {
  std::string packet = "<tml><MenuScreen><Title>Long";
  for (int i = 1; i <= 41; ++i) packet += '<' + std::to_string(i) + ">item";
  ScreenRecord record;
  ParseScreenRecord(packet + "<INDEXLINE>40</tml>", record);
  EXPECT_EQ(record.count, 40);
  EXPECT_EQ(record.items[39].id, 40);
  EXPECT_EQ(record.current, 0);  // reading ends at the item that has no place

  ClearScreenRecord(record);
  EXPECT_EQ(record, ScreenRecord());
}

TEST(ScreenRecord, ChoiceIndexCountsFromZeroWithinTheItems) {
  ScreenRecord record;
  ParseScreenRecord("<Title>T<5>a<7>b<9>c<INDEXLINE>9<", record);
  EXPECT_EQ(ChoiceIndexOfCurrent(record), 2);
  record.current = 8;
  EXPECT_EQ(ChoiceIndexOfCurrent(record), 0);
  record.current = 9;
  record.count = 2;
  EXPECT_EQ(ChoiceIndexOfCurrent(record), 0);
}

TEST(TextGrid, RowForDisplayBeginsAtColumnTwoAndCountsAsPainted) {
  SessionState state;
  TextGrid grid(state);
  EXPECT_EQ(grid.MatchEscape("[2;5HAB"), 5);
  grid.WriteScreenText("AB");
  EXPECT_EQ(grid.RowForDisplay(2), "   AB" + std::string(34, ' '));
  EXPECT_TRUE(state.rowClean[1]);
  EXPECT_FALSE(state.rowClean[2]);
}

TEST(TextGrid, MatchEscapeTakesTheShortestPrefixOrSeven) {
  SessionState state;
  TextGrid grid(state);
  const struct {
    const char* text;
    int taken;
  } kCases[] = {
      {"", 0},        {"[", 0},         {"D", 0},       {"xD;;", 2},    {"[H12H", 2},
      {"[1;1", 0},    {"[1;1H", 5},     {"[2H2H", 5},   {"[?25l", 5},   {"[?25h", 0},
      {"[?25hab", 7}, {"[?25habcd", 7}, {"[mmm[0m", 7}, {"[100;1H", 7}, {"[10;100H", 7},
  };
  for (const auto& [text, taken] : kCases) EXPECT_EQ(grid.MatchEscape(text), taken) << text;
}

}  // namespace
}  // namespace corvex
