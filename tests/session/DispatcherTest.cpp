#include "session/Dispatcher.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Decoder.h"

namespace corvex {
namespace {

using Texts = std::vector<std::string>;

/// A dispatcher with the parts that it serves. It has no link: the tests feed it with bytes.
struct DispatcherTest : ::testing::Test, test::FakePlatform {
  DispatcherTest() {
    main.mode = ModemMode::Terminal;
    dispatcher.newPrintJob = [this] { log.push_back("job"); };
    dispatcher.printLine = [this](const std::string& lines) { log.push_back("line " + lines); };
    dispatcher.printJobComplete = [this] { log.push_back("complete"); };
  }
  void Feed(std::string_view bytes) {
    decoder.received.AppendRx(bytes);
    dispatcher.ProcessReceived();
  }

  test::Decoder decoder;
  TermControls window{loop, windows};
  MainState main;
  SessionState& state = decoder.state;
  ScreenLists lists{window, main, state};
  StatusPanel status{window, main, state, settings, sound};
  Dispatcher dispatcher{{.platform = platform,
                         .settings = settings,
                         .window = window,
                         .main = main,
                         .state = state,
                         .received = decoder.received,
                         .grid = decoder.grid,
                         .scanner = decoder.scanner,
                         .lists = lists,
                         .status = status}};
  Texts log;
};

const std::string kSignal = "<tml><Sig>31</tml>";

TEST_F(DispatcherTest, AnActionMayDispatchAgainAndEachChangeIsServedOnce) {
  dispatcher.newPrintJob = [this] {
    log.push_back("job");
    Feed("<tml><Print>012Two</tml><tml><EndPrint></tml>" + kSignal);
    log.push_back(window.corvexLbl[TermControls::kSignal].caption);
  };
  Feed("<tml><StartPrint></tml><tml><Print>012One </tml>");
  // The inner dispatch serves all changes. Nothing is left for the outer one.
  EXPECT_EQ(log, (Texts{"job", "line One Two", "complete", "31"}));
}

TEST_F(DispatcherTest, BytesThatComeDuringDecodingWaitForTheNextEvent) {
  decoder.tags.onCompression = [this](TagToken, std::string_view) {
    Feed(kSignal);
    // The earlier packet has been served, the new bytes have not.
    log.push_back(window.lblTime.caption);
    log.push_back(state.sigText);
  };
  Feed("<tml><Time>10:00</tml><tml><V44></tml><tml><Sig>12</tml>");
  EXPECT_EQ(log, (Texts{"10:00", ""}));
  EXPECT_EQ(window.corvexLbl[TermControls::kSignal].caption, "12");
  Feed({});
  EXPECT_EQ(window.corvexLbl[TermControls::kSignal].caption, "31");
}

}  // namespace
}  // namespace corvex
