#include "support/StreamScript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <deque>
#include <fstream>
#include <functional>
#include <map>
#include <ostream>
#include <stdexcept>

#include "support/Decoder.h"

namespace corvex::test {

namespace {

using Words = std::vector<std::string>;

// ---- Reading the files.

/// The character behind a backslash; `at` stands on it and is moved to its last one.
char Unescape(const std::string& line, std::size_t& at) {
  switch (at < line.size() ? line[at] : '\0') {
    case 'e':
      return '\x1B';
    case 'r':
      return '\r';
    case 'n':
      return '\n';
    case '"':
      return '"';
    case '\\':
      return '\\';
    case 'x': {
      unsigned value = 0;
      const char* digits = line.data() + at + 1;
      if (at + 2 >= line.size() || std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2) break;
      at += 2;
      return static_cast<char>(value);
    }
  }
  throw std::runtime_error("unknown escape");
}

std::vector<StreamWord> SplitWords(const std::string& line) {
  std::vector<StreamWord> words;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == ' ') continue;
    if (line[at] == '#') break;
    StreamWord word;
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

std::vector<StreamTest> LoadFile(const std::filesystem::path& path) {
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  std::vector<StreamTest> tests;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    try {
      if (line.starts_with("test ")) {
        tests.push_back({.file = path.string(), .name = line.substr(5)});
        continue;
      }
      StreamLine read{.number = number, .words = SplitWords(line)};
      if (read.words.empty()) continue;
      if (tests.empty()) throw std::runtime_error("no test begun");
      if (read.words[0].text == "pieces-matter") {
        tests.back().dependsOnPieces = true;
      } else {
        tests.back().lines.push_back(std::move(read));
      }
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(path.string() + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  return tests;
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
const std::map<std::string, std::int16_t SessionState::*> kNumbers{FIELD(toneValue), FIELD(battFlags)};
const std::map<std::string, ScreenKind SessionState::*> kKinds{FIELD(screenKind), FIELD(prevScreenKind)};
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

/// A row from its first column on; blanks at the end do not count.
std::string RenderRow(const SessionState& state, const std::string& number) {
  std::string row = state.screenRows.at(std::stoul(number) - 1);
  row.erase(row.find_last_not_of(' ') + 1);
  return row;
}

std::string Join(const Words& words) {
  std::string text;
  for (const std::string& word : words) {
    constexpr std::size_t kShown = 200;
    text += " \"" + (word.size() > kShown ? word.substr(0, kShown) + "..." : word) + '"';
  }
  return text;
}

// ---- Running them.

class Runner {
 public:
  explicit Runner(Feeding feeding) : feeding_(feeding) {
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

  /// What is wrong, or nothing.
  std::string Run(const StreamLine& line) {
    const std::string& command = line.words[0].text;
    if (command == "feed") return Feed(line);
    Words words;
    for (const StreamWord& word : line.words) words.push_back(word.text);
    if (command == "expect" && words.size() > 1) return Expect({words.begin() + 1, words.end()});
    if (words == Words{"clear", "flags"}) {
      static_cast<ChangeFlags&>(decoder_.state) = {};
    } else if (words == Words{"clean", "rows"}) {
      for (int row = 1; row <= SessionState::kRows; ++row) decoder_.grid.RowForDisplay(row);
    } else if (words == Words{"trace", "on"} || words == Words{"trace", "off"}) {
      decoder_.state.traceEnabled = words[1] == "on";
    } else {
      return "unknown command" + Join(words);
    }
    return {};
  }

  std::string Finish() const { return events_.empty() ? "" : "not expected:" + Join(events_.front()); }

 private:
  std::string Feed(const StreamLine& line) {
    std::string bytes;
    int count = 1;
    for (std::size_t i = 1; i < line.words.size(); ++i) {
      const StreamWord& word = line.words[i];
      if (word.quoted) {
        for (; count > 0; --count) bytes += word.text;
      }
      count = word.quoted ? 1 : std::stoi(word.text);
    }
    if (feeding_ == Feeding::AsWritten) {
      decoder_.Feed(bytes);
    } else {
      for (const char& byte : bytes) decoder_.Feed({&byte, 1});
    }
    return {};
  }

  std::string Expect(Words expected) {
    const std::string name = expected.front();
    Words actual = Actual(name, expected);
    if (actual.empty()) return "unknown expectation " + name;
    if (name == "flags") std::sort(expected.begin() + 1, expected.end());
    if (actual == expected) return {};
    return "expected:" + Join(expected) + "\n     found:" + Join(actual);
  }

  /// The name and its value as words; nothing for an unknown name.
  Words Actual(const std::string& name, const Words& expected) {
    const SessionState& state = decoder_.state;
    Words words{name};
    const auto add = [&words](const Words& more) { words.insert(words.end(), more.begin(), more.end()); };
    if (const auto text = kTexts.find(name); text != kTexts.end()) {
      add({state.*text->second});
    } else if (const auto number = kNumbers.find(name); number != kNumbers.end()) {
      add({std::to_string(state.*number->second)});
    } else if (const auto kind = kKinds.find(name); kind != kKinds.end()) {
      add({kKindNames[static_cast<int>(state.*kind->second)]});
    } else if (name == "flags") {
      add(RenderFlags(state));
    } else if (name == "menu") {
      add(RenderRecord(state.menuScreen));
    } else if (name == "choice") {
      add(RenderRecord(state.choiceScreen));
    } else if (name == "keys") {
      add(RenderKeys(state));
    } else if (name == "cursor") {
      add({std::to_string(state.cursorRow), std::to_string(state.cursorCol)});
    } else if (name == "row" && expected.size() > 1) {
      add({expected[1], RenderRow(state, expected[1])});
    } else if (name == "row-length" && expected.size() > 1) {
      add({expected[1], std::to_string(state.screenRows.at(std::stoul(expected[1]) - 1).size())});
    } else if (name == "unclean") {
      add(RenderUncleanRows(state));
    } else if (name == "paintHold") {
      add({state.paintHold ? "yes" : "no"});
    } else if (name == "scanner") {
      add({kScanStateNames[static_cast<int>(decoder_.scanner.scanState())],
           std::to_string(decoder_.scanner.held())});
    } else if (name == "trace" || name == "channel" || name == "compression") {
      if (events_.empty()) return {name, "nothing"};
      words = events_.front();
      events_.pop_front();
    } else {
      return {};
    }
    return words;
  }

  Feeding feeding_;
  Decoder decoder_;
  std::deque<Words> events_;
};

}  // namespace

std::vector<StreamTest> LoadStreamTests(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<StreamTest> tests;
  for (const auto& file : files) {
    for (StreamTest& test : LoadFile(file)) tests.push_back(std::move(test));
  }
  return tests;
}

void PrintTo(const StreamTest& test, std::ostream* out) {
  *out << test.name;
}

void PrintTo(Feeding feeding, std::ostream* out) {
  *out << (feeding == Feeding::AsWritten ? "as written" : "byte by byte");
}

void RunStreamTest(const StreamTest& test, Feeding feeding) {
  Runner runner(feeding);
  const auto report = [&test](int line, const std::string& wrong) {
    if (!wrong.empty()) ADD_FAILURE_AT(test.file.c_str(), line) << test.name << ": " << wrong;
  };
  int last = 0;
  for (const StreamLine& line : test.lines) {
    last = line.number;
    try {
      report(line.number, runner.Run(line));
    } catch (const std::exception& error) {
      report(line.number, error.what());
    }
  }
  report(last, runner.Finish());
}

}  // namespace corvex::test
