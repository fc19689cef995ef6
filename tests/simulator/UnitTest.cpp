#include "unit/Unit.h"

#include <gtest/gtest.h>

#include <string>

#include "support/UnitLink.h"
#include "support/VirtualLoop.h"

namespace corvex::simulation {
namespace {

using namespace std::chrono_literals;
using test::VirtualLoop;

constexpr std::int64_t kNoon = 1143806400;  // 2006-03-31 12:00

struct Bench {
  explicit Bench(UnitOptions options = {})
      : unit(loop, WithClock(std::move(options)), [this](auto bytes) { out += bytes; }) {}

  static UnitOptions WithClock(UnitOptions options) {
    options.startTime = kNoon;
    options.trace = false;
    return options;
  }
  /// What the unit sends for these bytes within a tenth of a second.
  std::string Say(std::string_view bytes, double seconds = 0.1) {
    out.clear();
    unit.Receive(bytes);
    loop.Run(seconds);
    return out;
  }
  /// At the main menu, with what led there out of the way.
  void StartTags() { Say("AT+WQUILSTARTTMLB\r\n"); }

  VirtualLoop loop;
  std::string out;
  Unit unit;
};

TEST(Unit, AnswersDetectionAsAModem) {
  Bench bench;
  EXPECT_EQ(bench.Say("\x18"
                      "ate1\r\n"),
            "ate1\r\r\nOK\r\n");
  EXPECT_EQ(bench.Say("at+gmm\r\n"), "at+gmm\r\r\n204417\r\n\r\nOK\r\n");
  EXPECT_EQ(bench.Say("ate0\r"), "ate0\r\r\nOK\r\n");
  EXPECT_EQ(bench.Say("AT+ERB_TRANSPARENT_MODE\r\n"), "\r\nOK\r\n");
  EXPECT_EQ(bench.Say("at+nonsense\r\n"), "\r\nERROR\r\n");
  EXPECT_EQ(bench.Say("quit\r\n"), "") << "not a command of a modem";
}

}  // namespace
}  // namespace corvex::simulation
