// Identity and navigation.

#include "inventory/KyCInventoryItem.h"

#include <cstring>
#include <type_traits>

#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/tree/KyMasterReports.h"

using namespace KyNInventoryIDs;

namespace
{
using TItem = KyCInventoryItem;

// Attached through the base, which does not mind two children of the same numbers.
KyCInventoryItem* attachTwin(KyCErrorListPool& pool, KyCInventoryItem& parent, const KyCInventoryAddress& id)
{
  TItem* const item = new (pool) TItem(pool, id, id.getCategoryNameCStr());
  EXPECT_EQ(KyInventoryAccess::toComposite(&parent)->attach(KyInventoryAccess::toComposite(item)), 0);
  return item;
}
}    // namespace

TEST(KyCInventoryItem, isNoPublicKindOfCompositeNorOfTheVirtualClass)
{
  EXPECT_FALSE((std::is_convertible_v<KyCInventoryItem*, KyCComposite*>));
  EXPECT_TRUE((std::is_base_of_v<KyCComposite, KyCInventoryItem>));
  EXPECT_FALSE(std::is_copy_constructible_v<KyCInventoryItem>);
}

TEST(KyCInventoryItem, constructionTakesIDIndexAndDescription)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, BOARD[2], "the second board");
  EXPECT_EQ(item.getID(), KyCInventoryAddress(585, 2));
  EXPECT_STREQ(item.getDescription(), "the second board");
  EXPECT_EQ(item.getParent(), nullptr);
  EXPECT_EQ(item.getNext(), nullptr);
  EXPECT_EQ(item.getFirstSubItem(), nullptr);
  EXPECT_EQ(item.getParameterByOrdinalNumber(0), nullptr);
  EXPECT_EQ(item.getUpdater(), nullptr);
  EXPECT_EQ(KyInventoryAccess::getFriend(item), nullptr);
}

TEST(KyCInventoryItem, constructionWithAPathReportsTheDescriptionAndTakesTheLastElement)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, ROOT / BOARD[3], "spare");
  EXPECT_REPORTS(pool,
                 {0x1300800, "KyCInventoryItem",
                  "Internal error. Kyrel Support information: Initializing item or parameter of category spare: ID "
                  "has not exactly one element."});
  EXPECT_EQ(item.getID(), KyCInventoryAddress(585, 3));
  EXPECT_STREQ(item.getDescription(), "spare");
}

TEST(KyCInventoryItem, constructionWithAnEmptyAddressReportsAndHasIDAndIndexZero)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, THIS_NODE, nullptr);
  EXPECT_REPORTS(pool,
                 {0x1300800, "KyCInventoryItem",
                  "Internal error. Kyrel Support information: Initializing item or parameter of category : ID has "
                  "not exactly one element."});
  EXPECT_EQ(item.getID(), KyCInventoryAddress(0, 0));
}

TEST(KyCInventoryItem, constructionWithANullDescriptionReadsBackAsEmpty)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, BOARD, nullptr);
  EXPECT_STREQ(item.getDescription(), "");
}

TEST(KyCInventoryItem, aDescriptionThatIsTheRegisteredNameIsKeptByPointerAnyOtherIsCopied)
{
  KyTestPool pool;
  char name[] = "BOARD";
  const KyCInventoryItem named(pool, BOARD[4], name);
  EXPECT_EQ(named.getDescription(), Map.get(585));
  char other[] = "board";
  const KyCInventoryItem described(pool, BOARD, other);
  other[0] = 'x';
  EXPECT_STREQ(described.getDescription(), "board");
}

TEST(KyCInventoryItem, anIDThatIsNotPredefinedIsNoErrorOfConstruction)
{
  KyTestPool pool;
  const KyCInventoryItem item(pool, KyCInventoryAddress(5000, 7), "unknown");
  EXPECT_EQ(item.getID(), KyCInventoryAddress(5000, 7));
  EXPECT_STREQ(item.getDescription(), "unknown");
}

TEST(KyCInventoryItem, parentSiblingsAndSubItemsAreReachedInListOrder)
{
  KySampleTree sample("ROOT/BOARD[1]/IOCHANNEL; BOARD[2]");
  KyCInventoryItem* const first = sample.root().getFirstSubItem();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->getID(), KyCInventoryAddress(585, 1));
  EXPECT_EQ(first->getParent(), &sample.root());
  ASSERT_NE(first->getNext(), nullptr);
  EXPECT_EQ(first->getNext()->getID(), KyCInventoryAddress(585, 2));
  EXPECT_EQ(first->getNext()->getNext(), nullptr);
  EXPECT_EQ(first->getFirstSubItem()->getParent(), first);
  EXPECT_EQ(sample.root().getParent(), nullptr);
  EXPECT_EQ(sample.root().getNext(), nullptr);
}

TEST(KyCInventoryItem, parametersAreCountedInListOrderAndNullBeyondTheEnd)
{
  KySampleTree sample("ROOT SIZE=1 NAME=\"n\" OFFSET=2");
  EXPECT_STREQ(sample.root().getParameterByOrdinalNumber(0)->getIDString(), "SIZE");
  EXPECT_STREQ(sample.root().getParameterByOrdinalNumber(1)->getIDString(), "NAME");
  EXPECT_STREQ(sample.root().getParameterByOrdinalNumber(2)->getIDString(), "OFFSET");
  EXPECT_EQ(sample.root().getParameterByOrdinalNumber(3), nullptr);
  EXPECT_EQ(sample.root().getParameterByOrdinalNumber(0xFFFFFFFFu), nullptr);
}

TEST(KyCInventoryItem, getItemOfTheEmptyAddressIsTheItemItself)
{
  KySampleTree sample("ROOT/BOARD");
  EXPECT_EQ(sample.root().getItem(THIS_NODE), &sample.root());
  KyCInventoryItem* const board = sample.item("BOARD");
  EXPECT_EQ(board->getItem(KyCInventoryAddress()), board);
}

TEST(KyCInventoryItem, getParameterOfTheEmptyAddressIsNull)
{
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_EQ(sample.root().getParameter(THIS_NODE), nullptr);
}

TEST(KyCInventoryItem, ofTwoSubItemsOfOneIDAndIndexOnlyTheFirstIsReached)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[1]; BOARD[2]");
  KyCInventoryItem* const first = sample.item("BOARD[1]");
  KyCInventoryItem* const twin = attachTwin(pool, sample.root(), BOARD[1]);
  twin->createParameter<int>(pool, SIZE, 1, "", false, 0);
  EXPECT_EQ(sample.root().getItem(BOARD[1]), first);
  EXPECT_EQ(sample.root().getParameter(BOARD[1] / SIZE), nullptr);
  first->detach();
  EXPECT_EQ(sample.root().getItem(BOARD[1]), twin);
  delete first;
}

TEST(KyCInventoryItem, theFirstMatchSettlesTheLevelEvenWhenTheDescentYieldsNothing)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[1]");
  KyCInventoryItem* const twin = attachTwin(pool, sample.root(), BOARD[1]);
  twin->addPath(pool, IOCHANNEL);
  EXPECT_EQ(sample.root().getItem(BOARD[1] / IOCHANNEL), nullptr);
}

TEST(KyCInventoryItem, aSubItemOfTheSameIDButAnotherIndexDoesNotMatch)
{
  KySampleTree sample("ROOT/BOARD[2]");
  EXPECT_EQ(sample.root().getItem(BOARD), nullptr);
  EXPECT_EQ(sample.root().getItem(BOARD[3]), nullptr);
  EXPECT_NE(sample.root().getItem(BOARD[2]), nullptr);
}

TEST(KyCInventoryItem, getParameterIgnoresTheIndexOfTheLastElement)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE=1");
  KyCInventoryParameter* const size = sample.item("BOARD[2]")->getParameterByOrdinalNumber(0);
  EXPECT_EQ(sample.root().getParameter(BOARD[2] / SIZE), size);
  EXPECT_EQ(sample.root().getParameter(BOARD[2] / SIZE[9]), size);
  EXPECT_EQ(sample.root().getParameter(BOARD[2] / SIZE[0]), size);
  EXPECT_EQ(sample.root().getParameter(BOARD / SIZE), nullptr);
}

TEST(KyCInventoryItem, aFriendAnswersTheWholeAddressWhenNoOwnSubItemMatches)
{
  KySampleTree sample("ROOT/BOARD; SHARED_DATA[2]/IOCHANNEL/DEVICE SIZE=7");
  KyCInventoryItem* const board = sample.item("BOARD");
  KyInventoryAccess::setFriend(*board, sample.item("SHARED_DATA[2]"));
  EXPECT_EQ(board->getItem(IOCHANNEL / DEVICE), sample.item("SHARED_DATA[2]/IOCHANNEL/DEVICE"));
  EXPECT_EQ(board->getParameter(IOCHANNEL / DEVICE / SIZE), sample.parameter("SHARED_DATA[2]/IOCHANNEL/DEVICE/SIZE"));
  EXPECT_EQ(sample.root().getItem(BOARD / IOCHANNEL), sample.item("SHARED_DATA[2]/IOCHANNEL"));
  EXPECT_EQ(board->getItem(DEVICE), nullptr);
}

TEST(KyCInventoryItem, anOwnSubItemHidesTheFriendsEvenWhereItHasLess)
{
  KySampleTree sample("ROOT/BOARD/IOCHANNEL; SHARED_DATA/IOCHANNEL/DEVICE");
  KyCInventoryItem* const board = sample.item("BOARD");
  KyInventoryAccess::setFriend(*board, sample.item("SHARED_DATA"));
  EXPECT_EQ(board->getItem(IOCHANNEL), sample.item("BOARD/IOCHANNEL"));
  EXPECT_EQ(board->getItem(IOCHANNEL / DEVICE), nullptr);
}

TEST(KyCInventoryItem, aFriendsFriendAnswersForItemsButNotForParameters)
{
  KySampleTree sample("ROOT/BOARD; SHARED_DATA[1]; SHARED_DATA[2]/IOCHANNEL; SHARED_DATA[2] SIZE=1");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA[1]"));
  KyInventoryAccess::setFriend(*sample.item("SHARED_DATA[1]"), sample.item("SHARED_DATA[2]"));
  EXPECT_EQ(sample.root().getItem(BOARD / IOCHANNEL), sample.item("SHARED_DATA[2]/IOCHANNEL"));
  EXPECT_EQ(sample.root().getParameter(BOARD / SIZE), nullptr);
  EXPECT_NE(sample.root().getParameter(SHARED_DATA[1] / SIZE), nullptr);
}

TEST(KyCInventoryItem, anOwnParameterHidesTheFriends)
{
  KySampleTree sample("ROOT/BOARD SIZE=1; SHARED_DATA SIZE=2 OFFSET=3");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA"));
  EXPECT_EQ(sample.root().getParameter(BOARD / SIZE)->getParent(), sample.item("BOARD"));
  EXPECT_EQ(sample.root().getParameter(BOARD / OFFSET)->getParent(), sample.item("SHARED_DATA"));
}

TEST(KyCInventoryItem, aRingOfFriendsEndsTheSearch)
{
  KySampleTree sample("ROOT/BOARD[1]; BOARD[2]; BOARD[3]/IOCHANNEL; BOARD[4]; DEVICE");
  for (unsigned int n = 1; n <= 4; ++n)
    KyInventoryAccess::setFriend(*sample.root().getItem(BOARD[n]), sample.root().getItem(BOARD[n % 4 + 1]));
  KyInventoryAccess::setFriend(*sample.item("DEVICE"), sample.item("BOARD[1]"));    // leads into the ring
  EXPECT_EQ(sample.root().getItem(BOARD[1] / DEVICE), nullptr);
  EXPECT_EQ(sample.root().getItem(DEVICE / DEVICE), nullptr);
  EXPECT_EQ(sample.root().getItem(DEVICE / IOCHANNEL), sample.item("BOARD[3]/IOCHANNEL"));
  EXPECT_EQ(sample.root().getItem(BOARD[4] / IOCHANNEL), sample.item("BOARD[3]/IOCHANNEL"));
  KyInventoryAccess::setFriend(sample.root(), &sample.root());
  EXPECT_EQ(sample.root().getItem(CAN), nullptr);
}

TEST(KyCInventoryItem, addItemAppendsAndReturnsTheParent)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD/IOCHANNEL");
  KyCInventoryItem* const item = new (pool) KyCInventoryItem(pool, DEVICE, "DEVICE");
  EXPECT_EQ(sample.root().addItem(BOARD, item), sample.item("BOARD"));
  EXPECT_EQ(item->getParent(), sample.item("BOARD"));
  EXPECT_EQ(sample.item("BOARD/IOCHANNEL")->getNext(), item);
}

TEST(KyCInventoryItem, addItemRefusesAnIDThatASubItemHas)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD[2]");
  KyCInventoryItem same(pool, BOARD[2], "BOARD");
  EXPECT_EQ(sample.root().addItem(THIS_NODE, &same), nullptr);
  EXPECT_EQ(same.getParent(), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD[2]").root()), "");
}

TEST(KyCInventoryItem, addItemRefusesAnIDThatAParameterHasWhateverTheIndex)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1");
  KyCInventoryItem first(pool, SIZE, "SIZE");
  KyCInventoryItem second(pool, SIZE[2], "SIZE");
  EXPECT_EQ(sample.root().addItem(THIS_NODE, &first), nullptr);
  EXPECT_EQ(sample.root().addItem(THIS_NODE, &second), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT SIZE=1").root()), "");
}

TEST(KyCInventoryItem, addItemRefusesWhatTheFriendHas)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL; SHARED_DATA SIZE=1");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA"));
  KyCInventoryItem channel(pool, IOCHANNEL, "IOCHANNEL");
  KyCInventoryItem size(pool, SIZE, "SIZE");
  EXPECT_EQ(sample.root().addItem(BOARD, &channel), nullptr);
  EXPECT_EQ(sample.root().addItem(BOARD, &size), nullptr);
  EXPECT_EQ(sample.item("BOARD")->getFirstSubItem(), nullptr);
}

TEST(KyCInventoryItem, addItemFindsItsPlaceWithoutTheFriend)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA"));
  KyCInventoryItem item(pool, DEVICE, "DEVICE");
  EXPECT_EQ(sample.root().addItem(BOARD / IOCHANNEL, &item), nullptr);
  EXPECT_EQ(sample.root().addItem(BOARD / IOCHANNEL, nullptr), nullptr);
}

TEST(KyCInventoryItem, addItemDoesNotCreateMissingLevels)
{
  KyTestPool pool;
  KySampleTree sample("ROOT/BOARD");
  KyCInventoryItem item(pool, DEVICE, "DEVICE");
  EXPECT_EQ(sample.root().addItem(BOARD / IOCHANNEL, &item), nullptr);
  EXPECT_EQ(sample.item("BOARD")->getFirstSubItem(), nullptr);
}

TEST(KyCInventoryItem, addItemOfNullTellsWhetherThePlaceExists)
{
  KySampleTree sample("ROOT/BOARD");
  EXPECT_EQ(sample.root().addItem(THIS_NODE, nullptr), &sample.root());
  EXPECT_EQ(sample.root().addItem(BOARD, nullptr), sample.item("BOARD"));
  EXPECT_EQ(sample.root().addItem(BOARD[2], nullptr), nullptr);
}

TEST(KyCInventoryItem, addItemRefusesAnItemThatHangsSomewhere)
{
  KySampleTree sample("ROOT/BOARD; DEVICE");
  EXPECT_EQ(sample.root().addItem(DEVICE, sample.item("BOARD")), nullptr);
  EXPECT_EQ(sample.item("BOARD")->getParent(), &sample.root());
}

TEST(KyCInventoryItem, addItemRefusesTheItemItselfAndTheItemsAboveIt)
{
  KySampleTree sample("ROOT/BOARD");
  EXPECT_EQ(sample.root().addItem(THIS_NODE, &sample.root()), nullptr);
  EXPECT_EQ(sample.root().addItem(BOARD, &sample.root()), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD").root()), "");
}

TEST(KyCInventoryItem, theAddressOfTheRootIsEmpty)
{
  KySampleTree sample("ROOT[3]");
  EXPECT_TRUE(sample.root().getAddress().isEmpty());
}

TEST(KyCInventoryItem, theAddressOfARootsChildIsItsIDAlone)
{
  KySampleTree sample("ROOT/BOARD[2]");
  EXPECT_EQ(sample.item("BOARD[2]")->getAddress(), KyCInventoryAddress(585, 2));
}

TEST(KyCInventoryItem, anAddressListsTheIDsFromTheRootsChildDown)
{
  KySampleTree sample("ROOT/BOARD[2]/IOCHANNEL[3]/DEVICE");
  EXPECT_STREQ(sample.item("BOARD[2]/IOCHANNEL[3]/DEVICE")->getAddress().toString().c_str(),
               "BOARD[2]/IOCHANNEL[3]/DEVICE");
}

TEST(KyCInventoryItem, detachOfARootChangesNothing)
{
  KySampleTree sample("ROOT/BOARD SIZE=1");
  EXPECT_EQ(sample.root().detach(), 0);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD SIZE=1").root()), "");
}

TEST(KyCInventoryItem, detachHandsTheSubtreeToTheCaller)
{
  KySampleTree sample("ROOT/BOARD[1]; BOARD[2]/IOCHANNEL; BOARD[3]");
  KyCInventoryItem* const second = sample.item("BOARD[2]");
  EXPECT_EQ(second->detach(), 0);
  EXPECT_EQ(second->getParent(), nullptr);
  EXPECT_EQ(second->getNext(), nullptr);
  EXPECT_TRUE(second->getAddress().isEmpty());
  EXPECT_STREQ(second->getItem(IOCHANNEL)->getAddress().toString().c_str(), "IOCHANNEL");
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD[1]; BOARD[3]").root()), "");
  delete second;
}

TEST(KyCInventoryItem, detachParameterHandsTheParameterToTheCaller)
{
  KyMasterReports master;
  KySampleTree sample("ROOT SIZE=1 NAME=\"n\"");
  KyCInventoryParameter* const size = sample.root().detachParameter(98);
  ASSERT_NE(size, nullptr);
  EXPECT_STREQ(size->getIDString(), "SIZE");
  EXPECT_EQ(size->getParent(), nullptr);
  EXPECT_EQ(size->getNext(), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT NAME=\"n\"").root()), "");
  delete size;
}

TEST(KyCInventoryItem, detachParameterOfAMissingIDIsNullAndSilent)
{
  KyMasterReports master;
  KySampleTree sample("ROOT SIZE=1");
  EXPECT_EQ(sample.root().detachParameter(3), nullptr);
}

TEST(KyCInventoryItem, theDestructorOfAUserLeavesItsFriendAlone)
{
  KySampleTree sample("ROOT/BOARD; SHARED_DATA/IOCHANNEL");
  KyInventoryAccess::setFriend(*sample.item("BOARD"), sample.item("SHARED_DATA"));
  KyCInventoryItem* const board = sample.item("BOARD");
  board->detach();
  delete board;
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/SHARED_DATA/IOCHANNEL").root()), "");
}
