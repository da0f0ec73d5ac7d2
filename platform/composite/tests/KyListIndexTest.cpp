// KyListIndexTest.cpp: the index of long lists by itself, and lists whose index finds no memory.
//
// Replaces the global allocation functions by ones that can be told to fail.
#include "KyListIndex.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "KyTestNode.h"
#include "support/KyTestPool.h"

namespace
{

unsigned int s_allocationsLeft = 0xFFFFFFFFu;    // until all fail

void* allocate(std::size_t size) noexcept
{
  if (s_allocationsLeft == 0) return nullptr;
  if (s_allocationsLeft != 0xFFFFFFFFu) --s_allocationsLeft;
  return std::malloc(size != 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size)
{
  void* const block = allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

// Lets the first `left` allocations pass and makes all others fail.
class KyAllocationLimit
{
public:
  explicit KyAllocationLimit(unsigned int left) { s_allocationsLeft = left; }
  ~KyAllocationLimit() { s_allocationsLeft = 0xFFFFFFFFu; }
};

}    // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

TEST(KyListIndex, isEmptyAfterReserve)
{
  KyCListIndex index;
  ASSERT_TRUE(index.reserve(0));
  EXPECT_EQ(0u, index.count());
  EXPECT_EQ(nullptr, index.findFirst(0));
  EXPECT_EQ(nullptr, index.at(0));
}

TEST(KyListIndex, answersLikeAVectorUnderRandomChanges)
{
  struct TEntry
  {
    std::uint64_t key;
  };
  for (const unsigned int keys : {1u, 2u, 10u, 100000u})
  {
    std::uint64_t state = keys;
    const auto random = [&state](std::size_t limit)
    {
      state = state * 6364136223846793005u + 1442695040888963407u;
      return static_cast<std::size_t>(state >> 33) % limit;
    };
    KyCListIndex index;
    ASSERT_TRUE(index.reserve(4));
    std::vector<TEntry> storage(400);
    std::vector<TEntry*> unused;
    for (TEntry& entry : storage)
      unused.push_back(&entry);
    std::vector<TEntry*> list;
    for (unsigned int step = 0; step < 40000; ++step)
    {
      const std::size_t action = random(10);
      if (action < 4 && !unused.empty())
      {
        const std::size_t n = random(unused.size());
        TEntry* const entry = unused[n];
        unused.erase(unused.begin() + static_cast<std::ptrdiff_t>(n));
        entry->key = random(keys);
        ASSERT_TRUE(index.append(entry, entry->key));
        list.push_back(entry);
      }
      else if (action < 7 && !list.empty())
      {
        const std::size_t n = random(list.size());
        TEntry* const entry = list[n];
        ASSERT_EQ(n == 0 ? nullptr : list[n - 1], index.predecessor(entry, entry->key));
        index.remove(entry, entry->key);
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(n));
        unused.push_back(entry);
      }
      else if (action == 7 && !list.empty())
      {
        TEntry* const entry = list[random(list.size())];
        const std::uint64_t oldKey = entry->key;
        entry->key = random(keys);
        index.changeKey(entry, oldKey, entry->key);
      }
      else if (action == 8)
      {
        const std::size_t n = random(list.size() + 2);
        ASSERT_EQ(n < list.size() ? list[n] : nullptr, index.at(static_cast<unsigned int>(n)));
      }
      const std::uint64_t wanted = random(keys);
      TEntry* expected = nullptr;
      for (std::size_t n = 0; n < list.size() && expected == nullptr; ++n)
        if (list[n]->key == wanted) expected = list[n];
      ASSERT_EQ(expected, index.findFirst(wanted));
      ASSERT_EQ(list.size(), index.count());
    }
  }
}

TEST(KyListIndex, tellsKeysOf64BitsApart)
{
  KyCListIndex index;
  ASSERT_TRUE(index.reserve(8));
  int entries[4];
  const std::uint64_t keys[] = {0, 0xFFFFFFFF, 0xFFFFFFFF00000000, 0xFFFFFFFFFFFFFFFF};
  for (unsigned int n = 0; n < 4; ++n)
    ASSERT_TRUE(index.append(&entries[n], keys[n]));
  for (unsigned int n = 0; n < 4; ++n)
    EXPECT_EQ(&entries[n], index.findFirst(keys[n]));
  EXPECT_EQ(nullptr, index.findFirst(0x100000000));
}

// A key that counts up from 1 is looked for at its place before it is looked up.
TEST(KyListIndex, aKeyAtItsCountedPlaceIsFoundOnlyWhileItIsTheFirstOne)
{
  KyCListIndex index;
  ASSERT_TRUE(index.reserve(40));
  int entries[40];
  for (unsigned int n = 0; n < 40; ++n)
    ASSERT_TRUE(index.append(&entries[n], n + 1));
  EXPECT_EQ(&entries[0], index.findFirst(1));
  EXPECT_EQ(&entries[4], index.findFirst(5));
  EXPECT_EQ(&entries[39], index.findFirst(40));
  EXPECT_EQ(nullptr, index.findFirst(41));
  EXPECT_EQ(nullptr, index.findFirst(0));
  EXPECT_EQ(nullptr, index.findFirst(std::uint64_t{1} << 32 | 5));

  index.changeKey(&entries[29], 30, 5);    // behind it
  EXPECT_EQ(&entries[4], index.findFirst(5));
  EXPECT_EQ(nullptr, index.findFirst(30));
  index.changeKey(&entries[2], 3, 5);    // in front of it
  EXPECT_EQ(&entries[2], index.findFirst(5));
  index.remove(&entries[2], 5);
  EXPECT_EQ(&entries[4], index.findFirst(5));
  index.remove(&entries[4], 5);
  EXPECT_EQ(&entries[29], index.findFirst(5));
  ASSERT_TRUE(index.append(&entries[4], 5));    // to the end
  EXPECT_EQ(&entries[29], index.findFirst(5));
  index.remove(&entries[29], 5);
  EXPECT_EQ(&entries[4], index.findFirst(5));
}

TEST(KyListIndex, theEntryAtTheCountedPlaceIsGuessedWhileNoTwoShareAKey)
{
  KyCListIndex index;
  ASSERT_TRUE(index.reserve(40));
  int entries[40];
  for (unsigned int n = 0; n < 40; ++n)
    ASSERT_TRUE(index.append(&entries[n], n + 1));
  EXPECT_EQ(&entries[0], index.guess(1));
  EXPECT_EQ(&entries[39], index.guess(40));
  EXPECT_EQ(nullptr, index.guess(0));
  EXPECT_EQ(nullptr, index.guess(41));

  index.changeKey(&entries[29], 30, 300);    // stays at its place
  EXPECT_EQ(&entries[29], index.guess(30));
  index.remove(&entries[29], 300);
  EXPECT_EQ(nullptr, index.guess(30));
  EXPECT_EQ(&entries[30], index.guess(31));

  index.changeKey(&entries[2], 3, 5);    // the first one of key 5 is not at place 5 now
  EXPECT_EQ(nullptr, index.guess(5));
  EXPECT_EQ(nullptr, index.guess(1));
  EXPECT_EQ(&entries[2], index.findFirst(5));
}

// Entries behind the first of a key are found through a table that is made when it is first asked for.
TEST(KyListIndex, findsEntriesOfOneKeyWithoutMemoryForTheirTable)
{
  std::vector<int> entries(10);
  KyCListIndex index;
  ASSERT_TRUE(index.reserve(10));
  for (int& entry : entries)
    ASSERT_TRUE(index.append(&entry, 7));
  const KyAllocationLimit limit(0);
  EXPECT_EQ(&entries[7], index.predecessor(&entries[8], 7));
  index.remove(&entries[8], 7);
  index.changeKey(&entries[5], 7, 8);
  EXPECT_EQ(&entries[7], index.predecessor(&entries[9], 7));
  EXPECT_EQ(&entries[5], index.findFirst(8));
  EXPECT_EQ(&entries[0], index.findFirst(7));
  EXPECT_EQ(9u, index.count());
}

TEST(KyListIndex, reserveAndAppendReportMissingMemory)
{
  KyCListIndex index;
  for (unsigned int left = 0; left < 2; ++left)
  {
    const KyAllocationLimit limit(left);
    EXPECT_FALSE(index.reserve(100));
  }
  EXPECT_FALSE(index.reserve(0xFFFFFFFFu));
  ASSERT_TRUE(index.reserve(32));
  int entries[64];
  unsigned int appended = 0;
  {
    const KyAllocationLimit limit(0);
    while (appended < 64 && index.append(&entries[appended], appended))
      ++appended;
  }
  EXPECT_EQ(32u, appended);
}

// ---- Lists without memory for an index answer the same, and report nothing ----

TEST(KyCCompositeWithoutIndex, findsChildrenByWalking)
{
  for (unsigned int left = 0; left < 4; ++left)
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    std::vector<KyTestNode*> children;
    for (unsigned int n = 0; n < 100; ++n)
    {
      children.push_back(new (pool) KyTestNode(pool, n % 50, 1, nullptr));
      root.attach(children.back());
    }
    const KyAllocationLimit limit(left);
    EXPECT_EQ(children[40], root.findChild(40, 1));
    EXPECT_EQ(nullptr, root.findChild(40, 2));
    children[90]->setIds(777, 1);
    EXPECT_EQ(children[90], root.findChild(777, 1));
    root.detachChild(children[40]);
    EXPECT_EQ(nullptr, root.findChild(888, 1));
    delete children[40];
    EXPECT_NO_REPORTS(pool);
  }
}

TEST(KyCCompositeWithoutIndex, findsAndRemovesParametersByWalking)
{
  for (unsigned int left = 0; left < 4; ++left)
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    std::vector<KyTestParam*> parameters;
    for (unsigned int n = 0; n < 100; ++n)
      parameters.push_back(new (pool) KyTestParam(pool, n));
    {
      const KyAllocationLimit limit(left);
      for (KyTestParam* parameter : parameters)
        root.addParameter(pool, parameter);
      EXPECT_EQ(parameters[80], root.getParameterById(80));
      EXPECT_EQ(parameters[80], root.getParameterByIndex(80));
      EXPECT_EQ(nullptr, root.getParameterByIndex(100));
      EXPECT_EQ(parameters[60], root.removeParameter(pool, 60));
      EXPECT_EQ(parameters[61], root.getParameterByIndex(60));
      delete parameters[99];
      EXPECT_EQ(parameters[98], root.getParameterByIndex(98 - 1));
      EXPECT_EQ(nullptr, root.getParameterByIndex(98));
    }
    delete parameters[60];
    EXPECT_NO_REPORTS(pool);
  }
}

TEST(KyCCompositeWithoutIndex, losesTheIndexThatCannotGrowAndGoesOn)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  std::vector<KyTestParam*> parameters;
  for (unsigned int n = 0; n < 500; ++n)
    parameters.push_back(new (pool) KyTestParam(pool, n));
  for (unsigned int n = 0; n < 100; ++n)
    root.addParameter(pool, parameters[n]);
  EXPECT_EQ(parameters[99], root.getParameterById(99));
  {
    const KyAllocationLimit limit(0);
    for (unsigned int n = 100; n < 500; ++n)
      root.addParameter(pool, parameters[n]);
    for (unsigned int n = 0; n < 500; ++n)
      ASSERT_EQ(parameters[n], root.getParameterById(n));
  }
  for (unsigned int n = 0; n < 500; ++n)
    ASSERT_EQ(parameters[n], root.getParameterById(n));
  EXPECT_NO_REPORTS(pool);
}

// ---- Operations that have no pool throw, and change nothing ----

TEST(KyCStringWithoutMemory, throwsAndStaysAsItWas)
{
  KyCString small("before");
  KyCString large("before, and long");
  const KyCString shared = large;
  const KyAllocationLimit limit(0);
  EXPECT_THROW(KyCString("a text of many characters"), std::bad_alloc);
  EXPECT_THROW(KyCString("a text of many characters", 20), std::bad_alloc);
  EXPECT_THROW(small = "a text of many characters", std::bad_alloc);
  EXPECT_THROW(large = "a text of many characters", std::bad_alloc);
  EXPECT_THROW(small += "a text of many characters", std::bad_alloc);
  EXPECT_THROW(large += "!", std::bad_alloc);
  EXPECT_THROW(large += large, std::bad_alloc);
  EXPECT_THROW(small += 12345678u, std::bad_alloc);
  EXPECT_THROW(small + large, std::bad_alloc);
  EXPECT_THROW(small + "!", std::bad_alloc);
  EXPECT_STREQ("before", small.c_str());
  EXPECT_STREQ("before, and long", large.c_str());
  const KyCString copy = large;    // needs none
  EXPECT_STREQ("before, and long", copy.c_str());
  EXPECT_EQ(copy.c_str(), shared.c_str());
}

TEST(KyCParamWithoutMemory, copyAndAssignmentThrowAndChangeNothing)
{
  KyTestPool pool;
  const KyCParam source(pool, 1, "a description", 0, KyCVersion(1, 2, 3, 4), nullptr);
  KyCParam target(pool, 2, "the target's description", 0, KyCString("the target's value"), nullptr);
  for (unsigned int left = 0; left < 2; ++left)
  {
    const KyAllocationLimit limit(left);
    EXPECT_THROW(KyCParam copy(source), std::bad_alloc);
  }
  for (unsigned int left = 0; left < 2; ++left)
  {
    const KyAllocationLimit limit(left);
    EXPECT_THROW(target = source, std::bad_alloc);
  }
  EXPECT_EQ(2u, target.getId());
  EXPECT_STREQ("the target's description", target.getDescription());
  EXPECT_STREQ("the target's value", target.getValueConstChar(pool));
  {
    const KyAllocationLimit limit(2);    // description and version
    target = source;
  }
  EXPECT_STREQ("a description", target.getDescription());
  EXPECT_EQ(KyCVersion(1, 2, 3, 4), target.getValueKyCVersion(pool));
  EXPECT_NO_REPORTS(pool);
}
