// The auxiliary info records.

#include "inventory/KyCInventoryAuxInfo.h"

#include <memory>
#include <type_traits>

#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"
#include "unit/writeback/KyDestructionCounters.h"

using namespace KyNInventoryIDs;

namespace
{
bool agree(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }
bool refuse(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return false; }

using KyNInventoryItem::KyCAuxInfoUpdate;
using KyNInventoryParameter::KyCAuxInfoParamUpdate;
using KyNInventoryParameter::KyCAuxInfoWrite;
}    // namespace

TEST(KyCInventoryAuxInfo, theKindsAreOneTwoAndThree)
{
  EXPECT_EQ(KyCInventoryAuxInfo::AUX_ITEM_UPDATE, 1u);
  EXPECT_EQ(KyCInventoryAuxInfo::AUX_PARAM_WRITE, 2u);
  EXPECT_EQ(KyCInventoryAuxInfo::AUX_PARAM_UPDATE, 3u);
  EXPECT_EQ(sizeof(KyCInventoryAuxInfo::TType), 4u);
}

TEST(KyCInventoryAuxInfo, getTypeTellsTheKindOfEach)
{
  EXPECT_EQ(KyCAuxInfoUpdate(nullptr).getType(), 1u);
  EXPECT_EQ(KyCAuxInfoWrite(nullptr, refuse, KyCInventoryAddress(), nullptr).getType(), 2u);
  EXPECT_EQ(KyCAuxInfoParamUpdate(refuse).getType(), 3u);
}

TEST(KyCInventoryAuxInfo, theBaseAloneHoldsItsKindAndIsDestroyedWithoutMore)
{
  for (const KyCInventoryAuxInfo::TType type :
       {KyCInventoryAuxInfo::AUX_ITEM_UPDATE, KyCInventoryAuxInfo::AUX_PARAM_WRITE,
        KyCInventoryAuxInfo::AUX_PARAM_UPDATE})
    EXPECT_EQ(KyCInventoryAuxInfo(type).getType(), type);
}

TEST(KyCInventoryAuxInfo, isPolymorphicAndNotCopied)
{
  EXPECT_TRUE(std::has_virtual_destructor_v<KyCInventoryAuxInfo>);
  EXPECT_FALSE(std::is_copy_constructible_v<KyCAuxInfoUpdate>);
  EXPECT_FALSE(std::is_copy_assignable_v<KyCAuxInfoWrite>);
  EXPECT_TRUE((std::is_convertible_v<KyCAuxInfoParamUpdate*, KyCInventoryAuxInfo*>));
}

TEST(KyCAuxInfoUpdate, withoutAnUpdaterIsDestroyedWithoutMore)
{
  const std::unique_ptr<KyCInventoryAuxInfo> info(new KyCAuxInfoUpdate(nullptr));
  EXPECT_EQ(static_cast<KyCAuxInfoUpdate&>(*info).getUpdater(), nullptr);
}

TEST(KyCAuxInfoUpdate, destroysItsUpdaterOnceThroughTheBase)
{
  unsigned int destroyed = 0;
  KyIUpdater* const updater = new KyCCountedUpdater(destroyed);
  std::unique_ptr<KyCInventoryAuxInfo> info(new KyCAuxInfoUpdate(updater));
  EXPECT_EQ(static_cast<KyCAuxInfoUpdate&>(*info).getUpdater(), updater);
  EXPECT_EQ(destroyed, 0u);
  info.reset();
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyIUpdater, hasTheVirtualClassForItsFirstBase)
{
  unsigned int destroyed = 0;
  KyNInventoryItem::KyCVirtualClass* const object = new KyCCountedUpdater(destroyed);
  EXPECT_NE(dynamic_cast<KyIUpdater*>(object), nullptr);
  delete object;
  EXPECT_EQ(destroyed, 1u);
  EXPECT_EQ(sizeof(KyNInventoryItem::KyCVirtualClass), sizeof(void*));
}

TEST(KyCAuxInfoWrite, keepsWhatItWasGivenAndHasNothingPending)
{
  int mark = 0;
  KyCInventoryAddress address = BOARD[2] / SIZE;
  const KyCAuxInfoWrite info(agree, refuse, address, &mark);
  address.clear();
  EXPECT_EQ(info.getCheckMethod(), agree);
  EXPECT_EQ(info.getWriteMethod(), refuse);
  EXPECT_EQ(info.getRelativeAddress(), BOARD[2] / SIZE);
  EXPECT_EQ(info.getCustomPointer(), &mark);
  EXPECT_EQ(info.getDesignatedValue(), nullptr);
}

TEST(KyCAuxInfoWrite, withoutADesignatedValueIsDestroyedWithoutMore)
{
  const std::unique_ptr<KyCInventoryAuxInfo> info(new KyCAuxInfoWrite(agree, refuse, BOARD / SIZE, nullptr));
  EXPECT_EQ(info->getType(), 2u);
}

TEST(KyCAuxInfoWrite, destroysItsDesignatedValueOnce)
{
  unsigned int destroyed = 0;
  KyTestPool pool;
  std::unique_ptr<KyCInventoryAuxInfo> info(new KyCAuxInfoWrite(agree, refuse, BOARD / SIZE, nullptr));
  static_cast<KyCAuxInfoWrite&>(*info).setDesignatedValue(new KyCCountedParameter(pool, destroyed));
  EXPECT_EQ(destroyed, 0u);
  info.reset();
  EXPECT_EQ(destroyed, 1u);
}

TEST(KyCAuxInfoWrite, aNewDesignatedValueReplacesAndDestroysTheOneBefore)
{
  unsigned int destroyed = 0;
  KyTestPool pool;
  KyCAuxInfoWrite info(agree, refuse, KyCInventoryAddress(), nullptr);
  info.setDesignatedValue(new KyCCountedParameter(pool, destroyed));
  KyCInventoryParameter* const second = new KyCCountedParameter(pool, destroyed);
  info.setDesignatedValue(second);
  EXPECT_EQ(destroyed, 1u);
  info.setDesignatedValue(second);    // the same one stays
  EXPECT_EQ(destroyed, 1u);
  EXPECT_EQ(info.getDesignatedValue(), second);
  info.setDesignatedValue(nullptr);
  EXPECT_EQ(destroyed, 2u);
  EXPECT_EQ(info.getDesignatedValue(), nullptr);
}

TEST(KyCAuxInfoParamUpdate, keepsItsMethod) { EXPECT_EQ(KyCAuxInfoParamUpdate(agree).getUpdateMethod(), agree); }
