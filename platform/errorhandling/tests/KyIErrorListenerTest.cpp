// KyIErrorListenerTest.cpp: the listener interface, replacing listeners, listeners that report, and the default one.
#include "errorhandling/KyIErrorListener.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

#include "KyErrorHandlingSupport.h"

namespace
{
// Number of a virtual member function's slot. The C++ ABI of Linux stores its offset in bytes, plus one.
template <typename Member>
std::size_t slotOf(Member member)
{
  std::size_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return (offset - 1) / sizeof(void*);
}

std::string stderrOf(void (*action)())
{
  KyIErrorListener* const before = manager().setListener(nullptr);
  testing::internal::CaptureStderr();
  action();
  std::string written = testing::internal::GetCapturedStderr();
  manager().setListener(before);
  return written;
}
}    // namespace

TEST(KyIErrorListener, slotsFollowTheTwoDestructors)
{
  EXPECT_EQ(slotOf(&KyIErrorListener::onError), 2u);
  EXPECT_EQ(slotOf(&KyIErrorListener::onWarning), 3u);
}

TEST(KyIErrorListener, setListenerGivesTheOneBeforeAndNullForTheDefault)
{
  KyIErrorListener* const outer = manager().setListener(nullptr);
  EXPECT_EQ(manager().setListener(nullptr), nullptr);
  KyWritingListener first;
  KyWritingListener second;
  EXPECT_EQ(manager().setListener(&first), &second);
  EXPECT_EQ(manager().setListener(nullptr), &first);
  EXPECT_EQ(manager().setListener(outer), nullptr);
}

TEST(KyIErrorListener, onlyTheListenerSetLastIsCalled)
{
  KyWritingListener first;
  {
    KyWritingListener second;
    manager().sendWarning(17, 1, "warn", nullptr);
    EXPECT_EQ(first.take(), KyLines{});
    EXPECT_EQ(second.take(), KyLines{"warning 17 from warn, line 1: Message 0x11"});
  }
  manager().sendWarning(18, 1, "warn", nullptr);
  EXPECT_EQ(first.take(), KyLines{"warning 18 from warn, line 1: Message 0x12"});
}

TEST(KyIErrorListener, aListenerMayReportIntoTheListThatIsBeingSent)
{
  struct KyCReporting : KyWritingListener
  {
    void onError(const KyErrorEntry& entry) override
    {
      KyWritingListener::onError(entry);
      if (entry.code == 17) list->setError(18, 2, "inside", nullptr);
    }
    KyCErrorListPool* list = nullptr;
  } listener;
  KyCErrorListPool pool;
  listener.list = &pool;
  pool.setError(17, 1, "outside", nullptr);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 17 from outside, line 1: Message 0x11"});
  EXPECT_EQ(pool.getEntryCount(), 1u);
  EXPECT_EQ(pool.getErrorCount(), 2u);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 18 from inside, line 2: Message 0x12"});
}

TEST(KyIErrorListener, aListenerMaySendListsAndWarnings)
{
  struct KyCSending : KyWritingListener
  {
    void onError(const KyErrorEntry& entry) override
    {
      KyWritingListener::onError(entry);
      if (entry.code != 17) return;
      KyCErrorListPool pool;
      pool.setError(18, 2, "inside", nullptr);
      manager().sendErrorList(pool, 0);
      manager().sendWarning(19, 3, "inside", nullptr);
    }
  } listener;
  KyCErrorListPool pool;
  pool.setError(17, 1, "outside", nullptr);
  pool.setError(20, 4, "outside", nullptr);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(),
            (KyLines{"error 17 from outside, line 1: Message 0x11", "error 18 from inside, line 2: Message 0x12",
                     "warning 19 from inside, line 3: Message 0x13", "error 20 from outside, line 4: Message 0x14"}));
}

TEST(KyIErrorListener, aListenerMayReplaceItselfBetweenTwoErrors)
{
  KyWritingListener next;
  struct KyCLeaving : KyWritingListener
  {
    void onError(const KyErrorEntry& entry) override
    {
      KyWritingListener::onError(entry);
      manager().setListener(successor);
    }
    KyIErrorListener* successor = nullptr;
  } listener;
  listener.successor = &next;
  KyCErrorListPool pool;
  pool.setError(17, 1, "a", nullptr);
  pool.setError(18, 1, "b", nullptr);
  manager().sendErrorList(pool, 0);
  EXPECT_EQ(listener.take(), KyLines{"error 17 from a, line 1: Message 0x11"});
  EXPECT_EQ(next.take(), KyLines{"error 18 from b, line 1: Message 0x12"});
}

TEST(KyIErrorListener, aListenerMayDeleteTheListThatIsBeingSent)
{
  struct KyCDeleting : KyWritingListener
  {
    void onError(const KyErrorEntry& entry) override
    {
      KyWritingListener::onError(entry);
      if (list != nullptr) manager().deleteErrorList(*list);
      list = nullptr;
    }
    KyCErrorListPool* list = nullptr;
  } listener;
  listener.list = manager().createErrorList(0, 1, 20, 5, 300);
  listener.list->setError(17, 1, "a", nullptr);
  listener.list->setError(18, 1, "b", nullptr);
  manager().sendErrorList(*listener.list, 0);
  EXPECT_EQ(listener.take(),
            (KyLines{"error 17 from a, line 1: Message 0x11", "error 18 from b, line 1: Message 0x12"}));
}

TEST(KyIErrorListener, aListenerThatThrowsLeavesNothingBehind)    // neither a lock nor, for the sanitizers, memory
{
  struct KyCThrowing : KyWritingListener
  {
    void onError(const KyErrorEntry&) override { throw std::runtime_error("error"); }
    void onWarning(const KyErrorEntry&) override { throw std::runtime_error("warning"); }
  } listener;
  KyCErrorListPool pool;
  pool.setError(17, 1, "a", nullptr);
  pool.setError(18, 1, "b", nullptr);
  EXPECT_THROW(manager().sendErrorList(pool, 0), std::runtime_error);
  EXPECT_THROW(manager().sendWarning(19, 1, "c", nullptr), std::runtime_error);
  EXPECT_EQ(pool.getEntryCount(), 0u);
  EXPECT_EQ(pool.getErrorCount(), 2u);
}

TEST(KyIErrorListener, theDefaultWritesOneLineForAWarning)
{
  EXPECT_EQ(stderrOf([] { manager().sendWarning(0x1300815, 12, "linkSharedData", "%s%s", "A", "B"); }),
            "warning 0x1300815 in linkSharedData (line 12): Message 0x1300815 (A, B)\n");
}

TEST(KyIErrorListener, theDefaultWritesOneLineForEachError)
{
  EXPECT_EQ(stderrOf(
                []
                {
                  KyCErrorListPool pool;
                  pool.setError(0x1000000, 3, "add", nullptr);
                  pool.setError(0x3000000, 4, "put", "%d", 5);
                  manager().sendErrorList(pool, 0);
                }),
            "error 0x1000000 in add (line 3): Out of memory.\n"
            "error 0x3000000 in put (line 4): Message 0x3000000 (5)\n");
}

TEST(KyIErrorListener, theDefaultShowsControlCharactersAsNumbersSoThatALineStaysALine)
{
  EXPECT_EQ(stderrOf([] { manager().sendWarning(17, 1, "f\n", "%s", "a\nerror 0x1\r\t\x1B[2J\x7F \xC3\xA9"); }),
            "warning 0x11 in f\\x0a (line 1): Message 0x11 (a\\x0aerror 0x1\\x0d\\x09\\x1b[2J\\x7f \xC3\xA9)\n");
}

TEST(KyIErrorListener, theDefaultTakesTextsAsTextsAndNotAsFormats)
{
  EXPECT_EQ(stderrOf([] { manager().sendWarning(17, 1, "%s%n", "%s", "%s%n%d"); }),
            "warning 0x11 in %s%n (line 1): Message 0x11 (%s%n%d)\n");
}

TEST(KyIErrorListener, theDefaultWritesLongTextsWhole)
{
  static const std::string text(5000, 'x');
  EXPECT_EQ(stderrOf([] { manager().sendWarning(17, 1, "f", "%s", text.c_str()); }),
            "warning 0x11 in f (line 1): Message 0x11 (" + text + ")\n");
}
