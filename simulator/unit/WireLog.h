#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvex::simulation {

/// A recording of the bytes on a line with their times: a text file that can be read, cut and annotated by
/// hand.
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
/// ">" marks bytes from the PC to the modem, "<" bytes from the modem to the PC. Times are seconds since the
/// start and never decrease. Inside the quotes, \e \r \n \t \" \\ and \xNN are escapes; all other bytes from
/// 32 to 126 represent themselves.
struct WireEvent {
  enum class Kind { Open, ToModem, FromModem, Lost, Close, Note };
  Kind kind = Kind::Open;
  double at = 0;      ///< seconds since the start
  std::string bytes;  ///< only for ToModem and FromModem
};

/// These bytes replace a password and its line end.
inline constexpr std::string_view kPasswordLine = "(password)\r\n";

struct WireLogError {
  int line = 0;  ///< counted from 1
  std::string text;
};

std::variant<std::vector<WireEvent>, WireLogError> ParseWireLog(std::string_view text);

}  // namespace corvex::simulation
