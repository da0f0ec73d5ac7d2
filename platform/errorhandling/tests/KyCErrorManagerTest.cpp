// KyCErrorManagerTest.cpp: the manager's lists and message tables, and what it sends.
#include "errorhandling/KyCErrorManager.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "KyErrorHandlingSupport.h"
#include "support/KyRegisteredText.h"
#include "support/KyTestPool.h"

static_assert(!std::is_copy_constructible<KyCErrorManager>::value && !std::is_destructible<KyCErrorManager>::value,
              "one manager, which nobody deletes");
static_assert(offsetof(KyResText, messages) == 0 && offsetof(KyResText, groupBoundaries) == sizeof(void*) &&
                  offsetof(KyResText, groupCount) == 2 * sizeof(void*) &&
                  offsetof(KyResText, codeBase) == 2 * sizeof(void*) + 4,
              "registration record");
static_assert(sizeof(void*) != 4 || sizeof(KyResText) == 16, "registration record on x86");

TEST(KyCErrorManager, getSingletonGivesTheSameManagerAndSetsThePointer)
{
  KyCErrorManager* const singleton = KyCErrorManager::getSingleton();
  ASSERT_NE(singleton, nullptr);
  EXPECT_EQ(KyCErrorManager::getSingleton(), singleton);
  EXPECT_EQ(KyCErrorManager::s_pErrorManager, singleton);
}

TEST(KyCErrorManager, masterListIsAlwaysTheSame)
{
  const KyCErrorManager& constant = manager();
  EXPECT_EQ(&constant.getMasterErrorList(), &manager().getMasterErrorList());
}

TEST(KyCErrorManager, masterListIsSentLikeAnyOther)
{
  KyWritingListener listener;
  KyCErrorListPool& master = manager().getMasterErrorList();
  const unsigned int before = master.getErrorCount();
  master.setError(0x3000000, 5, "add", "%s", "BOARD");
  manager().sendErrorList(master, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 50331648 from add, line 5: Message 0x3000000 (BOARD)"});
  EXPECT_EQ(master.getErrorCount(), before + 1);
  EXPECT_EQ(master.getEntryCount(), 0u);
}

TEST(KyCErrorManager, createErrorListGivesAFreshEmptyListEachTime)
{
  KyCErrorListPool* const one = manager().createErrorList(0, 1, 20, 5, 300);
  KyCErrorListPool* const other = manager().createErrorList(0, 1, 20, 5, 300);
  ASSERT_NE(one, nullptr);
  ASSERT_NE(other, nullptr);
  EXPECT_NE(one, other);
  EXPECT_EQ(one->getErrorCount(), 0u);
  EXPECT_EQ(one->getEntryCount(), 0u);
  one->setError(1, 1, "one", nullptr);
  EXPECT_EQ(other->getErrorCount(), 0u);
  manager().deleteErrorList(*one);
  manager().deleteErrorList(*other);
}

TEST(KyCErrorManager, sizesGivenToCreateErrorListLimitNothing)
{
  for (unsigned int size : {0u, 1u, 0xFFFFFFFFu})
  {
    KyCErrorListPool* const list = manager().createErrorList(7, 8, size, size, size);
    ASSERT_NE(list, nullptr);
    for (int n = 0; n < 50; ++n)
      list->setError(0x3000000, 1, "fill", "%s%d", "a text longer than a byte", n);
    EXPECT_EQ(list->getEntryCount(), 50u);
    EXPECT_STREQ(list->getEntry(49).text, "Message 0x3000000 (a text longer than a byte, 49)");
    manager().deleteErrorList(*list);
  }
}

TEST(KyCErrorManager, deleteErrorListDropsTheErrorsUnreported)
{
  KyWritingListener listener;
  KyCErrorListPool* const list = manager().createErrorList(0, 1, 20, 5, 300);
  list->setError(1, 1, "dropped", nullptr);
  manager().deleteErrorList(*list);
  EXPECT_EQ(listener.take(), KyLines{});
}

TEST(KyCErrorManager, createdListsMayBeDeletedInAnyOrder)
{
  std::vector<KyCErrorListPool*> lists;
  for (unsigned int n = 0; n < 5; ++n)
    lists.push_back(manager().createErrorList(n, n, 1, 1, 1));
  for (unsigned int n : {2u, 4u, 0u, 3u, 1u})
    manager().deleteErrorList(*lists[n]);
}

TEST(KyCErrorManager, createdListsThatNobodyDeletesAreFreedAtTheEnd)    // the leak sanitizer looks on
{
  KyCErrorListPool* const list = manager().createErrorList(0, 1, 20, 5, 300);
  list->setError(1, 1, "left", nullptr);
  EXPECT_EQ(list->getErrorCount(), 1u);
}

TEST(KyCErrorManager, deleteErrorListLeavesAForeignListUntouchedAndWarns)
{
  KyWritingListener listener;
  KyCErrorListPool pool;
  pool.setError(1, 1, "kept", nullptr);
  manager().deleteErrorList(pool);
  EXPECT_EQ(pool.getEntryCount(), 1u);
  EXPECT_STREQ(pool.getEntry(0).function, "kept");
  manager().deleteErrorList(manager().getMasterErrorList());

  const KyLines lines = listener.take();
  ASSERT_EQ(lines.size(), 2u);
  for (const std::string& line : lines)
  {
    EXPECT_EQ(line.find("warning 16777217 from deleteErrorList, line "), 0u) << line;
    EXPECT_NE(line.find(": Cannot delete an error list that the error manager did not create."), std::string::npos)
        << line;
  }
}

TEST(KyCErrorManager, sendErrorListReportsInOrderAndKeepsTheCount)
{
  KyWritingListener listener;
  KyCErrorListPool pool;
  pool.setError(17, 3, "add", "%d", 1);
  pool.setError(18, 4, "put", "%d", 2);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(),
            (KyLines{"error 17 from add, line 3: Message 0x11 (1)", "error 18 from put, line 4: Message 0x12 (2)"}));
  EXPECT_EQ(pool.getErrorCount(), 2u);
  EXPECT_EQ(pool.getEntryCount(), 0u);
  EXPECT_EQ(pool.getEntry(0).code, 0u);
}

TEST(KyCErrorManager, sendErrorListSendsEachErrorOnce)
{
  KyWritingListener listener;
  KyCErrorListPool pool;
  pool.setError(17, 3, "add", nullptr);
  manager().sendErrorList(pool, 0);
  listener.take();
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{});
  pool.setError(18, 4, "put", nullptr);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 18 from put, line 4: Message 0x12"});
  EXPECT_EQ(pool.getErrorCount(), 2u);
}

TEST(KyCErrorManager, sendErrorListOfAnEmptyListReportsNothing)
{
  KyWritingListener listener;
  KyCErrorListPool pool;
  for (int n = 0; n < 1064; ++n)
    manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{});
}

TEST(KyCErrorManager, sendErrorListTakesACreatedListToo)
{
  KyWritingListener listener;
  KyCErrorListPool* const list = manager().createErrorList(0, 1, 20, 5, 300);
  list->setError(17, 3, "add", nullptr);
  manager().sendErrorList(*list, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 17 from add, line 3: Message 0x11"});
  manager().deleteErrorList(*list);
}

TEST(KyCErrorManager, sendWarningReportsAtOnceWithItsText)
{
  const KyTestTable table(0x3000000, "Item %1 references %2.");
  KyWritingListener listener;
  manager().sendWarning(0x3000000, 9, "linkSharedData", "%s%s", "%2", "B");
  EXPECT_EQ(listener.take(), KyLines{"warning 50331648 from linkSharedData, line 9: Item %2 references B."});
}

TEST(KyCErrorManager, sendWarningTakesNullFunctionAndNoArguments)
{
  KyWritingListener listener;
  manager().sendWarning(17, 9, nullptr, nullptr);
  EXPECT_EQ(listener.take(), KyLines{"warning 17 from , line 9: Message 0x11"});
}

TEST(KyCErrorManager, sendWarningLeavesTheMasterListAlone)
{
  KyWritingListener listener;
  const unsigned int before = manager().getMasterErrorList().getErrorCount();
  manager().sendWarning(17, 9, "warn", nullptr);
  EXPECT_EQ(manager().getMasterErrorList().getErrorCount(), before);
}

TEST(KyCErrorManager, ownCatalogueIsKnownWithoutRegistration)
{
  EXPECT_EQ(registeredText(0x1000000), "Out of memory.");
  EXPECT_EQ(registeredText(0x1000001), "Cannot delete an error list that the error manager did not create.");
  EXPECT_EQ(registeredText(0x1000002), "Message 0x1000002");
  EXPECT_EQ(registeredText(0x1000800), "Message 0x1000800");
  EXPECT_EQ(registeredText(0xFFFFFF), "Message 0xFFFFFF");
}

TEST(KyCErrorManager, aCodeFollowsFromGroupAndPlace)
{
  const KyTestTable table(0x3000000, {"a0", "a1", "b0", "c0", "c1", "c2"}, {0, 2, 3, 6});
  EXPECT_EQ(registeredText(0x3000000), "a0");
  EXPECT_EQ(registeredText(0x3000001), "a1");
  EXPECT_EQ(registeredText(0x3000800), "b0");
  EXPECT_EQ(registeredText(0x3001000), "c0");
  EXPECT_EQ(registeredText(0x3001002), "c2");
}

TEST(KyCErrorManager, aCodeBesideAGroupHasNoText)
{
  const KyTestTable table(0x3000000, {"a0", "a1", "b0", "c0", "c1", "c2"}, {0, 2, 3, 6});
  EXPECT_EQ(registeredText(0x2FFFFFF), "Message 0x2FFFFFF");
  EXPECT_EQ(registeredText(0x3000002), "Message 0x3000002");    // not the next group's first message
  EXPECT_EQ(registeredText(0x30007FF), "Message 0x30007FF");
  EXPECT_EQ(registeredText(0x3000801), "Message 0x3000801");
  EXPECT_EQ(registeredText(0x3001003), "Message 0x3001003");
  EXPECT_EQ(registeredText(0x3001800), "Message 0x3001800");
  EXPECT_EQ(registeredText(0xFFFFFFFF), "Message 0xFFFFFFFF");
}

TEST(KyCErrorManager, anEmptyGroupKeepsItsCodes)
{
  const KyTestTable table(0x3000000, {"a0", "c0"}, {0, 1, 1, 2});
  EXPECT_EQ(registeredText(0x3000000), "a0");
  EXPECT_EQ(registeredText(0x3000800), "Message 0x3000800");
  EXPECT_EQ(registeredText(0x3001000), "c0");
}

TEST(KyCErrorManager, aTableAtTheEndOfTheCodesWorks)
{
  const KyTestTable table(0xFFFFFFFF, "last");
  EXPECT_EQ(registeredText(0xFFFFFFFF), "last");
  EXPECT_EQ(registeredText(0), "Message 0x0");
}

TEST(KyCErrorManager, aTableWithoutGroupsHasNoText)
{
  const KyTestTable table(0x3000000, {}, {0});
  EXPECT_EQ(registeredText(0x3000000), "Message 0x3000000");
}

TEST(KyCErrorManager, aWithdrawnTableHasNoTextsAnyMoreButRecordedReportsKeepTheirs)
{
  KyCErrorListPool pool;
  {
    const std::string text = "A text of the table, long enough to be on the heap.";
    const KyTestTable table(0x3000000, text.c_str());
    pool.setError(0x3000000, 1, "before", nullptr);
  }
  pool.setError(0x3000000, 1, "after", nullptr);
  EXPECT_STREQ(pool.getEntry(0).text, "A text of the table, long enough to be on the heap.");
  EXPECT_STREQ(pool.getEntry(1).text, "Message 0x3000000");
}

TEST(KyCErrorManager, aTextIsFinishedWhenRecordedAndNotWhenRead)
{
  KyCErrorListPool pool;
  pool.setError(0x3000000, 1, "before", nullptr);
  const KyTestTable table(0x3000000, "Known now.");
  EXPECT_STREQ(pool.getEntry(0).text, "Message 0x3000000");
}

TEST(KyCErrorManager, aTableRegisteredTwiceNeedsTwoWithdrawals)
{
  const KyTestTable table(0x3000000, "twice");
  manager()._registerMessages(&table.record());
  manager()._unregisterMessages(&table.record());
  EXPECT_EQ(registeredText(0x3000000), "twice");
  manager()._unregisterMessages(&table.record());
  EXPECT_EQ(registeredText(0x3000000), "Message 0x3000000");
}

TEST(KyCErrorManager, theTableRegisteredLastCountsForACodeOfTwoTables)
{
  const KyTestTable first(0x3000000, "first");
  {
    const KyTestTable second(0x3000000, "second");
    EXPECT_EQ(registeredText(0x3000000), "second");
  }
  EXPECT_EQ(registeredText(0x3000000), "first");
}

TEST(KyCErrorManager, withdrawingAnUnknownOrNullTableDoesNothing)
{
  static const char* const messages[] = {"unknown"};
  static const unsigned int boundaries[] = {0, 1};
  static const KyResText unknown{messages, boundaries, 1, 0x3000000};
  const KyTestTable known(0x3000000, "known");
  manager()._unregisterMessages(&unknown);
  manager()._unregisterMessages(nullptr);
  manager()._registerMessages(nullptr);
  EXPECT_EQ(registeredText(0x3000000), "known");
}

TEST(KyCErrorManager, manyTablesAreKnownAtOnceAndWithdrawnInAnyOrder)
{
  std::vector<std::unique_ptr<KyTestTable>> tables;
  for (unsigned int n = 0; n < 100; ++n)
  {
    tables.push_back(std::make_unique<KyTestTable>(0x3000000 + n * 0x10000, n % 2 == 0 ? "even" : "odd"));
  }
  for (unsigned int n = 0; n < 100; n += 3)
    tables[n].reset();
  EXPECT_EQ(registeredText(0x3000000), "Message 0x3000000");
  EXPECT_EQ(registeredText(0x3000000 + 0x10000), "odd");
  EXPECT_EQ(registeredText(0x3000000 + 98 * 0x10000), "even");
  EXPECT_EQ(registeredText(0x3000000 + 99 * 0x10000), "Message 0x3630000");
}
