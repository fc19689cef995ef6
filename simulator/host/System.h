#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EventLoop.h"

/// What the program needs of the operating system, in one place: one source file for POSIX systems and one
/// for Windows stand behind this header, and nothing else of the simulator knows on which it runs.
///
/// No call blocks but Wait. A handle is what the system gives; kNoHandle is none.
namespace corvex::simulation::host {

using Handle = std::intptr_t;
inline constexpr Handle kNoHandle = -1;

/// Prepares the network, and lets an interrupt from the keyboard or a polite request to end wake Wait.
bool StartSystem(std::string& error);
/// The user or the system wants the program to end.
bool EndRequested();

/// Listens on a TCP port of this machine's own address, or of all its addresses. Port 0 takes a free one.
Handle Listen(std::uint16_t port, bool allAddresses, std::string& error);
std::uint16_t LocalPort(Handle listener);
/// A connection that has come, if there is one. It is told to notice a peer that vanishes.
Handle Accept(Handle listener);

struct PseudoTerminal {
  Handle handle = kNoHandle;
  std::string name;  ///< of the end that the PC's program opens
};
/// A new pseudo terminal that passes on all bytes as they are.
PseudoTerminal OpenPseudoTerminal(std::string& error);
/// Whether some program has the other end of the pseudo terminal open.
bool OtherEndOpen(Handle handle);
/// Makes `link` a symbolic link to `target`. An old link is replaced; anything else of that name is left
/// alone.
bool ReplaceLink(const std::string& link, const std::string& target, std::string& error);
/// Removes the link if it still leads to `target`.
void RemoveLink(const std::string& link, const std::string& target);

/// Bytes that have come, none if there are none just now, nothing if the other side has gone.
std::optional<std::string> Read(Handle handle);
/// The number of bytes taken, nothing if the other side has gone.
std::optional<std::size_t> Write(Handle handle, std::string_view bytes);
void Close(Handle handle);

struct Watch {
  Handle handle = kNoHandle;
  bool write = false;  ///< to be woken when it can be written, too
  bool ready = false;  ///< set by Wait: there is something to read or write, or the end of it
};
/// Sleeps until one of the handles is ready, the time is over (negative: never) or the program is to end.
void Wait(std::vector<Watch>& watches, EventLoop::Time time);

/// Seconds since 1970-01-01 00:00 of the local time zone, with their fraction.
double LocalTime();

}  // namespace corvex::simulation::host
