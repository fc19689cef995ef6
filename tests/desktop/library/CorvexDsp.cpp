// Stands in for the closed-source library. Stores the last message: the count and the numbers that follow it.

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
