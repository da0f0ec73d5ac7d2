// KyNPoolAllocatorTest.cpp: allocation that reports into a pool.
#include "errorhandling/KyNPoolAllocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>

#include "support/KyTestPool.h"

namespace
{
// However a test ends, the next one starts without a failure to come.
class KyNPoolAllocatorTest : public testing::Test
{
protected:
  ~KyNPoolAllocatorTest() override { KyNPoolAllocator::reset(); }
  KyTestPool pool;
};

struct KyCounted
{
  KyCounted() { ++s_alive; }
  ~KyCounted() { --s_alive; }
  static int s_alive;
};
int KyCounted::s_alive = 0;

struct KyThrowing
{
  KyThrowing() { throw std::runtime_error("constructor"); }
};

// More than any machine has. Volatile, so that the compiler does not look through it and object.
const volatile std::size_t tooMuch = SIZE_MAX - 65536;
}    // namespace

TEST_F(KyNPoolAllocatorTest, newGivesAnObjectThatOrdinaryDeleteReleases)
{
  KyCounted* const object = new (pool) KyCounted;
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(KyCounted::s_alive, 1);
  delete object;
  EXPECT_EQ(KyCounted::s_alive, 0);
  EXPECT_NO_REPORTS(pool);
}

TEST_F(KyNPoolAllocatorTest, newGivesAnArrayThatOrdinaryDeleteReleases)
{
  KyCounted* const objects = new (pool) KyCounted[5];
  ASSERT_NE(objects, nullptr);
  EXPECT_EQ(KyCounted::s_alive, 5);
  delete[] objects;
  EXPECT_EQ(KyCounted::s_alive, 0);
  EXPECT_NO_REPORTS(pool);
}

TEST_F(KyNPoolAllocatorTest, newGivesAlignedMemory)
{
  std::unique_ptr<std::max_align_t> object(new (pool) std::max_align_t);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(object.get()) % alignof(std::max_align_t), 0u);
}

TEST_F(KyNPoolAllocatorTest, newOfNothingGivesABlock)
{
  void* const block = operator new(0, pool);
  EXPECT_NE(block, nullptr);
  operator delete(block);
}

TEST_F(KyNPoolAllocatorTest, exhaustedMemoryGivesNullAndAReport)
{
  EXPECT_EQ(operator new(tooMuch, pool), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "operator new", "Out of memory."});
  EXPECT_EQ(operator new[](tooMuch, pool), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "operator new[]", "Out of memory."});
}

TEST_F(KyNPoolAllocatorTest, noConstructorRunsWithoutMemory)
{
  KyNPoolAllocator::failAfter(0);
  EXPECT_EQ(new (pool) KyCounted, nullptr);
  EXPECT_EQ(KyCounted::s_alive, 0);
  EXPECT_REPORTS(pool, {0x1000000, "operator new", "Out of memory."});
}

TEST_F(KyNPoolAllocatorTest, anArrayLengthThatOverflowsIsTheLanguagesBusiness)
{
  volatile std::size_t length = SIZE_MAX / 2;
#ifdef __clang__
  EXPECT_EQ(new (pool) double[length], nullptr);    // asks for SIZE_MAX bytes
  EXPECT_REPORTS(pool, {0x1000000, "operator new[]", "Out of memory."});
#else
  EXPECT_THROW(static_cast<void>(new (pool) double[length]), std::bad_array_new_length);
  EXPECT_NO_REPORTS(pool);
#endif
}

TEST_F(KyNPoolAllocatorTest, aConstructorThatThrowsReleasesTheMemory)    // the leak sanitizer looks on
{
  EXPECT_THROW(static_cast<void>(new (pool) KyThrowing), std::runtime_error);
  EXPECT_THROW(static_cast<void>(new (pool) KyThrowing[3]), std::runtime_error);
  EXPECT_NO_REPORTS(pool);
}

TEST_F(KyNPoolAllocatorTest, failAfterFailsTheAllocationBehindThatManyOnce)
{
  for (unsigned int n : {0u, 1u, 2u, 5u})
  {
    KyNPoolAllocator::failAfter(n);
    for (unsigned int done = 0; done < n + 4; ++done)
    {
      const std::unique_ptr<int> object(new (pool) int(1));
      EXPECT_EQ(object == nullptr, done == n) << n << " " << done;
    }
    EXPECT_REPORTS(pool, {0x1000000, "operator new", "Out of memory."});
  }
}

TEST_F(KyNPoolAllocatorTest, failAfterCountsEveryKindOfAllocation)
{
  KyNPoolAllocator::failAfter(3);
  delete new (pool) int;
  delete[] new (pool) int[2];
  void* block = KyNPoolAllocator::allocate(pool, 8);
  EXPECT_EQ(KyNPoolAllocator::reallocate(pool, block, 16), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "reallocate", "Out of memory."});
  block = KyNPoolAllocator::reallocate(pool, block, 16);
  EXPECT_NE(block, nullptr);
  KyNPoolAllocator::release(block);
}

TEST_F(KyNPoolAllocatorTest, failAfterLeavesOrdinaryNewAlone)
{
  KyNPoolAllocator::failAfter(0);
  const std::unique_ptr<int> ordinary(new int(1));
  EXPECT_NE(ordinary, nullptr);
  EXPECT_EQ(operator new[](1, pool), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "operator new[]", "Out of memory."});
}

TEST_F(KyNPoolAllocatorTest, resetEndsTheWish)
{
  KyNPoolAllocator::failAfter(0);
  KyNPoolAllocator::reset();
  const std::unique_ptr<int> object(new (pool) int(1));
  EXPECT_NE(object, nullptr);
}

TEST_F(KyNPoolAllocatorTest, aSecondWishReplacesTheFirst)
{
  KyNPoolAllocator::failAfter(0);
  KyNPoolAllocator::failAfter(1);
  delete new (pool) int;
  EXPECT_EQ(KyNPoolAllocator::allocate(pool, 1), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "allocate", "Out of memory."});
}

TEST_F(KyNPoolAllocatorTest, theLargestCountsDoNotFailAtOnce)
{
  for (unsigned int n : {0xFFFFFFFEu, 0xFFFFFFFFu})
  {
    KyNPoolAllocator::failAfter(n);
    const std::unique_ptr<int> object(new (pool) int(1));
    EXPECT_NE(object, nullptr);
  }
}

TEST_F(KyNPoolAllocatorTest, reallocateGrowsInPlaceOrMovesAndKeepsTheContents)
{
  char* block = static_cast<char*>(KyNPoolAllocator::allocate(pool, 4));
  ASSERT_NE(block, nullptr);
  std::memcpy(block, "abcd", 4);
  block = static_cast<char*>(KyNPoolAllocator::reallocate(pool, block, 100000));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::memcmp(block, "abcd", 4), 0);
  KyNPoolAllocator::release(block);
}

TEST_F(KyNPoolAllocatorTest, reallocateOfNullIsAllocate)
{
  void* const block = KyNPoolAllocator::reallocate(pool, nullptr, 4);
  EXPECT_NE(block, nullptr);
  KyNPoolAllocator::release(block);
}

TEST_F(KyNPoolAllocatorTest, aFailedReallocateLeavesTheBlockAsItWas)
{
  char* const block = static_cast<char*>(KyNPoolAllocator::allocate(pool, 4));
  ASSERT_NE(block, nullptr);
  std::memcpy(block, "abcd", 4);
  EXPECT_EQ(KyNPoolAllocator::reallocate(pool, block, tooMuch), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "reallocate", "Out of memory."});
  EXPECT_EQ(std::memcmp(block, "abcd", 4), 0);
  KyNPoolAllocator::release(block);
}

TEST_F(KyNPoolAllocatorTest, allocateOfTooMuchReports)
{
  EXPECT_EQ(KyNPoolAllocator::allocate(pool, tooMuch), nullptr);
  EXPECT_REPORTS(pool, {0x1000000, "allocate", "Out of memory."});
}

TEST_F(KyNPoolAllocatorTest, sizeZeroGivesABlockFromAllOfThem)
{
  void* block = KyNPoolAllocator::allocate(pool, 0);
  EXPECT_NE(block, nullptr);
  block = KyNPoolAllocator::reallocate(pool, block, 0);    // does not release it
  EXPECT_NE(block, nullptr);
  KyNPoolAllocator::release(block);
  int* const array = new (pool) int[0];
  EXPECT_NE(array, nullptr);
  delete[] array;
}

TEST_F(KyNPoolAllocatorTest, releaseOfNullDoesNothing) { KyNPoolAllocator::release(nullptr); }
