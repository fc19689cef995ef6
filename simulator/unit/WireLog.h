#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvex::simulation {

/// What passed on a line, and when: a text file that can be read, cut and annotated by hand.
///
///     # corvex wire log 1
///     # free comment lines: unit, date, what it shows
///     = 0.000 open lan 127.0.0.1:3000
///     > 0.012 "at+gmm\r\n"
///     < 0.034 "204417\r\n\r\nOK\r\n"
///     > 0.900 "(password)\r\n"
///     = 8.000 line lost
///     = 9.000 close
///
/// ">" is from the PC to the modem, "<" from the modem to the PC; times are seconds since the start and never
/// go back. In the quotes \e \r \n \t \" \\ and \xNN stand for bytes, and every byte from 32 to 126 but the
/// quote and the backslash for itself.
struct WireEvent {
  enum class Kind { Open, ToModem, FromModem, Lost, Close, Note };
  Kind kind = Kind::Open;
  double at = 0;      ///< seconds since the start
  std::string bytes;  ///< of ToModem and FromModem
};

/// The bytes that stand for a password and its line end.
inline constexpr std::string_view kPasswordLine = "(password)\r\n";

struct WireLogError {
  int line = 0;  ///< from 1
  std::string text;
};

std::variant<std::vector<WireEvent>, WireLogError> ParseWireLog(std::string_view text);

}  // namespace corvex::simulation
