// KyCErrorListTest.cpp: recording, counting and reading errors.
#include "errorhandling/KyCErrorList.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

#include "KyErrorHandlingSupport.h"
#include "support/KyTestPool.h"

TEST(KyCErrorList, aNewListIsEmpty)
{
  const KyCErrorList list;
  EXPECT_EQ(list.getErrorCount(), 0u);
  EXPECT_EQ(list.getEntryCount(), 0u);
}

TEST(KyCErrorList, aPoolIsAListAndNeedsNoArguments)
{
  KyCErrorListPool pool;
  KyCErrorList& list = pool;
  list.setError(0x3000000, 1, "add", nullptr);
  EXPECT_EQ(pool.getErrorCount(), 1u);
}

TEST(KyCErrorList, setErrorRecordsCodeLineFunctionAndText)
{
  const KyTestTable table(0x3000000, "Cannot do it.");
  KyCErrorListPool pool;
  pool.setError(0x3000000, 57, "doIt", nullptr);
  ASSERT_EQ(pool.getEntryCount(), 1u);
  const KyErrorEntry& entry = pool.getEntry(0);
  EXPECT_EQ(entry.code, 0x3000000u);
  EXPECT_EQ(entry.line, 57u);
  EXPECT_STREQ(entry.function, "doIt");
  EXPECT_STREQ(entry.text, "Cannot do it.");
}

TEST(KyCErrorList, entriesStandInTheOrderOfRecording)
{
  const KyTestTable table(0x3000000, {"first", "second"}, {0, 2});
  KyTestPool pool;
  pool.setError(0x3000001, 2, "b", nullptr);
  pool.setError(0x3000000, 1, "a", nullptr);
  EXPECT_REPORTS(pool, {0x3000001, "b", "second"}, {0x3000000, "a", "first"});
}

TEST(KyCErrorList, countGrowsByOneWithEveryError)
{
  KyCErrorListPool pool;
  for (unsigned int n = 0; n < 1000; ++n)
  {
    EXPECT_EQ(pool.getErrorCount(), n);
    EXPECT_EQ(pool.getEntryCount(), n);
    pool.setError(n, n, "loop", nullptr);
  }
  EXPECT_EQ(pool.getEntry(0).code, 0u);
  EXPECT_EQ(pool.getEntry(999).code, 999u);
  EXPECT_EQ(pool.getEntry(999).line, 999u);
}

TEST(KyCErrorList, anEntryStaysWhereItIsWhenMoreAreRecorded)
{
  KyCErrorListPool pool;
  pool.setError(1, 1, "first", nullptr);
  const KyErrorEntry* const entry = &pool.getEntry(0);
  const char* const text = entry->text;
  for (unsigned int n = 0; n < 100; ++n)
    pool.setError(2, 2, "more", nullptr);
  EXPECT_EQ(&pool.getEntry(0), entry);
  EXPECT_EQ(pool.getEntry(0).text, text);
}

TEST(KyCErrorList, getEntryBehindTheEndGivesAnEmptyEntry)
{
  KyCErrorListPool pool;
  pool.setError(1, 1, "only", nullptr);
  for (unsigned int n : {1u, 2u, 0xFFFFFFFFu})
  {
    EXPECT_EQ(pool.getEntry(n).code, 0u);
    EXPECT_EQ(pool.getEntry(n).line, 0u);
    EXPECT_STREQ(pool.getEntry(n).function, "");
    EXPECT_STREQ(pool.getEntry(n).text, "");
  }
}

TEST(KyCErrorList, getEntryOfAnEmptyListGivesAnEmptyEntry)
{
  const KyCErrorList list;
  EXPECT_EQ(list.getEntry(0).code, 0u);
  EXPECT_STREQ(list.getEntry(0).text, "");
}

TEST(KyCErrorList, aNullFunctionReadsAsAnEmptyOne)
{
  KyTestPool pool;
  pool.setError(0x3000000, 1, nullptr, nullptr);
  ASSERT_EQ(pool.getEntryCount(), 1u);
  EXPECT_STREQ(pool.getEntry(0).function, "");
  pool.takeReports();
}

TEST(KyCErrorList, functionNameAndArgumentsAreCopied)
{
  const KyTestTable table(0x3000000, "Got %1.");
  KyTestPool pool;
  std::string function = "compute";
  std::string argument = "value";
  pool.setError(0x3000000, 1, function.c_str(), "%s", argument.c_str());
  function.assign("XXXXXXX");
  argument.assign("YYYYY");
  EXPECT_REPORTS(pool, {0x3000000, "compute", "Got value."});
}

TEST(KyCErrorList, differentListsKnowNothingOfEachOther)
{
  KyCErrorListPool one;
  KyCErrorListPool other;
  one.setError(1, 1, "one", nullptr);
  EXPECT_EQ(one.getErrorCount(), 1u);
  EXPECT_EQ(other.getErrorCount(), 0u);
}

TEST(KyCErrorList, extremeCodesAndLinesAreKept)
{
  KyTestPool pool;
  pool.setError(0xFFFFFFFFu, 0xFFFFFFFFu, "edge", nullptr);
  EXPECT_EQ(pool.getEntry(0).line, 0xFFFFFFFFu);
  pool.setError(0, 0, "edge", nullptr);
  EXPECT_EQ(pool.getEntry(1).line, 0u);
  EXPECT_REPORTS(pool, {0xFFFFFFFFu, "edge", "Message 0xFFFFFFFF"}, {0, "edge", "Message 0x0"});
}

// The call convention that comparing the count before and after a call relies on.
TEST(KyCErrorList, aFailedCallShowsAsAGrownCount)
{
  KyTestPool pool;
  const unsigned int before = pool.getErrorCount();
  EXPECT_EQ(pool.getErrorCount(), before);
  pool.setError(0x3000000, 1, "callee", nullptr);
  EXPECT_GT(pool.getErrorCount(), before);
  pool.setError(0x3000001, 1, "caller", nullptr);
  EXPECT_REPORTS(pool, {0x3000000, "callee", ""}, {0x3000001, "caller", ""});
}
