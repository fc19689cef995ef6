#include "ports/AsioSerialControl.h"

#include <array>
#include <asio/buffer.hpp>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/serial_port.hpp>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include "ports/SerialLine.h"

namespace corvex {

namespace {

// Almost six seconds at 115,200 bit/s. Further bytes wait in the system.
constexpr std::size_t kInputBound = 64 * 1024;
// Bounds the queue on a line that takes no bytes.
constexpr std::size_t kOutputBound = 1024 * 1024;
constexpr std::size_t kPiece = 4096;

}  // namespace

/// An open device and the thread that reads and writes it. The thread ends in the destructor.
///
/// Only the thread uses the device, except for queries of its state. Both threads share the queues, guarded
/// by the mutex.
class AsioSerialControl::Line {
 public:
  /// Both functions are called on the device's thread. `arrived` is called once when bytes arrive, and again
  /// only after TakeArrival. `lost` is called once, when the device is lost.
  Line(LineHandle handle, std::function<void()> arrived, std::function<void()> lost)
      : arrived_(std::move(arrived)), lost_(std::move(lost)), handle_(handle) {
    std::error_code failed;  // an error shows at the first read
    port_.assign(handle, failed);
    Read();
    thread_ = std::thread([this] { io_.run(); });
  }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;
  ~Line() {
    work_.reset();
    io_.stop();
    thread_.join();
    // If flow control holds the line, close would wait many seconds for the unsent bytes.
    DiscardUnsent(handle_);
    std::error_code ignored;
    port_.close(ignored);
  }

  void SetUp(const LineSettings& settings) {
    OnThread([&] { SetUpLine(handle_, settings); });
  }

  /// Enables the next call of `arrived`.
  void TakeArrival() {
    const std::lock_guard lock(mutex_);
    announced_ = false;
  }
  bool InputFull() {
    const std::lock_guard lock(mutex_);
    return input_.size() >= kInputBound;
  }
  std::string Take() {
    const std::lock_guard lock(mutex_);
    if (std::exchange(readingStopped_, false)) asio::post(io_, [this] { Read(); });
    return std::exchange(input_, {});
  }
  void DropInput() {
    OnThread([this] { DiscardReceived(handle_); });
    Take();
  }

  bool Send(std::string_view bytes) {
    const std::lock_guard lock(mutex_);
    if (output_.size() + inFlight_ + bytes.size() > kOutputBound) return false;
    output_ += bytes;
    if (!std::exchange(writing_, true)) asio::post(io_, [this] { Write(); });
    return true;
  }
  std::size_t Unsent() {
    const std::lock_guard lock(mutex_);
    return output_.size() + UnsentBytes(handle_, inFlight_);
  }
  void DropOutput() {
    {
      const std::lock_guard lock(mutex_);
      output_.clear();
      dropsFlight_ = inFlight_ > 0;
    }
    OnThread([this] {
      // Cancel the current write first: otherwise the line would accept it as soon as the system's queue is
      // empty. The read is cancelled too and starts again.
      std::error_code ignored;
      port_.cancel(ignored);
      DiscardUnsent(handle_);
      const std::lock_guard lock(mutex_);
      inFlight_ = 0;
    });
  }

 private:
  /// Runs `task` on the device's thread and waits for it. The device's thread never waits for the event
  /// loop's thread.
  template <typename Task>
  void OnThread(Task task) {
    std::promise<void> done;
    asio::post(io_, [&] {
      task();
      done.set_value();
    });
    done.get_future().wait();
  }

  void Read() {
    if (failed_) return;
    port_.async_read_some(asio::buffer(received_, ReadSize(handle_, received_.size())),
                          [this](std::error_code error, std::size_t count) { HasRead(error, count); });
  }

  void HasRead(std::error_code error, std::size_t count) {
    bool announces = false;
    bool goesOn = true;
    if (count > 0) {
      const std::lock_guard lock(mutex_);
      input_.append(received_.data(), count);
      announces = !std::exchange(announced_, true);
      if (input_.size() >= kInputBound) {
        readingStopped_ = true;
        goesOn = false;
      }
    }
    if (announces) arrived_();
    // A read can complete without a byte, and DropOutput can cancel it.
    const bool ended = error && error != asio::error::operation_aborted;
    if (ended || ((error || count == 0) && !LineAlive(handle_))) {
      Fail();
    } else if (goesOn) {
      Read();
    }
  }

  void Write() {
    {
      const std::lock_guard lock(mutex_);
      if (failed_ || output_.empty()) {
        writing_ = false;
        return;
      }
      flight_ = output_.substr(0, kPiece);
      output_.erase(0, flight_.size());
      inFlight_ = flight_.size();
      dropsFlight_ = false;
    }
    port_.async_write_some(asio::buffer(flight_),
                           [this](std::error_code error, std::size_t count) { HasWritten(error, count); });
  }

  void HasWritten(std::error_code error, std::size_t count) {
    {
      const std::lock_guard lock(mutex_);
      if (!dropsFlight_) output_.insert(0, flight_, count);
      inFlight_ = 0;
    }
    if (error && error != asio::error::operation_aborted) Fail();
    Write();
  }

  void Fail() {
    if (!std::exchange(failed_, true)) lost_();
  }

  std::function<void()> arrived_;
  std::function<void()> lost_;
  asio::io_context io_{1};
  asio::executor_work_guard<asio::io_context::executor_type> work_{io_.get_executor()};
  asio::serial_port port_{io_};
  const LineHandle handle_;

  // Used only by the device's thread.
  std::array<char, kPiece> received_{};
  std::string flight_;  ///< The bytes of the current write.
  bool failed_ = false;

  std::mutex mutex_;
  // Guarded by the mutex.
  std::string input_;
  bool announced_ = false;
  bool readingStopped_ = false;
  std::string output_;  ///< Bytes to be written after `flight_`.
  std::size_t inFlight_ = 0;
  bool dropsFlight_ = false;
  bool writing_ = false;

  std::thread thread_;
};

AsioSerialControl::AsioSerialControl(EventLoop& loop, std::function<std::string(int)> deviceName)
    : loop_(loop), deviceName_(std::move(deviceName)), events_(loop) {}

AsioSerialControl::~AsioSerialControl() {
  Close();
}

bool AsioSerialControl::SetCommPort(std::int16_t number) {
  if (PortOpen() || number < 1) return false;
  number_ = number;
  return true;
}

std::optional<LineSettings> AsioSerialControl::Wanted() const {
  auto settings = ParseLineSettings(settings_);
  if (settings) {
    settings->xonXoff = handshaking_ == 1 || handshaking_ == 3;
    settings->rtsCts = handshaking_ == 2 || handshaking_ == 3;
  }
  return settings;
}

void AsioSerialControl::Apply() {
  const auto wanted = Wanted();
  if (line_ && wanted) line_->SetUp(*wanted);
}

void AsioSerialControl::SetSettings(const std::string& settings) {
  settings_ = settings;
  Apply();
}

void AsioSerialControl::SetHandshaking(std::int32_t handshaking) {
  handshaking_ = handshaking;
  Apply();
}

bool AsioSerialControl::Open() {
  if (PortOpen()) return true;
  Close();  // clears what is left of the previous connection
  const auto wanted = Wanted();
  if (!wanted) return false;
  const auto handle = OpenLine(DeviceName(), *wanted);
  if (!handle) return false;
  // The line is destroyed before this object, and this object before the event loop. A call that is still
  // queued when the port is closed or this object is destroyed does nothing.
  const auto onLoop = [this](void (AsioSerialControl::*call)()) {
    return [this, call, guarded = events_.Guard()] {
      loop_.PostFromAnyThread([this, call, guarded] {
        if (guarded()) (this->*call)();
      });
    };
  };
  line_ =
      std::make_unique<Line>(*handle, onLoop(&AsioSerialControl::Announce), onLoop(&AsioSerialControl::Lost));
  return true;
}

void AsioSerialControl::Close() {
  line_.reset();
  events_.Cut();
  lastWords_.clear();
}

std::string AsioSerialControl::Input() {
  std::string bytes = std::exchange(lastWords_, {});
  if (line_) bytes += line_->Take();
  return bytes;
}

void AsioSerialControl::DiscardInput() {
  lastWords_.clear();
  if (line_) line_->DropInput();
}

bool AsioSerialControl::Output(std::string_view bytes) {
  return line_ && (bytes.empty() || line_->Send(bytes));
}

std::int32_t AsioSerialControl::OutBufferCount() const {
  return line_ ? static_cast<std::int32_t>(line_->Unsent()) : 0;
}

void AsioSerialControl::DiscardOutput() {
  if (line_) line_->DropOutput();
}

void AsioSerialControl::Announce() {
  line_->TakeArrival();
  events_.PostArrival(
      [this] {
        if (onComm) onComm(kEvReceive);
      },
      [this] { return line_ && line_->InputFull(); });
}

void AsioSerialControl::Lost() {
  lastWords_ = line_->Take();
  line_.reset();
  if (!lastWords_.empty()) {
    events_.Post([this] {
      if (onComm) onComm(kEvReceive);
    });
  }
  events_.Post([this] {
    if (onComm) onComm(kEvLineLost);
  });
}

}  // namespace corvex
