// Runs every test in tests/data/streams as written and byte by byte. The README there describes the language.

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "support/Decoder.h"
#include "support/ProgramScript.h"

namespace corvex {
namespace {

using test::Script;
using test::Unquote;
using test::Words;

// ---- Expectations: each is rendered as the words that follow its name in the files.

#define FIELD(name) \
  { #name, &SessionState::name }
const std::map<std::string, std::string SessionState::*> kTexts{
    FIELD(sigText),      FIELD(gpsPosText),   FIELD(gpsHeadText),   FIELD(mubInfoText),    FIELD(dspInfoText),
    FIELD(userInfoText), FIELD(spotInfoText), FIELD(timeText),      FIELD(dateLongText),   FIELD(zoneText),
    FIELD(tempText),     FIELD(psuTempText),  FIELD(battLevelText), FIELD(battStatusText), FIELD(msgText),
    FIELD(printText),    FIELD(printLine),    FIELD(mailText),
};
const std::map<std::string, bool ChangeFlags::*> kFlags{
    FIELD(timeChanged),    FIELD(softKeysChanged), FIELD(rowsChanged),    FIELD(sigChanged),
    FIELD(battChanged),    FIELD(msgChanged),      FIELD(choiceChanged),  FIELD(menuChanged),
    FIELD(tableChanged),   FIELD(closeChoice),     FIELD(closeMenu),      FIELD(printStart),
    FIELD(printData),      FIELD(printEnd),        FIELD(newMail),        FIELD(mail),
    FIELD(noMail),         FIELD(simIn),           FIELD(simOut),         FIELD(tempChanged),
    FIELD(psuTempChanged), FIELD(toneChanged),     FIELD(screenChanged),  FIELD(shutdown),
    FIELD(bookMode),       FIELD(gpsPosChanged),   FIELD(gpsHeadChanged), FIELD(mubChanged),
    FIELD(dspChanged),     FIELD(userChanged),     FIELD(spotChanged),
};
#undef FIELD

const char* const kKindNames[] = {"NoScreen",  "TextScreen",  "MenuScreen",  "ChoiceScreen",
                                  "MsgScreen", "FieldScreen", "PrintScreen", "TableScreen"};
const char* const kScanStateNames[] = {"Idle", "Trace", "Tag", "Escape"};

Words RenderFlags(const SessionState& state) {
  Words words;
  for (const auto& [name, flag] : kFlags) {
    if (state.*flag) words.push_back(name);
  }
  return words;
}

Words RenderRecord(const ScreenRecord& record) {
  Words words{record.title};
  if (record.numericTitle) words.push_back("numbered");
  words.insert(words.end(), {"current", std::to_string(record.current)});
  for (int i = 0; i < record.count; ++i) {
    const auto& item = record.items[static_cast<std::size_t>(i)];
    words.insert(words.end(), {std::to_string(item.id), item.text});
  }
  return words;
}

Words RenderKeys(const SessionState& state) {
  Words words;
  for (std::size_t k = 0; k < state.softKeyText.size(); ++k) {
    words.insert(words.end(), {state.softKeyText[k], std::to_string(state.softKeyCode[k])});
  }
  return words;
}

Words RenderUncleanRows(const SessionState& state) {
  Words words;
  for (std::size_t i = 0; i < state.rowClean.size(); ++i) {
    if (!state.rowClean[i]) words.push_back(std::to_string(i + 1));
  }
  return words;
}

// ---- The interpreter.

/// The decoders, and a record of their calls.
class DecoderScript {
 public:
  explicit DecoderScript(bool byteByByte) : byteByByte_(byteByByte) {
    decoder_.scanner.masterTrace = [this](std::string_view text) {
      events_.push_back({"trace", std::string(text)});
    };
    decoder_.tags.traceToInstance = [this](std::int32_t channel, std::string_view text) {
      events_.push_back({"channel", std::to_string(channel), std::string(text)});
    };
    decoder_.tags.onCompression = [this](TagToken token, std::string_view text) {
      const char* kind = token == TagToken::V42b ? "v42bis" : token == TagToken::V44 ? "v44" : "none";
      events_.push_back({"compression", kind, std::string(text)});
    };
  }

  void Run(const Words& quoted) {
    if (quoted[0] == "feed") {
      Feed(test::Joined(test::Repeated(quoted)));
    } else if (quoted[0] == "expect") {
      Words words;
      for (std::size_t i = 1; i < quoted.size(); ++i) words.push_back(Unquote(quoted[i]));
      if (words.at(0) == "flags") std::sort(words.begin() + 1, words.end());
      EXPECT_EQ(Actual(words), words);
    } else if (quoted == Words{"clear", "flags"}) {
      static_cast<ChangeFlags&>(decoder_.state) = {};
    } else if (quoted == Words{"clean", "rows"}) {
      for (int row = 1; row <= SessionState::kRows; ++row) decoder_.grid.RowForDisplay(row);
    } else if (quoted[0] == "trace") {
      decoder_.state.traceEnabled = quoted.at(1) == "on";
    } else {
      throw std::runtime_error("unknown command");
    }
  }

  void Finish() const { EXPECT_EQ(events_, std::deque<Words>()) << "calls that were not expected"; }

 private:
  void Feed(std::string_view bytes) {
    const std::size_t size = byteByByte_ ? 1 : bytes.size();
    for (std::size_t at = 0; at < bytes.size(); at += size) decoder_.Feed(bytes.substr(at, size));
  }

  /// The actual words for an expectation, beginning with its name.
  Words Actual(const Words& expected) {
    const SessionState& state = decoder_.state;
    const std::string& name = expected[0];
    if (name == "trace" || name == "channel" || name == "compression") {
      if (events_.empty()) return {"nothing"};
      const Words event = events_.front();
      events_.pop_front();
      return event;
    }
    Words words = Rendered(state, name);
    if (name == "row" || name == "row-length") {
      const std::string& row = state.screenRows.at(std::stoul(expected.at(1)) - 1);
      const std::string text = row.substr(0, row.find_last_not_of(' ') + 1);
      words = {expected[1], name == "row" ? text : std::to_string(row.size())};
    }
    words.insert(words.begin(), name);
    return words;
  }

  Words Rendered(const SessionState& state, const std::string& name) const {
    const auto kind = [](ScreenKind screen) { return Words{kKindNames[static_cast<int>(screen)]}; };
    if (const auto text = kTexts.find(name); text != kTexts.end()) return {state.*text->second};
    if (name == "toneValue") return {std::to_string(state.toneValue)};
    if (name == "battFlags") return {std::to_string(state.battFlags)};
    if (name == "screenKind") return kind(state.screenKind);
    if (name == "prevScreenKind") return kind(state.prevScreenKind);
    if (name == "flags") return RenderFlags(state);
    if (name == "menu") return RenderRecord(state.menuScreen);
    if (name == "choice") return RenderRecord(state.choiceScreen);
    if (name == "keys") return RenderKeys(state);
    if (name == "cursor") return {std::to_string(state.cursorRow), std::to_string(state.cursorCol)};
    if (name == "unclean") return RenderUncleanRows(state);
    if (name == "paintHold") return {state.paintHold ? "yes" : "no"};
    const auto& scanner = decoder_.scanner;
    if (name != "scanner") return {};
    return {kScanStateNames[static_cast<int>(scanner.scanState())], std::to_string(scanner.held())};
  }

  bool byteByByte_;
  test::Decoder decoder_;
  std::deque<Words> events_;
};

template <typename Runner, typename... Options>
void RunScript(const std::string& file, const Script& script, Options... options) {
  Runner runner(options...);
  for (const auto& [number, words] : script.lines) {
    const testing::ScopedTrace trace(file.c_str(), number, script.name);
    EXPECT_NO_THROW(runner.Run(words));
  }
  SCOPED_TRACE(script.name);
  runner.Finish();
}

TEST(StreamFiles, MeetTheirExpectations) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/streams")) {
    if (entry.path().extension() != ".txt") continue;
    const std::string file = entry.path().string();
    for (const Script& script : test::LoadScripts(file)) {
      ++count;
      if (script.wholeProgram) {
        RunScript<test::ProgramScript>(file, script);
        continue;
      }
      RunScript<DecoderScript>(file, script, false);
      SCOPED_TRACE("byte by byte");
      if (!script.dependsOnPieces) RunScript<DecoderScript>(file, script, true);
    }
  }
  EXPECT_GT(count, 0u);
}

}  // namespace
}  // namespace corvex
