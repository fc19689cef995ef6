// However a stream is cut, the same comes out in the same order, and what is held stays bounded.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/Decoder.h"

namespace corvex {
namespace {

using test::Decoder;

/// A decoder that keeps the whole session, with the call, at each call out of the stream.
struct Recorder : Decoder {
  Recorder() {
    state.traceEnabled = true;
    scanner.masterTrace = [this](std::string_view text) { Record("trace", text); };
    tags.traceToInstance = [this](std::int32_t channel, std::string_view text) {
      Record("channel " + std::to_string(channel), text);
    };
    tags.onCompression = [this](TagToken, std::string_view text) { Record("compression", text); };
  }

  void Record(const std::string& call, std::string_view text) {
    calls.push_back(call + ' ' + std::string(text));
    states.push_back(state);
  }

  bool Agrees(const Recorder& other) const {
    return calls == other.calls && states == other.states && state == other.state &&
           scanner.scanState() == other.scanner.scanState() && scanner.held() == other.scanner.held();
  }

  std::vector<std::string> calls;
  std::vector<SessionState> states;
};

/// So many times items of every kind in a random order, with marks among them at which the session is
/// recorded.
std::string WellFormedStream(unsigned seed, int rounds) {
  static const std::vector<std::string> kItems{
      "\x1B[2;5H",
      "\x1B[8;39H",
      "\x1B[H",
      "\x1B[3D",
      "\x1B[2J",
      "\x1B[1A",
      "\x1B[1B",
      "\x1B[?25l",
      "\x1B[7m",
      "\x1B[Kabcde",
      "plain text",
      "a < b, \r\n and </tml> of no packet",
      "<Tra",
      "<tm",
      "<Trace>0007abcdef\r\n",
      "<trace>0003abcd",
      "<Trace>0199" + std::string(198, 't') + "\r\n",
      "<tml><Sig>27</tml>",
      "<TML><Sig></TML>",
      "<tml><Time>12:34</tml>",
      "<tml><Date>12:34|2006.03.31|UTC</tml>",
      "<tml><Sk>Menu|3|||Mail|1|Exit|4</tml>",
      "<tml><Sk1>Up|3|Down|4|OK|5|Exit|4</tml>",
      "<tml><MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2</tml>",
      "<tml><ChoiceScreen><Title>1 Volume<1>Low<2>High<INDEXLINE>1</tml>",
      "<tml><TextScreen></tml>",
      "<tml><TableScreen></tml>",
      "<tml><CloseChoiceScreen></tml>",
      "<tml><Paint></tml>",
      "<tml><MsgScreen>Line|Line</tml>",
      "<tml><StartPrint></tml>",
      "<tml><Print>001line\r\n</tml>",
      "<tml><V44>up</tml>",
      "<tml><Unheard>of</tml>",
      "<tml><Channel>1,mark</tml>",
  };
  std::mt19937 random(seed);
  std::string stream;
  for (int round = 0; round < rounds; ++round) {
    std::vector<std::string> items = kItems;
    std::shuffle(items.begin(), items.end(), random);
    for (std::size_t i = 0; i < items.size(); ++i) {
      stream += items[i];
      if (i % 3 == 0) stream += "<tml><Channel>2,mark</tml>";
    }
  }
  return stream;
}

TEST(StreamCuts, EverySingleCutGivesTheSameInTheSameOrder) {
  const std::string stream = WellFormedStream(1, 1);
  Recorder whole;
  whole.Feed(stream);
  ASSERT_GE(whole.calls.size(), 15u);
  for (std::size_t cut = 1; cut < stream.size(); ++cut) {
    Recorder cutOnce;
    cutOnce.Feed(std::string_view(stream).substr(0, cut));
    cutOnce.Feed(std::string_view(stream).substr(cut));
    ASSERT_TRUE(cutOnce.Agrees(whole)) << "cut at " << cut;
  }
}

TEST(StreamCuts, RandomPiecesGiveTheSameInTheSameOrder) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    const std::string stream = WellFormedStream(seed, 3);
    Recorder whole;
    whole.Feed(stream);
    Recorder pieces;
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::size_t> length(1, seed);
    for (std::size_t at = 0; at < stream.size();) {
      const std::size_t count = std::min(length(random), stream.size() - at);
      pieces.Feed(std::string_view(stream).substr(at, count));
      at += count;
    }
    ASSERT_TRUE(pieces.Agrees(whole)) << "seed " << seed;
  }
}

TEST(StreamCuts, DropsAtTheBoundDoNotDependOnTheCuts) {
  // Long runs without an item, packets without an end, and introducers near every bound.
  const std::string run(5000, '.');
  std::mt19937 random(7);
  for (int round = 0; round < 20; ++round) {
    std::string stream;
    for (int i = 0; i < 40; ++i) {
      stream += run.substr(0, random() % run.size());
      switch (random() % 6) {
        case 0:
          stream += "<tml><Sig>1";
          break;
        case 1:
          stream += "</tml>";
          break;
        case 2:
          stream += "\x1B[2;5H";
          break;
        case 3:
          stream += "<tml><Channel>2,mark</tml>";
          break;
        default:
          stream += run;
      }
    }
    Recorder whole;
    whole.Feed(stream);
    for (const std::size_t size : {1u, 7u, 1000u, 32767u, 40000u}) {
      Recorder pieces;
      for (std::size_t at = 0; at < stream.size(); at += size) {
        pieces.Feed(std::string_view(stream).substr(at, size));
        ASSERT_LE(pieces.scanner.held(), kLastPosition + kPacketStart.size() - 2);
      }
      ASSERT_TRUE(pieces.Agrees(whole)) << "round " << round << ", pieces of " << size;
    }
  }
}

TEST(StreamScanner, CallFromADecoderReturnsAtOnceAndItsBytesWait) {
  Decoder decoder;
  std::string order;
  decoder.tags.traceToInstance = [&](std::int32_t, std::string_view text) {
    order += text;
    if (text != "a") return;
    decoder.Feed("<tml><Channel>1,c</tml>");  // as a receive event within a wait of the decoder
    EXPECT_EQ(order, "a");
  };
  decoder.Feed("<tml><Channel>1,a</tml><tml><Channel>1,b</tml>");
  EXPECT_EQ(order, "ab");
  EXPECT_TRUE(decoder.received.RxAvailable());
  decoder.scanner.ScanStream();
  EXPECT_EQ(order, "abc");
}

TEST(StreamScanner, DecoderThatThrowsLeavesTheScannerBehindItsItem) {
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
