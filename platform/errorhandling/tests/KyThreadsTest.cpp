// KyThreadsTest.cpp: what several threads may do at once. The thread sanitizer's build gives these tests their full
// meaning.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "KyErrorHandlingSupport.h"

namespace
{
constexpr unsigned int threadCount = 4;
constexpr unsigned int rounds = 500;

// Runs work(0) .. work(threadCount - 1) at once, started together.
template <typename Work>
void runAtOnce(Work work)
{
  std::atomic<unsigned int> waiting{threadCount};
  std::vector<std::thread> threads;
  for (unsigned int n = 0; n < threadCount; ++n)
  {
    threads.emplace_back(
        [&waiting, &work, n]
        {
          --waiting;
          while (waiting != 0)
            std::this_thread::yield();
          work(n);
        });
  }
  for (std::thread& thread : threads)
    thread.join();
}
}    // namespace

TEST(KyThreads, theFirstCallsOfGetSingletonAgree)    // of the process, when this test runs alone as it does in ctest
{
  std::vector<KyCErrorManager*> seen(threadCount);
  runAtOnce([&seen](unsigned int n) { seen[n] = KyCErrorManager::getSingleton(); });
  for (KyCErrorManager* one : seen)
    EXPECT_EQ(one, KyCErrorManager::s_pErrorManager);
}

TEST(KyThreads, poolsOfDifferentThreadsAreIndependent)
{
  const KyTestTable table(0x3000000, "Thread %1, round %2.");
  std::vector<std::string> lastTexts(threadCount);
  runAtOnce(
      [&lastTexts](unsigned int n)
      {
        KyCErrorListPool pool;
        for (unsigned int round = 0; round < rounds; ++round)
          pool.setError(0x3000000, 1, "work", "%u%u", n, round);
        lastTexts[n] = pool.getEntry(rounds - 1).text;
      });
  for (unsigned int n = 0; n < threadCount; ++n)
  {
    EXPECT_EQ(lastTexts[n], "Thread " + std::to_string(n) + ", round 499.");
  }
}

TEST(KyThreads, tablesMayComeAndGoWhileOthersReport)
{
  runAtOnce(
      [](unsigned int n)
      {
        for (unsigned int round = 0; round < rounds; ++round)
        {
          if (n == 0)
          {
            const std::string text = "A text that is gone soon, and on the heap.";
            const KyTestTable table(0x3000000, text.c_str());
            continue;
          }
          KyCErrorListPool pool;
          pool.setError(0x3000000, 1, "work", nullptr);
          const std::string text = pool.getEntry(0).text;
          EXPECT_TRUE(text == "A text that is gone soon, and on the heap." || text == "Message 0x3000000") << text;
        }
      });
}

TEST(KyThreads, theListenerIsCalledByOneThreadAtATime)
{
  struct KyCCounting : KyIErrorListener
  {
    void onError(const KyErrorEntry&) override { ++errors; }    // plain numbers: a race would show
    void onWarning(const KyErrorEntry&) override { ++warnings; }
    unsigned int errors = 0;
    unsigned int warnings = 0;
  } listener;
  KyIErrorListener* const before = manager().setListener(&listener);
  runAtOnce(
      [](unsigned int)
      {
        KyCErrorListPool pool;
        for (unsigned int round = 0; round < rounds; ++round)
        {
          pool.setError(1, 1, "work", nullptr);
          manager().sendErrorList(pool, 0);
          manager().sendWarning(2, 1, "work", nullptr);
        }
      });
  manager().setListener(before);
  EXPECT_EQ(listener.errors, threadCount * rounds);
  EXPECT_EQ(listener.warnings, threadCount * rounds);
}

TEST(KyThreads, aListenerThatWasReplacedIsNotCalledAnyMore)
{
  KyWritingListener rest;
  runAtOnce(
      [](unsigned int n)
      {
        for (unsigned int round = 0; round < rounds; ++round)
        {
          if (n != 0)
          {
            manager().sendWarning(2, 1, "work", nullptr);
            continue;
          }
          KyWritingListener passing;    // gone at once: a late call would hit a dead object
        }
      });
}

TEST(KyThreads, createdListsMayComeAndGoInEveryThread)
{
  runAtOnce(
      [](unsigned int)
      {
        for (unsigned int round = 0; round < rounds; ++round)
        {
          KyCErrorListPool* const list = manager().createErrorList(0, 1, 20, 5, 300);
          list->setError(1, 1, "work", nullptr);
          manager().deleteErrorList(*list);
        }
      });
}

TEST(KyThreads, exactlyOneAllocationFailsHoweverManyThreadsAllocate)
{
  std::atomic<unsigned int> failures{0};
  KyNPoolAllocator::failAfter(rounds);
  runAtOnce(
      [&failures](unsigned int)
      {
        KyCErrorListPool pool;
        for (unsigned int round = 0; round < rounds; ++round)
          delete new (pool) int;
        failures += pool.getErrorCount();
      });
  KyNPoolAllocator::reset();
  EXPECT_EQ(failures, 1u);
}
