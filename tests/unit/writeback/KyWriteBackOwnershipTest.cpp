// Who destroys updaters and pending values, and when: each exactly once, on every path.

#include <memory>
#include <vector>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyPendingValue.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/writeback/KyDestructionCounters.h"
#include "unit/writeback/KyScriptedMethods.h"
#include "unit/writeback/KyWriteBackReports.h"

using namespace KyNInventoryIDs;

namespace
{
class KyWriteBackOwnership : public testing::Test
{
protected:
  // A pending 1 that counts its end.
  void makePending(KyCInventoryParameter& parameter)
  {
    if (parameter.getWriteMethod() == nullptr) m_methods.hangCheckAndWrite(parameter);
    writeInfoOf(parameter)->setDesignatedValue(new KyCCountedParameter(m_pool, m_pendingEnded));
  }
  void makePending(const std::string& address) { makePending(*m_sample.parameter(address)); }
  KyMethodScript& script(KyMethodKind kind, const KyCInventoryParameter& parameter)
  {
    return m_methods.of(kind, parameter);
  }

  KyTestPool m_pool;
  unsigned int m_pendingEnded = 0;
  unsigned int m_updatersEnded = 0;
  KyScriptedMethods m_methods;
  KySampleTree m_sample{"ROOT SIZE=3; UPDATE_ELEMENT SIZE=3; UPDATE_ELEMENT/CPU SIZE=3"};
  KyCInventoryItem& m_root = m_sample.root();
  KyCInventoryParameter& m_size = *m_sample.parameter("SIZE");
};
}    // namespace

// ---- One pending value ----

TEST_F(KyWriteBackOwnership, aPendingValueIsKeptWhenItIsSetAgain)
{
  makePending(m_size);
  m_size.setDesignatedValue(m_pool, 9);
  EXPECT_EQ(m_pendingEnded, 0u);
  EXPECT_EQ(m_size.getDesignatedValue<int>(m_pool), 9);
  m_size.setDesignatedValue(m_pool, 1.5);
  EXPECT_REPORTS(m_pool, cannotBeSet("setValueFloat64", "98", "Int32", "Float64"), cannotSetValue("setValue", "SIZE"));
  EXPECT_EQ(m_pendingEnded, 0u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItIsDeleted)
{
  makePending(m_size);
  m_size.deleteDesignatedValue();
  EXPECT_EQ(m_pendingEnded, 1u);
  m_size.deleteDesignatedValue();
  EXPECT_EQ(m_pendingEnded, 1u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItIsAdopted)
{
  makePending(m_size);
  m_size.adoptDesignatedValue(m_pool);
  EXPECT_EQ(m_pendingEnded, 1u);
  EXPECT_EQ(m_size.getValue<int>(m_pool), 1);
}

TEST_F(KyWriteBackOwnership, aPendingValueOutlivesAFailedAdoption)
{
  KyCInventoryParameter name(m_pool, NAME, "NAME", KyCString("own"), "", false, 0);
  makePending(name);
  name.adoptDesignatedValue(m_pool);
  EXPECT_EQ(m_pool.takeReports().size(), 3u) << "an Int32 is no String";
  EXPECT_EQ(m_pendingEnded, 0u);
  name.deleteDesignatedValue();
  EXPECT_EQ(m_pendingEnded, 1u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItsCheckFails)
{
  makePending(m_size);
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 0u) << "the check said yes";
  script(KyMethodKind::CHECK, m_size).result = false;
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 1u);
  EXPECT_REPORTS(m_pool, checkFailed("SIZE"));
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItsMethodDeletesItAndFails)
{
  for (const KyMethodKind kind : {KyMethodKind::CHECK, KyMethodKind::WRITE})
  {
    m_pendingEnded = 0;
    makePending(m_size);
    script(kind, m_size) = {[&](KyCErrorListPool&) { m_size.deleteDesignatedValue(); }, 1, false};
    if (kind == KyMethodKind::CHECK) m_root.check(m_pool, nullptr);
    if (kind == KyMethodKind::WRITE) m_root.apply(m_pool, nullptr);
    EXPECT_EQ(m_pool.takeReports().size(), 2u);
    EXPECT_EQ(m_pendingEnded, 1u);
  }
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItIsApplied)
{
  makePending(m_size);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 1u);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 1u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItsWriteFails)
{
  makePending(m_size);
  script(KyMethodKind::WRITE, m_size).reports = 1;
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 1u);
  EXPECT_EQ(m_pool.takeReports().size(), 2u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenThereIsNoWriteMethod)
{
  auto* const info = new KyNInventoryParameter::KyCAuxInfoWrite(nullptr, nullptr, KyCInventoryAddress(), nullptr);
  KyInventoryAccess::setAuxInfo(m_size, info);
  info->setDesignatedValue(new KyCCountedParameter(m_pool, m_pendingEnded));
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 1u);
  EXPECT_REPORTS(m_pool, changeNotImplemented("SIZE"));
}

TEST_F(KyWriteBackOwnership, aPendingValueOutlivesAnApplyThatCannotAdoptIt)
{
  KySampleTree sample("ROOT NAME=\"own\"");
  makePending(*sample.parameter("NAME"));
  sample.root().apply(m_pool, nullptr);
  EXPECT_EQ(m_pool.takeReports().size(), 4u);
  EXPECT_EQ(m_pendingEnded, 0u);
}

TEST_F(KyWriteBackOwnership, aPendingValueEndsOnceWhenItsTypeIsRefused)
{
  m_methods.hangWrite(m_size);
  for (unsigned int n = 0; n < 3; ++n)
    m_size.setDesignatedValue<KyCString>(m_pool, "a text of more than six characters");
  EXPECT_REPORTS(m_pool, incompatibleType("SIZE"), incompatibleType("SIZE"), incompatibleType("SIZE"));
  EXPECT_EQ(writeInfoOf(m_size)->getDesignatedValue(), nullptr) << "and the leak checker finds nothing";
}

// ---- Pending values and updaters of a tree ----

TEST_F(KyWriteBackOwnership, allPendingValuesOfATreeEndOnceWhenTheyAreDeleted)
{
  for (const char* const address : {"SIZE", "UPDATE_ELEMENT/SIZE", "UPDATE_ELEMENT/CPU/SIZE"})
    makePending(address);
  m_sample.item("UPDATE_ELEMENT")->deleteDesignatedValues();
  EXPECT_EQ(m_pendingEnded, 2u);
  m_root.deleteDesignatedValues();
  EXPECT_EQ(m_pendingEnded, 3u);
  m_root.deleteDesignatedValues();
  EXPECT_EQ(m_pendingEnded, 3u);
}

TEST_F(KyWriteBackOwnership, endsWithADetachedParameter)
{
  makePending(m_size);
  std::unique_ptr<KyCInventoryParameter> detached(m_size.detach());
  EXPECT_EQ(m_pendingEnded, 0u);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls().size(), 0u);
  EXPECT_EQ(detached->getDesignatedValue<int>(m_pool), 1);
  detached.reset();
  EXPECT_EQ(m_pendingEnded, 1u);
}

TEST_F(KyWriteBackOwnership, endsWithAnItemThatIsDeletedMidLife)
{
  m_sample.item("UPDATE_ELEMENT")->setUpdater(m_pool, new KyCCountedUpdater(m_updatersEnded));
  for (const char* const address : {"SIZE", "UPDATE_ELEMENT/SIZE", "UPDATE_ELEMENT/CPU/SIZE"})
    makePending(address);
  m_root.check(m_pool, nullptr);
  delete m_sample.item("UPDATE_ELEMENT");
  EXPECT_EQ(m_updatersEnded, 1u);
  EXPECT_EQ(m_pendingEnded, 2u);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 3u);
}

TEST_F(KyWriteBackOwnership, goesWithADetachedItemWhichIsStillCheckedAndApplied)
{
  KyCInventoryItem* const element = m_sample.item("UPDATE_ELEMENT");
  auto* const updater = new KyCCountedUpdater(m_updatersEnded);
  element->setUpdater(m_pool, updater);
  makePending("UPDATE_ELEMENT/SIZE");
  makePending("UPDATE_ELEMENT/CPU/SIZE");
  std::unique_ptr<KyCInventoryItem> detached(element);
  detached->detach();
  EXPECT_EQ(m_updatersEnded + m_pendingEnded, 0u);
  EXPECT_EQ(detached->getUpdater(), updater);
  script(KyMethodKind::CHECK, *detached->getParameter(SIZE)).result = false;
  detached->check(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, checkFailed("SIZE"));    // its address begins anew
  EXPECT_EQ(m_pendingEnded, 1u);
  detached.reset();
  EXPECT_EQ(m_updatersEnded, 1u);
  EXPECT_EQ(m_pendingEnded, 2u);
}

// ---- Copies ----

TEST_F(KyWriteBackOwnership, isNotSharedWithACopyOfTheParameter)
{
  makePending(m_size);
  {
    KyCInventoryParameter copy(m_size);
    EXPECT_FALSE(copy.isDesignatedValueValid());
    EXPECT_EQ(copy.getWriteMethod(), nullptr);
    copy.setDesignatedValue(m_pool, 5);
    EXPECT_REPORTS(m_pool, cannotSetDesignatedValue(""));
    m_methods.hangWrite(copy);
    copy.setDesignatedValue(m_pool, 5);
  }
  EXPECT_EQ(m_pendingEnded, 0u);
  EXPECT_EQ(m_size.getDesignatedValue<int>(m_pool), 1);
}

TEST_F(KyWriteBackOwnership, isDroppedWithoutBeingEndedWhenTheParameterIsAssignedOver)
{
  makePending(m_size);
  const KyCInventoryParameter source(m_pool, SIZE, "SIZE", 8, "", false, 0);
  std::unique_ptr<KyCInventoryAuxInfo> dropped(KyInventoryAccess::getAuxInfo(m_size));
  m_size = source;
  EXPECT_EQ(m_pendingEnded, 0u);
  EXPECT_FALSE(m_size.isDesignatedValueValid());
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls().size(), 0u);
  m_methods.hangWrite(m_size);
  m_size.setDesignatedValue(m_pool, 5);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_size.getValue<int>(m_pool), 5) << "it can be given methods again";
  dropped.reset();
  EXPECT_EQ(m_pendingEnded, 1u);
}

TEST_F(KyWriteBackOwnership, staysWithTheSourceOfAnAssignmentAndWithItselfAssigned)
{
  makePending(m_size);
  KyCInventoryParameter target(m_pool, SIZE, "SIZE", 8, "", false, 0);
  target = m_size;
  EXPECT_FALSE(target.isDesignatedValueValid());
  const KyCInventoryParameter& same = m_size;
  m_size = same;
  EXPECT_TRUE(m_size.isDesignatedValueValid());
  EXPECT_EQ(m_pendingEnded, 0u);
}

TEST_F(KyWriteBackOwnership, isLeftOutOfACopiedTree)
{
  m_sample.item("UPDATE_ELEMENT")->setUpdater(m_pool, new KyCCountedUpdater(m_updatersEnded));
  makePending("SIZE");
  makePending("UPDATE_ELEMENT/SIZE");
  KyCInventoryItem* made = nullptr;
  m_root.copyTree(m_pool, made);
  const std::unique_ptr<KyCInventoryItem> copy(made);
  copy->check(m_pool, nullptr);
  copy->apply(m_pool, nullptr);
  copy->deleteDesignatedValues();
  EXPECT_EQ(m_methods.takeCalls().size(), 0u);
  EXPECT_EQ(m_pendingEnded + m_updatersEnded, 0u);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 2u);
  EXPECT_EQ(copy->getValue<int>(m_pool, SIZE), 3);
  EXPECT_EQ(m_size.getValue<int>(m_pool), 1);
}

// ---- Merging ----

TEST_F(KyWriteBackOwnership, movesWithWhatAMergeMovesAndIsAppliedThere)
{
  m_sample.item("UPDATE_ELEMENT")->setUpdater(m_pool, new KyCCountedUpdater(m_updatersEnded));
  makePending("SIZE");
  makePending("UPDATE_ELEMENT/CPU/SIZE");
  KyCInventoryItem* target = KySampleTree("ROOT/BOARD").release();
  KyCInventoryItem* source = m_sample.release();
  KyCInventoryItem::mergeTree(m_pool, target, source, 1);
  const std::unique_ptr<KyCInventoryItem> merged(target);
  EXPECT_EQ(m_pendingEnded + m_updatersEnded, 0u);
  merged->apply(m_pool, nullptr);
  EXPECT_EQ(m_pendingEnded, 2u);
  EXPECT_EQ(m_updatersEnded, 0u);
  EXPECT_EQ(merged->getValue<int>(m_pool, SIZE), 1);
  EXPECT_EQ(merged->getValue<int>(m_pool, UPDATE_ELEMENT / CPU / SIZE), 1);
}

TEST_F(KyWriteBackOwnership, endsWithWhatAMergeDrops)
{
  for (const unsigned int flags : {0u, 1u})
  {
    m_pendingEnded = m_updatersEnded = 0;
    KySampleTree old("ROOT SIZE=3; UPDATE_ELEMENT SIZE=3");
    old.item("UPDATE_ELEMENT")->setUpdater(m_pool, new KyCCountedUpdater(m_updatersEnded));
    makePending(*old.parameter("SIZE"));
    makePending(*old.parameter("UPDATE_ELEMENT/SIZE"));
    KyCInventoryItem* target = KySampleTree("ROOT SIZE=1; UPDATE_ELEMENT SIZE=2").release();
    KyCInventoryItem* source = old.release();
    KyCInventoryItem::mergeTree(m_pool, target, source, flags);
    const std::unique_ptr<KyCInventoryItem> merged(target);
    EXPECT_EQ(m_pendingEnded, 2u) << "the target has both parameters";
    EXPECT_EQ(m_updatersEnded, 1u);
    EXPECT_FALSE(merged->getParameter(SIZE)->isDesignatedValueValid());
  }
}

// Reads what stands below its own item in its destructor.
class KyReadingUpdater : public KyIUpdater
{
public:
  KyReadingUpdater(const KyCInventoryItem& item, std::vector<int>& values) : m_item(item), m_values(values) {}
  ~KyReadingUpdater() override
  {
    KyTestPool pool;
    m_values.push_back(m_item.getValue<int>(pool, IOCHANNEL / SIZE));
    EXPECT_NO_REPORTS(pool);
  }

private:
  const KyCInventoryItem& m_item;
  std::vector<int>& m_values;
};

// An item ends before what hangs below it, however deep it hangs itself: its updater finds all of that in place.
TEST_F(KyWriteBackOwnership, anUpdaterEndsBeforeWhatHangsBelowItsItem)
{
  std::vector<int> values;
  {
    KySampleTree tree(
        "ROOT/UPDATE_ELEMENT/IOCHANNEL SIZE=2; "
        "ROOT/UPDATE_ELEMENT/UPDATE_ELEMENT/IOCHANNEL SIZE=3; ROOT/UPDATE_ELEMENT[2]/IOCHANNEL SIZE=4");
    for (const char* address : {"UPDATE_ELEMENT/UPDATE_ELEMENT", "UPDATE_ELEMENT[2]", "UPDATE_ELEMENT"})
      tree.item(address)->setUpdater(m_pool, new KyReadingUpdater(*tree.item(address), values));
  }
  EXPECT_EQ(values, (std::vector<int>{2, 3, 4})) << "in list order, each item before its sub-items";
  EXPECT_NO_REPORTS(m_pool);
}
