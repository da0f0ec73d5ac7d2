// KyCBufferTest.cpp: what a buffer holds, where it reads and writes, and what it refuses.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "composite/KyCBuffer.h"
#include "support/KyFarBuffer.h"
#include "support/KyPoolFailure.h"
#include "support/KyTestPool.h"

namespace
{

constexpr unsigned int TOO_LARGE = 0x01100001;
constexpr unsigned int NULL_POINTER = 0x01100002;
constexpr unsigned int UNKNOWN_FLAG = 0x01100003;
constexpr unsigned int SCALAR_SIZE = 0x01100004;
constexpr unsigned int NO_POSITION = 0x01100005;
constexpr unsigned int WRITE_RANGE = 0x01100006;
constexpr unsigned int READ_RANGE = 0x01100007;
constexpr unsigned int INCREMENT = 0x01100008;

constexpr unsigned int SCALAR = 0;
constexpr unsigned int BYTES = 1;

std::string bytesOf(const KyCBuffer& buffer)
{
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

void appendText(KyTestPool& pool, KyCBuffer& buffer, const char* text)
{
  buffer.writeBuffer(pool, text, static_cast<unsigned int>(std::strlen(text)), BYTES, -1);
}

}    // namespace

TEST(KyCBuffer, startsEmptyWithStorage)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  EXPECT_NE(nullptr, buffer.getStorage());
  EXPECT_EQ(0u, buffer.getWritePosition());
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, storesScalarsBigEndian)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  const std::uint8_t one = 0x01;
  const std::uint16_t two = 0x0203;
  const std::uint32_t four = 0x04050607;
  const std::uint64_t eight = 0x08090A0B0C0D0E0F;
  buffer.writeBuffer(pool, &one, 1, SCALAR, -1);
  buffer.writeBuffer(pool, &two, 2, SCALAR, -1);
  buffer.writeBuffer(pool, &four, 4, SCALAR, -1);
  buffer.writeBuffer(pool, &eight, 8, SCALAR, -1);
  EXPECT_EQ("\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F", bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, readsBackWhatWasWritten)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  const std::uint8_t one = 0xFE;
  const std::uint16_t two = 0xFEDC;
  const std::uint32_t four = 0xFEDCBA98;
  const std::uint64_t eight = 0xFEDCBA9876543210;
  buffer.writeBuffer(pool, &one, 1, SCALAR, -1);
  buffer.writeBuffer(pool, &two, 2, SCALAR, -1);
  buffer.writeBuffer(pool, &four, 4, SCALAR, -1);
  buffer.writeBuffer(pool, &eight, 8, SCALAR, -1);
  appendText(pool, buffer, "xyz");
  std::uint8_t backOne = 0;
  std::uint16_t backTwo = 0;
  std::uint32_t backFour = 0;
  std::uint64_t backEight = 0;
  char text[4] = "###";
  buffer.readBuffer(pool, &backOne, 1, SCALAR, -1);
  EXPECT_EQ(1u, buffer.getReadPosition());
  buffer.readBuffer(pool, &backTwo, 2, SCALAR, -1);
  EXPECT_EQ(3u, buffer.getReadPosition());
  buffer.readBuffer(pool, &backFour, 4, SCALAR, -1);
  EXPECT_EQ(7u, buffer.getReadPosition());
  buffer.readBuffer(pool, &backEight, 8, SCALAR, -1);
  EXPECT_EQ(15u, buffer.getReadPosition());
  buffer.readBuffer(pool, text, 3, BYTES, -1);
  EXPECT_EQ(18u, buffer.getReadPosition());
  EXPECT_EQ(0xFEu, backOne);
  EXPECT_EQ(0xFEDCu, backTwo);
  EXPECT_EQ(0xFEDCBA98u, backFour);
  EXPECT_EQ(0xFEDCBA9876543210u, backEight);
  EXPECT_STREQ("xyz", text);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, storesByteStringsAsTheyAre)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  const char bytes[] = {'a', '\0', 'b', '\0'};
  buffer.writeBuffer(pool, bytes, 4, BYTES, -1);
  EXPECT_EQ(std::string("a\0b\0", 4), bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, takesAnEmptyByteStringFromNowhere)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  buffer.writeBuffer(pool, nullptr, 0, BYTES, -1);
  buffer.readBuffer(pool, nullptr, 0, BYTES, -1);
  buffer.writeBuffer(pool, nullptr, 0, BYTES, 0);
  buffer.readBuffer(pool, nullptr, 0, BYTES, 0);
  EXPECT_EQ(0u, buffer.getWritePosition());
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, writeAtAPositionOverwritesAndLeavesThePositions)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcdefgh");
  const std::uint32_t number = 0x31323334;
  buffer.writeBuffer(pool, &number, 4, SCALAR, 2);
  EXPECT_EQ("ab1234gh", bytesOf(buffer));
  buffer.writeBuffer(pool, "XY", 2, BYTES, 6);
  EXPECT_EQ("ab1234XY", bytesOf(buffer));
  buffer.writeBuffer(pool, "Z", 1, BYTES, 0);
  EXPECT_EQ("Zb1234XY", bytesOf(buffer));
  EXPECT_EQ(8u, buffer.getWritePosition());
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, writeAtAPositionNotHeldReportsAndWritesNothing)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  buffer.writeBuffer(pool, "XY", 2, BYTES, 3);
  buffer.writeBuffer(pool, "X", 1, BYTES, 4);
  buffer.writeBuffer(pool, "X", 1, BYTES, 2147483647);
  const std::uint32_t number = 0;
  buffer.writeBuffer(pool, &number, 4, SCALAR, 1);
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_REPORTS(
      pool, {WRITE_RANGE, "writeBuffer", "2 bytes at position 3 cannot be overwritten: the buffer holds 4 bytes."},
      {WRITE_RANGE, "writeBuffer", "1 bytes at position 4 cannot be overwritten: the buffer holds 4 bytes."},
      {WRITE_RANGE, "writeBuffer", "1 bytes at position 2147483647 cannot be overwritten: the buffer holds 4 bytes."},
      {WRITE_RANGE, "writeBuffer", "4 bytes at position 1 cannot be overwritten: the buffer holds 4 bytes."});
}

TEST(KyCBuffer, readAtAPositionLeavesThePositions)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  char text[3] = "##";
  buffer.readBuffer(pool, text, 2, BYTES, 2);
  EXPECT_STREQ("cd", text);
  std::uint16_t number = 0;
  buffer.readBuffer(pool, &number, 2, SCALAR, 1);
  EXPECT_EQ(0x6263u, number);
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, readBufferBehindTheEndReportsAndLeavesTheTargetUntouched)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abc");
  char text[6] = "#####";
  buffer.readBuffer(pool, text, 4, BYTES, -1);
  EXPECT_STREQ("#####", text);
  std::uint32_t number = 0xAAAAAAAA;
  buffer.readBuffer(pool, &number, 4, SCALAR, -1);
  EXPECT_EQ(0xAAAAAAAAu, number);
  EXPECT_EQ(0u, buffer.getReadPosition());
  buffer.readBuffer(pool, text, 3, BYTES, -1);
  EXPECT_STREQ("abc##", text);
  buffer.readBuffer(pool, text, 1, SCALAR, -1);
  buffer.readBuffer(pool, text, 1, BYTES, 3);
  buffer.readBuffer(pool, text, 4294967295u, BYTES, 1);
  EXPECT_STREQ("abc##", text);
  EXPECT_EQ(3u, buffer.getReadPosition());
  EXPECT_REPORTS(
      pool, {READ_RANGE, "readBuffer", "4 bytes at position 0 cannot be read: the buffer holds 3 bytes."},
      {READ_RANGE, "readBuffer", "4 bytes at position 0 cannot be read: the buffer holds 3 bytes."},
      {READ_RANGE, "readBuffer", "1 bytes at position 3 cannot be read: the buffer holds 3 bytes."},
      {READ_RANGE, "readBuffer", "1 bytes at position 3 cannot be read: the buffer holds 3 bytes."},
      {READ_RANGE, "readBuffer", "4294967295 bytes at position 1 cannot be read: the buffer holds 3 bytes."});
}

TEST(KyCBuffer, refusesScalarsOfOtherSizes)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcdefghijklmnop");
  unsigned char number[16] = {};
  for (const unsigned int size : {0u, 3u, 5u, 6u, 7u, 9u, 16u})
  {
    const std::string text =
        "A scalar of " + std::to_string(size) + " bytes has no place in a buffer; scalars have 1, 2, 4 or 8 bytes.";
    buffer.writeBuffer(pool, number, size, SCALAR, -1);
    buffer.readBuffer(pool, number, size, SCALAR, -1);
    EXPECT_REPORTS(pool, {SCALAR_SIZE, "writeBuffer", text}, {SCALAR_SIZE, "readBuffer", text});
  }
  EXPECT_EQ("abcdefghijklmnop", bytesOf(buffer));
  EXPECT_EQ(0u, buffer.getReadPosition());
}

TEST(KyCBuffer, refusesUnknownFlags)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  char text[] = "xy";
  buffer.writeBuffer(pool, text, 1, 2, -1);
  buffer.readBuffer(pool, text, 1, 4294967295u, -1);
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_STREQ("xy", text);
  EXPECT_REPORTS(
      pool, {UNKNOWN_FLAG, "writeBuffer", "Buffer flag 2 is unknown; 0 stands for a scalar, 1 for a byte string."},
      {UNKNOWN_FLAG, "readBuffer", "Buffer flag 4294967295 is unknown; 0 stands for a scalar, 1 for a byte string."});
}

TEST(KyCBuffer, refusesPositionsBelowMinusOne)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  char text[] = "xy";
  buffer.writeBuffer(pool, text, 1, BYTES, -2);
  buffer.readBuffer(pool, text, 1, SCALAR, -2147483647 - 1);
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_STREQ("xy", text);
  EXPECT_REPORTS(pool, {NO_POSITION, "writeBuffer", "-2 is no position in a buffer."},
                 {NO_POSITION, "readBuffer", "-2147483648 is no position in a buffer."});
}

// The upper half of a buffer has positions that are negative as int. Its pages are never touched, but for one.
TEST(KyCBuffer, writesAndReadsBehind2GiB)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  constexpr unsigned int FAR = 0x80000000u;
  if (const char* const reason = kyReserveFar(pool, buffer, FAR + 100)) GTEST_SKIP() << reason;
  buffer.incrementWritePointer(pool, FAR + 4);
  char text[] = "abcd";
  buffer.writeBuffer(pool, text, 4, BYTES, -2147483647 - 1);
  EXPECT_EQ(0, std::memcmp(buffer.getStorage() + FAR, "abcd", 4));
  buffer.readBuffer(pool, text, 2, BYTES, -2147483647 + 1);
  EXPECT_STREQ("cdcd", text);
  EXPECT_NO_REPORTS(pool);

  buffer.writeBuffer(pool, text, 2, BYTES, -2147483647 + 2);
  buffer.readBuffer(pool, text, 2, BYTES, -2147483647 + 2);
  buffer.writeBuffer(pool, text, 0, BYTES, -2147483647 + 4);
  EXPECT_REPORTS(
      pool,
      {WRITE_RANGE, "writeBuffer",
       "2 bytes at position 2147483651 cannot be overwritten: the buffer holds 2147483652 bytes."},
      {READ_RANGE, "readBuffer", "2 bytes at position 2147483651 cannot be read: the buffer holds 2147483652 bytes."},
      {NO_POSITION, "writeBuffer", "-2147483643 is no position in a buffer."});
}

TEST(KyCBuffer, refusesNullPointers)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  buffer.writeBuffer(pool, nullptr, 4, SCALAR, -1);
  buffer.writeBuffer(pool, nullptr, 3, BYTES, 0);
  buffer.readBuffer(pool, nullptr, 1, SCALAR, -1);
  buffer.readBuffer(pool, nullptr, 2, BYTES, 0);
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_REPORTS(pool, {NULL_POINTER, "writeBuffer", "A null pointer was given for 4 bytes of a buffer."},
                 {NULL_POINTER, "writeBuffer", "A null pointer was given for 3 bytes of a buffer."},
                 {NULL_POINTER, "readBuffer", "A null pointer was given for 1 bytes of a buffer."},
                 {NULL_POINTER, "readBuffer", "A null pointer was given for 2 bytes of a buffer."});
}

TEST(KyCBuffer, growsWithItsContent)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  for (std::uint32_t n = 0; n < 100000; ++n)
    buffer.writeBuffer(pool, &n, 4, SCALAR, -1);
  EXPECT_EQ(400000u, buffer.getWritePosition());
  for (std::uint32_t n = 0; n < 100000; ++n)
  {
    std::uint32_t back = 0;
    buffer.readBuffer(pool, &back, 4, SCALAR, -1);
    ASSERT_EQ(n, back);
  }
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, appendsAPartOfItselfWhileGrowing)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "0123456789");
  std::string expected = "0123456789";
  while (expected.size() < 10000)
  {
    buffer.writeBuffer(pool, buffer.getStorage() + 2, buffer.getWritePosition() - 2, BYTES, -1);
    expected += expected.substr(2);
  }
  EXPECT_EQ(expected, bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, overwritesOverlappingBytesOfItself)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcdefgh");
  buffer.writeBuffer(pool, buffer.getStorage(), 6, BYTES, 2);
  EXPECT_EQ("ababcdef", bytesOf(buffer));
  buffer.writeBuffer(pool, buffer.getStorage(), 8, SCALAR, 0);
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  EXPECT_EQ("fedcbaba", bytesOf(buffer));
#endif
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, resetEmptiesButKeepsTheStorage)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  char text[2] = "#";
  buffer.readBuffer(pool, text, 1, BYTES, -1);
  const unsigned char* const storage = buffer.getStorage();
  buffer.reset();
  EXPECT_EQ(0u, buffer.getWritePosition());
  EXPECT_EQ(0u, buffer.getReadPosition());
  EXPECT_EQ(storage, buffer.getStorage());
  appendText(pool, buffer, "xy");
  EXPECT_EQ("xy", bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, allocateBufferMakesRoomBehindTheWritePosition)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  buffer.allocateBuffer(pool, 100000);
  EXPECT_EQ(4u, buffer.getWritePosition());
  std::memset(buffer.getStorage() + 4, 'x', 100000);
  buffer.incrementWritePointer(pool, 100000);
  EXPECT_EQ(100004u, buffer.getWritePosition());
  EXPECT_EQ("abcd" + std::string(100000, 'x'), bytesOf(buffer));
  buffer.allocateBuffer(pool, 0);
  EXPECT_EQ(100004u, buffer.getWritePosition());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, incrementBeyondTheStorageReportsAndStays)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  buffer.incrementWritePointer(pool, 0);
  EXPECT_NO_REPORTS(pool);
  buffer.incrementWritePointer(pool, 4294967295u);
  EXPECT_EQ(4u, buffer.getWritePosition());
  EXPECT_REPORTS(pool, {INCREMENT, "incrementWritePointer", ""});
}

TEST(KyCBuffer, refusesToHoldMoreThan32BitsCount)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  buffer.allocateBuffer(pool, 4294967292u);
  buffer.writeBuffer(pool, "x", 4294967295u, BYTES, -1);    // refused before a byte is read
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_REPORTS(pool,
                 {TOO_LARGE, "allocateBuffer",
                  "The buffer holds 4 bytes; 4294967292 bytes more exceed its limit of 4294967295 bytes."},
                 {TOO_LARGE, "writeBuffer",
                  "The buffer holds 4 bytes; 4294967295 bytes more exceed its limit of 4294967295 bytes."});
}

TEST(KyCBuffer, constructorReportsExhaustedMemoryAndTheBufferWorksLater)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  KyCBuffer buffer(pool);
  KyNPoolAllocator::reset();
  EXPECT_EQ(nullptr, buffer.getStorage());
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});

  char byte = '#';
  buffer.reset();
  buffer.writeBuffer(pool, nullptr, 0, BYTES, -1);
  buffer.writeBuffer(pool, nullptr, 0, BYTES, 0);
  buffer.readBuffer(pool, nullptr, 0, BYTES, -1);
  buffer.allocateBuffer(pool, 0);
  EXPECT_NO_REPORTS(pool);
  buffer.readBuffer(pool, &byte, 1, SCALAR, -1);
  buffer.readBuffer(pool, &byte, 1, BYTES, 0);
  buffer.writeBuffer(pool, &byte, 1, BYTES, 0);
  buffer.incrementWritePointer(pool, 1);
  EXPECT_EQ('#', byte);
  EXPECT_REPORTS(
      pool, {READ_RANGE, "readBuffer", ""}, {READ_RANGE, "readBuffer", ""}, {WRITE_RANGE, "writeBuffer", ""},
      {INCREMENT, "incrementWritePointer", "The write position 0 cannot advance by 1 bytes: 0 bytes are allocated."});

  buffer.writeBuffer(pool, "a", 1, SCALAR, -1);
  EXPECT_EQ("a", bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCBuffer, growthWithoutMemoryReportsAndChangesNothing)
{
  KyTestPool pool;
  KyCBuffer buffer(pool);
  appendText(pool, buffer, "abcd");
  const std::string large(1000, 'x');
  {
    const KyFailNext fail(0);
    buffer.writeBuffer(pool, large.data(), 1000, BYTES, -1);
  }
  {
    const KyFailNext fail(0);
    buffer.allocateBuffer(pool, 5000);
  }
  EXPECT_EQ("abcd", bytesOf(buffer));
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."}, {OUT_OF_MEMORY, "", "Out of memory."});
  buffer.writeBuffer(pool, large.data(), 1000, BYTES, -1);
  EXPECT_EQ("abcd" + large, bytesOf(buffer));
  EXPECT_NO_REPORTS(pool);
}
