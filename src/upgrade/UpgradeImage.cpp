#include "upgrade/UpgradeImage.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace corvex {

namespace {

/// Reads the fields of a catalogue in the order of the file. Bytes after the end are zeros.
class FieldReader {
 public:
  explicit FieldReader(std::string_view data) : data_(data) {}
  std::uint8_t Byte() { return at_ < data_.size() ? static_cast<std::uint8_t>(data_[at_++]) : 0; }
  TwoBytes Word() { return {Byte(), Byte()}; }
  FourBytes Long() { return {Byte(), Byte(), Byte(), Byte()}; }

 private:
  std::string_view data_;
  std::size_t at_ = 0;
};

}  // namespace

bool UpgradeImage::OpenImage(const std::string& path) {
  CloseImage();
  broken_ = false;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  file_.open(path, std::ios::binary);
  return file_.is_open();
}

void UpgradeImage::CloseImage() {
  file_.close();
  file_.clear();
}

bool UpgradeImage::AtEnd() {
  return broken_ || !file_.is_open() || file_.peek() == std::ifstream::traits_type::eof();
}

bool UpgradeImage::Fail() {
  broken_ = true;
  return false;
}

std::uint8_t UpgradeImage::ReadByteFromImage() {
  const int byte = file_.get();
  return file_ ? static_cast<std::uint8_t>(byte) : 0;
}

TwoBytes UpgradeImage::ReadWordFromImage() {
  return {ReadByteFromImage(), ReadByteFromImage()};
}

FourBytes UpgradeImage::ReadLongFromImage() {
  return {ReadByteFromImage(), ReadByteFromImage(), ReadByteFromImage(), ReadByteFromImage()};
}

void UpgradeImage::ReadHeader(ImageBlock& block) {
  block.segmentType = ReadByteFromImage();
  block.segmentId = ReadByteFromImage();
  block.pageId = ReadByteFromImage();
  block.address = ReadLongFromImage();
  block.dataLength = ReadWordFromImage();
  ReadWordFromImage();  // reserved
  block.command = ReadByteFromImage();
  block.blockSum = 0;
  block.length = WordFromBytes(block.dataLength);
}

bool UpgradeImage::ReadImageBlock(ImageBlock& block) {
  ReadHeader(block);
  if (!file_ || block.length > ImageBlock::kMaxData) return Fail();
  block.data.clear();
  if (block.length > 0) {
    block.data.resize(static_cast<std::size_t>(block.length));
    if (!file_.read(block.data.data(), block.length)) return Fail();
  }
  for (const char c : block.data) {
    block.blockSum = static_cast<std::uint16_t>((block.blockSum + static_cast<std::uint8_t>(c)) % 256);
  }
  block.valid = true;
  return true;
}

bool UpgradeImage::SkipImageBlock(ImageBlock& block) {
  ReadHeader(block);
  if (!file_ || block.length < 0) return Fail();
  file_.ignore(block.length);
  if (file_.gcount() != block.length) return Fail();
  block.valid = true;
  return true;
}

void UpgradeImage::ClearRing() {
  for (ImageBlock& slot : blockRing_) slot = {};
  ringReadIndex_ = 1;
  ringWriteIndex_ = 0;
}

void UpgradeImage::ReadBlockIntoRing() {
  if (AtEnd()) return;
  ImageBlock block;
  if (ringWriteIndex_ == kMaxBlocks) {  // the file has grown since it was checked
    Fail();
  } else if (ReadImageBlock(block)) {
    blockRing_[static_cast<std::size_t>(++ringWriteIndex_)] = std::move(block);
  }
}

void UpgradeImage::NextBlock(ImageBlock& block) {
  block = {};
  if (ringReadIndex_ > ringWriteIndex_) return;
  // The block is moved, not copied, because the modem is waiting for it.
  block = std::exchange(blockRing_[static_cast<std::size_t>(ringReadIndex_++)], {});
}

void UpgradeImage::FinishImage() {
  CloseImage();
}

void UpgradeImage::ParseCatalog(const ImageBlock& block) {
  FieldReader fields(block.data);
  catalogHead_.segmentCount = fields.Byte();
  catalogHead_.catalogLongA = fields.Long();
  catalogHead_.catalogByteB = fields.Byte();
  catalogHead_.catalogLongC = fields.Long();
  segmentTable_.clear();
  for (int number = 0; number < catalogHead_.segmentCount; ++number) {
    CatalogEntry entry;
    entry.segmentType = fields.Byte();
    entry.segmentId = fields.Byte();
    entry.memoryType = fields.Byte();
    entry.entryLongA = fields.Long();
    entry.entryLongB = fields.Long();
    entry.entryByteC = fields.Byte();
    entry.entryByteD = fields.Byte();
    if (entry.segmentType == kSegmentCp) {
      entry.baseAddress = fields.Long();
      entry.entryLongE = fields.Long();
    } else if (entry.segmentType == kSegmentSp) {
      entry.entryLongF = fields.Long();
      entry.baseWord = fields.Word();
      entry.pageId = fields.Byte();
      entry.entryByteG = fields.Byte();
    } else {
      // Intentional: the next entry is read directly after the 13 bytes, and all later ones are out of step.
      message("catalog environemnt mismatch error");
    }
    segmentTable_.push_back(entry);
  }
}

void UpgradeImage::StampCatalogBlock(ImageBlock& block) const {
  const int size = catalogHead_.segmentCount * 21 + 10;
  block.segmentType = 0;
  block.segmentId = 0xAA;
  block.pageId = 0xAB;
  block.address = {0xCD, 0xBC, 0xAB, 0x0A};
  block.dataLength = {static_cast<std::uint8_t>(size), static_cast<std::uint8_t>(size >> 8)};
  block.reserved = {};
  block.command = block_command::kCatalog;
}

FourBytes UpgradeImage::FindSegmentBase(const ImageBlock& block) {
  int memoryType = 0;
  if (block.command == block_command::kMemory1) {
    memoryType = 1;
  } else if (block.command != block_command::kMemory0) {
    message("error");
  }
  for (const CatalogEntry& entry : segmentTable_) {
    if (entry.memoryType > 1) message("!module type unexpected");
    if (entry.segmentType != block.segmentType || entry.segmentId != block.segmentId ||
        entry.memoryType != memoryType) {
      continue;
    }
    if (block.segmentType != kSegmentSp) return entry.baseAddress;
    if (entry.pageId != block.pageId) continue;
    switch (block.command) {
      case block_command::kMemory1:
        return LongToBytes(WordFromBytes(entry.baseWord) * 3);
      case block_command::kMemory0:
        return LongToBytes(WordFromBytes(entry.baseWord) * 2);
      default:
        message("no match on mem type ");
        pause(10);
        return {};
    }
  }
  return {};
}

/// Intentional: a number of 2^31 or more prints a line, and only its low three bytes count.
std::int32_t UpgradeImage::BytesToLong(FourBytes bytes) const {
  const std::int32_t low = bytes[0] | bytes[1] << 8 | bytes[2] << 16;
  if (bytes[3] < 0x80) return low | bytes[3] << 24;
  printLine("\r\nOverflow!\r\n");
  return low;
}

void UpgradeImage::ResolveAddress(ImageBlock& block) {
  const FourBytes base = FindSegmentBase(block);
  block.address =
      block.address == base ? FourBytes{} : LongToBytes(BytesToLong(block.address) - BytesToLong(base));
}

}  // namespace corvex
