#include "unit/SoftwareLoader.h"

#include <algorithm>

#include "unit/Crc16.h"

namespace corvex::simulation {
namespace {

constexpr int kReady = 170;
constexpr int kCatalog = 160;
constexpr int kMemory1 = 175;
constexpr int kMemory0 = 176;
constexpr int kCheck = 171;
constexpr int kBoot = 173;
constexpr int kAck = 6;
constexpr int kNak = 21;
constexpr int kWrongEcho = 63;

constexpr std::size_t kHeadSize = 10;
constexpr std::size_t kHeaderSize = 9;

/// The size of an entry on the line, by the type of its segment.
std::size_t EntrySize(int type) {
  return type == 4 ? 21 : type == 5 ? 20 : 13;
}

}  // namespace

void SoftwareLoader::Start() {
  block_ = 0;
  checks_ = 0;
  blockHead_.clear();
  entries_.clear();
  memory_.clear();
  stored_ = {};
  input_.clear();
  state_ = State::Starting;
  timer_.Start(options_.startTime, [this] {
    Expect(State::Ready, 1);
    Say(kReady);
  });
}

void SoftwareLoader::Receive(std::string_view bytes) {
  if (state_ == State::Starting || state_ == State::Silent) return;
  input_ += bytes.substr(0, kLimit - std::min(kLimit, input_.size()));
  Proceed();
}

void SoftwareLoader::Expect(State state, std::size_t bytes) {
  state_ = state;
  expected_ = bytes;
}

void SoftwareLoader::Proceed() {
  while (state_ != State::Off && state_ != State::Silent && state_ != State::Busy) {
    if (input_.size() < expected_) {
      if (state_ == State::Data) timer_.Start(kPatience, [this] { Refuse(); });
      return;
    }
    if (state_ == State::Data) timer_.Stop();
    const std::size_t used = expected_;
    switch (state_) {
      case State::Ready:
        if (Byte(0) == kReady) Expect(State::Command, 1);
        break;
      case State::Command:
        TakeCommand(Byte(0));
        break;
      case State::Head:
        version_ = Number(1, 4);
        entriesLeft_ = Byte(0);
        entries_.clear();
        Answer(options_.refusesCatalog ? kNak : kAck, {}, State::Entries, 1);
        if (options_.refusesCatalog) Expect(State::Command, 1);
        if (!options_.refusesCatalog && entriesLeft_ == 0) Expect(State::Tail, 2);
        break;
      case State::Entries:
        if (const std::size_t size = EntrySize(Byte(0)); expected_ < size) {
          expected_ = size;
          continue;
        }
        TakeEntry();
        break;
      case State::Tail:
        stored_.erased = !options_.refusesErase;
        Answer(options_.refusesErase ? kNak : kAck, options_.eraseTime, State::Command, 1);
        break;
      case State::Header:
        TakeHeader();
        break;
      case State::Data:
        TakeData();
        break;
      case State::Check:
        TakeCheck();
        break;
      default:
        break;
    }
    input_.erase(0, used);
  }
}

void SoftwareLoader::TakeCommand(int command) {
  const bool data = command == kMemory0 || command == kMemory1;
  if (command == kBoot) {
    const bool good = !entries_.empty() && std::all_of(entries_.begin(), entries_.end(),
                                                       [](const Entry& entry) { return entry.good; });
    Expect(State::Off, 1);
    if (onBoot) onBoot(good ? std::optional(static_cast<int>(version_)) : std::nullopt);
    return;
  }
  if (!data && command != kCatalog && command != kCheck) return;  // noise
  // A data command may repeat the current block. Until its header has come, it counts as the next block.
  const int block = data ? block_ + 1 : 0;
  if (command != kCheck && options_.silentAt == block) return Expect(State::Silent, 1);
  if (command == kCheck) {
    if (options_.wrongCheckEcho == checks_ + 1) return Say(kWrongEcho);
  } else if (TakeFault(options_.wrongEchoes, block)) {
    return Say(kWrongEcho);
  }
  command_ = command;
  Say(command);
  if (data) Expect(State::Header, kHeaderSize);
  if (command == kCatalog) Expect(State::Head, kHeadSize);
  if (command == kCheck) Expect(State::Check, 2);
}

void SoftwareLoader::TakeEntry() {
  const int type = Byte(0);
  Entry entry;
  entry.length = Number(2, 4);
  entry.crc = Number(6, 4);
  entry.place = {type, Byte(1), Byte(10), type == 5 ? Byte(19) : 0};
  entries_.push_back(entry);
  --entriesLeft_ > 0 ? Expect(State::Entries, 1) : Expect(State::Tail, 2);
}

void SoftwareLoader::TakeHeader() {
  const std::string head = static_cast<char>(command_) + input_.substr(0, kHeaderSize);
  if (head != blockHead_) {
    blockHead_ = head;
    blockStored_ = false;
    ++block_;
  }
  if (TakeFault(options_.refusedHeader, block_)) {
    ++stored_.refusals;
    return Answer(kNak, {}, State::Command, 1);
  }
  const std::size_t size = Number(7, 2) * 2;
  Answer(kAck, {}, State::Data, size + 2);
}

void SoftwareLoader::TakeData() {
  const std::size_t size = expected_ - 2;
  int sum = 0;
  for (std::size_t at = 0; at < size; ++at) sum = (sum + Byte(at)) % 256;
  const bool intact = Byte(size) == 0 && Byte(size + 1) == sum;
  if (!intact || stored_.bytes + size > kLimit || TakeFault(options_.refused, block_)) {
    ++stored_.refusals;
    return Answer(kNak, options_.storeTime, State::Command, 1);
  }
  const auto byte = [this](std::size_t at) { return static_cast<unsigned char>(blockHead_[at]); };
  const int type = byte(1);
  const Place place{type, byte(2), command_ == kMemory1 ? 1 : 0, type == 5 ? byte(3) : 0};
  const std::uint32_t offset =
      static_cast<std::uint32_t>(byte(4)) << 24 | byte(5) << 16 | byte(6) << 8 | byte(7);
  memory_[place][offset] = input_.substr(0, size);
  if (!std::exchange(blockStored_, true)) {
    ++stored_.blocks;
    stored_.bytes += size;
  }
  Answer(kAck, options_.storeTime, State::Command, 1);
}

void SoftwareLoader::TakeCheck() {
  ++checks_;
  const auto entry = std::find_if(entries_.begin(), entries_.end(), [this](const Entry& one) {
    return !one.checked && std::get<0>(one.place) == Byte(0) && std::get<1>(one.place) == Byte(1);
  });
  const bool good = entry != entries_.end() && IsGood(static_cast<std::size_t>(entry - entries_.begin()));
  if (entry != entries_.end()) {
    entry->checked = true;
    entry->good = good;
  }
  ++(good ? stored_.segmentsAccepted : stored_.segmentsRefused);
  Answer(good ? kAck : kNak, options_.checkTime, State::Command, 1);
}

bool SoftwareLoader::IsGood(std::size_t entry) const {
  const int number = static_cast<int>(entry) + 1;
  if (std::count(options_.badSegments.begin(), options_.badSegments.end(), number) > 0) return false;
  const auto blocks = memory_.find(entries_[entry].place);
  std::uint32_t length = 0;
  Crc16 crc;
  if (blocks != memory_.end()) {
    for (const auto& [offset, data] : blocks->second) {
      if (offset != length) return false;  // a gap or an overlap
      crc.Add(data);
      length += static_cast<std::uint32_t>(data.size());
    }
  }
  return length == entries_[entry].length && crc.value() == entries_[entry].crc;
}

/// The rest of a block has not come.
void SoftwareLoader::Refuse() {
  ++stored_.refusals;
  input_.clear();
  Answer(kNak, {}, State::Command, 1);
}

void SoftwareLoader::Answer(int byte, EventLoop::Time delay, State next, std::size_t bytes) {
  if (delay == EventLoop::Time::zero()) {
    Expect(next, bytes);
    return Say(byte);
  }
  Expect(State::Busy, 0);
  timer_.Start(delay, [this, byte, next, bytes] {
    Expect(next, bytes);
    Say(byte);
    Proceed();
  });
}

void SoftwareLoader::Say(int byte) {
  const char text = static_cast<char>(byte);
  send_({&text, 1});
}

std::uint32_t SoftwareLoader::Number(std::size_t at, std::size_t bytes) const {
  std::uint32_t number = 0;
  for (std::size_t end = at + bytes; at < end; ++at)
    number = number << 8 | static_cast<std::uint32_t>(Byte(at));
  return number;
}

bool SoftwareLoader::TakeFault(std::vector<BlockFault>& faults, int block) {
  for (BlockFault& fault : faults) {
    if (fault.block != block || fault.times == 0) continue;
    --fault.times;
    return true;
  }
  return false;
}

}  // namespace corvex::simulation
