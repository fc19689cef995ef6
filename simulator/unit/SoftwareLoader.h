#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "unit/Timer.h"

namespace corvex::simulation {

/// Data blocks that the unit refuses. Blocks are numbered from 1; a repeated block keeps its number.
struct BlockFault {
  int block = 0;
  int times = 1;  ///< how often in succession
};

struct LoaderOptions {
  EventLoop::Time startTime = std::chrono::milliseconds(300);  ///< from the command to the ready byte
  EventLoop::Time eraseTime = std::chrono::seconds(3);
  EventLoop::Time storeTime{0};                                ///< from the end of a block to its answer
  EventLoop::Time checkTime = std::chrono::milliseconds(100);  ///< for the check of a segment
  std::vector<BlockFault> refused = {};                        ///< refused after their data
  std::vector<BlockFault> refusedHeader = {};                  ///< refused after their header
  std::vector<BlockFault> wrongEchoes = {};  ///< commands that are echoed wrongly; block 0 is the catalogue
  std::vector<int> badSegments = {};         ///< entries of the catalogue, from 1, whose check fails
  bool refusesCatalog = false;
  bool refusesErase = false;
  std::optional<int> silentAt = std::nullopt;        ///< falls silent at this block; 0: at the catalogue
  std::optional<int> wrongCheckEcho = std::nullopt;  ///< echoes the check of this entry wrongly
};

/// The unit's downloader, which replaces the unit's software. It reads the blocks on its own, knows nothing
/// of the file they come from, and compares the CRC-16 of each stored segment with the one in the catalogue.
///
/// An image for this unit has the length of each segment in the first long of its entry, its CRC-16 in the
/// second, and a hundred times its version in the first long of the catalogue's head. See MakeImage.
class SoftwareLoader {
 public:
  using Send = std::function<void(std::string_view)>;

  /// How long the unit waits for the rest of a block before it refuses the block.
  static constexpr EventLoop::Time kPatience = std::chrono::seconds(1);
  /// Maximum number of data bytes that the unit stores. A block that does not fit is refused.
  static constexpr std::size_t kLimit = std::size_t{32} << 20;

  SoftwareLoader(EventLoop& loop, LoaderOptions options, Send send)
      : options_(std::move(options)), send_(std::move(send)), timer_(loop) {}

  /// Starts the downloader. Erases what an earlier download has stored.
  void Start();
  bool Running() const { return state_ != State::Off; }
  void Receive(std::string_view bytes);

  /// Called when the unit boots. The version of the new software, a hundred times; none if a segment is
  /// missing or wrong.
  std::function<void(std::optional<int>)> onBoot;

  /// What the unit has stored and answered.
  struct Stored {
    int blocks = 0;    ///< data blocks that were acknowledged, each once
    int refusals = 0;  ///< refused attempts
    std::uint64_t bytes = 0;
    int segmentsAccepted = 0;
    int segmentsRefused = 0;
    bool erased = false;
  };
  const Stored& stored() const { return stored_; }

 private:
  enum class State { Off, Starting, Ready, Command, Head, Entries, Tail, Header, Data, Check, Busy, Silent };
  using Place = std::tuple<int, int, int, int>;  // segment type, id, memory type, page
  struct Entry {
    Place place;
    std::uint32_t length = 0;
    std::uint32_t crc = 0;
    bool checked = false;
    bool good = false;
  };

  void Expect(State state, std::size_t bytes);
  void Proceed();
  void TakeCommand(int command);
  void TakeEntry();
  void TakeHeader();
  void TakeData();
  void TakeCheck();
  void Refuse();
  bool IsGood(std::size_t entry) const;
  /// Answers with a byte after a time. Then expects a number of bytes in the state.
  void Answer(int byte, EventLoop::Time delay, State next, std::size_t bytes);
  void Say(int byte);
  int Byte(std::size_t at) const { return static_cast<unsigned char>(input_[at]); }
  std::uint32_t Number(std::size_t at, std::size_t bytes) const;
  static bool TakeFault(std::vector<BlockFault>& faults, int block);

  LoaderOptions options_;
  Send send_;
  Timer timer_;
  State state_ = State::Off;
  std::size_t expected_ = 0;
  std::string input_;
  int command_ = 0;
  int block_ = 0;  ///< number of the current data block; 0 before the first
  std::string blockHead_;
  bool blockStored_ = false;
  int entriesLeft_ = 0;
  int checks_ = 0;
  std::uint32_t version_ = 0;
  std::vector<Entry> entries_;
  std::map<Place, std::map<std::uint32_t, std::string>> memory_;
  Stored stored_;
};

}  // namespace corvex::simulation
