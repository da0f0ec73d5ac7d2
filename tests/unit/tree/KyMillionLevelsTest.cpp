// Trees a million levels deep, each operation on a stack of 256 KiB: a walk that recurses, or keeps more than a few bytes on
// the stack for each level, runs out of it at once. Work that grows with the square of the depth would take hours.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "inventory/KyCInventoryData.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryItemFactory.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyDeepAddress.h"
#include "support/KySampleTree.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int LEVELS = 1000000;      // below the root
constexpr unsigned int MOST_STORED = 4096;    // the root included

using KyItemPtr = std::unique_ptr<KyCInventoryItem>;

// ROOT/BOARD/BOARD/..., and SIZE at the end.
KyItemPtr chain(unsigned int levels = LEVELS)
{
  KyTestPool pool;
  KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  EXPECT_NE(root->createParameter<int>(pool, deepAddress(levels) / SIZE, 7, "kB", false, 1), nullptr);
  return root;
}

KyCInventoryItem* deepestOf(KyCInventoryItem& root)
{
  KyCInventoryItem* item = &root;
  while (item->getFirstSubItem() != nullptr)
    item = item->getFirstSubItem();
  return item;
}

KyCInventoryItem* itemAt(KyCInventoryItem& root, unsigned int level)
{
  KyCInventoryItem* item = &root;
  for (; level > 0; --level)
    item = item->getFirstSubItem();
  return item;
}

bool yes(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }
bool no(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return false; }

std::string stored(KyCErrorListPool& pool, KyCInventoryItem& root)
{
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &root);
  return std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
}

// Reads what the factory reads of a stream: the tree, and the reports.
KyItemPtr treeOfStream(KyCErrorListPool& pool, const std::string& stream)
{
  KyCBuffer buffer(pool);
  buffer.writeBuffer(pool, stream.data(), static_cast<unsigned int>(stream.size()), 1, -1);
  KyCInventoryItemFactory factory(pool);
  KyCInventoryItem* root = nullptr;
  factory.deserialize(pool, root, &buffer);
  return KyItemPtr(root);
}
}    // namespace

TEST(KyMillionLevels, areBuiltFoundWalkedAndDestroyed)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        const KyItemPtr root = chain();
        KyCInventoryItem* const deepest = deepestOf(*root);
        EXPECT_EQ(root->getItem(deep), deepest);
        EXPECT_EQ(root->getItem(deep / BOARD), nullptr);
        EXPECT_EQ(root->addPath(pool, deep), deepest);
        EXPECT_TRUE(deepest->getAddress() == deep);
        EXPECT_EQ(root->getParameter(deep / SIZE), deepest->getParameter(SIZE));
        EXPECT_TRUE(deepest->getParameter(SIZE)->getAddress() == deep / SIZE);
        EXPECT_EQ(root->getValue<int>(pool, deep / SIZE), 7);
        EXPECT_NE(root->setValue<int>(pool, deep / SIZE, 8), nullptr);
        EXPECT_EQ(root->getValue<int>(pool, deep / SIZE), 8);
      });
}

TEST(KyMillionLevels, areBuiltOneByOne)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
        KyCInventoryItem* item = root.get();
        for (unsigned int n = 0; n < LEVELS; ++n)
          item = item->addPath(pool, BOARD);
        EXPECT_EQ(item->getAddress().getLength(), LEVELS);
      });
}

TEST(KyMillionLevels, areBuiltFromTheBottomUp)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        KyItemPtr top(new KyCInventoryItem(pool, BOARD, "BOARD"));
        KyCInventoryItem* const deepest = top.get();
        for (unsigned int n = 0; n < LEVELS; ++n)
        {
          KyItemPtr above(new KyCInventoryItem(pool, BOARD, "BOARD"));
          ASSERT_EQ(above->addItem(THIS_NODE, top.get()), above.get());
          top.release();
          top = std::move(above);
        }
        EXPECT_EQ(deepest->getAddress().getLength(), LEVELS);
        EXPECT_EQ(deepestOf(*top), deepest);
      });
}

TEST(KyMillionLevels, haveAnAddressThatIsWrittenAndReadAsText)
{
  onASmallStack(
      []
      {
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        const KyCString text = deep.toString();
        EXPECT_EQ(text.length(), LEVELS * 6 - 1);
        KyCInventoryAddress read;
        read.readFromString(text);
        EXPECT_TRUE(read == deep);
        EXPECT_EQ(deep.getSubAddress().getLength(), LEVELS - 1);
        EXPECT_EQ(deep.getHeadAddress().getLength(), LEVELS - 1);
      });
}

TEST(KyMillionLevels, areCopied)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyItemPtr root = chain();
        KyCInventoryItem* copy = nullptr;
        root->copyTree(pool, copy);
        const KyItemPtr owner(copy);
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        EXPECT_EQ(copy->getValue<int>(pool, deep / SIZE), 7);
        EXPECT_EQ(deepestOf(*copy)->getAddress().getLength(), LEVELS);
      });
}

TEST(KyMillionLevels, areMergedLevelByLevel)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        KyItemPtr target = chain();
        KyCInventoryItem* merged = target.release();
        KyCInventoryItem* source = chain().release();
        source->createParameter<int>(pool, deep / OFFSET, 9, "", false, 0);
        source->addPath(pool, deep / CPU);
        KyCInventoryItem::mergeTree(pool, merged, source, 1);
        target.reset(merged);
        EXPECT_EQ(source, nullptr);
        EXPECT_EQ(target->getValue<int>(pool, deep / OFFSET), 9);
        EXPECT_NE(target->getItem(deep / CPU), nullptr);
      });
}

TEST(KyMillionLevels, areSharedDataAndItsUser)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        const KyItemPtr root(new KyCInventoryItem(pool, ROOT, "ROOT"));
        root->createParameter<int>(pool, SHARED_DATA[3] / deep / SIZE, 7, "", false, 0);
        root->createParameter<unsigned int>(pool, BOARD / SHARED_DATA_INDEX, 3u, "", false, 0);
        root->addPath(pool, BOARD / deep);
        root->linkSharedData(pool, nullptr);
        EXPECT_EQ(root->getValue<int>(pool, BOARD / deep / SIZE), 7);
        EXPECT_EQ(root->getItem(BOARD / deep)->getItem(CPU), nullptr);
      });
}

TEST(KyMillionLevels, areCheckedAppliedAndUpdated)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyItemPtr root = chain();
        KyCInventoryItem* const deepest = deepestOf(*root);
        KyCInventoryParameter* const size = deepest->getParameter(SIZE);
        KyCInventoryParameter* const offset = deepest->createParameter<int>(pool, OFFSET, 1, "", false, 0);
        size->setCheckAndWriteMethod(pool, yes, yes, THIS_NODE, nullptr);
        offset->setCheckAndWriteMethod(pool, no, yes, THIS_NODE, nullptr);
        size->setDesignatedValue(pool, 8);
        offset->setDesignatedValue(pool, 2);
        root->check(pool, root.get());
        const std::vector<KyReport> reports = pool.takeReports();
        ASSERT_EQ(reports.size(), 1u);
        EXPECT_EQ(reports[0].code, 0x1300811u);
        EXPECT_EQ(reports[0].text.size(), 27 + LEVELS * 6 + 7) << "Check failed for parameter BOARD/ .. OFFSET.";
        root->apply(pool, root.get());
        root->updateParameters(pool, root.get());
        EXPECT_EQ(size->getValue<int>(pool), 8);
        EXPECT_EQ(offset->getValue<int>(pool), 1);
        size->setDesignatedValue(pool, 9);
        root->deleteDesignatedValues();
        EXPECT_FALSE(size->isDesignatedValueValid());
      });
}

// Without the items' own lines: a million of them, indented, would be a text of gigabytes.
TEST(KyMillionLevels, areDumped)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyItemPtr root = chain();
        EXPECT_STREQ(root->toString(pool, 0x1 | 0x10 | 0x80 | 0xC0000, 0).c_str(), "SIZE Int32\n7\nkB\n");
      });
}

TEST(KyMillionLevels, areTakenApartInTheMiddle)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        KyItemPtr root = chain();
        const KyItemPtr lower(itemAt(*root, LEVELS / 2));
        lower->detach();
        EXPECT_EQ(deepestOf(*root)->getAddress().getLength(), LEVELS / 2 - 1);
        EXPECT_EQ(deepestOf(*lower)->getAddress().getLength(), LEVELS / 2);
        root.reset();
        EXPECT_EQ(lower->getValue<int>(pool, deepAddress(LEVELS / 2) / SIZE), 7);
      });
}

TEST(KyMillionLevels, cannotBeStored)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        stored(pool, *chain());
        EXPECT_REPORTS(pool,
                       {0x1101802, "CompositeStart", "Composites nested deeper than 4096 levels cannot be stored."},
                       {0x1302803, "serialize", "Cannot serialize inventory tree."},
                       {0x130000A, "generateInventorySection",
                        "Internal error. Kyrel Support information: Cannot serialize inventory tree."});
      });
}

TEST(KyMillionLevels, asManyAsMayBeStoredAreReadBack)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyItemPtr root = chain(MOST_STORED - 1);
        const std::string section = stored(pool, *root);
        KyCInventoryItem* read = nullptr;
        KyCInventoryData::extractInventoryTreeFromMem(pool, reinterpret_cast<const unsigned char*>(section.data()),
                                                      static_cast<unsigned int>(section.size()), read);
        const KyItemPtr again(read);
        ASSERT_NE(again, nullptr);
        EXPECT_EQ(KyTreeDifference(*again, *root), "");
      });
}

TEST(KyMillionLevels, ofAStreamAreRefusedAtTheLimit)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        std::string stream("\x01", 1);    // its version
        for (unsigned int n = 0; n < LEVELS; ++n)
          stream.append("\x01\x64\x01\x01", 4);    // a composite starts: ID 100, index 1, no description
        stream.append(LEVELS, '\x02');             // and ends
        const KyItemPtr root = treeOfStream(pool, stream);
        EXPECT_REPORTS(pool,
                       {0x1101807, "CompositeStart",
                        "The stream is damaged at byte 16385: composites are nested deeper than 4096 levels."},
                       {0x1302801, "deserialize", "Cannot deserialize inventory tree."});
        unsigned int levels = 0;
        for (const KyCInventoryItem* item = root.get(); item != nullptr; item = item->getFirstSubItem())
          ++levels;
        EXPECT_EQ(levels, MOST_STORED);
      });
}
