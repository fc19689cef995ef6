#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Finds the items in the modem's stream. The stream mixes three kinds of item with plain text. Each item
// begins with an introducer, which is not case-sensitive:
//
//   <tml> ... </tml>        a tag packet
//   ESC ...                 an escape sequence
//   <Trace> LLLL ...        a trace record; LLLL is its length

namespace corvex {

/// Positions in the modem's text are signed 16-bit numbers. No item begins and no packet ends after this
/// position.
inline constexpr std::size_t kLastPosition = 32767;

inline constexpr std::string_view kPacketStart = "<tml>";
inline constexpr std::string_view kPacketEnd = "</tml>";
inline constexpr std::string_view kTraceStart = "<Trace>";

enum class ScanKind : std::int32_t { None = 0, TraceItem = 1, TagItem = 2, EscapeItem = 3 };

/// The next item in a text. Positions count from 1.
struct ScanItem {
  ScanKind kind = ScanKind::None;
  std::int16_t pos = 5000;  ///< First character of the item. Without a tag in the text, an escape or trace
                            ///< record is only found before position 5000.
  std::int32_t after = 0;   ///< First character after the introducer.
  std::int16_t traceLength = 0;  ///< Trace records only.
  friend bool operator==(const ScanItem&, const ScanItem&) = default;
};

/// Returns the first item in a text; its kind is None if there is no item.
ScanItem FindNextItem(std::string_view text);

/// Case-insensitive search for one word in a text that grows at its end and is consumed from its start. Each
/// call continues where the last one stopped, so that no part of the text is searched twice.
class WordSearch {
 public:
  static constexpr std::size_t npos = std::string_view::npos;

  /// `word` has at most eight characters. `rare` is the index of a character in it that has no upper or lower
  /// case and is rare in the text; the search looks for this character first.
  explicit WordSearch(std::string_view word, std::size_t rare = 0);

  /// Returns the offset of the first occurrence that begins at or after `from` and before `end`, or npos.
  /// `from` must not be less than in the previous call, unless Shift was called in between.
  std::size_t Find(std::string_view text, std::size_t from, std::size_t end) {
    if (reached_ < from) {
      reached_ = from;
      found_ = false;
    }
    if (!found_ && reached_ < end && reached_ + length_ <= text.size()) {
      found_ = StandsAt(text.substr(reached_));
      if (!found_) GoOn(text, end);
    }
    return found_ && reached_ < end ? reached_ : npos;
  }

  /// Adjusts the state after the first `count` characters of the text have been removed.
  void Shift(std::size_t count);

 private:
  /// Eight characters as one number, so that a word is compared in one operation.
  using Eight = std::uint64_t;

  /// Continues the search after `reached_`. The word must not be at `reached_`, and `text` must have room for
  /// the word there.
  void GoOn(std::string_view text, std::size_t end);
  /// Returns whether `text` begins with the word. `text` must not be shorter than the word.
  bool StandsAt(std::string_view text) const {
    if (text.size() < sizeof(Eight)) return StandsAtEnd(text);
    Eight here = 0;
    std::memcpy(&here, text.data(), sizeof here);
    return IsWord(here);
  }
  /// The same for a text shorter than eight characters.
  bool StandsAtEnd(std::string_view text) const;
  bool IsWord(Eight here) const { return ((here & width_) | fold_) == word_; }

  std::size_t length_;
  std::size_t rare_;
  char rareCharacter_;
  Eight word_;   ///< The word in lower case, padded with zeros.
  Eight fold_;   ///< The bits that change its letters to lower case.
  Eight width_;  ///< 0xFF for each character of the word.

  std::size_t reached_ = 0;  ///< The word does not begin between the last `from` and this offset.
  bool found_ = false;       ///< The word begins at `reached_`.
};

/// FindNextItem for a text that grows. The searches for the introducers continue where they stopped.
class ItemSearch {
 public:
  /// Returns the next item at or after the offset `from`. Positions in the result count from there, from 1.
  ScanItem Next(std::string_view text, std::size_t from);

  /// Adjusts the state after the first `count` characters of the text have been removed.
  void Shift(std::size_t count);

 private:
  WordSearch tag_{kPacketStart};
  WordSearch escape_{"\x1B"};
  WordSearch trace_{kTraceStart};
};

}  // namespace corvex
