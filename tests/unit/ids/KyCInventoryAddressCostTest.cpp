// What addresses allocate. The C allocator's functions are replaced by counting ones for this whole program, so this is
// a program of its own; a sanitizer brings its own allocator, and the tests are skipped there.
#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <utility>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyPrintAddress.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KY_COUNTS_ALLOCATIONS 0
#elif defined(__has_feature)
#define KY_COUNTS_ALLOCATIONS !(__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define KY_COUNTS_ALLOCATIONS 1
#endif

namespace
{
unsigned int s_allocations = 0;
unsigned int s_reallocations = 0;
unsigned int s_frees = 0;
bool s_outOfMemory = false;

// What the operation did to the heap.
struct KyHeapUse
{
  unsigned int allocations;
  unsigned int reallocations;
  unsigned int frees;
  bool operator==(const KyHeapUse& other) const
  {
    return allocations == other.allocations && reallocations == other.reallocations && frees == other.frees;
  }
};

std::ostream& operator<<(std::ostream& out, const KyHeapUse& use)
{
  return out << use.allocations << " malloc, " << use.reallocations << " realloc, " << use.frees << " free";
}

template <typename TOperation>
KyHeapUse heapUseOf(TOperation operation)
{
  const KyHeapUse before{s_allocations, s_reallocations, s_frees};
  operation();
  return {s_allocations - before.allocations, s_reallocations - before.reallocations, s_frees - before.frees};
}

const KyHeapUse NOTHING{0, 0, 0};
}    // namespace

#if KY_COUNTS_ALLOCATIONS
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);
  void __libc_free(void* block);

  void* malloc(std::size_t size)
  {
    ++s_allocations;
    return s_outOfMemory ? nullptr : __libc_malloc(size);
  }
  void* realloc(void* block, std::size_t size)
  {
    ++s_reallocations;
    return s_outOfMemory ? nullptr : __libc_realloc(block, size);
  }
  void free(void* block)
  {
    if (block != nullptr) ++s_frees;
    __libc_free(block);
  }
}
#endif

using KyNInventoryIDs::BOARD;
using KyNInventoryIDs::DEVICE;
using KyNInventoryIDs::NAME;

namespace
{
template <typename TOperation>
bool throwsBadAlloc(const TOperation& operation)
{
  s_outOfMemory = true;
  bool thrown = false;
  try
  {
    operation();
  }
  catch (const std::bad_alloc&)
  {
    thrown = true;
  }
  s_outOfMemory = false;
  return thrown;
}
}    // namespace

class KyCInventoryAddressCost : public ::testing::Test
{
protected:
  void SetUp() override
  {
    if (!KY_COUNTS_ALLOCATIONS) GTEST_SKIP() << "the sanitizer's allocator cannot be counted";
  }
};

TEST_F(KyCInventoryAddressCost, oneElementNeverAllocates)
{
  const KyHeapUse use = heapUseOf(
      []
      {
        KyCInventoryAddress address(BOARD);
        address = NAME[3];
        KyCInventoryAddress copy(address);
        KyCInventoryAddress moved(std::move(copy));
        address.clear();
        address.append(moved);
        address.resize(1);
        address.removePrefix(moved);
        address = KyCInventoryAddress() / moved.getFirstElement() / KyCInventoryAddress();
        address.removeSuffixElements(1);
      });
  EXPECT_EQ(use, NOTHING);
}

TEST_F(KyCInventoryAddressCost, comparisonsAndQueriesNeverAllocate)
{
  const KyCInventoryAddress address = DEVICE / BOARD[2] / NAME;
  const KyCInventoryAddress other = DEVICE / BOARD[3] / NAME;
  unsigned int sum = 0;
  const KyHeapUse use = heapUseOf(
      [&]
      {
        sum += address == other ? 1u : 0u;
        sum += address != other ? 1u : 0u;
        sum += address.isPrefix(other) ? 1u : 0u;
        sum += address.getFirstElement().getCategory() + address.getLastElement().getIndex();
        sum += address.getCategory() + address.getIndex() + address.getLength();
        sum += static_cast<unsigned int>(*address.getCategoryNameCStr());
      });
  EXPECT_EQ(use, NOTHING);
  EXPECT_NE(sum, 0u);
}

TEST_F(KyCInventoryAddressCost, copyOfALongAddressAllocatesOnce)
{
  const KyCInventoryAddress address = DEVICE / BOARD[2] / NAME;
  EXPECT_EQ(heapUseOf([&] { const KyCInventoryAddress copy(address); }), (KyHeapUse{1, 0, 1}));
  KyCInventoryAddress target = NAME / NAME;
  EXPECT_EQ(heapUseOf([&] { target = address; }), (KyHeapUse{1, 0, 1}));
}

TEST_F(KyCInventoryAddressCost, copyOfAShortenedAddressNeedsNoHeap)
{
  KyCInventoryAddress address = DEVICE / BOARD[2] / NAME;
  address.removeSuffixElements(2);
  EXPECT_EQ(heapUseOf([&] { const KyCInventoryAddress copy(address); }), NOTHING);
}

TEST_F(KyCInventoryAddressCost, movingNeverAllocates)
{
  KyCInventoryAddress address = DEVICE / BOARD[2] / NAME;
  EXPECT_EQ(heapUseOf(
                [&]
                {
                  KyCInventoryAddress moved(std::move(address));
                  address = std::move(moved);
                }),
            NOTHING);
}

TEST_F(KyCInventoryAddressCost, joiningAllocatesOncePerResult)
{
  const KyCInventoryAddress head = DEVICE / BOARD[2];
  const KyCInventoryAddress tail = BOARD / NAME;
  EXPECT_EQ(heapUseOf([&] { const KyCInventoryAddress path = head / tail; }), (KyHeapUse{1, 0, 1}));
  EXPECT_EQ(heapUseOf([&] { const KyCInventoryAddress sub = (head / tail).getSubAddress(); }), (KyHeapUse{2, 0, 2}));
}

TEST_F(KyCInventoryAddressCost, everyAppendToALongAddressReallocatesToTheExactSize)
{
  KyCInventoryAddress address = DEVICE / BOARD;
  EXPECT_EQ(heapUseOf(
                [&]
                {
                  for (int n = 0; n < 10; ++n)
                    address.append(NAME);
                }),
            (KyHeapUse{0, 10, 0}));
}

TEST_F(KyCInventoryAddressCost, readingATextAllocatesTheArrayAtOnce)
{
  const KyCString one("BOARD[2]/");
  const KyCString three("DEVICE/BOARD[2]NAME");
  EXPECT_EQ(heapUseOf(
                [&]
                {
                  KyCInventoryAddress address;
                  address.readFromString(one);
                }),
            NOTHING);
  EXPECT_EQ(heapUseOf(
                [&]
                {
                  KyCInventoryAddress address;
                  address.readFromString(three);
                }),
            (KyHeapUse{1, 0, 1}));
}

TEST_F(KyCInventoryAddressCost, withoutMemoryAReadTextGivesTheEmptyAddress)
{
  const KyCString text("DEVICE/BOARD[2]/NAME");
  KyCInventoryAddress address = DEVICE / NAME;
  s_outOfMemory = true;
  address.readFromString(text);
  s_outOfMemory = false;
  EXPECT_TRUE(address.isEmpty());
  address.readFromString(text);
  EXPECT_EQ(address, DEVICE / BOARD[2] / NAME);
}

TEST_F(KyCInventoryAddressCost, withoutMemoryTheTextFormThrows)
{
  const KyCInventoryAddress address = DEVICE / BOARD[2] / NAME;
  EXPECT_TRUE(throwsBadAlloc([&] { address.toString(); }));
  EXPECT_TRUE(throwsBadAlloc([&] { address.print(); }));
}

TEST_F(KyCInventoryAddressCost, withoutMemoryGrowingThrowsAndLeavesTheAddress)
{
  for (const KyCInventoryAddress& before : {BOARD, DEVICE / BOARD})
  {
    KyCInventoryAddress address = before;
    EXPECT_TRUE(throwsBadAlloc([&] { address.append(NAME); }));
    EXPECT_TRUE(throwsBadAlloc([&] { address.resize(10); }));
    EXPECT_TRUE(throwsBadAlloc([&] { address / NAME; }));
    EXPECT_EQ(address, before);
  }
}

TEST_F(KyCInventoryAddressCost, withoutMemoryCopyingALongAddressThrows)
{
  const KyCInventoryAddress source = DEVICE / BOARD / NAME;
  KyCInventoryAddress target = BOARD / NAME;
  EXPECT_TRUE(throwsBadAlloc([&] { const KyCInventoryAddress copy = source; }));
  EXPECT_TRUE(throwsBadAlloc([&] { source[2]; }));
  EXPECT_TRUE(throwsBadAlloc([&] { source.getSubAddress(); }));
  EXPECT_TRUE(throwsBadAlloc([&] { source.getHeadAddress(); }));
  EXPECT_TRUE(throwsBadAlloc([&] { target = source; }));
  EXPECT_TRUE(target.isEmpty());
}
