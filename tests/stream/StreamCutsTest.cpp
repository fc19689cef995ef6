// However a stream is cut, the results and their order are the same, and the held text stays bounded.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/Decoder.h"

namespace corvex {
namespace {

using test::Decoder;

/// A decoder that records each call and the whole session at that time.
struct Recorder : Decoder {
  Recorder() {
    state.traceEnabled = true;
    scanner.masterTrace = [this](std::string_view text) { Record("trace", text); };
    tags.traceToInstance = [this](std::int32_t, std::string_view text) { Record("channel", text); };
    tags.onCompression = [this](TagToken, std::string_view text) { Record("compression", text); };
  }

  void Record(const std::string& call, std::string_view text) {
    calls.push_back(call + ' ' + std::string(text));
    states.push_back(state);
  }

  void FeedInPieces(std::string_view stream, std::size_t size) {
    for (std::size_t at = 0; at < stream.size(); at += size) {
      Feed(stream.substr(at, size));
      ASSERT_LE(scanner.held(), kLastPosition + kPacketStart.size() - 2);
    }
  }

  bool Agrees(const Recorder& other) const {
    return calls == other.calls && states == other.states && state == other.state &&
           scanner.scanState() == other.scanner.scanState() && scanner.held() == other.scanner.held();
  }

  std::vector<std::string> calls;
  std::vector<SessionState> states;
};

// Each kind of item once. The session is recorded at the calls among them.
const std::string kEachItem =
    "\x1B[2;5Hplain text<tml><Sig>27</tml>\x1B[8;39H<tml><Channel>2,mark</tml>a < b, \r\n and </tml> of no "
    "packet"
    "\x1B[3D<Trace>0007abcdef\r\n<Tra<TML><Sig></TML><trace>0003abcd\x1B[1A\x1B[?25l\x1B[7m\x1B[Kabcde"
    "<tml><Date>12:34|2006.03.31|UTC</tml><tml><Sk>Menu|3|||Mail|1|Exit|4</tml><tm<tml><V44>up</tml>"
    "<tml><MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2</tml>text\x1B[H"
    "<tml><ChoiceScreen><Title>1 Volume<1>Low<2>High<INDEXLINE>1</tml><tml><Channel>2,mark</tml>"
    "<tml><CloseChoiceScreen></tml><tml><TableScreen></tml>\x1B[3;2Hrow<tml><Paint></tml>"
    "<tml><StartPrint></tml><tml><Print>001line\r\n</tml><tml><Unheard>of</tml>\x1B[2J\x1B[1B";

TEST(StreamCuts, EverySingleCutGivesTheSameInTheSameOrder) {
  Recorder whole;
  whole.Feed(kEachItem);
  ASSERT_EQ(whole.calls.size(), 5u);
  for (std::size_t cut = 1; cut < kEachItem.size(); ++cut) {
    Recorder cutOnce;
    cutOnce.Feed(std::string_view(kEachItem).substr(0, cut));
    cutOnce.Feed(std::string_view(kEachItem).substr(cut));
    ASSERT_TRUE(cutOnce.Agrees(whole)) << "cut at " << cut;
  }
}

TEST(StreamCuts, DropsAtTheBoundDoNotDependOnTheCuts) {
  // Long texts without an item, packets without an end, and introducers near all bounds.
  const std::string parts[] = {"<tml><Sig>1", "</tml>", "\x1B[2;5H", "<tml><Channel>2,mark</tml>"};
  const std::string run(5000, '.');
  std::mt19937 random(7);
  for (int round = 0; round < 8; ++round) {
    std::string stream;
    for (int i = 0; i < 40; ++i) {
      stream += run.substr(0, random() % run.size());
      const std::size_t part = random() % 6;
      stream += part < std::size(parts) ? parts[part] : run;
    }
    Recorder whole;
    whole.Feed(stream);
    for (const std::size_t size : {7u, 1000u, 32767u, 40000u}) {
      Recorder pieces;
      pieces.FeedInPieces(stream, size);
      ASSERT_TRUE(pieces.Agrees(whole)) << "round " << round << ", pieces of " << size;
    }
  }
}

TEST(TagStream, APrintJobWithoutEndIsKeptUpToABound) {
  Decoder decoder;
  const std::string packet = "<tml><Print>001" + std::string(30000, 'x') + "</tml>";
  for (int i = 0; i < 600; ++i) {
    decoder.tags.HandleTagPacket(packet);
    ASSERT_EQ(decoder.state.printLine.size(), 30000u);
    decoder.state.printData = false;
  }
  EXPECT_EQ(decoder.state.printText.size(), 16u << 20);
}

TEST(StreamScanner, AnExceptionFromADecoderLeavesTheScannerAfterItsItem) {
  Decoder decoder;
  decoder.tags.traceToInstance = [](std::int32_t, std::string_view) { throw ProgramEnded{}; };
  EXPECT_THROW(decoder.Feed("<tml><Channel>1,a</tml><tml><Sig>2</tml>"), ProgramEnded);
  EXPECT_EQ(decoder.state.sigText, "");
  decoder.scanner.ScanStream();
  EXPECT_EQ(decoder.state.sigText, "2");
  EXPECT_EQ(decoder.scanner.held(), 0u);
}

}  // namespace
}  // namespace corvex
