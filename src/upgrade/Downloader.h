#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "link/modComSock.h"
#include "platform/EventLoop.h"
#include "state/ReceiveBuffer.h"
#include "upgrade/UpgradeImage.h"

namespace corvex {

/// What has happened in a download so far. "Accepted" means that the modem has acknowledged.
struct DownloadReport {
  int blocksAtOnce = 0;   ///< Data blocks accepted at the first attempt.
  int blocksRetried = 0;  ///< Data blocks accepted at a later attempt.
  int blocksRefused = 0;  ///< Data blocks that were never accepted.
  int blocksUnknown = 0;  ///< Blocks that were not sent because their command is unknown.
  int catalogs = 0;       ///< Catalogues sent.
  int catalogsRefused = 0;
  int erasesRefused = 0;
  int segmentsAccepted = 0;
  int segmentsRefused = 0;
  int segmentsUnchecked = 0;    ///< The check of all segments ended before these.
  std::uint64_t dataBytes = 0;  ///< Data bytes of accepted blocks.
  bool booted = false;          ///< The boot command was sent.

  /// Returns whether the modem has accepted everything and was booted.
  bool AllGood() const {
    return booted && catalogs > 0 && blocksRefused + blocksUnknown + catalogsRefused + erasesRefused == 0 &&
           segmentsRefused + segmentsUnchecked == 0;
  }
};

/// Sends a target image to the modem's resident downloader over the link. Knows no window. The main window
/// must be in a mode in which received bytes stay in the receive buffer.
///
/// The PC sends and the modem acknowledges. There are intentionally no timeouts: if the modem falls silent,
/// the download waits until its waits are abandoned (see EventLoop::Wait). Once begun, a download does not
/// stop at a refusal; the user is told, and the next block follows.
class Downloader {
 public:
  /// How a download is reported. Each function is set by the user of the class.
  struct Events {
    std::function<void(std::string_view)> status;   ///< The current step, for the user.
    std::function<void()> advance;                  ///< One more unit of progress.
    std::function<void()> erased;                   ///< The previous installation has been removed.
    std::function<void(std::string_view)> message;  ///< Shows a text and returns when the user has closed it.
    std::function<void(std::string_view)> printLine;  ///< A diagnostic line for the print view.
    std::function<void()> transferBegins;
    std::function<void()> transferEnds;  ///< All segments have been checked. The boot command follows.
    /// The next block cannot be read from the file. Returns true if it can be read now. If false, the
    /// download ends without the check of the segments and without the boot command.
    std::function<bool()> imageBroken;
    /// For a record of the download, in the words of an engineer.
    std::function<void(std::string_view)> note;
  };

  Downloader(EventLoop& loop, TerminalLink& link, ReceiveBuffer& received, UpgradeImage& image, Events events)
      : loop_(loop), link_(link), received_(received), image_(image), events_(std::move(events)) {}

  /// Starts the modem's downloader. Returns false if the link cannot be opened. Waits for the modem without a
  /// timeout.
  bool OpenDownloader();
  /// Sends all blocks of the image, lets the modem check its segments, boots it and closes the link.
  /// `totalBlocks`: the number of blocks to show as the total.
  void RunTransfer(int totalBlocks);

  const DownloadReport& report() const { return report_; }
  /// When the last byte of the modem was read.
  EventLoop::Time LastAnswer() const { return lastAnswer_; }

 private:
  std::uint8_t ReadByte();
  bool AwaitAck();
  void Write(std::string_view bytes);
  bool TakeBlock(ImageBlock& block);
  bool SendBlock(const ImageBlock& block);
  bool SendCatalog();
  bool SendCatalogEntries();
  bool SendDataBlock(const ImageBlock& block);
  void SendWithRetries(const ImageBlock& block);
  void Handle(ImageBlock& block);
  void UpdateBlockCaption(const ImageBlock& block);
  bool CheckSegments();
  void Boot();

  EventLoop& loop_;
  TerminalLink& link_;
  ReceiveBuffer& received_;
  UpgradeImage& image_;
  Events events_;
  DownloadReport report_;
  EventLoop::Time lastAnswer_{0};
  std::int16_t totalBlocks_ = 0;
  std::int16_t doneBlocks_ = 0;  ///< Intentional: blocks that were accepted at the first attempt.
};

}  // namespace corvex
