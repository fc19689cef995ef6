#include "upgrade/Downloader.h"

#include <algorithm>

#include "base/Text.h"

namespace corvex {

namespace {

constexpr std::uint8_t kReady = 170;
constexpr std::uint8_t kCheckSegment = 171;
constexpr std::uint8_t kBoot = 173;
constexpr std::uint8_t kAck = 6;

/// Appends a number to bytes that are sent, with its most significant byte first.
template <std::size_t size>
void Append(std::string& bytes, const std::array<std::uint8_t, size>& number) {
  bytes.append(number.rbegin(), number.rend());
}
void Append(std::string& bytes, std::uint8_t byte) {
  bytes += static_cast<char>(byte);
}

std::string CatalogHeadBytes(const CatalogHead& head) {
  std::string bytes;
  Append(bytes, head.segmentCount);
  Append(bytes, head.catalogLongA);
  Append(bytes, head.catalogByteB);
  Append(bytes, head.catalogLongC);
  return bytes;
}

std::string EntryBytes(const CatalogEntry& entry) {
  std::string bytes;
  Append(bytes, entry.segmentType);
  Append(bytes, entry.segmentId);
  Append(bytes, entry.entryLongA);
  Append(bytes, entry.entryLongB);
  Append(bytes, entry.memoryType);
  Append(bytes, entry.entryByteC);
  Append(bytes, entry.entryByteD);
  if (entry.segmentType == kSegmentCp) {
    Append(bytes, entry.baseAddress);
    Append(bytes, entry.entryLongE);
  } else if (entry.segmentType == kSegmentSp) {
    Append(bytes, entry.entryLongF);
    Append(bytes, entry.baseWord);
    Append(bytes, entry.pageId);
  }
  return bytes;
}

std::string DataHeaderBytes(const ImageBlock& block) {
  const auto words = static_cast<std::int16_t>(RoundHalfEven(block.length / 2.0));
  std::string bytes;
  Append(bytes, block.segmentType);
  Append(bytes, block.segmentId);
  Append(bytes, block.pageId);
  Append(bytes, block.address);
  Append(bytes, static_cast<std::uint8_t>(words >> 8));
  Append(bytes, static_cast<std::uint8_t>(words));
  return bytes;
}

std::string BlockName(const ImageBlock& block) {
  return "block of segment type " + std::to_string(block.segmentType) + " id " +
         std::to_string(block.segmentId) + " page " + std::to_string(block.pageId) + ", " +
         std::to_string(block.length) + " bytes";
}

}  // namespace

std::uint8_t Downloader::ReadByte() {
  const std::uint8_t byte = received_.ReadByte();
  lastAnswer_ = loop_.Now();
  return byte;
}

bool Downloader::AwaitAck() {
  return ReadByte() == kAck;
}

void Downloader::Write(std::string_view bytes) {
  for (const char c : bytes) link_.WriteByte(static_cast<std::uint8_t>(c));
}

bool Downloader::OpenDownloader() {
  if (!link_.EnsureLinkOpen()) return false;
  lastAnswer_ = loop_.Now();
  link_.SendCancel();
  Pause(loop_, 0.1);
  link_.WriteText("at+wquilcswload\r\n");
  events_.note("downloader requested");
  while (ReadByte() != kReady) LetEventsRun(loop_);
  while (received_.RxAvailable()) ReadByte();
  link_.WriteByte(kReady);
  events_.note("downloader ready");
  events_.status("Sending Catalog");
  return true;
}

/// Takes the next block. If none has been read ahead, reads it now, so that the download never overtakes the
/// file. Returns false if the file cannot be read.
bool Downloader::TakeBlock(ImageBlock& block) {
  image_.NextBlock(block);
  while (!block.valid && !(image_.AtEnd() && !image_.Broken())) {
    if (image_.Broken() && !events_.imageBroken()) return false;
    image_.ReadBlockIntoRing();
    image_.NextBlock(block);
  }
  return true;
}

void Downloader::RunTransfer(int totalBlocks) {
  totalBlocks_ = static_cast<std::int16_t>(std::clamp(totalBlocks, 0, INT16_MAX));
  events_.transferBegins();
  ImageBlock block;
  for (bool readable = TakeBlock(block); block.valid || !readable; readable = TakeBlock(block)) {
    if (!readable) {
      events_.note("ended without booting: the image file cannot be read");
      link_.CloseLink();
      return;
    }
    Handle(block);
  }
  events_.status("Checking CRC");
  if (!CheckSegments()) {
    events_.note("CRC check failed");
    events_.message("CRC check failed");
  }
  events_.transferEnds();
  Boot();
}

void Downloader::Handle(ImageBlock& block) {
  switch (block.command) {
    case block_command::kPadding:
    case block_command::kNote:
    case block_command::kEnd:
      break;
    case block_command::kCatalog:
      image_.ParseCatalog(block);
      image_.StampCatalogBlock(block);
      SendBlock(block);  // intentional: the blocks follow even if the catalogue is refused
      break;
    case block_command::kMemory0:
    case block_command::kMemory1:
      image_.ResolveAddress(block);
      UpdateBlockCaption(block);
      SendWithRetries(block);
      break;
    default:
      ++report_.blocksUnknown;
      events_.note("unknown command " + std::to_string(block.command) + " in a block");
      events_.message("unknown command in block");
  }
}

void Downloader::UpdateBlockCaption(const ImageBlock& block) {
  const FourBytes& offset = block.address;
  const std::uint32_t bytes =
      offset[0] | offset[1] << 8 | offset[2] << 16 | static_cast<std::uint32_t>(offset[3]) << 24;
  std::string done = std::to_string(doneBlocks_);
  if (done.size() < 3) done.insert(0, 3 - done.size(), '0');
  events_.status("Block " + done + " of " + std::to_string(totalBlocks_) + " segment total " +
                 std::to_string(static_cast<std::int64_t>(RoundHalfEven(bytes / 1024.0))) + " KB");
}

void Downloader::SendWithRetries(const ImageBlock& block) {
  const auto accepted = [&](int& count) {
    ++count;
    report_.dataBytes += block.data.size();
  };
  if (SendBlock(block)) {
    accepted(report_.blocksAtOnce);
    ++doneBlocks_;
    events_.advance();
    return;
  }
  // Intentional: a repeated block counts neither as done nor as progress.
  events_.note("refused: " + BlockName(block));
  events_.printLine("\r\n**************retry block1\r\n");
  received_.DiscardRx();
  if (SendBlock(block)) return accepted(report_.blocksRetried);
  events_.note("refused again: " + BlockName(block));
  events_.printLine("\r\n**************retry block2\r\n");
  if (SendBlock(block)) return accepted(report_.blocksRetried);  // intentional: nothing is discarded here
  ++report_.blocksRefused;
  events_.note("given up: " + BlockName(block));
  events_.message("Unrecoverable Error - please load software using alternative means");
  PauseThrough(loop_, 15);
}

bool Downloader::SendBlock(const ImageBlock& block) {
  link_.WriteByte(block.command);
  // Intentional: the command is repeated without a limit.
  for (std::uint8_t echo = ReadByte(); echo != block.command; echo = ReadByte()) {
    link_.WriteByte(block.command);
    events_.printLine("send block cmd unexpected got " + std::to_string(echo) + "expected was " +
                      std::to_string(block.command));
    events_.note("echo " + std::to_string(echo) + " instead of " + std::to_string(block.command));
  }
  return block.command == block_command::kCatalog ? SendCatalog() : SendDataBlock(block);
}

bool Downloader::SendCatalog() {
  ++report_.catalogs;
  Write(CatalogHeadBytes(image_.catalogHead()));
  if (!AwaitAck()) {
    ++report_.catalogsRefused;
    events_.note("catalogue refused");
    events_.message("cat reject");
    return false;
  }
  return SendCatalogEntries();
}

bool Downloader::SendCatalogEntries() {
  int number = 0;
  for (const CatalogEntry& entry : image_.segmentTable()) {
    if (++number % 2 == 1) events_.advance();
    Write(EntryBytes(entry));
    if (entry.segmentType != kSegmentCp && entry.segmentType != kSegmentSp) events_.message("unexpected");
  }
  Write({"\0\0", 2});
  events_.status("Removing previous installation");
  events_.note("catalogue sent");
  if (!AwaitAck()) {
    ++report_.erasesRefused;
    events_.note("removing the previous installation refused");
    events_.message(" send NOK ");
    return false;
  }
  events_.note("previous installation removed");
  events_.erased();
  events_.status("Copying Files");
  return true;
}

bool Downloader::SendDataBlock(const ImageBlock& block) {
  Write(DataHeaderBytes(block));
  if (!AwaitAck()) return false;
  link_.WriteBlock(block.data);
  link_.WriteByte(0);
  link_.WriteByte(static_cast<std::uint8_t>(block.blockSum));
  return AwaitAck();
}

bool Downloader::CheckSegments() {
  int number = 0;
  for (const CatalogEntry& entry : image_.segmentTable()) {
    const std::string name = (entry.segmentType == kSegmentSp ? "SPR2 segment " : "CPR2 segment ") +
                             std::to_string(entry.segmentId);
    link_.WriteByte(kCheckSegment);
    if (ReadByte() != kCheckSegment) {
      report_.segmentsUnchecked = static_cast<int>(image_.segmentTable().size()) - number;
      return false;
    }
    ++number;
    link_.WriteByte(entry.segmentType);
    link_.WriteByte(entry.segmentId);
    events_.status("CRC check " + name);
    if (AwaitAck()) {
      ++report_.segmentsAccepted;
      if (number % 2 == 1) events_.advance();
    } else {
      // Intentional: the step itself does not show a refused segment.
      ++report_.segmentsRefused;
      events_.note(name + " refused");
    }
  }
  return true;
}

void Downloader::Boot() {
  events_.status("Booting system for the first time");
  link_.WriteByte(kBoot);
  report_.booted = true;
  events_.note("boot command sent");
  PauseThrough(loop_, 0.5);
  link_.CloseLink();
  PauseThrough(loop_, 2);
}

}  // namespace corvex
