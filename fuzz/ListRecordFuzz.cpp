// Decodes arbitrary list records, soft key lines and other packets.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "stream/ParseScreenRecord.h"
#include "support/Decoder.h"

using namespace corvex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  ScreenRecord record;
  ParseScreenRecord(bytes, record);
  if (record.count < 0 || record.count > ScreenRecord::kMaxItems) std::abort();
  if (record.count < ScreenRecord::kMaxItems) {
    const ScreenRecord::Item& behind = record.items[static_cast<std::size_t>(record.count)];
    if (behind != ScreenRecord::Item()) std::abort();
  }
  const int place = ChoiceIndexOfCurrent(record);
  if (place < 0 || (place > 0 && place >= record.count)) std::abort();

  test::Decoder decoder;
  decoder.tags.HandleTagPacket(bytes);
  decoder.tags.HandleTagPacket("<tml><Sk>" + std::string(bytes) + "</tml>");
  decoder.tags.HandleTagPacket("<tml><Date>" + std::string(bytes) + "</tml>");
  PrintPayload(bytes);
  return 0;
}
