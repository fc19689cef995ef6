#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Program.h"

// Reads the files in tests/data/streams. The README there describes their language.

namespace corvex::test {

using Words = std::vector<std::string>;

inline bool HasWord(const Words& words, const char* word) {
  return std::count(words.begin(), words.end(), word) > 0;
}

inline bool IsNumber(const std::string& word) {
  return !word.empty() && word.find_first_not_of("0123456789") == word.npos;
}

struct Script {
  std::string name;
  bool wholeProgram = false;
  bool dependsOnPieces = false;  ///< Intentional: the result depends on how the stream is cut.
  std::vector<std::pair<int, Words>> lines = {};  ///< Line numbers, and words still in quotes.
};

inline Words SplitWords(const std::string& line) {
  static const std::regex word(R"("(\\.|[^"\\])*"|#.*|[^ "]+|")");
  Words words;
  for (std::sregex_iterator at(line.begin(), line.end(), word), end; at != end; ++at) {
    if (at->str() == "\"") throw std::runtime_error("the text does not end");
    if (at->str()[0] != '#') words.push_back(at->str());
  }
  return words;
}

inline std::string Unquote(const std::string& word) {
  if (word == "$connect") return kConnect;
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

/// The texts of a line after its first word. A number repeats the text that follows it.
inline Words Repeated(const Words& quoted) {
  Words texts;
  int count = 1;
  for (std::size_t i = 1; i < quoted.size(); ++i) {
    const bool number = IsNumber(quoted[i]);
    if (!number) texts.emplace_back();
    for (; !number && count > 0; --count) texts.back() += Unquote(quoted[i]);
    count = number ? std::stoi(quoted[i]) : 1;
  }
  return texts;
}

inline std::string Joined(const Words& texts, std::size_t first = 0) {
  std::string all;
  for (std::size_t i = first; i < texts.size(); ++i) all += texts[i];
  return all;
}

/// The `after` lines that an `every` line is short for: "every 5 60 ..." is "after 5 ...", "after 10 ..." and
/// so on to "after 60 ...".
inline std::vector<Words> AfterLines(const Words& every) {
  const int interval = std::stoi(every.at(1));
  std::vector<Words> lines;
  for (int at = interval; at <= std::stoi(every.at(2)); at += interval) {
    lines.push_back({"after", std::to_string(at)});
    lines.back().insert(lines.back().end(), every.begin() + 3, every.end());
  }
  return lines;
}

inline std::vector<Script> LoadScripts(const std::filesystem::path& path) {
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
        script.wholeProgram |= words[0] == "program" || words[0] == "start";
        script.dependsOnPieces |= text == "pieces-matter";
        if (words[0] == "every") {
          for (const Words& line : AfterLines(words)) script.lines.emplace_back(number, line);
        } else if (text != "pieces-matter") {
          script.lines.emplace_back(number, words);
        }
      }
    } catch (const std::exception& error) {
      ADD_FAILURE_AT(path.string().c_str(), number) << error.what();
    }
  }
  return scripts;
}

}  // namespace corvex::test
