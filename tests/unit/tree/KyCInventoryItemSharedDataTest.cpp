// Linking items to shared data: linkSharedData.

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyRecordingListener.h"
#include "support/KySampleTree.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr const char* INTERNAL = "Internal error. Kyrel Support information: ";

KyReport mutualReference(const std::string& item)
{
  return {0x1300813, "linkSharedData",
          INTERNAL + ("Shared data items may not reference each other. Item " + item) +
              " or one of its ancestors has a SHARED_DATA_INDEX parameter."};
}

KyReport nestedReference(const std::string& item)
{
  return {
      0x1300814, "linkSharedData",
      INTERNAL + ("Item " + item) + " has a SHARED_DATA_INDEX parameter although one of its ancestors already does."};
}

KyReport missing(const std::string& item, const std::string& shared)
{
  return {0x1300815, "linkSharedData",
          INTERNAL + ("Item " + item) + " references shared data item " + shared +
              ", but the shared data item does not exist."};
}

// A sample tree, linked at its root, with the warnings that this gave.
class KyCLinkedTree : public KySampleTree
{
public:
  explicit KyCLinkedTree(const std::string& text) : KySampleTree(text) { link(); }

  void link()
  {
    KyRecordingListener listener;
    KyTestPool pool;
    root().linkSharedData(pool, nullptr);
    warnings = listener.takeWarnings();
  }
  KyCInventoryItem* friendOf(const std::string& path) { return KyInventoryAccess::getFriend(*item(path)); }

  std::vector<KyReport> warnings;
};

const char s_user[] =
    "ROOT/SHARED_DATA[2] SIZE=16; SHARED_DATA[2]/CPU OFFSET=5\n"
    "BOARD[7] SHARED_DATA_INDEX:UInt32=2; BOARD[7]/CPU NAME=\"own\"";

#define EXPECT_WARNINGS(tree, ...) EXPECT_TRUE(sameReports((tree).warnings, {__VA_ARGS__}))
#define EXPECT_NO_WARNINGS(tree) EXPECT_TRUE(sameReports((tree).warnings, {}))
}    // namespace

TEST(KyCInventoryItemSharedData, aUserAndItsSubItemsAreLinkedToTheirCounterparts)
{
  KyTestPool pool;
  KyCLinkedTree tree(s_user);
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD[7]"), tree.item("SHARED_DATA[2]"));
  EXPECT_EQ(tree.friendOf("BOARD[7]/CPU"), tree.item("SHARED_DATA[2]/CPU"));
  EXPECT_EQ(tree.root().getValue<int>(pool, BOARD[7] / SIZE), 16);
  EXPECT_EQ(tree.root().getValue<int>(pool, BOARD[7] / CPU / OFFSET), 5);
}

TEST(KyCInventoryItemSharedData, linkingChangesNothingOfTheTreeItself)
{
  KyCLinkedTree tree(s_user);
  EXPECT_EQ(KyTreeDifference(tree.root(), KySampleTree(s_user).root()), "");
  EXPECT_EQ(KyInventoryAccess::getFriend(tree.root()), nullptr);
  EXPECT_EQ(tree.friendOf("SHARED_DATA[2]"), nullptr);
  EXPECT_EQ(tree.friendOf("SHARED_DATA[2]/CPU"), nullptr);
}

TEST(KyCInventoryItemSharedData, usersAreFoundAtEveryLevelAndTakeTheirOwnSiblings)
{
  KyCLinkedTree tree(
      "ROOT/SHARED_DATA; DEVICE/BOARD[1]/CPU SHARED_DATA_INDEX:UInt32=1; DEVICE/BOARD[1]/SHARED_DATA\n"
      "BOARD SHARED_DATA_INDEX:UInt32=1");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("DEVICE/BOARD[1]/CPU"), tree.item("DEVICE/BOARD[1]/SHARED_DATA"));
  EXPECT_EQ(tree.friendOf("BOARD"), tree.item("SHARED_DATA"));
  EXPECT_EQ(tree.friendOf("DEVICE"), nullptr);
  EXPECT_EQ(tree.friendOf("DEVICE/BOARD[1]"), nullptr);
}

TEST(KyCInventoryItemSharedData, manyUsersShareOneItem)
{
  KyCLinkedTree tree("ROOT/SHARED_DATA; BOARD[1] SHARED_DATA_INDEX:UInt32=1; BOARD[2] SHARED_DATA_INDEX:UInt32=1");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD[1]"), tree.item("SHARED_DATA"));
  EXPECT_EQ(tree.friendOf("BOARD[2]"), tree.item("SHARED_DATA"));
}

TEST(KyCInventoryItemSharedData, aUserWhoseIndexNamesNoSiblingIsReportedAndStaysUnlinked)
{
  KyCLinkedTree tree(
      "ROOT/SHARED_DATA[2]; DEVICE/BOARD[7] SHARED_DATA_INDEX:UInt32=2\n"
      "DEVICE/BOARD[7]/CPU SHARED_DATA_INDEX:UInt32=2; DEVICE/BOARD[7]/SHARED_DATA[2]");
  EXPECT_WARNINGS(tree, missing("DEVICE/BOARD[7]", "SHARED_DATA[2]"));
  EXPECT_EQ(tree.friendOf("DEVICE/BOARD[7]"), nullptr);
  EXPECT_EQ(tree.friendOf("DEVICE/BOARD[7]/CPU"), nullptr) << "not walked";
}

TEST(KyCInventoryItemSharedData, anIndexInsideAUserIsReportedAndIgnoredAndTheItemIsStillLinked)
{
  KyCLinkedTree tree(
      "ROOT/SHARED_DATA/CPU; SHARED_DATA[2]; BOARD SHARED_DATA_INDEX:UInt32=1\n"
      "BOARD/CPU SHARED_DATA_INDEX:UInt32=2; BOARD/DEVICE SHARED_DATA_INDEX:UInt32=2");
  EXPECT_WARNINGS(tree, nestedReference("BOARD/CPU"), nestedReference("BOARD/DEVICE"));
  EXPECT_EQ(tree.friendOf("BOARD/CPU"), tree.item("SHARED_DATA/CPU"));
  EXPECT_EQ(tree.friendOf("BOARD/DEVICE"), nullptr) << "has no counterpart";
}

TEST(KyCInventoryItemSharedData, anItemWithoutCounterpartIsNotLinkedNorAnythingBelowIt)
{
  KyCLinkedTree tree(
      "ROOT/SHARED_DATA/CPU[2]/DEVICE; BOARD SHARED_DATA_INDEX:UInt32=1; BOARD/CPU[1]/DEVICE\n"
      "BOARD/CPU[1]/BOARD SHARED_DATA_INDEX:UInt32=1; BOARD/CPU[1]/SHARED_DATA; BOARD/CPU[2]");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD/CPU[1]"), nullptr) << "another index";
  EXPECT_EQ(tree.friendOf("BOARD/CPU[1]/DEVICE"), nullptr);
  EXPECT_EQ(tree.friendOf("BOARD/CPU[1]/BOARD"), nullptr);
  EXPECT_EQ(tree.friendOf("BOARD/CPU[2]"), tree.item("SHARED_DATA/CPU[2]")) << "the walk goes on beside it";
}

TEST(KyCInventoryItemSharedData, aSharedDataItemThatRefersToAnotherIsReported)
{
  KyCLinkedTree tree("ROOT/SHARED_DATA[1] SHARED_DATA_INDEX:UInt32=2; SHARED_DATA[2]");
  EXPECT_WARNINGS(tree, mutualReference("SHARED_DATA"));
  EXPECT_EQ(tree.friendOf("SHARED_DATA[1]"), nullptr);
}

TEST(KyCInventoryItemSharedData, aSharedDataItemThatRefersToItselfIsReported)
{
  KyCLinkedTree tree("ROOT/SHARED_DATA[3] SHARED_DATA_INDEX:UInt32=3");
  EXPECT_WARNINGS(tree, mutualReference("SHARED_DATA[3]"));
}

TEST(KyCInventoryItemSharedData, aSharedDataItemThatRefersToNoneIsReportedAsMissingOne)
{
  KyCLinkedTree tree("ROOT/SHARED_DATA[3] SHARED_DATA_INDEX:UInt32=4");
  EXPECT_WARNINGS(tree, missing("SHARED_DATA[3]", "SHARED_DATA[4]"));
}

TEST(KyCInventoryItemSharedData, aSharedDataItemInsideAUserIsReportedWhenItHasACounterpart)
{
  KyCLinkedTree tree(
      "ROOT/SHARED_DATA/SHARED_DATA[5]; BOARD SHARED_DATA_INDEX:UInt32=1\n"
      "BOARD/SHARED_DATA[5]; BOARD/SHARED_DATA[6]");
  EXPECT_WARNINGS(tree, mutualReference("BOARD/SHARED_DATA[5]"));
  EXPECT_EQ(tree.friendOf("BOARD/SHARED_DATA[5]"), nullptr);
}

TEST(KyCInventoryItemSharedData, insideSharedDataNothingIsLinked)
{
  KyCLinkedTree tree("ROOT/SHARED_DATA/BOARD SHARED_DATA_INDEX:UInt32=1; SHARED_DATA/SHARED_DATA/CPU");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("SHARED_DATA/BOARD"), nullptr);
}

TEST(KyCInventoryItemSharedData, startedOnASharedDataItemDoesNothing)
{
  KyCLinkedTree tree("SHARED_DATA[4]/SHARED_DATA; SHARED_DATA[4]/BOARD SHARED_DATA_INDEX:UInt32=1");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD"), nullptr);
}

TEST(KyCInventoryItemSharedData, theRootIsNoUser)
{
  KyCLinkedTree tree("ROOT SHARED_DATA_INDEX:UInt32=1; SHARED_DATA");
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(KyInventoryAccess::getFriend(tree.root()), nullptr);
}

TEST(KyCInventoryItemSharedData, linkingTwiceGivesTheSameFriends)
{
  KyCLinkedTree tree(s_user);
  tree.link();
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD[7]"), tree.item("SHARED_DATA[2]"));
  EXPECT_EQ(tree.friendOf("BOARD[7]/CPU"), tree.item("SHARED_DATA[2]/CPU"));
}

TEST(KyCInventoryItemSharedData, anItemThatLostItsCounterpartKeepsItsOldFriend)
{
  KyCLinkedTree tree(std::string(s_user) + "; SHARED_DATA[3]");
  KyCInventoryItem* const old = tree.item("SHARED_DATA[2]/CPU");
  KyTestPool pool;
  tree.root().setValue<unsigned int>(pool, BOARD[7] / SHARED_DATA_INDEX, 3);
  tree.link();
  EXPECT_NO_WARNINGS(tree);
  EXPECT_EQ(tree.friendOf("BOARD[7]"), tree.item("SHARED_DATA[3]")) << "replaced";
  EXPECT_EQ(tree.friendOf("BOARD[7]/CPU"), old);
}

TEST(KyCInventoryItemSharedData, anIndexOfAnotherTypeIsReportedAndTakenAs0)
{
  KyRecordingListener listener;
  KyTestPool pool;
  KySampleTree tree("ROOT/SHARED_DATA; BOARD[2] SHARED_DATA_INDEX:Int32=1");
  tree.root().linkSharedData(pool, nullptr);
  const std::string id = std::to_string(SHARED_DATA_INDEX.getCategory());
  EXPECT_REPORTS(pool,
                 {0x1100800, "getValueUInt32", "Parameter " + id + " is of type Int32; it cannot be read as UInt32."},
                 {0x1301008, "getValue", "Cannot get value of parameter BOARD[2]/SHARED_DATA_INDEX."});
  EXPECT_TRUE(sameReports(listener.takeWarnings(), {missing("BOARD[2]", "SHARED_DATA[0]")}));
}

TEST(KyCInventoryItemSharedData, theFormWithoutAPoolLinksAlikeAndKeepsReportsToItself)
{
  KyRecordingListener listener;
  KyCErrorListPool& master = KyCErrorManager::getSingleton()->getMasterErrorList();
  const unsigned int before = master.getErrorCount();
  KySampleTree tree("ROOT/SHARED_DATA; BOARD[1] SHARED_DATA_INDEX:UInt32=1; BOARD[2] SHARED_DATA_INDEX:Int32=1");
  tree.root().linkSharedData(nullptr);
  EXPECT_EQ(KyInventoryAccess::getFriend(*tree.item("BOARD")), tree.item("SHARED_DATA"));
  EXPECT_TRUE(sameReports(listener.takeWarnings(), {missing("BOARD[2]", "SHARED_DATA[0]")}));
  EXPECT_EQ(master.getErrorCount(), before);
}

TEST(KyCInventoryItemSharedData, withASharedItemTheItemItselfIsLinkedToIt)
{
  KyTestPool pool;
  KySampleTree tree("ROOT/BOARD/CPU; DEVICE/CPU SIZE=3");
  tree.item("BOARD")->linkSharedData(pool, tree.item("DEVICE"));
  EXPECT_EQ(KyInventoryAccess::getFriend(*tree.item("BOARD")), tree.item("DEVICE"));
  EXPECT_EQ(tree.root().getValue<int>(pool, BOARD / CPU / SIZE), 3);
  tree.item("BOARD")->linkSharedData(tree.item("DEVICE"));
  EXPECT_EQ(KyInventoryAccess::getFriend(*tree.item("BOARD/CPU")), tree.item("DEVICE/CPU"));
}

TEST(KyCInventoryItemSharedData, aSharedDataItemWithASharedItemIsReportedEvenAsTheRoot)
{
  KyRecordingListener listener;
  KyTestPool pool;
  KySampleTree tree("SHARED_DATA[2]/CPU");
  KySampleTree other("ROOT/CPU");
  tree.root().linkSharedData(pool, &other.root());
  EXPECT_TRUE(sameReports(listener.takeWarnings(), {mutualReference("")}));
  EXPECT_EQ(KyInventoryAccess::getFriend(tree.root()), nullptr);
}

TEST(KyCInventoryItemSharedData, deepTreesAreLinkedOnASmallStack)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        KySampleTree tree("ROOT/SHARED_DATA; BOARD SHARED_DATA_INDEX:UInt32=1");
        KyCInventoryItem* user = tree.item("BOARD");
        KyCInventoryItem* shared = tree.item("SHARED_DATA");
        for (unsigned int n = 0; n < 100000; ++n)
        {
          user = user->addPath(pool, CPU);
          shared = shared->addPath(pool, CPU);
        }
        tree.root().linkSharedData(pool, nullptr);
        EXPECT_EQ(KyInventoryAccess::getFriend(*user), shared);
      });
}
