// Growing a tree: addPath, addParameter, setID, createParameter.

#include <memory>
#include <type_traits>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/tree/KyMasterReports.h"

using namespace KyNInventoryIDs;

namespace
{
std::string difference(const KySampleTree& sample, const char* expected)
{
  const KySampleTree expectedTree(expected);
  return KyTreeDifference(sample.root(), expectedTree.root());
}

KyCInventoryParameter* makeInt(KyCErrorListPool& pool, const KyCInventoryAddress& id, int value)
{
  return new (pool) KyCInventoryParameter(pool, id, id.getCategoryNameCStr(), value, "", false, 0);
}

// BOARD has a shared data item for a friend, as linking makes it.
class KyCLinkedTree : public KySampleTree
{
public:
  explicit KyCLinkedTree(const char* text) : KySampleTree(text)
  {
    KyInventoryAccess::setFriend(*item("BOARD"), item("SHARED_DATA"));
  }
};

KyCInventoryItem* topOf(KyCInventoryItem* item)
{
  while (item->getParent() != nullptr)
    item = item->getParent();
  return item;
}

const KyCInventoryAddress s_unknown(5000);    // not predefined
}    // namespace

TEST(KyCInventoryItemAddPath, ofAnEmptyPathIsTheItemItselfAndCreatesNothing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().addPath(pool, THIS_NODE), &sample.root());
  EXPECT_EQ(difference(sample, "ROOT"), "");
}

TEST(KyCInventoryItemAddPath, createsWhatIsMissingAndNamesItAfterItsID)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[1]");
  KyCInventoryItem* const made = sample.root().addPath(pool, BOARD[2] / IOCHANNEL[3]);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->getAddress(), BOARD[2] / IOCHANNEL[3]);
  EXPECT_EQ(made->getDescription(), Map.get(38));
  EXPECT_EQ(difference(sample, "ROOT/BOARD[1]; BOARD[2]/IOCHANNEL[3]"), "");
}

TEST(KyCInventoryItemAddPath, findsWhatIsThere)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2]/IOCHANNEL");
  EXPECT_EQ(sample.root().addPath(pool, BOARD[2] / IOCHANNEL), sample.item("BOARD[2]/IOCHANNEL"));
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2]/IOCHANNEL"), "");
}

TEST(KyCInventoryItemAddPath, throughAParametersIDReportsTheRootItem)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_EQ(sample.root().addPath(pool, SIZE / BOARD), nullptr);
  EXPECT_REPORTS(pool,
                 {0x130081A, "addPath",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID SIZE at "
                  "root item. The ID already exists."});
  EXPECT_EQ(difference(sample, "ROOT SIZE=1"), "");
}

TEST(KyCInventoryItemAddPath, throughAParametersIDReportsIDWithIndexAndAddress)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2] SIZE=1");
  EXPECT_EQ(sample.root().addPath(pool, BOARD[2] / SIZE[3]), nullptr);
  EXPECT_REPORTS(pool,
                 {0x130081A, "addPath",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID SIZE[3] "
                  "at BOARD[2]. The ID already exists."});
}

TEST(KyCInventoryItemAddPath, throughTheIDOfAFriendsParameterReports)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA SIZE=1");
  EXPECT_EQ(sample.root().addPath(pool, BOARD / SIZE), nullptr);
  EXPECT_REPORTS(pool,
                 {0x130081A, "addPath",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID SIZE at "
                  "BOARD. The ID already exists."});
}

TEST(KyCInventoryItemAddPath, withANonPredefinedIDInTheMiddleKeepsTheLevelsBeforeIt)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().addPath(pool, BOARD / IOCHANNEL / s_unknown[2] / DEVICE), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "addPath", "Cannot assign non-predefined ID 5000[2] to item or parameter."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD/IOCHANNEL"), "");
}

TEST(KyCInventoryItemAddPath, walksThroughExistingItemsOfNonPredefinedIDs)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/5000");
  EXPECT_NE(sample.root().addPath(pool, s_unknown / BOARD), nullptr);
  EXPECT_EQ(difference(sample, "ROOT/5000/BOARD"), "");
}

TEST(KyCInventoryItemAddPath, doesNotWalkIntoTheFriendAndLeavesTheNewItemToTheCaller)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyCInventoryItem* const made = sample.root().addPath(pool, BOARD / IOCHANNEL);
  ASSERT_NE(made, nullptr);
  EXPECT_NE(made, sample.item("SHARED_DATA/IOCHANNEL"));
  EXPECT_EQ(made->getParent(), nullptr);
  EXPECT_EQ(difference(sample, "ROOT/BOARD; SHARED_DATA/IOCHANNEL"), "");
  delete made;
}

TEST(KyCInventoryItemAddPath, goesOnBelowAnItemThatIsLeftToTheCaller)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyCInventoryItem* const made = sample.root().addPath(pool, BOARD / IOCHANNEL / DEVICE[2] / SLAVE);
  ASSERT_NE(made, nullptr);
  const std::unique_ptr<KyCInventoryItem> top(topOf(made));
  EXPECT_NE(top.get(), &sample.root());
  EXPECT_EQ(KyTreeDifference(*top, KySampleTree("IOCHANNEL/DEVICE[2]/SLAVE").root()), "");
  EXPECT_EQ(difference(sample, "ROOT/BOARD; SHARED_DATA/IOCHANNEL"), "");
}

TEST(KyCInventoryItemAddPath, thatFailsBelowAnItemThatIsNotAddedLeavesNothingBehind)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  EXPECT_EQ(sample.root().addPath(pool, BOARD / IOCHANNEL / DEVICE / s_unknown), nullptr);    // a leak checker watches
  EXPECT_REPORTS(pool, {0x130080A, "addPath", "Cannot assign non-predefined ID 5000 to item or parameter."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD; SHARED_DATA/IOCHANNEL"), "");
}

TEST(KyCInventoryItemAddPath, addsItemsBesideTheFriendsOthers)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyCInventoryItem* const made = sample.root().addPath(pool, BOARD / IOCHANNEL[2]);
  EXPECT_EQ(made, sample.item("BOARD/IOCHANNEL[2]"));
}

TEST(KyCInventoryItemAddParameter, hangsItBelowTheItemAndReturnsTheItem)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD NAME=\"n\"");
  KyCInventoryParameter* const size = makeInt(pool, SIZE, 5);
  EXPECT_EQ(sample.root().addParameter(pool, BOARD, size), sample.item("BOARD"));
  EXPECT_EQ(size->getParent(), sample.item("BOARD"));
  EXPECT_EQ(difference(sample, "ROOT/BOARD NAME=\"n\" SIZE=5"), "");
}

TEST(KyCInventoryItemAddParameter, toAMissingItemIsNullWithoutAReportAndCreatesNothing)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  const std::unique_ptr<KyCInventoryParameter> size(makeInt(pool, SIZE, 5));
  EXPECT_EQ(sample.root().addParameter(pool, DEVICE, size.get()), nullptr);
  EXPECT_EQ(sample.root().addParameter(pool, BOARD / IOCHANNEL, size.get()), nullptr);    // not through the friend
  EXPECT_EQ(sample.root().addParameter(pool, DEVICE, nullptr), nullptr);
  EXPECT_EQ(size->getParent(), nullptr);
  EXPECT_EQ(difference(sample, "ROOT/BOARD; SHARED_DATA/IOCHANNEL"), "");
}

TEST(KyCInventoryItemAddParameter, ofNullTellsWhetherTheItemExists)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD");
  EXPECT_EQ(sample.root().addParameter(pool, THIS_NODE, nullptr), &sample.root());
  EXPECT_EQ(sample.root().addParameter(pool, BOARD, nullptr), sample.item("BOARD"));
}

TEST(KyCInventoryItemAddParameter, ofTheIDOfASubItemWithIndexOneReports)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/SIZE");
  const std::unique_ptr<KyCInventoryParameter> size(makeInt(pool, SIZE, 5));
  EXPECT_EQ(sample.root().addParameter(pool, THIS_NODE, size.get()), nullptr);
  EXPECT_REPORTS(pool,
                 {0x130081A, "addParameter",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID SIZE at "
                  "root item. The ID already exists."});
}

TEST(KyCInventoryItemAddParameter, ofTheIDOfASubItemWithAnotherIndexIsAccepted)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/SIZE[2]");
  EXPECT_EQ(sample.root().addParameter(pool, THIS_NODE, makeInt(pool, SIZE, 5)), &sample.root());
}

TEST(KyCInventoryItemAddParameter, ofTheIDOfAFriendsSubItemReports)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/SIZE");
  const std::unique_ptr<KyCInventoryParameter> size(makeInt(pool, SIZE, 5));
  EXPECT_EQ(sample.root().addParameter(pool, BOARD, size.get()), nullptr);
  EXPECT_REPORTS(pool,
                 {0x130081A, "addParameter",
                  "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID SIZE at "
                  "BOARD. The ID already exists."});
}

TEST(KyCInventoryItemAddParameter, besideAFriendsParameterOfTheSameIDIsAccepted)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA SIZE=1");
  KyCInventoryParameter* const size = makeInt(pool, SIZE, 5);
  EXPECT_EQ(sample.root().addParameter(pool, BOARD, size), sample.item("BOARD"));
  EXPECT_EQ(sample.root().getParameter(BOARD / SIZE), size);
}

TEST(KyCInventoryItemAddParameter, refusedByTheListReportsAndLeavesTheParameterToTheCaller)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2] SIZE=1");
  const std::unique_ptr<KyCInventoryParameter> second(makeInt(pool, SIZE, 5));
  EXPECT_EQ(sample.root().addParameter(pool, BOARD[2], second.get()), nullptr);
  EXPECT_REPORTS(
      pool,
      {0x1101002, "addParameter", "Parameter 98 cannot be added to composite (585, 2), which has one of that id."},
      {0x1300812, "addParameter", "Cannot add parameter with ID SIZE at BOARD[2]."});
  EXPECT_EQ(second->getParent(), nullptr);
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2] SIZE=1"), "");
}

TEST(KyCInventoryItemAddParameter, ofAnOwnedParameterReportsAtTheRootItem)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD SIZE=1");
  KyCInventoryParameter* const size = sample.parameter("BOARD/SIZE");
  EXPECT_EQ(sample.root().addParameter(pool, THIS_NODE, size), nullptr);
  EXPECT_REPORTS(pool,
                 {0x1101001, "addParameter",
                  "Parameter 98 belongs to a composite already; it cannot be added to composite (1, 1)."},
                 {0x1300812, "addParameter", "Cannot add parameter with ID SIZE at root item."});
  EXPECT_EQ(size->getParent(), sample.item("BOARD"));
}

TEST(KyCInventoryItemSetID, givesIDIndexAndDescription)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD[2] description=\"spare\"");
  KyCInventoryItem* const item = sample.item("BOARD[2]");
  item->setID(DEVICE[5]);
  EXPECT_EQ(item->getID(), KyCInventoryAddress(675, 5));
  EXPECT_EQ(item->getDescription(), Map.get(675));
  EXPECT_EQ(sample.root().getItem(DEVICE[5]), item);
  EXPECT_EQ(sample.root().getItem(BOARD[2]), nullptr);
}

TEST(KyCInventoryItemSetID, ofARootIsNoConflict)
{
  KyMasterReports master;
  KySampleTree sample("ROOT SIZE=1");
  sample.root().setID(SIZE);
  EXPECT_EQ(sample.root().getID(), KyCInventoryAddress(98, 1));
}

TEST(KyCInventoryItemSetID, toAPathReportsAndChangesNothing)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD");
  sample.item("BOARD")->setID(DEVICE / BOARD[2]);
  EXPECT_REPORTS(master,
                 {0x1300819, "setID",
                  "Internal error. Kyrel Support information: ID has not exactly one element: DEVICE/BOARD[2]"});
  EXPECT_EQ(difference(sample, "ROOT/BOARD"), "");
}

TEST(KyCInventoryItemSetID, toTheEmptyAddressReportsAndChangesNothing)
{
  KyMasterReports master;
  KySampleTree sample("ROOT");
  sample.root().setID(THIS_NODE);
  EXPECT_REPORTS(master,
                 {0x1300819, "setID", "Internal error. Kyrel Support information: ID has not exactly one element: "});
  EXPECT_EQ(difference(sample, "ROOT"), "");
}

TEST(KyCInventoryItemSetID, toANonPredefinedIDReportsAndChangesNothing)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD");
  sample.item("BOARD")->setID(s_unknown[3]);
  EXPECT_REPORTS(master, {0x130080A, "setID", "Cannot assign non-predefined ID 5000[3] to item or parameter."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD"), "");
}

TEST(KyCInventoryItemSetID, toASiblingsIDReportsTheNewIDFirstAndStillRenames)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD[1]; BOARD[2]; BOARD[3]");
  KyCInventoryItem* const first = sample.item("BOARD[1]");
  KyCInventoryItem* const third = sample.item("BOARD[3]");
  third->setID(BOARD[1]);
  EXPECT_REPORTS(master,
                 {0x130081B, "setID",
                  "Internal error. Kyrel Support information: Cannot change ID of BOARD to BOARD[3]. The ID already "
                  "exists at the parent item."});
  EXPECT_EQ(third->getID(), BOARD[1]);
  EXPECT_EQ(sample.root().getItem(BOARD[1]), first);    // the first in list order answers
  EXPECT_EQ(sample.root().getItem(BOARD[3]), nullptr);
}

TEST(KyCInventoryItemSetID, makesTheEarlierSiblingAnswerToASharedID)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD[1]; BOARD[2]");
  KyCInventoryItem* const first = sample.item("BOARD[1]");
  first->setID(BOARD[2]);
  EXPECT_EQ(master.takeReports().size(), 1u);
  EXPECT_EQ(sample.root().getItem(BOARD[2]), first);
}

TEST(KyCInventoryItemSetID, makesTheEarlierOfManySiblingsAnswerToASharedID)
{
  KyMasterReports master;
  KyTestPool pool;
  KySampleTree sample("ROOT");
  for (unsigned int n = 1; n <= 100; ++n)
    sample.root().addPath(pool, BOARD[n]);
  KyCInventoryItem* const early = sample.item("BOARD[20]");
  KyCInventoryItem* const late = sample.item("BOARD[80]");
  late->setID(BOARD[20]);
  EXPECT_EQ(sample.root().getItem(BOARD[20]), early);
  early->setID(BOARD[500]);
  EXPECT_EQ(sample.root().getItem(BOARD[20]), late);
  EXPECT_EQ(sample.root().getItem(BOARD[500]), early);
  EXPECT_EQ(sample.root().getItem(BOARD[80]), nullptr);
  early->setID(BOARD[20]);
  EXPECT_EQ(sample.root().getItem(BOARD[20]), early);
  EXPECT_EQ(master.takeReports().size(), 2u);
}

TEST(KyCInventoryItemSetID, toAParametersIDReportsAndStillRenames)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD[2]/DEVICE; BOARD[2] SIZE=1");
  KyCInventoryItem* const device = sample.item("BOARD[2]/DEVICE");
  device->setID(SIZE[4]);
  EXPECT_REPORTS(master,
                 {0x130081B, "setID",
                  "Internal error. Kyrel Support information: Cannot change ID of SIZE[4] to BOARD[2]/DEVICE. The ID "
                  "already exists at the parent item."});
  EXPECT_EQ(sample.root().getItem(BOARD[2] / SIZE[4]), device);
}

TEST(KyCInventoryItemSetID, toWhatTheParentsFriendHasReports)
{
  KyMasterReports master;
  KyCLinkedTree sample("ROOT/BOARD/DEVICE; SHARED_DATA/IOCHANNEL");
  sample.item("BOARD/DEVICE")->setID(IOCHANNEL);
  EXPECT_REPORTS(master,
                 {0x130081B, "setID",
                  "Internal error. Kyrel Support information: Cannot change ID of IOCHANNEL to BOARD/DEVICE. The ID "
                  "already exists at the parent item."});
  EXPECT_EQ(sample.root().getItem(BOARD / IOCHANNEL)->getParent(), sample.item("BOARD"));
}

TEST(KyCInventoryItemSetID, toTheItemsOwnIDReportsNothing)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD[2]");
  sample.item("BOARD[2]")->setID(BOARD[2]);
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2]"), "");
}

TEST(KyCInventoryItemCreateParameter, createsThePathAndTheParameter)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  KyCInventoryParameter* const size = sample.root().createParameter<int>(pool, BOARD[2] / SIZE, 4096, "kB", true, 7);
  ASSERT_NE(size, nullptr);
  EXPECT_EQ(size->getAddress(), BOARD[2] / SIZE);
  EXPECT_EQ(size->getDescription(), Map.get(98));
  EXPECT_EQ(difference(sample, "ROOT/BOARD[2] SIZE Int32 4096 unit=\"kB\" modifiable relevance=7"), "");
}

TEST(KyCInventoryItemCreateParameter, dropsTheIndexOfTheLastElement)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  KyCInventoryParameter* const size = sample.root().createParameter<int>(pool, SIZE[9], 1, nullptr, false, 0);
  ASSERT_NE(size, nullptr);
  EXPECT_EQ(size->getID(), KyCInventoryAddress(98, 1));
  EXPECT_STREQ(size->getUnit(), "");
}

TEST(KyCInventoryItemCreateParameter, atTheEmptyAddressReports)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().createParameter<int>(pool, THIS_NODE, 1, "", false, 0), nullptr);
  EXPECT_REPORTS(pool, {0x1300808, "createParameter",
                        "Internal error. Kyrel Support information: An empty address is not allowed."});
}

TEST(KyCInventoryItemCreateParameter, behindAFailedPathReportsTheCauseFirst)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().createParameter<int>(pool, BOARD / s_unknown / SIZE, 1, "", false, 0), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "addPath", "Cannot assign non-predefined ID 5000 to item or parameter."},
                 {0x1300809, "createParameter", "Cannot find or create path."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD"), "");
}

TEST(KyCInventoryItemCreateParameter, ofAnIDWithAnEmptyNameReports)
{
  static const KyCInventoryAddress s_nameless(Map.add(Map.getCount(), ""));
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().createParameter(pool, s_nameless, 7, "", false, 0), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "createParameter", ""});
  EXPECT_EQ(sample.root().getParameterByOrdinalNumber(0), nullptr);
}

TEST(KyCInventoryItemCreateParameter, ofANonPredefinedIDReportsAndKeepsThePath)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  EXPECT_EQ(sample.root().createParameter<int>(pool, BOARD / s_unknown[2], 1, "", false, 0), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "createParameter", "Cannot assign non-predefined ID 5000[2] to item or parameter."});
  EXPECT_EQ(difference(sample, "ROOT/BOARD"), "");
}

TEST(KyCInventoryItemCreateParameter, refusedByTheListReportsCauseThenCallerAndFreesTheParameter)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_EQ(sample.root().createParameter<int>(pool, SIZE, 2, "", false, 0), nullptr);
  EXPECT_REPORTS(
      pool, {0x1101002, "addParameter", "Parameter 98 cannot be added to composite (1, 1), which has one of that id."},
      {0x1300812, "addParameter", "Cannot add parameter with ID SIZE at root item."},
      {0x130080B, "createParameter", "Cannot create parameter SIZE."});
  EXPECT_EQ(difference(sample, "ROOT SIZE=1"), "");
}

TEST(KyCInventoryItemCreateParameter, atASubItemsIDReportsFromAddParameterAndThenItself)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD");
  EXPECT_EQ(sample.root().createParameter<double>(pool, BOARD, 2.0, "", false, 0), nullptr);
  EXPECT_REPORTS(
      pool,
      {0x130081A, "addParameter",
       "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID BOARD at root "
       "item. The ID already exists."},
      {0x130080B, "createParameter", "Cannot create parameter BOARD."});
}

TEST(KyCInventoryItemCreateParameter, inAPathThatIsLeftToTheCallerIsPartOfThatPath)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyCInventoryParameter* const size =
      sample.root().createParameter<int>(pool, BOARD / IOCHANNEL / SIZE, 5, "", false, 0);
  ASSERT_NE(size, nullptr);
  const std::unique_ptr<KyCInventoryItem> top(topOf(size->getParent()));
  EXPECT_EQ(KyTreeDifference(*top, KySampleTree("IOCHANNEL SIZE=5").root()), "");
  EXPECT_EQ(difference(sample, "ROOT/BOARD; SHARED_DATA/IOCHANNEL"), "");
}

TEST(KyCInventoryItemCreateParameter, thatFailsInAPathThatIsNotAddedLeavesNothingBehind)
{
  KyTestPool pool;
  KyCLinkedTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  EXPECT_EQ(sample.root().createParameter<int>(pool, BOARD / IOCHANNEL / s_unknown, 5, "", false, 0), nullptr);
  EXPECT_REPORTS(pool, {0x130080A, "createParameter", "Cannot assign non-predefined ID 5000 to item or parameter."});
}

TEST(KyCInventoryItemCreateParameter, countsOnlyItsOwnReportsAsFailures)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  pool.setError(0x1300808, __LINE__, "somebodyElse", nullptr);
  EXPECT_NE(sample.root().createParameter<int>(pool, BOARD / SIZE, 1, "", false, 0), nullptr);
  EXPECT_EQ(pool.takeReports().size(), 1u);
}

// What does not compile is decided by the trait; here it is asked without compiling anything that does not.
namespace
{
template <typename T, typename = void>
struct canCreate : std::false_type
{
};
template <typename T>
struct canCreate<T, std::void_t<decltype(std::declval<KyCInventoryItem&>().createParameter<T>(
                        std::declval<KyCErrorListPool&>(), std::declval<const KyCInventoryAddress&>(),
                        std::declval<const T&>(), "", false, 0u))>> : std::true_type
{
};
template <typename T, typename = void>
struct canGet : std::false_type
{
};
template <typename T>
struct canGet<
    T, std::void_t<decltype(std::declval<KyCInventoryParameter&>().getValue<T>(std::declval<KyCErrorListPool&>()))>>
    : std::true_type
{
};
template <typename T, typename = void>
struct canSet : std::false_type
{
};
template <typename T>
struct canSet<T, std::void_t<decltype(std::declval<KyCInventoryParameter&>().setValue<T>(
                     std::declval<KyCErrorListPool&>(), std::declval<const T&>()))>> : std::true_type
{
};

template <typename... T>
constexpr bool allValueTypes()
{
  return (... && (is_kyrel_type<T>::value && canCreate<T>::value && canGet<T>::value && canSet<T>::value));
}
template <typename... T>
constexpr bool noValueTypes()
{
  return (... && !(is_kyrel_type<T>::value || canCreate<T>::value || canGet<T>::value || canSet<T>::value));
}
}    // namespace

TEST(is_kyrel_type, isTrueForExactlyTheTwelveValueTypes)
{
  EXPECT_TRUE((allValueTypes<signed char, short, int, long long, unsigned char, unsigned short, unsigned int,
                             unsigned long long, float, double, KyCString, KyCVersion>()));
  EXPECT_TRUE((noValueTypes<bool, char, wchar_t, long, unsigned long, long double, void*, char*, const int,
                            KyCInventoryAddress>()));
}

TEST(is_kyrel_type, isFalseForConstCharWhichCanBeReadAllTheSame)
{
  EXPECT_FALSE(is_kyrel_type<const char*>::value);
  EXPECT_FALSE(canCreate<const char*>::value);
  EXPECT_FALSE(canSet<const char*>::value);
  EXPECT_TRUE(canGet<const char*>::value);
}
