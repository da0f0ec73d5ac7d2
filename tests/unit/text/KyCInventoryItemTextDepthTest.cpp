// Trees deeper than any stack is long.
#include "KyDumpTest.h"
#include "support/KySmallStack.h"

class DeepDump : public KyDumpTest
{
public:
  // A chain of boards below the root; the last one.
  KyCInventoryItem* addChain(unsigned int levels)
  {
    KyCInventoryItem* item = &root;
    for (unsigned int n = 0; n < levels; ++n)
    {
      auto* board = new KyCInventoryItem(pool, KyNInventoryIDs::BOARD, "BOARD");
      if (item->addItem(KyNInventoryIDs::THIS_NODE, board) != item) ADD_FAILURE() << "at level " << n;
      item = board;
    }
    return item;
  }
};

TEST_F(DeepDump, reachesTheBottomOfAMillionLevelsAndComesBack)
{
  KyCInventoryItem* const bottom = addChain(1000000);
  bottom->createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "bottom", "", false, 0);
  root.addPath(pool, KyNInventoryIDs::CPU)
      ->createParameter<KyCString>(pool, KyNInventoryIDs::NAME, "behind it", "", false, 0);
  std::string text;
  onASmallStack([&] { text = dump(0x1 | 0x10 | 0x80 | 0xC0000); });
  EXPECT_EQ(text,
            "NAME String\n"
            "bottom\n"
            "NAME String\n"
            "behind it\n");
}

TEST_F(DeepDump, closesEveryLevelThatItOpened)
{
  const unsigned int levels = 100000;
  addChain(levels);
  std::string text;
  onASmallStack([&] { text = dump(0x1); });
  std::string expected = "<ITEM ID=\"ROOT\">\n";
  for (unsigned int n = 0; n < levels; ++n)
    expected += "<ITEM ID=\"BOARD\">\n";
  for (unsigned int n = 0; n <= levels; ++n)
    expected += "</ITEM>\n";
  EXPECT_TRUE(text == expected) << text.length() << " bytes instead of " << expected.length();
}

TEST_F(DeepDump, indentsByOneLevelMoreAtEachItem)
{
  addChain(500);
  const std::string text = dump(0x80);
  std::string expected = "ROOT\n";
  for (unsigned int n = 1; n <= 500; ++n)
    expected += std::string(4 * n, ' ') + "BOARD\n";
  EXPECT_EQ(text, expected);
}
