// Every test of the files in tests/data/streams, run as written and byte by byte; the README there describes
// their language.

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>

#include "support/Decoder.h"
#include "support/Program.h"
#include "support/Seen.h"

namespace corvex {
namespace {

using Words = std::vector<std::string>;

// ---- Reading the files.

struct Script {
  std::string name;
  bool dependsOnPieces = false;  ///< What comes out depends on how the stream is cut; that is meant.
  std::vector<std::pair<int, Words>> lines = {};  ///< With their numbers; the quotes are still there.
};

Words SplitWords(const std::string& line) {
  static const std::regex word(R"("(\\.|[^"\\])*"|#.*|[^ "]+|")");
  Words words;
  for (std::sregex_iterator at(line.begin(), line.end(), word), end; at != end; ++at) {
    if (at->str() == "\"") throw std::runtime_error("the text does not end");
    if (at->str()[0] != '#') words.push_back(at->str());
  }
  return words;
}

std::string Unquote(const std::string& word) {
  if (word[0] != '"') return word;
  constexpr std::string_view kNames = "ern\"\\";
  constexpr std::string_view kCharacters = "\x1B\r\n\"\\";
  std::string text;
  for (std::size_t at = 1; at + 1 < word.size(); ++at) {
    if (word[at] != '\\') {
      text += word[at];
    } else if (const auto i = kNames.find(word[++at]); i != kNames.npos) {
      text += kCharacters[i];
    } else {
      if (word[at] != 'x') throw std::runtime_error("unknown escape");
      text += static_cast<char>(std::stoi(word.substr(at + 1, 2), nullptr, 16));
      at += 2;
    }
  }
  return text;
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
      } else if (const Words words = SplitWords(text); !words.empty()) {
        Script& script = scripts.at(scripts.size() - 1);
        script.dependsOnPieces |= text == "pieces-matter" || text == "program";
        if (text != "pieces-matter") script.lines.emplace_back(number, words);
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

/// The decoders with what they call noted, or for what a user sees the whole program.
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

  void Run(const Words& quoted) {
    Words words;
    for (const std::string& word : quoted) words.push_back(Unquote(word));
    const std::string command = words[0];
    words.erase(words.begin());
    if (command == "feed") {
      Feed(quoted);
    } else if (command == "program") {
      session_.emplace();
      session_->p.comPort.sent.clear();
    } else if (command == "wait") {
      session_.value().p.loop.Run(std::stod(words.at(0)));
    } else if (command == "sent") {
      EXPECT_EQ(std::exchange(session_.value().p.comPort.sent, {}), words.at(0));
    } else if (command == "answer") {
      session_.value().modem.Answer(words.at(0), words.at(1));
    } else if (UserActs(command, words)) {
      session_->p.loop.Run(0);
    } else if (command == "see" || command == "gone") {
      See(words, command == "see");
    } else if (command == "expect") {
      if (words.at(0) == "flags") std::sort(words.begin() + 1, words.end());
      EXPECT_EQ(Actual(words), words);
    } else if (quoted == Words{"clear", "flags"}) {
      static_cast<ChangeFlags&>(decoder_.state) = {};
    } else if (quoted == Words{"clean", "rows"}) {
      for (int row = 1; row <= SessionState::kRows; ++row) decoder_.grid.RowForDisplay(row);
    } else if (command == "trace") {
      decoder_.state.traceEnabled = words.at(0) == "on";
    } else {
      throw std::runtime_error("unknown command");
    }
  }

  void Finish() const { EXPECT_EQ(events_, std::deque<Words>()) << "not expected"; }

 private:
  void Feed(const Words& quoted) {
    std::string bytes;
    int count = 1;
    for (std::size_t i = 1; i < quoted.size(); ++i) {
      const bool text = quoted[i][0] == '"';
      for (; text && count > 0; --count) bytes += Unquote(quoted[i]);
      count = text ? 1 : std::stoi(quoted[i]);
    }
    if (session_) return session_->Feed(bytes, 0.5);
    const std::size_t size = byteByByte_ ? 1 : bytes.size();
    for (std::size_t at = 0; at < bytes.size(); at += size) decoder_.Feed({bytes.data() + at, size});
  }

  /// What the user does, as the window system delivers it: in lists, to that with the focus.
  bool UserActs(const std::string& command, const Words& words) {
    if (command != "click" && command != "keydown" && command != "type" && command != "select" &&
        command != "double-click") {
      return false;
    }
    frmTerm& term = session_.value().term;
    const auto act = [this](auto task) { session_->p.Do(task); };
    const bool choice = term.ListChoice.HasFocus();
    if (command == "click") {
      act([&] { Click(words); });
    } else if (command == "keydown") {
      KeyEvent key{.keyCode = std::stoi(words.at(0)), .alt = words.size() > 1 && words[1] == "alt"};
      act([&] { term.keyDown(key); });
      EXPECT_EQ(key.handled, words.back() != "goes-on");
    } else if (command == "type") {
      for (const char& c : words.at(0)) {
        act([&] {
          if (choice) return term.ListChoice.keyPress(c);
          if (term.ListMenu.HasFocus()) return term.ListMenu.keyPress(c);
          term.CorvexFocus1.keys({&c, 1});
        });
      }
    } else if (command == "select") {
      (choice ? term.ListChoice.listIndex : term.ListMenu.selected).Adopt(std::stoi(words.at(0)));
    } else {
      act([&] { choice ? term.ListChoice.doubleClick() : term.ListMenu.doubleClick(); });
    }
    return true;
  }

  void Click(const Words& words) {
    const int index = words.size() > 1 ? std::stoi(words[1]) : -1;
    for (Control* control : session_->term.controls()) {
      if (control->name() != words.at(0) || control->index() != index) continue;
      if (auto* button = dynamic_cast<Button*>(control)) return button->click();
      if (auto* image = dynamic_cast<Image*>(control)) return image->click();
      if (auto* label = dynamic_cast<Label*>(control)) return label->click();
      if (auto* item = dynamic_cast<MenuItem*>(control)) return item->click();
    }
    throw std::runtime_error("no such control");
  }

  /// The lines are looked for one behind the other, with single blanks and none at their beginning.
  void See(const Words& lines, bool there) {
    std::string seen = std::regex_replace(test::Seen(session_.value().term), std::regex(" +"), " ");
    seen = std::regex_replace(seen, std::regex("\n "), "\n");
    std::string all = lines.at(0);
    for (std::size_t i = 1; i < lines.size(); ++i) all += '\n' + lines[i];
    EXPECT_EQ(seen.find(all) != std::string::npos, there) << all << "\nin\n" << seen;
  }

  /// What there is of the name that the expectation begins with, behind that name.
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
  std::optional<test::Session> session_;
  std::deque<Words> events_;
};

void RunScript(const std::string& file, const Script& script, bool byteByByte) {
  Runner runner(byteByByte);
  const std::string where = script.name + (byteByByte ? ", byte by byte" : "");
  for (const auto& [number, words] : script.lines) {
    const testing::ScopedTrace trace(file.c_str(), number, where);
    EXPECT_NO_THROW(runner.Run(words));
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
