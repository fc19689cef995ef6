#include "state/ReceiveBuffer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "support/VirtualLoop.h"

namespace corvex {
namespace {

using namespace std::string_literals;

struct ReceiveBufferTest : ::testing::Test {
  test::VirtualLoop loop;
  ReceiveBuffer received{loop};
};

TEST_F(ReceiveBufferTest, EachWayOfTakingContinuesAfterAReadByte) {
  const auto readOne = [&] {
    received.AppendRx("a\0\xFFz"s);
    EXPECT_EQ(received.ReadByte(), 'a');
  };
  readOne();
  EXPECT_EQ(received.TakeRx(), "\0\xFFz"s);
  readOne();
  std::string text;
  received.TakeRxInto(text);
  EXPECT_EQ(text, "\0\xFFz"s);
  readOne();
  received.AppendRx("!");
  received.TakeRxInto(text);
  EXPECT_EQ(text, "\0\xFFz\0\xFFz!"s);
  readOne();
  received.ClearRx();
  EXPECT_FALSE(received.RxAvailable());
  // New bytes do not count as read.
  received.AppendRx("next");
  EXPECT_EQ(received.TakeRx(), "next");
  EXPECT_EQ(received.TakeRx(), "");
}

TEST_F(ReceiveBufferTest, ReadByteWaitsForOneByteAndLeavesTheRest) {
  loop.After(std::chrono::seconds(5), [&] { received.AppendRx("xy"); });
  EXPECT_EQ(received.ReadByte(), 'x');
  EXPECT_EQ(loop.Now(), std::chrono::seconds(5));
  EXPECT_EQ(received.ReadByte(), 'y');
}

TEST_F(ReceiveBufferTest, ReportsRoomWhenItIsNoLongerFull) {
  const std::string full(ReceiveBuffer::kCapacity, 'x');
  int told = 0;
  received.onRoom = [&] {
    ++told;
    EXPECT_TRUE(received.HasRoom());
  };
  received.AppendRx(full + 'y');
  EXPECT_FALSE(received.HasRoom());
  received.ReadByte();
  EXPECT_FALSE(received.HasRoom());  // full to the last byte
  EXPECT_EQ(told, 0);
  received.ReadByte();
  received.ReadByte();
  EXPECT_EQ(told, 1);
  EXPECT_EQ(received.TakeRx().size(), full.size() - 2);
  received.AppendRx(full);
  received.ClearRx();
  EXPECT_EQ(told, 2);
}

// The cost of reading a byte does not depend on how many bytes wait. The limit is generous for a busy
// machine; a cost in proportion to the waiting bytes would take many minutes.
TEST_F(ReceiveBufferTest, ReadsALongTextByteByByteInLinearTime) {
  const std::string piece(4 << 20, 'p');
  const auto begin = std::chrono::steady_clock::now();
  received.AppendRx(piece);
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < piece.size(); ++i) {
    wrong += received.ReadByte() != 'p';
    if (i % 1024 == 0) received.AppendRx("p");
  }
  EXPECT_EQ(wrong, 0u);
  EXPECT_EQ(received.TakeRx().size(), piece.size() / 1024);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

}  // namespace
}  // namespace corvex
