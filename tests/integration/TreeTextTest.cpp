// Printing a tree in pieces gives the text of the dump, byte by byte.
#include "TreeText.h"

#include <gtest/gtest.h>

#include "Command.h"
#include "inventory/KyCInventoryItemStream.h"
#include "support/KyCapturedOutput.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/persistence/KyRandomTree.h"

namespace
{
std::string printed(const KyCInventoryItem& item, int options, int indent)
{
  KyCapturedOutput captured;
  {
    Output out;
    EXPECT_EQ(printTree(out, item, options, indent), EXIT_OK);
  }
  return captured.take();
}

std::string dumped(const KyCInventoryItem& item, int options, int indent)
{
  KyTestPool pool;
  const KyCString text = item.toString(pool, options, indent);
  return std::string(text.c_str(), text.length());
}

TEST(printTree, givesTheTextOfTheDumpForRandomTreesAndEveryOption)
{
  for (unsigned int seed = 1; seed <= 22; ++seed)
  {
    KyTestPool pool;
    const KyItemPtr tree = KyRandomTree(seed).make(pool, 30);
    for (const int option : {0, 1 << (seed - 1), 0x80 | 1 << (seed - 1), 0x4800 | 1 << (seed - 1)})
      EXPECT_EQ(printed(*tree, option, static_cast<int>(seed % 3)), dumped(*tree, option, static_cast<int>(seed % 3)))
          << "seed " << seed << ", option " << option;
  }
}

TEST(printTree, writesLargeItemsInPiecesWithTheSameText)
{
  for (const unsigned int count : {63u, 64u, 65u, 1000u})
  {
    KyTestPool pool;
    KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "a description\nof two lines </ITEM>");
    for (unsigned int n = 1; n <= count; ++n)
    {
      const KyCInventoryAddress id(n, 1);
      auto* parameter = new KyCInventoryParameter(pool, id, "", n, "V", true, 0);
      if (root.addParameter(pool, KyCInventoryAddress(), parameter) == nullptr) delete parameter;
    }
    for (const int option : {0, 0x1, 0x8, 0x10, 0x80, 0x800, 0x4800})
      EXPECT_EQ(printed(root, option, 1), dumped(root, option, 1)) << count << " parameters, option " << option;
  }
}

TEST(printTree, printsASubItemAlone)
{
  KySampleTree sample("ROOT/BOARD[2]/CPU SIZE=1; BOARD[3]");
  EXPECT_EQ(printed(*sample.item("BOARD[2]"), 0xC0000, 0),
            "<ITEM ID=\"BOARD[2]\">\n"
            "    <ITEM ID=\"CPU\">\n"
            "        <PARAM ID=\"SIZE\" Type=\"Int32\">\n"
            "            <VALUE>1</VALUE>\n"
            "        </PARAM>\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}
}    // namespace
