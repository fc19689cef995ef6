#include "host/PtyPort.h"

#include <utility>

namespace corvex::simulation::host {
namespace {

// The system does not wake anybody when the other end is opened.
constexpr EventLoop::Time kLookOut = std::chrono::milliseconds(100);

}  // namespace

PtyPort::~PtyPort() {
  Release();
}

bool PtyPort::Open(std::string& error) {
  terminal_ = OpenPseudoTerminal(error);
  if (terminal_.handle == kNoHandle) return false;
  if (!link_.empty() && !ReplaceLink(link_, terminal_.name, error)) return false;
  onNotice("pseudo terminal " + terminal_.name);
  LookOut();
  return true;
}

void PtyPort::Send(std::string_view bytes) {
  if (user_ != nullptr) user_->Send(bytes);
}

void PtyPort::HangUp() {
  loop_.Post([this] {
    if (user_ == nullptr) return;
    Release();
    onDown();
    std::string error;
    if (!Open(error)) onNotice(error);
  });
}

void PtyPort::LookOut() {
  if (!OtherEndOpen(terminal_.handle)) {
    lookOut_.Start(kLookOut, [this] { LookOut(); });
    return;
  }
  user_ = std::make_unique<Connection>(
      loop_, terminal_.handle, [this](std::string_view bytes) { onBytes(bytes); },
      [this] {
        user_->Release();
        user_.reset();
        onDown();
        LookOut();
      });
  onUp();
}

void PtyPort::Release() {
  lookOut_.Stop();
  if (user_ != nullptr) {
    user_->Release();
    user_.reset();
  }
  if (!link_.empty()) RemoveLink(link_, terminal_.name);
  Close(std::exchange(terminal_.handle, kNoHandle));
}

}  // namespace corvex::simulation::host
