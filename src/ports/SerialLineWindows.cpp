#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>

#include "ports/SerialLine.h"

namespace corvex {

namespace {

constexpr DWORD kInputQueue = 16 * 1024;
constexpr DWORD kOutputQueue = 4 * 1024;
// The time limit of a read, in milliseconds. After a read without a byte, the device is checked: some drivers
// leave a read pending forever when the adapter is unplugged.
constexpr DWORD kReadTime = 2000;
constexpr char kXon = 17;
constexpr char kXoff = 19;

std::wstring SystemName(const std::string& device) {
  std::wstring name;
  for (const char c : device) name += static_cast<wchar_t>(static_cast<unsigned char>(c));  // Latin-1
  // Without the prefix, COM9 is the highest name that works.
  return name.starts_with(L'\\') ? name : L"\\\\.\\" + name;
}

BYTE ParityOf(Parity parity) {
  switch (parity) {
    case Parity::None:
      return NOPARITY;
    case Parity::Even:
      return EVENPARITY;
    case Parity::Odd:
      return ODDPARITY;
    case Parity::Mark:
      return MARKPARITY;
    case Parity::Space:
      return SPACEPARITY;
  }
  return NOPARITY;
}

BYTE StopBitsOf(StopBits stopBits) {
  switch (stopBits) {
    case StopBits::One:
      return ONESTOPBIT;
    case StopBits::OneAndHalf:
      return ONE5STOPBITS;
    case StopBits::Two:
      return TWOSTOPBITS;
  }
  return ONESTOPBIT;
}

}  // namespace

std::optional<LineHandle> OpenLine(const std::string& device, const LineSettings& settings) {
  if (device.empty()) return {};
  // No sharing: the system refuses a second handle under any name.
  const HANDLE line = CreateFileW(SystemName(device).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
  if (line == INVALID_HANDLE_VALUE) return {};
  COMMTIMEOUTS times = {};
  times.ReadTotalTimeoutConstant = kReadTime;
  SetupComm(line, kInputQueue, kOutputQueue);  // the driver may ignore the sizes
  if (!SetCommTimeouts(line, &times) || !SetUpLine(line, settings)) {
    CloseHandle(line);
    return {};
  }
  DiscardReceived(line);
  return line;
}

bool SetUpLine(LineHandle line, const LineSettings& settings) {
  DCB dcb = {};
  dcb.DCBlength = sizeof dcb;
  if (!GetCommState(line, &dcb)) return false;
  dcb.BaudRate = static_cast<DWORD>(settings.speed);
  dcb.ByteSize = static_cast<BYTE>(settings.dataBits);
  dcb.Parity = ParityOf(settings.parity);
  dcb.StopBits = StopBitsOf(settings.stopBits);
  dcb.fBinary = TRUE;
  dcb.fParity = FALSE;
  dcb.fErrorChar = FALSE;
  dcb.fNull = FALSE;
  dcb.fAbortOnError = FALSE;  // a line error must not stop all reading and writing
  dcb.fDsrSensitivity = FALSE;
  dcb.fOutxDsrFlow = FALSE;
  dcb.fOutxCtsFlow = settings.rtsCts ? TRUE : FALSE;
  // Some units draw power from these lines, or answer only while they are raised.
  dcb.fDtrControl = DTR_CONTROL_ENABLE;
  dcb.fRtsControl = settings.rtsCts ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
  dcb.fOutX = settings.xonXoff ? TRUE : FALSE;
  dcb.fInX = dcb.fOutX;
  dcb.fTXContinueOnXoff = FALSE;
  dcb.XonChar = kXon;
  dcb.XoffChar = kXoff;
  dcb.XonLim = kInputQueue / 4;
  dcb.XoffLim = kInputQueue / 4;
  return SetCommState(line, &dcb) != 0;
}

void DiscardReceived(LineHandle line) {
  PurgeComm(line, PURGE_RXCLEAR);
}

void DiscardUnsent(LineHandle line) {
  PurgeComm(line, PURGE_TXABORT | PURGE_TXCLEAR);
}

std::size_t ReadSize(LineHandle line, std::size_t most) {
  // A read waits until all requested bytes have arrived.
  DWORD errors = 0;
  COMSTAT state = {};
  if (!ClearCommError(line, &errors, &state)) return 1;
  return std::clamp<std::size_t>(state.cbInQue, 1, most);
}

std::size_t UnsentBytes(LineHandle line, std::size_t pending) {
  DWORD errors = 0;
  COMSTAT state = {};
  // The driver's count includes pending writes. A driver that does not count returns 0.
  const bool counted = ClearCommError(line, &errors, &state) != 0 && state.cbOutQue > 0;
  return counted ? state.cbOutQue : pending;
}

bool LineAlive(LineHandle line) {
  DWORD errors = 0;
  COMSTAT state = {};
  return ClearCommError(line, &errors, &state) != 0;
}

}  // namespace corvex

#endif
