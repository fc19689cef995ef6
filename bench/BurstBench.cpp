#include <QApplication>
#include <cstdio>
#include <string>

#include "QtProgram.h"
#include "Traffic.h"

// Measures how long a click can wait while the modem sends a megabyte of packets in one burst.

namespace {

using namespace corvex;

/// Returns at least a megabyte of modem traffic, with a menu, a choice list and a new screen now and then.
std::string Burst() {
  std::string bytes;
  while (bytes.size() < (1u << 20)) {
    bytes += bench::MixedTraffic(16 << 10);
    bytes += "<tml><MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2</tml>";
    bytes += "<tml><ChoiceScreen><Title>Language<1>English<2>Norsk<INDEXLINE>1</tml>";
    bytes += "<tml><TextScreen></tml>\x1B[2;2Htext<tml><Paint></tml>";
  }
  return bytes + "<tml><Sig>END</tml>";
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  bench::Modem modem;
  bench::QtProgram program(modem, "corvex-burst-bench");
  QElapsedTimer sinceBurst;
  bench::Turns turns([&] {
    if (program.term.state().sigText != "END") return;
    std::printf("1 MB in one burst: shown after %lld ms, longest turn of the event loop %.1f ms\n",
                static_cast<long long>(sinceBurst.elapsed()), turns.LongestMs());
    program.loop.End();
  });
  program.loop.After(std::chrono::seconds(3), [&] {
    if (program.term.main().mode != ModemMode::Terminal) {
      std::printf("no session\n");
      program.loop.End();
      return;
    }
    const std::string burst = Burst();
    sinceBurst.start();
    turns.Start();
    modem.Send(burst);
  });
  program.loop.After(std::chrono::seconds(30), [&] {
    std::printf("not shown within 30 s\n");
    program.loop.End();
  });
  program.Run();
  return 0;
}
