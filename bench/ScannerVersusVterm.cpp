// Compares the rate of the scanner and its decoders with that of libvterm and its screen layer. Both process
// the same bytes in the same pieces. They alternate in one run, so that the machine's state affects both
// alike.

#include <vterm.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "Traffic.h"

namespace {

using namespace corvex;

constexpr std::size_t kTraffic = 32u << 20;
constexpr int kRounds = 7;

template <typename Run>
double Seconds(Run run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void FeedVterm(const std::string& traffic, std::size_t pieceSize) {
  VTerm* terminal = vterm_new(SessionState::kRows, SessionState::kColumns);
  vterm_screen_reset(vterm_obtain_screen(terminal), 1);
  for (std::size_t at = 0; at < traffic.size(); at += pieceSize) {
    vterm_input_write(terminal, traffic.data() + at, std::min(pieceSize, traffic.size() - at));
  }
  vterm_free(terminal);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main() {
  const std::string traffic = bench::MixedTraffic(kTraffic);
  const double megabytes = kTraffic / 1e6;
  std::printf("%8s %14s %14s %8s   (median of %d rounds)\n", "pieces", "scanner MB/s", "libvterm MB/s",
              "ratio", kRounds);
  for (const std::size_t pieceSize : {64u, 512u, 4096u}) {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;
    for (int round = 0; round < kRounds; ++round) {
      ours.push_back(Seconds([&] {
        test::Decoder decoder;
        decoder.state.traceEnabled = true;
        bench::FeedInPieces(decoder, traffic, pieceSize);
      }));
      theirs.push_back(Seconds([&] { FeedVterm(traffic, pieceSize); }));
      ratios.push_back(theirs.back() / ours.back());
    }
    std::printf("%8zu %14.0f %14.1f %8.1f\n", pieceSize, megabytes / Median(ours), megabytes / Median(theirs),
                Median(ratios));
  }
}
