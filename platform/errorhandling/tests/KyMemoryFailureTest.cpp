// KyMemoryFailureTest.cpp: what remains when malloc fails: the count grows, nothing throws, nothing is torn.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "KyErrorHandlingSupport.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KY_OWN_MALLOC 0
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KY_OWN_MALLOC 0
#endif
#ifndef KY_OWN_MALLOC
#define KY_OWN_MALLOC 1
#endif

namespace
{
unsigned int s_allocationsToFailure = 0;    // 0: none is to fail

// The n-th allocation from here on fails, n = 1, 2, ..., and with forEver all behind it.
class KyFailingMalloc
{
public:
  explicit KyFailingMalloc(unsigned int n, bool forEver = false)
  {
    s_forEver = forEver;
    s_hit = false;
    s_allocationsToFailure = n;
  }
  ~KyFailingMalloc() { s_allocationsToFailure = 0; }
  bool wasHit() const { return s_hit; }

  static bool mustFail()
  {
    if (s_allocationsToFailure == 0) return false;
    if (s_allocationsToFailure > 1)
    {
      --s_allocationsToFailure;
      return false;
    }
    s_hit = true;
    if (!s_forEver) s_allocationsToFailure = 0;
    return true;
  }

private:
  static bool s_forEver;
  static bool s_hit;
};
bool KyFailingMalloc::s_forEver = false;
bool KyFailingMalloc::s_hit = false;
}    // namespace

#if KY_OWN_MALLOC
// The C library's own allocator under the names that it has besides malloc and realloc.
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);
  __attribute__((visibility("default"))) void* malloc(std::size_t size)
  {
    return KyFailingMalloc::mustFail() ? nullptr : __libc_malloc(size);
  }
  __attribute__((visibility("default"))) void* realloc(void* block, std::size_t size)
  {
    return KyFailingMalloc::mustFail() ? nullptr : __libc_realloc(block, size);
  }
}
#define KY_NEEDS_OWN_MALLOC() static_cast<void>(0)
#else
#define KY_NEEDS_OWN_MALLOC() GTEST_SKIP() << "the sanitizer's malloc cannot be made to fail"
#endif

TEST(KyMemoryFailure, setErrorCountsAlsoWithoutMemory)
{
  KY_NEEDS_OWN_MALLOC();
  KyCErrorListPool pool;
  {
    const KyFailingMalloc failing(1, true);
    for (int n = 0; n < 10; ++n)
      pool.setError(1, 1, "work", "%s", "argument");
  }
  EXPECT_EQ(pool.getErrorCount(), 10u);
  EXPECT_EQ(pool.getEntryCount(), 0u);
  pool.setError(2, 1, "later", nullptr);
  EXPECT_EQ(pool.getErrorCount(), 11u);
  EXPECT_EQ(pool.getEntryCount(), 1u);
}

TEST(KyMemoryFailure, anyAllocationOfSetErrorMayFailAndTheOtherEntriesStay)
{
  KY_NEEDS_OWN_MALLOC();
  // Code of the report that is lost when the allocation of that place fails: each report takes a block, and those of
  // code 0, 4 and 8 a larger array behind it.
  const unsigned int lost[] = {0, 0, 1, 2, 3, 4, 4, 5, 6, 7, 8, 8, 9};
  unsigned int n = 1;
  for (unsigned int lostCode : lost)
  {
    KyCErrorListPool pool;
    {
      const KyFailingMalloc failing(n++);
      for (unsigned int code = 0; code < 10; ++code)
        pool.setError(code, 1, "work", nullptr);
      EXPECT_TRUE(failing.wasHit());
    }
    EXPECT_EQ(pool.getErrorCount(), 10u);
    ASSERT_EQ(pool.getEntryCount(), 9u);
    for (unsigned int entry = 0; entry < 9; ++entry)
    {
      EXPECT_EQ(pool.getEntry(entry).code, entry < lostCode ? entry : entry + 1) << "allocation " << n - 1;
    }
  }
}

TEST(KyMemoryFailure, createErrorListGivesNull)
{
  KY_NEEDS_OWN_MALLOC();
  KyCErrorManager& created = manager();
  KyCErrorListPool* list = nullptr;
  {
    const KyFailingMalloc failing(1);
    list = created.createErrorList(0, 1, 20, 5, 300);
  }
  EXPECT_EQ(list, nullptr);
}

TEST(KyMemoryFailure, createErrorListDoesWithoutItsReserve)
{
  KY_NEEDS_OWN_MALLOC();
  KyCErrorManager& created = manager();
  KyCErrorListPool* list = nullptr;
  {
    const KyFailingMalloc failing(2);
    list = created.createErrorList(0, 1, 20, 5, 300);
  }
  ASSERT_NE(list, nullptr);
  list->setError(1, 1, "work", nullptr);
  EXPECT_EQ(list->getEntryCount(), 1u);
  manager().deleteErrorList(*list);
}

TEST(KyMemoryFailure, aTableThatCannotBeRegisteredLeavesTheOthersAlone)
{
  KY_NEEDS_OWN_MALLOC();
  static const char* const messages[] = {"text"};
  static const unsigned int boundaries[] = {0, 1};
  static const KyResText table{messages, boundaries, 1, 0x3000000};
  const KyTestTable other(0x3010000, "other");
  for (int n = 0; n < 100; ++n)
    manager()._registerMessages(&table);    // until the array is full again and again
  {
    const KyFailingMalloc failing(1, true);
    for (int n = 0; n < 100; ++n)
      manager()._registerMessages(&table);
  }
  KyCErrorListPool pool;
  pool.setError(0x3000000, 1, "work", nullptr);
  pool.setError(0x3010000, 1, "work", nullptr);
  EXPECT_STREQ(pool.getEntry(0).text, "text");
  EXPECT_STREQ(pool.getEntry(1).text, "other");
  for (int n = 0; n < 200; ++n)
    manager()._unregisterMessages(&table);
  pool.setError(0x3000000, 1, "work", nullptr);
  EXPECT_STREQ(pool.getEntry(2).text, "Message 0x3000000");
}

TEST(KyMemoryFailure, aWarningArrivesWithoutItsText)
{
  KY_NEEDS_OWN_MALLOC();
  struct KyCSmallListener : KyIErrorListener    // remembers without asking for memory
  {
    void onError(const KyErrorEntry&) override {}
    void onWarning(const KyErrorEntry& entry) override
    {
      code = entry.code;
      line = entry.line;
      function = entry.function;
      isTextEmpty = entry.text[0] == '\0';
    }
    unsigned int code = 0;
    unsigned int line = 0;
    const char* function = nullptr;
    bool isTextEmpty = false;
  } listener;
  KyIErrorListener* const before = manager().setListener(&listener);
  {
    const KyFailingMalloc failing(1, true);
    manager().sendWarning(17, 5, "warn", "%s", "argument");
  }
  manager().setListener(before);
  EXPECT_EQ(listener.code, 17u);
  EXPECT_EQ(listener.line, 5u);
  EXPECT_STREQ(listener.function, "warn");
  EXPECT_TRUE(listener.isTextEmpty);
}

TEST(KyMemoryFailure, aPoolAllocationThatFailsForLackOfMemoryIsCountedEvenIfItCannotBeDescribed)
{
  KY_NEEDS_OWN_MALLOC();
  KyCErrorListPool pool;
  void* block = &pool;
  {
    const KyFailingMalloc failing(1, true);
    block = operator new(8, pool);
  }
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(pool.getErrorCount(), 1u);
  EXPECT_EQ(pool.getEntryCount(), 0u);
}

// Needs no failing malloc: a text of 2^48 bytes is more than any address space of today has.
TEST(KyMemoryFailure, aTextLargerThanTheAddressSpaceIsCountedOnly)
{
  std::string message;
  for (int n = 0; n < 1 << 24; ++n)
    message += "%1";
  const std::string argument(1 << 24, 'x');
  const KyTestTable table(0x3000000, message.c_str());
  KyCErrorListPool pool;
  pool.setError(0x3000000, 1, "work", "%s", argument.c_str());
  EXPECT_EQ(pool.getErrorCount(), 1u);
  EXPECT_EQ(pool.getEntryCount(), 0u);
}
