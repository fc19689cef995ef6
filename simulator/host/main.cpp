#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

#include "host/Arguments.h"
#include "host/TcpPort.h"
#include "unit/ErbFront.h"
#include "unit/PacedLine.h"
#include "unit/Playback.h"
#ifndef _WIN32
#include "host/PtyPort.h"
#endif

namespace corvex::simulation::host {
namespace {

constexpr std::uintmax_t kLargestLog = 256 << 20;

/// The far side of the line: a unit, an ERB unit with its MUBs, or a recorded session.
struct FarSide {
  std::function<void(std::string_view)> receive;
  std::function<void()> lineUp;
  std::function<void()> lineDown;
};

template <typename Side>
FarSide FarSideOf(const std::shared_ptr<Side>& side) {
  return {[side](std::string_view bytes) { side->Receive(bytes); }, [side] { side->LineUp(); },
          [side] { side->LineDown(); }};
}

std::vector<WireEvent> ReadLog(const std::string& path, std::string& error) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file || static_cast<std::uintmax_t>(file.tellg()) > kLargestLog) {
    error = path + (file ? ": too large" : ": cannot be read");
    return {};
  }
  file.seekg(0);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  auto parsed = ParseWireLog(text);
  if (const auto* wrong = std::get_if<WireLogError>(&parsed)) {
    error = path + ":" + std::to_string(wrong->line) + ": " + wrong->text;
    return {};
  }
  return std::get<std::vector<WireEvent>>(std::move(parsed));
}

void Say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);  // scripts wait for this line
}

int Complain(const std::string& error, int status) {
  std::fprintf(stderr, "corvex-simulator: %s\n", error.c_str());
  return status;
}

int WriteImage(const Arguments& arguments) {
  std::ofstream file(arguments.imageFile, std::ios::binary);
  file << MakeImage(arguments.image);
  file.close();
  return file ? 0 : Complain(arguments.imageFile + ": cannot be written", 1);
}

int Run(const std::vector<std::string>& words) {
  std::string error;
  const Arguments arguments = ParseArguments(words, error);
  if (!error.empty()) return Complain(error + "; see --help", 2);
  if (arguments.help) return std::fputs(kUsage, stdout) < 0 ? 1 : 0;

  if (!arguments.imageFile.empty()) return WriteImage(arguments);

  std::vector<WireEvent> record;
  if (!arguments.playFile.empty()) record = ReadLog(arguments.playFile, error);
  if (!error.empty()) return Complain(error, 1);

  HostLoop loop;
  std::unique_ptr<Port> port;
  if (arguments.pty) {
#ifdef _WIN32
    return Complain("there are no pseudo terminals on Windows; use --tcp", 1);
#else
    port = std::make_unique<PtyPort>(loop, arguments.link);
#endif
  } else {
    port = std::make_unique<TcpPort>(loop, *arguments.tcpPort, arguments.anyAddress);
  }
  // The path of the unit's bytes: `faulty` applies the faults, `paced` the speed of the line, `port` sends.
  const auto hangUp = [&port] { port->HangUp(); };
  PacedLine paced(loop, arguments.speed, [&port](std::string_view bytes) { port->Send(bytes); });
  FaultyLine faulty(
      loop, arguments.faults, [&paced](std::string_view bytes) { paced.Send(bytes); }, hangUp);
  const auto send = [&faulty](std::string_view bytes) { faulty.Send(bytes); };
  FarSide farSide;
  if (!arguments.playFile.empty()) {
    farSide = FarSideOf(std::make_shared<Playback>(loop, std::move(record), send, hangUp));
  } else if (arguments.erb) {
    farSide = FarSideOf(std::make_shared<ErbFront>(loop, *arguments.erb, send));
  } else {
    const auto unit = std::make_shared<Unit>(loop, arguments.unit, send);
    if (!arguments.pty) unit->onRestart = hangUp;
    farSide = FarSideOf(unit);
  }

  port->onNotice = Say;
  port->onBytes = farSide.receive;
  port->onUp = [&] {
    faulty.Reset();
    paced.Reset();
    farSide.lineUp();
  };
  port->onDown = [&] {
    farSide.lineDown();
    faulty.Reset();
    paced.Reset();
  };
  if (!port->Open(error)) return Complain(error, 1);
  loop.Run();
  return 0;
}

}  // namespace
}  // namespace corvex::simulation::host

int main(int argc, char** argv) {
  return corvex::simulation::host::Run(std::vector<std::string>(argv + 1, argv + argc));
}
