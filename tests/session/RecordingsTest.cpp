#include <gtest/gtest.h>

#include <algorithm>

#include "support/Program.h"
#include "support/Recorded.h"
#include "support/Seen.h"
#include "unit/Playback.h"

// Recorded sessions are played to the whole program. It must send what was recorded, and its screen at the
// end must be the one in the .screen file beside the recording.

namespace corvex {
namespace {

using simulation::Playback;
using simulation::WireEvent;
using test::Program;

/// Plays the modem's side into a fake port, from the start of the program to the recorded close.
template <typename Port>
void Play(Program& p, Port& port, const std::vector<WireEvent>& events, const std::function<void()>& hangUp) {
  Playback playback(
      p.loop, events, [&port](std::string_view bytes) { port.Arrive(bytes); }, hangUp);
  port.onSent = [&playback](std::string_view bytes) { playback.Receive(bytes); };
  port.onOpened = [&playback] { playback.LineUp(); };
  port.onClosed = [&playback] { playback.LineDown(); };
  const auto last = std::find_if(events.rbegin(), events.rend(), [](const WireEvent& event) {
    return event.kind == WireEvent::Kind::FromModem;
  });
  p.Start(0.2);
  while (std::chrono::duration<double>(p.loop.Now()).count() < last->at + 0.6) p.loop.Run(0.1);
  port.onSent = nullptr;
  port.onOpened = nullptr;
  port.onClosed = nullptr;
}

class RecordingsTest : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(RecordingsTest, EndsWithItsScreen) {
  const std::string text = test::ReadFile(GetParam());
  const auto parsed = simulation::ParseWireLog(text);
  const auto& events = std::get<std::vector<WireEvent>>(parsed);
  Program p;
  const bool lan = text.find(" open lan ") != std::string::npos;
  p.settings.config.lan.Set(lan);
  if (lan) {
    Play(p, p.sock, events, [&p] { p.sock.PeerCloses(); });
  } else {
    Play(p, p.comPort, events, [&p] {
      p.comPort.Vanish();
      p.comPort.available = true;
    });
  }

  std::string recorded;
  for (const WireEvent& event : events) {
    if (event.kind == WireEvent::Kind::ToModem) recorded += event.bytes;
  }
  const std::string& sent = lan ? p.sock.sent : p.comPort.sent;
  EXPECT_EQ(sent, recorded.substr(0, sent.size()));
  test::ExpectRecorded(test::Seen(p.term), std::filesystem::path(GetParam()).replace_extension(".screen"));
}

std::vector<std::filesystem::path> Recordings() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/recordings")) {
    if (entry.path().extension() == ".log") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

INSTANTIATE_TEST_SUITE_P(All, RecordingsTest, ::testing::ValuesIn(Recordings()), [](const auto& test) {
  std::string name = test.param.stem().string();
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace corvex
