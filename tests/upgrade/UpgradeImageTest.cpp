#include "upgrade/UpgradeImage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "upgrade/ImageBytes.h"
#include "upgrade/modCrc.h"

namespace corvex {
namespace {

class UpgradeImageTest : public testing::Test {
 protected:
  UpgradeImageTest() {
    image.message = [this](std::string_view text) { said += std::string(text) + '|'; };
    image.printLine = [this](std::string_view text) { said += std::string(text) + '|'; };
  }
  ~UpgradeImageTest() override {
    image.CloseImage();
    std::filesystem::remove(path);
  }

  void Open(const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    ASSERT_TRUE(image.OpenImage(path));
    image.ClearRing();
  }

  /// Passes over all blocks. Returns their number, or -1 if the file is broken.
  int Walk() {
    int count = 0;
    for (ImageBlock block; !image.AtEnd(); ++count) {
      if (!image.SkipImageBlock(block)) return -1;
    }
    return count;
  }

  /// Reads a catalogue and one data block, and returns the offset of the block in its segment.
  std::uint32_t Offset(const std::vector<EntryBytes>& entries, const BlockBytes& data) {
    Open(CatalogBytes(entries) + data.Text());
    ImageBlock block;
    EXPECT_TRUE(image.ReadImageBlock(block));
    image.ParseCatalog(block);
    EXPECT_TRUE(image.ReadImageBlock(block));
    image.ResolveAddress(block);
    return block.address[0] | block.address[1] << 8 | block.address[2] << 16 |
           static_cast<std::uint32_t>(block.address[3]) << 24;
  }

  const std::string path =
      (std::filesystem::temp_directory_path() /
       ("image-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".mbd"))
          .string();
  UpgradeImage image;
  std::string said;
};

TEST_F(UpgradeImageTest, AFileIsUsableOnlyIfItsLengthsLeadExactlyToItsEnd) {
  const std::string whole = CatalogBytes({{}}) + BlockBytes{.data = "abc"}.Text() + BlockBytes{}.Text();
  Open(whole);
  EXPECT_EQ(Walk(), 3);
  Open("");
  EXPECT_EQ(Walk(), 0);
  int usable = 0;
  for (std::size_t size = 1; size < whole.size(); ++size) {
    Open(whole.substr(0, size));
    if (Walk() >= 0) ++usable;
  }
  EXPECT_EQ(usable, 2);  // cut after the first and after the second block
  EXPECT_FALSE(image.OpenImage(std::filesystem::temp_directory_path().string()));
  EXPECT_FALSE(image.OpenImage("no such file"));
  EXPECT_TRUE(image.AtEnd());
}

TEST_F(UpgradeImageTest, ReadsABlockWithItsSum) {
  Open(BlockBytes{.id = 7, .page = 9, .address = 0x12345678, .data = std::string(256, '\1')}.Text() +
       BlockBytes{.data = "\xFF\x02\x03"}.Text() + BlockBytes{.length = 0x8000}.Text());
  ImageBlock block;
  ASSERT_TRUE(image.ReadImageBlock(block));
  EXPECT_EQ(block.blockSum, 0);
  EXPECT_EQ(block.segmentId, 7);
  EXPECT_EQ(block.pageId, 9);
  EXPECT_EQ(block.address, (FourBytes{0x78, 0x56, 0x34, 0x12}));
  ASSERT_TRUE(image.ReadImageBlock(block));
  EXPECT_EQ(block.blockSum, 4);
  ASSERT_TRUE(image.ReadImageBlock(block));
  EXPECT_EQ(block.length, -32768);
  EXPECT_EQ(block.data, "");
  EXPECT_TRUE(image.AtEnd());
}

TEST_F(UpgradeImageTest, ABlockThatIsTooLongOrIncompleteBreaksTheImage) {
  ImageBlock block;
  Open(BlockBytes{.data = std::string(25600, 'x')}.Text());
  EXPECT_TRUE(image.ReadImageBlock(block));
  Open(BlockBytes{.data = std::string(25601, 'x')}.Text());
  EXPECT_FALSE(image.ReadImageBlock(block));
  EXPECT_TRUE(image.Broken() && image.AtEnd());
  Open(BlockBytes{.data = "four", .length = 5}.Text());
  EXPECT_FALSE(image.ReadImageBlock(block));
}

TEST_F(UpgradeImageTest, TheQueueTakesSevenHundredBlocksAndGivesThemBackInOrder) {
  std::string bytes;
  for (int number = 0; number < 701; ++number) bytes += BlockBytes{.id = number % 256}.Text();
  Open(bytes);
  for (int number = 0; number < 701; ++number) image.ReadBlockIntoRing();
  EXPECT_TRUE(image.Broken());
  ImageBlock block;
  for (int number = 0; number < 700; ++number) {
    image.NextBlock(block);
    ASSERT_TRUE(block.valid);
    ASSERT_EQ(block.segmentId, number % 256);
  }
  image.NextBlock(block);
  EXPECT_FALSE(block.valid);
}

TEST_F(UpgradeImageTest, ABlockIsPlacedByItsSegment) {
  const BlockBytes block{.id = 2, .address = 0x1500};
  EXPECT_EQ(Offset({{.id = 1, .base = 0x100}, {.id = 2, .base = 0x1000}}, block), 0x500u);
  EXPECT_EQ(Offset({{.id = 2, .base = 0x1500}}, block), 0u);
  EXPECT_EQ(Offset({{.id = 2, .base = 0x1501}}, block), 0u) << "below its segment";
  EXPECT_EQ(Offset({{.id = 2, .memory = 1, .base = 0x1000}}, block), 0x1500u) << "another memory";
  EXPECT_EQ(Offset({}, block), 0x1500u);
  EXPECT_EQ(Offset({{.id = 2, .base = 0x1000}, {.id = 2, .base = 0x1100}}, block), 0x500u) << "first match";
  EXPECT_EQ(said, "");
}

TEST_F(UpgradeImageTest, AnSpSegmentIsFoundByItsPageAndCountsInWords) {
  const std::vector<EntryBytes> entries{{.type = kSegmentSp, .base = 0x100, .page = 1},
                                        {.type = kSegmentSp, .base = 0x200, .page = 2},
                                        {.type = kSegmentSp, .memory = 1, .base = 0x200, .page = 2},
                                        {.type = kSegmentSp, .base = 0x8000, .page = 3}};
  BlockBytes block{.type = kSegmentSp, .page = 2, .address = 0x1000};
  EXPECT_EQ(Offset(entries, block), 0x1000u - 0x200 * 2);
  block.command = block_command::kMemory1;
  EXPECT_EQ(Offset(entries, block), 0x1000u - 0x200 * 3);
  block.command = block_command::kMemory0;
  block.page = 3;
  EXPECT_EQ(Offset(entries, block), 0x1000u) << "a negative base counts as zero";
}

TEST_F(UpgradeImageTest, AnAddressAboveTheSignedRangePrintsALine) {
  EXPECT_EQ(Offset({{.base = 0x1000}}, {.address = 0x80002000}), 0x1000u);
  EXPECT_EQ(said, "\r\nOverflow!\r\n|");
}

TEST_F(UpgradeImageTest, AnUnknownSegmentTypePutsTheCatalogueOutOfStep) {
  Open(CatalogBytes({{.type = 9, .id = 3}, {.id = 8, .base = 0x01020304}}));
  ImageBlock block;
  ASSERT_TRUE(image.ReadImageBlock(block));
  image.ParseCatalog(block);
  EXPECT_EQ(said, "catalog environemnt mismatch error|");
  ASSERT_EQ(image.segmentTable().size(), 2u);
  EXPECT_EQ(image.segmentTable()[1].segmentId, 8);  // read directly after the 13 bytes
  EXPECT_EQ(image.segmentTable()[1].baseAddress, (FourBytes{4, 3, 2, 1}));
  said.clear();
  block.data.resize(11);  // the catalogue ends early: zeros
  image.ParseCatalog(block);
  EXPECT_EQ(image.segmentTable()[1].segmentType, 0);
}

TEST_F(UpgradeImageTest, AnUnexpectedMemoryTypeIsReportedForEachBlock) {
  EXPECT_EQ(Offset({{.memory = 2, .base = 0x10}, {.base = 0x20}}, {.address = 0x100}), 0xE0u);
  EXPECT_EQ(said, "!module type unexpected|");
}

TEST(CrcTable, HasTheFormOfTheReference) {
  const std::string text = CrcTableText();
  ASSERT_EQ(text.size(), 32u * 81);
  EXPECT_EQ(text.substr(0, 80),
            "&H00,&H00,&HC0,&HC1,&HC1,&H81,&H01,&H40,&HC3,&H01,&H03,&HC0,&H02,&H80,&HC2,&H41,");
  EXPECT_EQ(text.substr(31 * 81, 80),
            "&H82,&H01,&H42,&HC0,&H43,&H80,&H83,&H41,&H41,&H00,&H81,&HC1,&H80,&H81,&H40,&H40,");
}

TEST(TimeRemaining, CountsDownFromTheLastDuration) {
  EXPECT_EQ(TimeRemaining("200", 1000, 1000), "3 minutes and 20 seconds");
  EXPECT_EQ(TimeRemaining("200", 1000, 1141), "59 seconds");
  EXPECT_EQ(TimeRemaining("200", 1000, 1140), "1 minutes and 0 seconds");
  EXPECT_EQ(TimeRemaining("200", 1000, 1500), "0 seconds");
  EXPECT_EQ(TimeRemaining("200", 86390, 10), "3 minutes and 20 seconds") << "after midnight";
  EXPECT_EQ(TimeRemaining("61.5", 0, 0), "1 minutes and 2 seconds");
  EXPECT_EQ(TimeRemaining("99999999999", 0, 0), "546 minutes and 7 seconds");
  EXPECT_EQ(TimeRemaining("none", 0, 0), "0 seconds");
}

}  // namespace
}  // namespace corvex
