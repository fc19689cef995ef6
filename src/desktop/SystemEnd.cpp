#include "desktop/SystemEnd.h"

#include <QApplication>
#include <QEvent>
#include <QSessionManager>
#include <QSocketNotifier>
#include <utility>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#endif

namespace corvex {

namespace {

#ifdef Q_OS_UNIX
constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

/// The signal handler writes to this pipe, and the program reads from it. A signal handler can safely do
/// little more than write.
int signalPipe[2] = {-1, -1};

extern "C" void OnSignal(int) {
  const int before = errno;
  const char any = 0;
  [[maybe_unused]] const auto written = write(signalPipe[1], &any, 1);
  errno = before;
}
#endif

}  // namespace

SystemEnd::SystemEnd(EventLoop& loop, std::function<void()> callOff, std::function<void()> close)
    : loop_(loop), callOff_(std::move(callOff)), close_(std::move(close)) {
  qApp->installEventFilter(this);
#if QT_CONFIG(sessionmanager)
  connect(qApp, &QGuiApplication::commitDataRequest, this, &SystemEnd::EndNow);
#endif
  ListenToSignals();
}

SystemEnd::~SystemEnd() {
#ifdef Q_OS_UNIX
  if (signalPipe[0] < 0) return;
  for (const int number : kSignals) {
    struct sigaction now = {};
    sigaction(number, nullptr, &now);
    if (now.sa_handler == OnSignal) signal(number, SIG_DFL);
  }
  for (int& end : signalPipe) ::close(std::exchange(end, -1));
#endif
}

void SystemEnd::ListenToSignals() {
#ifdef Q_OS_UNIX
  if (pipe(signalPipe) != 0) return;
  for (const int end : signalPipe) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    char taken[16];
    while (read(signalPipe[0], taken, sizeof taken) > 0) {
    }
    Request();
  });
  for (const int number : kSignals) {
    struct sigaction wanted = {};
    struct sigaction before = {};
    wanted.sa_handler = OnSignal;
    wanted.sa_flags = SA_RESTART;
    sigaction(number, &wanted, &before);
    // An ignored signal stays ignored: the program may have been started to outlive its terminal.
    if (before.sa_handler == SIG_IGN) sigaction(number, &before, nullptr);
  }
#endif
}

void SystemEnd::Request() {
  if (std::exchange(requested_, true)) return;
  loop_.After(kLimit, [this] { loop_.End(); });
  loop_.Post([this] { Try(); });
}

void SystemEnd::Try() {
  constexpr auto kAgain = std::chrono::milliseconds(50);
  loop_.After(kAgain, [this] { Try(); });  // scheduled first, because closing waits
  callOff_();
  close_();
}

void SystemEnd::EndNow() {
  Request();
  loop_.Enter([this] {
    while (true) loop_.Pump();
  });
}

bool SystemEnd::eventFilter(QObject* object, QEvent* event) {
  if (object != qApp || event->type() != QEvent::Quit) return false;
  Request();
  return true;
}

}  // namespace corvex
