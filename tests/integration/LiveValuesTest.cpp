// The tool's live values: what changed from round to round, and which failures are new. The update methods are the
// test's own.
#include "LiveValues.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inventory/KyInventoryTree.h"
#include "support/KyTestPool.h"

namespace
{
using Lines = std::vector<std::string>;

bool countUp(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  parameter->setValue<int>(pool, parameter->getValue<int>(pool) + 1);
  return true;
}

bool leaveAlone(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

// Fails twice for an item whose VALID is 0.
bool failWhileInvalid(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  if (parameter->getParent()->getValue<int>(pool, KyNInventoryIDs::VALID) != 0)
    return countUp(pool, nullptr, parameter);
  pool.setError(0x13007FE, __LINE__, "failWhileInvalid", nullptr);
  pool.setError(0x13007FF, __LINE__, "failWhileInvalid", nullptr);
  return false;
}

class LiveValuesOfATree : public ::testing::Test
{
protected:
  LiveValuesOfATree() : root(pool, KyNInventoryIDs::ROOT, "ROOT") {}

  template <typename T>
  void add(const KyCInventoryAddress& address, const T& value, const char* unit, KyCInventoryParameter::TMethod method)
  {
    KyCInventoryParameter* const parameter = root.createParameter<T>(pool, address, value, unit, false, 0);
    ASSERT_NE(parameter, nullptr);
    if (method != nullptr) parameter->setUpdateMethod(pool, method);
  }

  // One text for each: "BOARD/SIZE 1->2 mV", "BOARD/SIZE failed: 3 reports".
  static Lines linesOf(const LiveValues::Round& round)
  {
    Lines lines;
    for (const LiveValues::Change& change : round.changes)
      lines.push_back(change.address + " " + change.oldValue + "->" + change.newValue + " " + change.unit);
    for (const LiveValues::Failure& failure : round.failures)
      lines.push_back(failure.address + " failed: " + std::to_string(failure.reports.size()) + " reports");
    return lines;
  }

  KyTestPool pool;
  KyCInventoryItem root;
};
}    // namespace

TEST_F(LiveValuesOfATree, valuesAreThoseWithAnUpdateMethodInTheTreesOrder)
{
  using namespace KyNInventoryIDs;
  add(BOARD[2] / CPU / SIZE, 7, "B", leaveAlone);
  add(BOARD[2] / NAME, KyCString("a\tb"), "", leaveAlone);
  add(BOARD[3] / SIZE, 8, "B", nullptr);
  add(BOARD[3] / TEMPERATURE, 45.5, "C", leaveAlone);
  add(BOARD[3] / VERSION, KyCVersion(1, 2, 3, 4), "", leaveAlone);
  add(OFFSET, 18446744073709551615ull, "", leaveAlone);
  Lines lines;
  for (const LiveValues::Value& value : LiveValues(root).values())
    lines.push_back(value.address + " " + value.value + " " + value.unit);
  const Lines expected = {"OFFSET 18446744073709551615 ", "BOARD[2]/NAME a\tb ", "BOARD[2]/CPU/SIZE 7 B",
                          "BOARD[3]/TEMPERATURE 45.5 C", "BOARD[3]/VERSION 1.2.3.4 "};
  EXPECT_EQ(lines, expected);
}

TEST_F(LiveValuesOfATree, aTreeWithoutUpdateMethodsHasNone)
{
  add(KyNInventoryIDs::SIZE, 1, "B", nullptr);
  LiveValues live(root);
  EXPECT_TRUE(live.values().empty());
  EXPECT_EQ(linesOf(live.update()), Lines{});
}

TEST_F(LiveValuesOfATree, updateGivesWhatChangedSinceTheRoundBefore)
{
  using namespace KyNInventoryIDs;
  add(BOARD / SIZE, 1, "mV", countUp);
  add(BOARD / OFFSET, 5, "mV", leaveAlone);
  LiveValues live(root);
  EXPECT_EQ(linesOf(live.update()), Lines{"BOARD/SIZE 1->2 mV"});
  EXPECT_EQ(linesOf(live.update()), Lines{"BOARD/SIZE 2->3 mV"});
  root.setValue<int>(pool, BOARD / OFFSET, 6);
  EXPECT_EQ(linesOf(live.update()), (Lines{"BOARD/SIZE 3->4 mV", "BOARD/OFFSET 5->6 mV"}));
  EXPECT_EQ(live.values().at(1).value, "6");
}

TEST_F(LiveValuesOfATree, aFailureIsToldOnceUntilTheValueWorksAgain)
{
  using namespace KyNInventoryIDs;
  add(BOARD / VALID, 1, "", nullptr);
  add(BOARD / SIZE, 1, "", failWhileInvalid);
  add(BOARD[2] / VALID, 0, "", nullptr);
  add(BOARD[2] / SIZE, 1, "", failWhileInvalid);
  LiveValues live(root);
  EXPECT_EQ(linesOf(live.update()), (Lines{"BOARD/SIZE 1->2 ", "BOARD[2]/SIZE failed: 3 reports"}));
  root.setValue<int>(pool, BOARD / VALID, 0);
  EXPECT_EQ(linesOf(live.update()), Lines{"BOARD/SIZE failed: 3 reports"});
  EXPECT_EQ(linesOf(live.update()), Lines{});
  root.setValue<int>(pool, BOARD / VALID, 1);
  root.setValue<int>(pool, BOARD[2] / VALID, 1);
  EXPECT_EQ(linesOf(live.update()), (Lines{"BOARD/SIZE 2->3 ", "BOARD[2]/SIZE 1->2 "}));
  root.setValue<int>(pool, BOARD[2] / VALID, 0);
  EXPECT_EQ(linesOf(live.update()), (Lines{"BOARD/SIZE 3->4 ", "BOARD[2]/SIZE failed: 3 reports"}));
}

TEST_F(LiveValuesOfATree, aFailureHoldsTheMethodsReportsAndTheWalks)
{
  using namespace KyNInventoryIDs;
  add(VALID, 0, "", nullptr);
  add(SIZE, 1, "", failWhileInvalid);
  const LiveValues::Round round = LiveValues(root).update();
  ASSERT_EQ(round.failures.size(), 1u);
  EXPECT_EQ(round.failures[0].address, "SIZE");
  ASSERT_EQ(round.failures[0].reports.size(), 3u);
  EXPECT_EQ(round.failures[0].reports[0].code, 0x13007FEu);
  EXPECT_EQ(round.failures[0].reports[1].code, 0x13007FFu);
  EXPECT_STREQ(std::string(round.failures[0].reports[2].text).c_str(), "Cannot update value for parameter SIZE.");
}
