#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Finding the items in the modem's stream. Three kinds of item are interleaved in it, each with its
// introducer, in any case of letters; what stands between them is plain text:
//
//   <tml> ... </tml>        a tag packet
//   ESC ...                 an escape sequence
//   <Trace> LLLL ...        a trace record with its length

namespace corvex {

/// Positions in the modem's texts are 16 bits wide: no item begins and no packet ends behind this one.
inline constexpr std::size_t kLastPosition = 32767;

inline constexpr std::string_view kPacketStart = "<tml>";
inline constexpr std::string_view kPacketEnd = "</tml>";
inline constexpr std::string_view kTraceStart = "<Trace>";

enum class ScanKind : std::int32_t { None = 0, TraceItem = 1, TagItem = 2, EscapeItem = 3 };

/// The next item in a text. Positions count from 1.
struct ScanItem {
  ScanKind kind = ScanKind::None;
  std::int16_t pos = 5000;       ///< Its first character; an escape or trace record is only seen before 5000
                                 ///< unless a tag stands behind it.
  std::int32_t after = 0;        ///< The first character behind its introducer.
  std::int16_t traceLength = 0;  ///< Trace records only.
  friend bool operator==(const ScanItem&, const ScanItem&) = default;
};

ScanItem FindNextItem(std::string_view text);

/// The search for one word, without regard to case, in a text that grows at its end and is used up from its
/// start. It goes on where it left off, so that no part of the text is searched twice.
class WordSearch {
 public:
  static constexpr std::size_t npos = std::string_view::npos;

  /// A word of at most eight characters. `rare` is the place of one that has no case and is seldom met: what
  /// is looked for.
  explicit WordSearch(std::string_view word, std::size_t rare = 0);

  /// Offset of the first occurrence that begins at or behind `from` and before `end`; npos if there is none.
  /// `from` must not fall from call to call.
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

  /// The first `count` characters of the text have been taken off.
  void Shift(std::size_t count);

 private:
  /// Eight characters as one number, so that a word is compared in one go.
  using Eight = std::uint64_t;

  /// Searches behind `reached_`, where the word has been found not to stand though there is room for it.
  void GoOn(std::string_view text, std::size_t end);
  /// Whether a text that has room for the word begins with it.
  bool StandsAt(std::string_view text) const {
    if (text.size() < sizeof(Eight)) return StandsAtEnd(text);
    Eight here = 0;
    std::memcpy(&here, text.data(), sizeof here);
    return IsWord(here);
  }
  bool StandsAtEnd(std::string_view text) const;
  bool IsWord(Eight here) const { return ((here & width_) | fold_) == word_; }

  std::size_t length_;
  std::size_t rare_;
  char rareCharacter_;
  Eight word_;   ///< In lower case, zero behind its end.
  Eight fold_;   ///< What makes its letters lower case.
  Eight width_;  ///< The characters that it has.

  std::size_t reached_ = 0;  ///< The word begins nowhere between the last `from` and here.
  bool found_ = false;       ///< It begins here.
};

/// FindNextItem for a text that grows: the searches for the introducers go on where they left off.
class ItemSearch {
 public:
  /// The next item in what stands from the offset `from` on; its positions count from there.
  ScanItem Next(std::string_view text, std::size_t from);

  /// The first `count` characters of the text have been taken off.
  void Shift(std::size_t count);

 private:
  WordSearch tag_{kPacketStart};
  WordSearch escape_{"\x1B"};
  WordSearch trace_{kTraceStart};
};

}  // namespace corvex
