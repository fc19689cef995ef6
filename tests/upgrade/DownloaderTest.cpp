#include "upgrade/Downloader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "support/UnitLink.h"
#include "unit/ImageMaker.h"
#include "upgrade/ImageBytes.h"

namespace corvex {
namespace {

using simulation::BlockFault;
using simulation::LoaderOptions;

/// A downloader on a serial line with a simulated unit.
struct Download : test::FakePlatform {
  explicit Download(LoaderOptions faults = {},
                    const std::string& file = simulation::MakeImage({.bytes = 100'000, .blockSize = 10'000}))
      : unit(loop, comPort, {.loader = std::move(faults)}) {
    std::ofstream(path, std::ios::binary) << file;
    image.message = say;
    main.mode = ModemMode::Upgrade;
    comPort.SetSettings("115200,n,8,1");
  }
  ~Download() { std::filesystem::remove(path); }

  /// Runs a whole download. Returns whether it came to its end within ten minutes.
  bool Run() {
    EXPECT_TRUE(image.OpenImage(path));
    image.ClearRing();
    const auto limit = loop.After(std::chrono::minutes(10), [this] { loop.AbandonWaits([] {}); });
    bool ended = false;
    loop.Enter([&] {
      EXPECT_TRUE(downloader.OpenDownloader());
      downloader.RunTransfer(14);
      ended = true;
    });
    loop.Cancel(limit);
    return ended && loop.Waits() == 0;
  }
  const simulation::SoftwareLoader::Stored& stored() const { return unit.unit.Loader().stored(); }
  const DownloadReport& report() const { return downloader.report(); }

  std::string path = settings.InAppFolder("app.mbd");
  MainState main;
  ReceiveBuffer received{loop};
  TerminalLink link{platform, settings, received, main};
  test::UnitLink<test::FakeSerial> unit;
  UpgradeImage image;
  std::string steps;
  std::string printed;
  std::string said;
  int progress = 0;
  std::function<void(std::string_view)> say = [this](std::string_view text) {
    said += std::string(text) + '|';
  };
  Downloader downloader{loop,
                        link,
                        received,
                        image,
                        {.status = [this](std::string_view text) { steps += std::string(text) + '\n'; },
                         .advance = [this] { ++progress; },
                         .erased = [this] { progress += 50; },
                         .message = say,
                         .printLine = [this](std::string_view text) { printed += text; },
                         .transferBegins = [] {},
                         .transferEnds = [] {},
                         .imageBroken = [] { return false; },
                         .note = [](std::string_view) {}}};
};

TEST(DownloaderTest, TheUnitStoresAndStartsTheNewSoftware) {
  Download d;
  EXPECT_TRUE(d.Run());
  EXPECT_TRUE(d.report().AllGood());
  EXPECT_EQ(d.report().blocksAtOnce, 12);
  EXPECT_EQ(d.report().dataBytes, 100'000u);
  EXPECT_EQ(d.report().segmentsAccepted, 4);
  EXPECT_EQ(d.stored().bytes, 100'000u);
  EXPECT_EQ(d.unit.unit.Restarts(), 1);
  EXPECT_FALSE(d.unit.unit.Dead());
  EXPECT_FALSE(d.comPort.PortOpen());
  EXPECT_EQ(d.progress, 2 + 50 + 12 + 2);
  EXPECT_EQ(d.said + d.printed, "");
  EXPECT_EQ(d.steps.substr(0, d.steps.find("KB\n") + 3),
            "Sending Catalog\nRemoving previous installation\nCopying Files\n"
            "Block 000 of 14 segment total 0 KB\n");
  EXPECT_EQ(d.steps.substr(d.steps.find("Block 011")),
            "Block 011 of 14 segment total 20 KB\nChecking CRC\nCRC check CPR2 segment 0\n"
            "CRC check CPR2 segment 1\nCRC check SPR2 segment 2\nCRC check SPR2 segment 3\n"
            "Booting system for the first time\n");
}

TEST(DownloaderTest, EveryByteOfASmallImageIsInItsPlace) {
  const std::vector<EntryBytes> entries{{.id = 1, .base = 0x01020304},
                                        {.type = kSegmentSp, .id = 2, .memory = 1, .base = 0x100, .page = 7}};
  Download d(
      {},
      CatalogBytes(entries) + BlockBytes{.address = 0x01020404, .data = "\x80\x7F\x02"}.Text() +
          BlockBytes{.command = 175, .type = 5, .id = 2, .page = 7, .address = 0x302, .data = "abcd"}.Text());
  d.image.message = [](std::string_view) {};
  EXPECT_TRUE(d.Run());
  const std::string head("\x02\x04\x03\x02\x01\x05\x09\x08\x07\x06", 10);
  const std::string first = "\x04\x01\x14\x13\x12\x11\x24\x23\x22\x21";
  const std::string expected = std::string("\x18") + "at+wquilcswload\r\n\xAA\xA0" + head +             //
                               first + std::string("\0\x31\x32\x01\x02\x03\x04\x44\x43\x42\x41", 11) +  //
                               "\x05\x02\x14\x13\x12\x11\x24\x23\x22\x21" +                             //
                               std::string("\x01\x31\x32\x54\x53\x52\x51\x01\0\x07\0\0", 12) +          //
                               std::string("\xB0\x04\x01\0\0\0\x01\0\0\x02\x80\x7F\x02\0\x01", 15);
  ASSERT_EQ(d.comPort.sent.substr(0, expected.size()), expected);
  // The unit counts four bytes in two words, so it refuses the block of three bytes each time.
  EXPECT_EQ(d.report().blocksRefused, 1);
  EXPECT_NE(d.comPort.sent.find(std::string("\xAF\x05\x02\x07\0\0\0\x02\0\x02"
                                            "abcd\0\x8A\xAB\x04\x01",
                                            19)),
            std::string::npos);
}

TEST(DownloaderTest, ARefusedBlockIsRepeatedTwice) {
  for (const int times : {1, 2, 3}) {
    SCOPED_TRACE(times);
    Download d({.refused = {{.block = 5, .times = times}}});
    EXPECT_TRUE(d.Run());
    EXPECT_EQ(d.stored().refusals, times);
    EXPECT_EQ(d.report().blocksRetried, times < 3 ? 1 : 0);
    EXPECT_EQ(d.report().blocksRefused, times < 3 ? 0 : 1);
    EXPECT_EQ(d.report().segmentsRefused, times < 3 ? 0 : 1);
    EXPECT_EQ(d.report().dataBytes, d.stored().bytes);
    EXPECT_EQ(d.report().AllGood(), times < 3);
    EXPECT_EQ(d.unit.unit.Dead(), times == 3);
    EXPECT_EQ(d.said, times < 3 ? "" : "Unrecoverable Error - please load software using alternative means|");
    EXPECT_EQ(std::count(d.printed.begin(), d.printed.end(), '\n'), std::min(times, 2) * 2);
    EXPECT_NE(d.steps.find("Block 010 of 14"), std::string::npos);  // the count stays behind by one
    EXPECT_EQ(d.steps.find("Block 011 of 14"), std::string::npos);
  }
}

TEST(DownloaderTest, EachRefusalIsToldAndTheDownloadGoesOn) {
  struct Case {
    const char* name;
    LoaderOptions faults;
    std::string said;
    std::string printed;
    bool good;
  };
  for (const Case& c : {
           Case{"header", {.refusedHeader = {{.block = 2}}}, "", "\r\n**************retry block1\r\n", true},
           Case{"echo",
                {.wrongEchoes = {{.block = 3, .times = 2}}},
                "",
                "send block cmd unexpected got 63expected was 176send block cmd unexpected got 63expected "
                "was 176",
                true},
           Case{"echo of the catalogue",
                {.wrongEchoes = {{.block = 0}}},
                "",
                "send block cmd unexpected got 63expected was 160",
                true},
           Case{"catalogue", {.refusesCatalog = true}, "cat reject|", "", false},
           Case{"erase", {.refusesErase = true}, " send NOK |", "", false},
           Case{"segment", {.badSegments = {2}}, "", "", false},
           Case{"check", {.wrongCheckEcho = 3}, "CRC check failed|", "", false},
       }) {
    SCOPED_TRACE(c.name);
    Download d(c.faults);
    EXPECT_TRUE(d.Run());
    EXPECT_EQ(d.said, c.said);
    EXPECT_EQ(d.printed, c.printed);
    EXPECT_EQ(d.report().AllGood(), c.good);
    EXPECT_EQ(d.stored().blocks, 12);
    EXPECT_EQ(d.report().segmentsAccepted, d.stored().segmentsAccepted);
    EXPECT_EQ(d.comPort.sent.back(), '\xAD');
  }
}

TEST(DownloaderTest, ASilentUnitIsWaitedFor) {
  Download d({.silentAt = 4});
  EXPECT_FALSE(d.Run());
  EXPECT_EQ(d.report().blocksAtOnce, 3);
  EXPECT_FALSE(d.report().AllGood());
  EXPECT_EQ(d.comPort.sent.back(), '\xAF');
}

TEST(DownloaderTest, AnImageThatBreaksOffIsNeverBooted) {
  const std::string whole = simulation::MakeImage({.bytes = 50'000, .blockSize = 10'000});
  Download d({}, whole.substr(0, whole.size() - 100));
  EXPECT_TRUE(d.Run());
  EXPECT_FALSE(d.report().booted);
  EXPECT_EQ(d.unit.unit.Restarts(), 0);
}

TEST(DownloaderTest, NoiseBeforeTheDownloaderIsReadyIsDropped) {
  Download d;
  d.loop.After(std::chrono::milliseconds(250), [&d] { d.comPort.Arrive("OK\r\n\x06\x15"); });
  EXPECT_TRUE(d.Run());
  EXPECT_TRUE(d.report().AllGood());
}

}  // namespace
}  // namespace corvex
