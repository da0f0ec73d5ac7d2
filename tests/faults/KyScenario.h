// KyScenario.h: an operation that is run again and again while each of its allocations fails in turn.
//
//   const KyScenario scenario = {"addPath", KyScenario::NOTHING_MORE, [](KyScene& scene) {
//     return scene.root().addPath(scene.pool, BOARD[9]) != nullptr;
//   }};
//   kyRunWithEveryFailure(scenario);
//
// What must hold, whichever allocation fails, once or with all behind it:
//   - nothing crashes, no block stays, and the trees of the scene can be walked, stored, read back and deleted
//   - the failure is told: by a report, by std::bad_alloc where the scenario says so, or by the operation's own result;
//     or else everything is as if nothing had failed
//   - a tree that the operation makes and a report exclude each other, but where said
// and when it is a pool allocation that fails: "Out of memory." is among the reports.
#pragma once

#include <gtest/gtest.h>
#include <cstdio>

#include <cstdlib>
#include <memory>
#include <string>

#include "errorhandling/KyErrorHandling.h"
#include "faults/KyFaultyHeap.h"
#include "inventory/KyInventoryTree.h"

// Reports that are sent without a pool take no memory; it is only counted which of them are "Out of memory.".
class KySilentListener : public KyIErrorListener
{
public:
  KySilentListener() : m_before(KyCErrorManager::getSingleton()->setListener(this)) {}
  ~KySilentListener() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  void onError(const KyErrorEntry& entry) override { s_outOfMemory += entry.code == 0x1000000 ? 1 : 0; }
  void onWarning(const KyErrorEntry&) override {}

  static inline unsigned int s_outOfMemory = 0;

private:
  KyIErrorListener* m_before;
};

// What a scenario's operation works on. Made anew for every run.
struct KyScene
{
  KyScene();
  ~KyScene();
  KyScene(const KyScene&) = delete;
  KyScene& operator=(const KyScene&) = delete;

  KyCInventoryItem& root() { return *tree; }
  KyCInventoryItem& board() { return *tree->getItem(KyNInventoryIDs::BOARD); }
  const unsigned char* stored() const { return section.getStorage(); }
  unsigned int storedSize() const { return section.getWritePosition(); }

  KyCErrorListPool quiet;                         // nothing when the scene is set; for reports that are wanted
  KyCErrorListPool pool;                          // for the operation
  std::unique_ptr<KyCInventoryItem> tree;         // every value type, shared data, methods, an updater, a pending value
  std::unique_ptr<KyCInventoryItem> other;        // the same with one board more
  std::unique_ptr<KyCInventoryItem> made;         // for what the operation makes
  std::unique_ptr<KyCInventoryParameter> free;    // a parameter that hangs nowhere
  KyCBuffer section;                              // the tree, stored
  KyCBuffer buffer;                               // empty
  KyCString text;
  KyCInventoryAddress address;
  std::string result;    // of operations that give a text of the C++ library
};

struct KyScenario
{
  enum TLeave
  {
    NOTHING_MORE,        // no exception leaves the operation
    MAY_THROW,           // std::bad_alloc may, as its header says
    MAY_THROW_FOR_ANY    // also where the pool allocator has failed, in a pool of the operation's own
  };

  const char* name;
  TLeave leave;
  bool (*operate)(KyScene& scene);    // false: its own result tells that it has failed
  bool isMadeAnyway = false;          // what it makes is there, as far as there was memory, beside the reports
};

// What failing can do, in one number: allocations that failed, each in a run of its own.
struct KyFailures
{
  unsigned int runs = 0;
  unsigned int thrown = 0;
  KyFailures& operator+=(const KyFailures& other)
  {
    runs += other.runs;
    thrown += other.thrown;
    return *this;
  }
};

// The allocations of an operation that fail in turn: each of the first 64, and then with growing distances unless the
// environment has KY_FAULTS=all.
unsigned int kyNextFailure(unsigned int n);

// Lets each allocation fail once, each with all behind it, and each of the pool allocator's.
KyFailures kyRunWithEveryFailure(const KyScenario& scenario);

// All scenarios of a table, with nobody listening; tells how many failures that were.
template <std::size_t N>
void kyRunAll(const KyScenario (&scenarios)[N])
{
  const KySilentListener silence;
  KyFailures failures;
  for (const KyScenario& scenario : scenarios)
    failures += kyRunWithEveryFailure(scenario);
  ::testing::Test::RecordProperty("failures", static_cast<int>(failures.runs));
  std::printf("%u failures\n", failures.runs);
}
