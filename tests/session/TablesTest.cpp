// Runs each line of tests/data/tables: a function, its arguments and its results.

#include <gtest/gtest.h>

#include <sstream>

#include "base/Text.h"
#include "link/WireLog.h"
#include "panels/modDSPchannel.h"
#include "panels/modRawCmds.h"
#include "session/mListView.h"
#include "session/modLogger.h"
#include "settings/ProfileFile.h"
#include "support/FakePlatform.h"
#include "support/Script.h"
#include "unit/WireLog.h"

namespace corvex {
namespace {

using test::Words;

template <typename Number>
std::string Shown(const Number& number) {
  std::ostringstream out;
  out.precision(17);
  out << number;
  return out.str();
}
template <typename Number>
std::string Shown(const std::optional<Number>& number) {
  return number ? Shown(*number) : "none";
}
std::string Shown(bool holds) {
  return holds ? "yes" : "no";
}

std::string Find(const Words& w) {
  const std::size_t at = FindNoCase(w[0], w[1], std::stoul(w.at(2)));
  return at == std::string::npos ? "none" : Shown(at);
}
std::string RecordingError(const Words& w) {
  const auto parsed = simulation::ParseWireLog(w.at(0));
  const auto* error = std::get_if<simulation::WireLogError>(&parsed);
  EXPECT_TRUE(error == nullptr || !error->text.empty());
  return error == nullptr ? "none" : Shown(error->line);
}
std::string Written(const Words& w) {
  const std::string after = WithProfileValue(w.at(0), "port", "com", "7");
  EXPECT_EQ(ProfileValue(after, "port", "com", ""), "7");
  return after;
}
/// Arguments: last time, interval, second of 31 March 2006. Results: whether a log is due, the new last time.
Words Logged(const Words& w) {
  test::FakePlatform p(std::stod(w.at(2)));
  p.settings.logging.lasttime.Set(w[0]);
  std::string interval = w[1];
  p.settings.WriteSetting("logging", "interval", interval);
  const std::string due = Shown(LogDue(p.loop, p.settings));
  return {due, p.settings.logging.lasttime.Get()};
}
std::string LogName(const Words& w) {
  return LogFileName(test::VirtualLoop(std::stod(w.at(0))), "");
}

Words Dsp(const Words& w) {
  const std::vector<std::int16_t> message = DspMessage(w.at(0));
  Words words{Shown(message.size())};
  for (std::size_t i = 0; i < std::min<std::size_t>(message.size(), 6); ++i)
    words.push_back(Shown(message[i]));
  return words;
}

Words Spacing(const Words& w) {
  test::FakePlatform p;
  Form form(p.loop, p.windows, "form");
  ListView list(form, {});
  SetListSpacing(list, w.at(0), p.dialogs);
  return {Shown(list.iconSpacing.Get()), p.dialogs.shown.empty() ? "" : p.dialogs.shown[0]};
}

struct Function {
  std::size_t arguments;
  std::function<Words(const Words&)> call;
};
const std::map<std::string, Function> kFunctions{
    {"number",
     {1,
      [](const Words& w) {
        return Words{Shown(NumericPrefix(w[0])), Shown(WholePrefix(w[0])), Shown(ToInt32(w[0]))};
      }}},
    {"int16", {1, [](const Words& w) { return Words{Shown(ToInt16(w[0]))}; }}},
    {"upper", {1, [](const Words& w) { return Words{UpperCase(w[0])}; }}},
    {"same-without-case", {2, [](const Words& w) { return Words{Shown(EqualNoCase(w[0], w[1]))}; }}},
    {"find", {3, [](const Words& w) { return Words{Find(w)}; }}},
    {"matches", {2, [](const Words& w) { return Words{Shown(Matches(w[0], w[1]))}; }}},
    {"trim", {1, [](const Words& w) { return Words{std::string(TrimBlanks(w[0]))}; }}},
    {"model",
     {1, [](const Words& w) { return Words{TerminalModelTitle(TerminalModelFromText(w[0]), "Quil")}; }}},
    {"app-folder", {1, [](const Words& w) { return Words{AppFolderOf(w[0])}; }}},
    {"profile-read", {1, [](const Words& w) { return Words{ProfileValue(w[0], "port", "com", "none")}; }}},
    {"profile-write", {1, [](const Words& w) { return Words{Written(w)}; }}},
    {"hex-bytes", {1, [](const Words& w) { return Words{BytesFromNumbers(w[0], true)}; }}},
    {"dec-bytes", {1, [](const Words& w) { return Words{BytesFromNumbers(w[0], false)}; }}},
    {"dsp", {1, Dsp}},
    {"quote", {1, [](const Words& w) { return Words{QuoteBytes(w[0])}; }}},
    {"list-spacing", {1, Spacing}},
    {"log-due", {3, Logged}},
    {"log-name", {1, [](const Words& w) { return Words{LogName(w)}; }}},
    {"recording-error", {1, [](const Words& w) { return Words{RecordingError(w)}; }}},
};

TEST(Tables, HoldInEachLine) {
  std::size_t lines = 0;
  for (const auto& entry : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/tables")) {
    if (entry.path().extension() != ".txt") continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line); ++lines) {
      SCOPED_TRACE(line);
      Words words;
      for (const std::string& word : test::SplitWords(line)) words.push_back(test::Unquote(word));
      if (words.empty()) continue;
      const Function& function = kFunctions.at(words[0]);
      ASSERT_GT(words.size(), function.arguments + 1);
      const auto result = words.begin() + 1 + static_cast<std::ptrdiff_t>(function.arguments);
      EXPECT_EQ(function.call({words.begin() + 1, result}), Words(result, words.end()));
    }
  }
  EXPECT_GT(lines, 0u);
}

TEST(Text, ManyWildcardsAreMatchedInShortTime) {
  std::string stars;
  for (int i = 0; i < 50; ++i) stars += "a*";
  EXPECT_FALSE(Matches(std::string(10000, 'a'), stars + "b"));
}

}  // namespace
}  // namespace corvex
