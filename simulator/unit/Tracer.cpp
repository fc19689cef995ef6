#include "unit/Tracer.h"

#include <array>
#include <string>

#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

// The records are sent in turn. A running number is put before each.
constexpr std::array<std::string_view, 6> kRecords{
    "rx  frame ok, {signal} dB/Hz, offset +120 Hz",     "agc gain 41, level -3.2 dB",
    "ant heading {heading}, elevation 22, {beam}",      "mac slot 3 granted, queue 0",
    "hpa off, unit {temperature} C, supply {supply} C", "mmi key 0, screen held",
};

struct ChannelLine {
  std::string_view channel;
  std::string_view text;
};
// Channel 1 is about the satellite and channel 2 about the antenna. Channel 3 sends rarely. A text may
// contain commas.
constexpr std::array<ChannelLine, 7> kChannelLines{{
    {"1", "su tick, signal {signal}, state idle"},
    {"2", "pointing {heading} deg, error 0.2"},
    {"1", "su slot grant, {beam}"},
    {"2", "motor az 0, el 0"},
    {"1", "su poll answered"},
    {"2", "gyro 0.01, 0.00, 0.02"},
    {"3", "clock {time}, drift 0.3 ppm"},
}};

}  // namespace

void Tracer::SwitchRecords(bool on) {
  on ? records_.Start(kRecordTime, [this] { TellRecord(); }) : records_.Stop();
}

void Tracer::SwitchChannels(bool on) {
  on ? channels_.Start(kChannelTime, [this] { TellChannel(); }) : channels_.Stop();
}

void Tracer::Flush() {
  if (records_.Running()) TellRecord();
}

void Tracer::Stop() {
  SwitchRecords(false);
  SwitchChannels(false);
}

void Tracer::TellRecord() {
  SwitchRecords(true);
  const std::string_view text = kRecords[recordCount_ % kRecords.size()];
  // The PC adds no line end to a record, so each record contains one.
  send_(TraceRecord(std::to_string(++recordCount_) + ' ' + status_.Text(text) + "\r\n"));
}

void Tracer::TellChannel() {
  SwitchChannels(true);
  const ChannelLine& line = kChannelLines[channelCount_++ % kChannelLines.size()];
  send_(Packet("Channel", std::string(line.channel) + ',' + status_.Text(line.text)));
}

}  // namespace corvex::simulation
