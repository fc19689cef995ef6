#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "upgrade/ImageBlock.h"

namespace corvex {

/// The target image of a download: its catalogue, and a queue of the blocks that have been read from the file
/// but not sent yet. The program interprets only as much of a block as it needs to send it.
class UpgradeImage {
 public:
  static constexpr std::int16_t kMaxBlocks = 700;
  static constexpr std::size_t kMaxSegments = 60;

  // Reading the file. The file is binary, and a sequence of blocks from its first byte to its last.

  /// Opens an image file for reading. `path` is in the system's narrow file name encoding. Returns false if
  /// the file cannot be read.
  bool OpenImage(const std::string& path);
  void CloseImage();
  /// Returns whether the whole file has been read, or cannot be read any further.
  bool AtEnd();
  /// Returns whether the file ended within a block, or a block did not fit. No further block can be read.
  bool Broken() const { return broken_; }

  /// Reads a block with its data. Returns false if the file is broken.
  bool ReadImageBlock(ImageBlock& block);
  /// Reads the header of a block and passes over its data. Returns false if the file is broken.
  bool SkipImageBlock(ImageBlock& block);

  // The queue.

  /// Empties the queue. Slots are never used twice, so that one queue takes one image.
  void ClearRing();
  /// Reads a block from the file and appends it to the queue. Does nothing if the file is broken.
  void ReadBlockIntoRing();
  /// Takes the first block from the queue. The block is not valid if the queue is empty.
  void NextBlock(ImageBlock& block);
  /// Closes the file. The blocks in the queue stay.
  void FinishImage();

  // The catalogue.

  /// Reads the data of a catalogue block. Data that is missing counts as zeros.
  void ParseCatalog(const ImageBlock& block);
  /// Gives a catalogue block its fixed header.
  void StampCatalogBlock(ImageBlock& block) const;
  /// Returns the load address of the segment to which a data block belongs; zeros if the catalogue has none.
  FourBytes FindSegmentBase(const ImageBlock& block);
  /// Replaces the address of a data block by the offset of the block in its segment.
  void ResolveAddress(ImageBlock& block);

  const CatalogHead& catalogHead() const { return catalogHead_; }
  /// The entries of the catalogue. At most kMaxSegments.
  const std::vector<CatalogEntry>& segmentTable() const { return segmentTable_; }

  /// Shows a text with one button. Returns when the user has closed it.
  std::function<void(std::string_view)> message = [](std::string_view) {};
  /// Prints a text in the print view.
  std::function<void(std::string_view)> printLine = [](std::string_view) {};
  /// Waits for the number of seconds.
  std::function<void(double)> pause = [](double) {};

 private:
  std::uint8_t ReadByteFromImage();
  TwoBytes ReadWordFromImage();
  FourBytes ReadLongFromImage();
  void ReadHeader(ImageBlock& block);
  bool Fail();
  std::int32_t BytesToLong(FourBytes bytes) const;

  std::ifstream file_;
  bool broken_ = false;
  std::vector<ImageBlock> blockRing_ = std::vector<ImageBlock>(kMaxBlocks + 1);  // slots 1 to kMaxBlocks
  std::int16_t ringReadIndex_ = 1;                                               // the next slot to take
  std::int16_t ringWriteIndex_ = 0;                                              // the last slot filled
  CatalogHead catalogHead_;
  std::vector<CatalogEntry> segmentTable_;
};

}  // namespace corvex
