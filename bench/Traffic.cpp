#include "Traffic.h"

#include <algorithm>
#include <array>
#include <random>

namespace corvex::bench {

namespace {

std::string PaintedScreen(std::mt19937& random) {
  std::string screen = "<tml><TextScreen></tml>";
  for (int row = 2; row <= 8; ++row) {
    screen += "\x1B[" + std::to_string(row) + ";2H";
    screen += std::string("Signal quality  C/No 54.2 dBHz  beam 3 ").substr(0, 10 + random() % 29);
    if (random() % 3 == 0) screen += "\x1B[7mSELECTED\x1B[0m";
  }
  return screen + "\x1B[1A\x1B[12D<tml><Paint></tml>";
}

std::string TraceLine(std::mt19937& random) {
  const std::string text(20 + random() % 100, 't');
  std::string length = std::to_string(text.size() + 1);
  length.insert(0, 4 - length.size(), '0');
  return "<Trace>" + length + text + "\r\n";
}

}  // namespace

std::string MixedTraffic(std::size_t bytes) {
  static constexpr std::array<std::string_view, 12> kPackets{
      "<tml><Sig>54.2</tml>",
      "<tml><Time>12:34</tml>",
      "<tml><Date>12:34|2006.03.31|UTC</tml>",
      "<tml><Temp>41</tml><tml><PsuTemp>38</tml>",
      "<tml><GpsPos>57.046 N 009.918 E</tml><tml><gpshead>271</tml>",
      "<tml><Sk>Menu|3|Dial|5|Mail|2|Exit|4</tml>",
      "<tml><MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<3>003Messages|12<4>004Phone book|20"
      "<INDEXLINE>2</tml>",
      "<tml><ChoiceScreen><Title>1.4 Volume<1>Low<2>Medium<3>High<INDEXLINE>2</tml>",
      "<tml><CloseChoiceScreen></tml>",
      "<tml><MsgScreen>Connecting|Please wait</tml>",
      "<tml><StartPrint></tml><tml><Print>001Log of calls\r\n</tml><tml><EndPrint></tml>",
      "<tml><Channel>3,call setup, phase 2</tml>",
  };
  std::mt19937 random(1);
  std::string traffic;
  traffic.reserve(bytes + 1000);
  while (traffic.size() < bytes) {
    const auto kind = random() % 8;
    if (kind == 0) {
      traffic += PaintedScreen(random);
    } else if (kind == 1) {
      traffic += TraceLine(random);
    } else {
      traffic += kPackets[random() % kPackets.size()];
    }
  }
  traffic.resize(bytes);
  return traffic;
}

std::string Repeated(std::string_view pattern, std::size_t bytes) {
  std::string text;
  text.reserve(bytes + pattern.size());
  while (text.size() < bytes) text += pattern;
  text.resize(bytes);
  return text;
}

void FeedInPieces(test::Decoder& decoder, std::string_view traffic, std::size_t pieceSize) {
  for (std::size_t at = 0; at < traffic.size(); at += pieceSize) {
    decoder.Feed(traffic.substr(at, pieceSize));
    static_cast<ChangeFlags&>(decoder.state) = {};
  }
}

}  // namespace corvex::bench
