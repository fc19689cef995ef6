#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <ctime>

#include "host/System.h"

namespace corvex::simulation::host {
namespace {

// The console's handler runs in a thread of its own and cannot wake select, which therefore looks up this
// often.
constexpr EventLoop::Time kLookUp = std::chrono::milliseconds(250);

std::atomic<bool> endRequested{false};

BOOL WINAPI OnConsole(DWORD) {
  endRequested = true;
  return TRUE;
}

SOCKET Socket(Handle handle) {
  return static_cast<SOCKET>(handle);
}

std::string Reason(const std::string& what) {
  return what + ": Windows error " + std::to_string(WSAGetLastError());
}

bool TryAgain() {
  const int reason = WSAGetLastError();
  return reason == WSAEWOULDBLOCK || reason == WSAEINTR;
}

bool SetNonBlocking(SOCKET socket) {
  u_long on = 1;
  return ioctlsocket(socket, FIONBIO, &on) == 0;
}

void SetOption(SOCKET socket, int level, int name, int value) {
  (void)setsockopt(socket, level, name, reinterpret_cast<const char*>(&value), sizeof value);
}

}  // namespace

bool StartSystem(std::string& error) {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) {
    error = "the network cannot be used";
    return false;
  }
  SetConsoleCtrlHandler(OnConsole, TRUE);
  return true;
}

bool EndRequested() {
  return endRequested;
}

Handle Listen(std::uint16_t port, bool allAddresses, std::string& error) {
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(allAddresses ? INADDR_ANY : INADDR_LOOPBACK);
  if (listener != INVALID_SOCKET) SetOption(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, 1);
  if (listener == INVALID_SOCKET || !SetNonBlocking(listener) ||
      bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener, 4) != 0) {
    error = Reason("port " + std::to_string(port));
    if (listener != INVALID_SOCKET) closesocket(listener);
    return kNoHandle;
  }
  return static_cast<Handle>(listener);
}

std::uint16_t LocalPort(Handle listener) {
  sockaddr_in address = {};
  int size = sizeof address;
  if (getsockname(Socket(listener), reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
  return ntohs(address.sin_port);
}

Handle Accept(Handle listener) {
  const SOCKET connection = accept(Socket(listener), nullptr, nullptr);
  if (connection == INVALID_SOCKET) return kNoHandle;
  if (!SetNonBlocking(connection)) {
    closesocket(connection);
    return kNoHandle;
  }
  SetOption(connection, IPPROTO_TCP, TCP_NODELAY, 1);
  SetOption(connection, SOL_SOCKET, SO_KEEPALIVE, 1);
  return static_cast<Handle>(connection);
}

PseudoTerminal OpenPseudoTerminal(std::string& error) {
  error = "there are no pseudo terminals on Windows; use --tcp, or a pair of virtual serial ports";
  return {};
}

bool OtherEndOpen(Handle) {
  return false;
}

bool ReplaceLink(const std::string& link, const std::string&, std::string& error) {
  error = link + ": links to pseudo terminals are not made on Windows";
  return false;
}

void RemoveLink(const std::string&, const std::string&) {}

std::optional<std::string> Read(Handle handle) {
  std::array<char, 4096> bytes;
  const int count = recv(Socket(handle), bytes.data(), static_cast<int>(bytes.size()), 0);
  if (count > 0) return std::string(bytes.data(), static_cast<std::size_t>(count));
  if (count < 0 && TryAgain()) return std::string();
  return std::nullopt;
}

std::optional<std::size_t> Write(Handle handle, std::string_view bytes) {
  const int count = send(Socket(handle), bytes.data(), static_cast<int>(bytes.size()), 0);
  if (count >= 0) return static_cast<std::size_t>(count);
  if (TryAgain()) return 0;
  return std::nullopt;
}

void Close(Handle handle) {
  if (handle != kNoHandle) closesocket(Socket(handle));
}

void Wait(std::vector<Watch>& watches, EventLoop::Time time) {
  fd_set readable;
  fd_set writable;
  FD_ZERO(&readable);
  FD_ZERO(&writable);
  for (const Watch& watch : watches) {
    FD_SET(Socket(watch.handle), &readable);
    if (watch.write) FD_SET(Socket(watch.handle), &writable);
  }
  const EventLoop::Time longest = time < EventLoop::Time::zero() ? kLookUp : std::min(time, kLookUp);
  const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(longest).count();
  timeval wait = {};
  wait.tv_usec = static_cast<long>(microseconds);
  int count = 0;
  if (watches.empty()) {
    Sleep(static_cast<DWORD>((microseconds + 999) / 1000));  // select refuses to wait for nothing
  } else {
    count = select(0, &readable, &writable, nullptr, &wait);
  }
  for (Watch& watch : watches) {
    const SOCKET socket = Socket(watch.handle);
    watch.ready = count > 0 && (FD_ISSET(socket, &readable) || FD_ISSET(socket, &writable));
  }
}

double LocalTime() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t whole = std::chrono::system_clock::to_time_t(now);
  std::tm local = {};
  localtime_s(&local, &whole);
  const double fraction =
      std::chrono::duration<double>(now - std::chrono::system_clock::from_time_t(whole)).count();
  return static_cast<double>(_mkgmtime(&local)) + fraction;
}

}  // namespace corvex::simulation::host

#endif
