// Every test of the files in tests/data/streams, run as written and byte by byte; the README there describes
// their language.

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>

#include "support/Decoder.h"

namespace corvex {
namespace {

using Words = std::vector<std::string>;

// ---- Reading the files.

struct Word {
  std::string text;
  bool quoted = false;
};

struct Line {
  int number = 0;
  std::vector<Word> words;
};

struct Script {
  std::string name;
  bool dependsOnPieces = false;  ///< What comes out depends on how the stream is cut; that is meant.
  std::vector<Line> lines = {};
};

/// The character behind a backslash; `at` stands on it and is moved to its last one.
char Unescape(const std::string& line, std::size_t& at) {
  constexpr std::string_view kNames = "ern\"\\";
  constexpr std::string_view kCharacters = "\x1B\r\n\"\\";
  if (const auto i = kNames.find(line[at]); i != kNames.npos) return kCharacters[i];
  if (line[at] != 'x') throw std::runtime_error("unknown escape");
  at += 2;
  return static_cast<char>(std::stoi(line.substr(at - 1, 2), nullptr, 16));
}

std::vector<Word> SplitWords(const std::string& line) {
  std::vector<Word> words;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == ' ') continue;
    if (line[at] == '#') break;
    Word word;
    word.quoted = line[at] == '"';
    if (word.quoted) {
      for (++at; at < line.size() && line[at] != '"'; ++at) {
        word.text += line[at] == '\\' ? Unescape(line, ++at) : line[at];
      }
      if (at >= line.size()) throw std::runtime_error("the text does not end");
    } else {
      const std::size_t end = std::min(line.find(' ', at), line.size());
      word.text = line.substr(at, end - at);
      at = end;
    }
    words.push_back(std::move(word));
  }
  return words;
}

std::vector<Script> LoadScripts(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::vector<Script> scripts;
  int number = 0;
  for (std::string text; std::getline(in, text);) {
    ++number;
    try {
      if (text.starts_with("test ")) {
        scripts.push_back({.name = text.substr(5)});
      } else if (Line line{number, SplitWords(text)}; !line.words.empty()) {
        Script& script = scripts.at(scripts.size() - 1);
        if (text == "pieces-matter") {
          script.dependsOnPieces = true;
        } else {
          script.lines.push_back(std::move(line));
        }
      }
    } catch (const std::exception& error) {
      ADD_FAILURE_AT(path.string().c_str(), number) << error.what();
    }
  }
  return scripts;
}

// ---- What can be expected: each rendered as the words that stand behind its name in the files.

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

// ---- Running them.

class Runner {
 public:
  explicit Runner(bool byteByByte) : byteByByte_(byteByByte) {
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

  void Run(const Line& line) {
    Words words;
    for (const Word& word : line.words) words.push_back(word.text);
    if (words[0] == "feed") {
      Feed(line);
    } else if (words[0] == "expect" && words.size() > 1) {
      words.erase(words.begin());
      if (words[0] == "flags") std::sort(words.begin() + 1, words.end());
      EXPECT_EQ(Actual(words), words);
    } else if (words == Words{"clear", "flags"}) {
      static_cast<ChangeFlags&>(decoder_.state) = {};
    } else if (words == Words{"clean", "rows"}) {
      for (int row = 1; row <= SessionState::kRows; ++row) decoder_.grid.RowForDisplay(row);
    } else if (words == Words{"trace", "on"} || words == Words{"trace", "off"}) {
      decoder_.state.traceEnabled = words[1] == "on";
    } else {
      throw std::runtime_error("unknown command");
    }
  }

  void Finish() const { EXPECT_EQ(events_, std::deque<Words>()) << "not expected"; }

 private:
  void Feed(const Line& line) {
    std::string bytes;
    int count = 1;
    for (std::size_t i = 1; i < line.words.size(); ++i) {
      const Word& word = line.words[i];
      if (word.quoted) {
        for (; count > 0; --count) bytes += word.text;
      }
      count = word.quoted ? 1 : std::stoi(word.text);
    }
    const std::size_t size = byteByByte_ ? 1 : bytes.size();
    for (std::size_t at = 0; at < bytes.size(); at += size) decoder_.Feed({bytes.data() + at, size});
  }

  /// What there is of the name that the expectation begins with, behind that name.
  Words Actual(const Words& expected) {
    const SessionState& state = decoder_.state;
    const std::string& name = expected[0];
    const auto row = [&] { return state.screenRows.at(std::stoul(expected.at(1)) - 1); };
    const auto scanState = static_cast<int>(decoder_.scanner.scanState());
    const std::map<std::string, std::function<Words()>> renderings{
        {"toneValue", [&] { return Words{std::to_string(state.toneValue)}; }},
        {"battFlags", [&] { return Words{std::to_string(state.battFlags)}; }},
        {"screenKind", [&] { return Words{kKindNames[static_cast<int>(state.screenKind)]}; }},
        {"prevScreenKind", [&] { return Words{kKindNames[static_cast<int>(state.prevScreenKind)]}; }},
        {"flags", [&] { return RenderFlags(state); }},
        {"menu", [&] { return RenderRecord(state.menuScreen); }},
        {"choice", [&] { return RenderRecord(state.choiceScreen); }},
        {"keys", [&] { return RenderKeys(state); }},
        {"cursor",
         [&] {
           return Words{std::to_string(state.cursorRow), std::to_string(state.cursorCol)};
         }},
        {"row",
         [&] {
           return Words{expected[1], row().substr(0, row().find_last_not_of(' ') + 1)};
         }},
        {"row-length",
         [&] {
           return Words{expected[1], std::to_string(row().size())};
         }},
        {"unclean", [&] { return RenderUncleanRows(state); }},
        {"paintHold", [&] { return Words{state.paintHold ? "yes" : "no"}; }},
        {"scanner",
         [&] {
           return Words{kScanStateNames[scanState], std::to_string(decoder_.scanner.held())};
         }},
    };
    if (name == "trace" || name == "channel" || name == "compression") {
      if (events_.empty()) return {"nothing"};
      const Words event = events_.front();
      events_.pop_front();
      return event;
    }
    const auto text = kTexts.find(name);
    Words words = text != kTexts.end() ? Words{state.*text->second} : renderings.at(name)();
    words.insert(words.begin(), name);
    return words;
  }

  bool byteByByte_;
  test::Decoder decoder_;
  std::deque<Words> events_;
};

void RunScript(const std::string& file, const Script& script, bool byteByByte) {
  Runner runner(byteByByte);
  const std::string where = script.name + (byteByByte ? ", byte by byte" : "");
  for (const Line& line : script.lines) {
    const testing::ScopedTrace trace(file.c_str(), line.number, where);
    EXPECT_NO_THROW(runner.Run(line));
  }
  SCOPED_TRACE(where);
  runner.Finish();
}

TEST(StreamFiles, AllThatTheyExpectIsFound) {
  std::size_t count = 0;
  for (const auto& file : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/streams")) {
    if (file.path().extension() != ".txt") continue;
    for (const Script& script : LoadScripts(file.path())) {
      ++count;
      RunScript(file.path().string(), script, false);
      if (!script.dependsOnPieces) RunScript(file.path().string(), script, true);
    }
  }
  EXPECT_GT(count, 0u);
}

}  // namespace
}  // namespace corvex
