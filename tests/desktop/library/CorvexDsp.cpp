// A library in the place of the closed one: it keeps what it was given last, all that it may read.

#include <cstdint>
#include <vector>

#ifdef _WIN32
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define EXPORTED extern "C" __attribute__((visibility("default")))
#endif

namespace {
std::vector<std::int16_t> last;
}

EXPORTED void CorvexDspMsg(const std::int16_t* numbers) {
  last.assign(numbers, numbers + numbers[0] + 1);
}
EXPORTED const std::vector<std::int16_t>* LastMessage() {
  return &last;
}
