// Measures how fast the modem's stream is decoded. MixedInPieces measures the rate on mixed traffic. The
// other benchmarks show that the cost is proportional to the number of bytes, for well-formed and malformed
// traffic.

#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "Traffic.h"

namespace corvex::bench {
namespace {

void MixedInPieces(benchmark::State& run) {
  const std::string traffic = MixedTraffic(32u << 20);
  const auto pieceSize = static_cast<std::size_t>(run.range(0));
  test::Decoder decoder;
  decoder.state.traceEnabled = true;
  for (auto _ : run) FeedInPieces(decoder, traffic, pieceSize);
  run.SetBytesProcessed(run.iterations() * static_cast<std::int64_t>(traffic.size()));
}
BENCHMARK(MixedInPieces)->Arg(1)->Arg(64)->Arg(512)->Arg(4096)->Arg(65536)->Unit(benchmark::kMillisecond);

/// Decodes all of the traffic in one event. The rate must be the same for each size. Two events before the
/// measurement let the buffers reach their full size, so that memory allocation is not measured.
void OneEvent(benchmark::State& run, const std::string& pattern) {
  const auto bytes = static_cast<std::size_t>(run.range(0));
  const std::string traffic = pattern.empty() ? MixedTraffic(bytes) : Repeated(pattern, bytes);
  test::Decoder decoder;
  for (int i = 0; i < 2; ++i) FeedInPieces(decoder, traffic, bytes);
  for (auto _ : run) FeedInPieces(decoder, traffic, bytes);
  run.SetBytesProcessed(run.iterations() * run.range(0));
}

/// Decodes the same traffic in events of one byte each.
void OneByteEvents(benchmark::State& run, const std::string& pattern) {
  const auto bytes = static_cast<std::size_t>(run.range(0));
  const std::string traffic = pattern.empty() ? MixedTraffic(bytes) : Repeated(pattern, bytes);
  test::Decoder decoder;
  for (auto _ : run) FeedInPieces(decoder, traffic, 1);
  run.SetBytesProcessed(run.iterations() * run.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
}

#define TRAFFIC(name, pattern)                                           \
  BENCHMARK_CAPTURE(OneEvent, name, std::string(pattern))->Apply(Sizes); \
  BENCHMARK_CAPTURE(OneByteEvents, name, std::string(pattern))->Apply(Sizes)

TRAFFIC(mixed, "");
TRAFFIC(plain text, "plain text without any item in it ");
TRAFFIC(only less - than signs, "<");
TRAFFIC(only ESC, "\x1B");
TRAFFIC(ESC unseen, "................................\x1B");
TRAFFIC(pieces of introducers, "<tm<Trac</tm");
TRAFFIC(trace introducers, "<Trace>");
TRAFFIC(short trace records, "<Trace>0003abcd");
TRAFFIC(packets without end, "<tml>");
TRAFFIC(packet ends, "</tml>");
TRAFFIC(lists, "<tml><MenuScreen><Title>T<1>a<2>b<INDEXLINE>1</tml>");
TRAFFIC(empty packets, "<tml></tml>");
TRAFFIC(clearing, "\x1B[2J");
TRAFFIC(overwriting, "\x1B[2;2Hx");
TRAFFIC(separators, "<tml><Date>||||||||||||||||||||||||||||||||||||||||||||||||||||</tml>");

}  // namespace
}  // namespace corvex::bench

BENCHMARK_MAIN();
