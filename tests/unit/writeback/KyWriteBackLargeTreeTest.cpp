// The walks over trees that are deep, and over trees that are wide.

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyDeepAddress.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int MANY = 100000;

// Methods that count, and say no to what its check finds odd.
struct TCounts
{
  unsigned int checks = 0;
  unsigned int writes = 0;
  unsigned int updates = 0;
};
TCounts s_counts;

bool isEven(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_counts.checks;
  return parameter->getDesignatedValue<unsigned int>(pool) % 2 == 0;
}
bool writeUnlessDivisibleByFour(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_counts.writes;
  if (parameter->getDesignatedValue<unsigned int>(pool) % 4 == 0) pool.setError(0x5000001, 1, "write", nullptr);
  return true;
}
bool increment(KyCErrorListPool& pool, KyCInventoryItem*, KyCInventoryParameter* parameter)
{
  ++s_counts.updates;
  parameter->setValue(pool, parameter->getValue<unsigned int>(pool) + 1);
  return true;
}

// Gives the item a parameter of that ID with value 0 and a pending n. Any number is an ID here: few are predefined.
void addDesignated(KyCErrorListPool& pool, KyCInventoryItem& item, unsigned int id, unsigned int n)
{
  auto* const parameter =
      new (pool) KyCInventoryParameter(pool, KyCInventoryAddress(id), nullptr, 0u, nullptr, false, 0);
  item.addParameter(pool, THIS_NODE, parameter);
  parameter->setCheckAndWriteMethod(pool, isEven, writeUnlessDivisibleByFour, THIS_NODE, nullptr);
  parameter->setDesignatedValue(pool, n);
}

void addUpdated(KyCErrorListPool& pool, KyCInventoryItem& item, unsigned int id)
{
  auto* const parameter =
      new (pool) KyCInventoryParameter(pool, KyCInventoryAddress(id), nullptr, 0u, nullptr, false, 0);
  item.addParameter(pool, THIS_NODE, parameter);
  parameter->setUpdateMethod(pool, increment);
}

// The pending values 0 .. MANY - 1: half are odd, a quarter can be divided by four.
void expectTheWholeRound(KyTestPool& pool, KyCInventoryItem& root)
{
  s_counts = TCounts();
  root.check(pool, nullptr);
  EXPECT_EQ(s_counts.checks, MANY);
  std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), MANY / 2);
  EXPECT_EQ(reports.front().code, 0x1300811u);
  EXPECT_EQ(reports.back().code, 0x1300811u);

  root.apply(pool, nullptr);
  EXPECT_EQ(s_counts.writes, MANY / 2);
  reports = pool.takeReports();
  ASSERT_EQ(reports.size(), MANY / 4 * 2);
  for (std::size_t n = 0; n < reports.size(); ++n)
    ASSERT_EQ(reports[n].code, n % 2 == 0 ? 0x5000001u : 0x1300804u) << n;

  root.apply(pool, nullptr);
  EXPECT_EQ(s_counts.writes, MANY / 2) << "nothing is pending any more";
}

void walkADeepTree()
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  root.addPath(pool, deepAddress(MANY));
  unsigned int n = 0;
  for (KyCInventoryItem* item = root.getFirstSubItem(); item != nullptr; item = item->getFirstSubItem())
  {
    item->createParameter(pool, SIZE, 0u, "", false, 0)
        ->setCheckAndWriteMethod(pool, isEven, writeUnlessDivisibleByFour, THIS_NODE, nullptr);
    item->getParameter(SIZE)->setDesignatedValue(pool, n++ % 2 == 0 ? 2u : 6u);
    item->createParameter(pool, OFFSET, 0u, "", false, 0)->setUpdateMethod(pool, increment);
  }
  s_counts = TCounts();
  root.check(pool, &root);
  root.apply(pool, &root);
  root.updateParameters(pool, &root);
  EXPECT_EQ(s_counts.checks, MANY);
  EXPECT_EQ(s_counts.writes, MANY);
  EXPECT_EQ(s_counts.updates, MANY);
  EXPECT_EQ(root.getValue<unsigned int>(pool, BOARD / SIZE), 2u);
  EXPECT_EQ(root.getValue<unsigned int>(pool, BOARD / BOARD / SIZE), 6u);
  EXPECT_EQ(root.getValue<unsigned int>(pool, deepAddress(MANY) / OFFSET), 1u);

  KyCInventoryParameter* const deepest = root.getParameter(deepAddress(MANY) / SIZE);
  deepest->setDesignatedValue(pool, 1u);
  root.check(pool, &root);
  const std::vector<KyReport> reports = pool.takeReports();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].code, 0x1300811u);
  EXPECT_EQ(reports[0].text.size(), 27 + MANY * 6 + 5) << "Check failed for parameter BOARD/ .. SIZE.";
  deepest->setDesignatedValue(pool, 2u);
  root.deleteDesignatedValues();
  EXPECT_FALSE(deepest->isDesignatedValueValid());
}
}    // namespace

TEST(KyWriteBackLargeTree, aHundredThousandLevelsAreWalkedOnASmallStack) { onASmallStack(walkADeepTree); }

TEST(KyWriteBackLargeTree, aHundredThousandParametersOfOneItemAreWalked)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  for (unsigned int n = 0; n < MANY; ++n)
    addDesignated(pool, root, 2000000 + n, n);
  expectTheWholeRound(pool, root);
}

TEST(KyWriteBackLargeTree, aHundredThousandItemsAreWalked)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  for (unsigned int n = 0; n < MANY; ++n)
    addDesignated(pool, *root.addPath(pool, BOARD[n + 1]), 98, n);
  expectTheWholeRound(pool, root);
}

TEST(KyWriteBackLargeTree, aHundredThousandParametersAreUpdatedAndTheirPendingNeighboursEnded)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  for (unsigned int n = 0; n < MANY / 10; ++n)
  {
    KyCInventoryItem& item = *root.addPath(pool, BOARD[n % 100 + 1] / IOCHANNEL[n / 100 + 1]);
    for (unsigned int id = 0; id < 10; ++id)
      addUpdated(pool, item, 2000000 + id);
    addDesignated(pool, item, 98, n);
  }
  s_counts = TCounts();
  root.updateParameters(pool, nullptr);
  EXPECT_EQ(s_counts.updates, MANY);
  root.deleteDesignatedValues();
  root.check(pool, nullptr);
  root.apply(pool, nullptr);
  EXPECT_EQ(s_counts.checks + s_counts.writes, 0u);
}
