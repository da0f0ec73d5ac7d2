// Holds docs/text-dump.md to the truth: its tables name every option bit, and each of its examples is dumped here.
//
// In the document, a block ```tree is the tree of the examples behind it, and a block ```dump <options> is such a tree's
// dump.
#include <gtest/gtest.h>

#include <sstream>

#include "KyDumpCase.h"
#include "support/KyFiles.h"

namespace
{
std::string document() { return contentOf(KY_SOURCE_DIR "/docs/text-dump.md"); }

struct TBlock
{
  std::string info;    // what stands behind the opening fence
  std::string text;
};

std::vector<TBlock> fencedBlocks(const std::string& text)
{
  std::vector<TBlock> blocks;
  bool inside = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
  {
    const bool fence = line.compare(0, 3, "```") == 0;
    if (fence && !inside) blocks.push_back({line.substr(3), ""});
    if (fence)
      inside = !inside;
    else if (inside)
      blocks.back().text += line + "\n";
  }
  EXPECT_FALSE(inside) << "a block without an end";
  return blocks;
}
}    // namespace

TEST(DumpDocument, examplesAreWhatTheLibraryWrites)
{
  std::string tree;
  int examples = 0;
  for (const TBlock& block : fencedBlocks(document()))
  {
    if (block.info == "tree") tree = block.text;
    if (block.info.compare(0, 4, "dump") != 0) continue;
    SCOPED_TRACE(block.info);
    EXPECT_EQ(dumpOf(tree, readOptions(block.info.substr(4))), block.text);
    ++examples;
  }
  EXPECT_GE(examples, 20);
}

TEST(DumpDocument, showsAnExampleOfEveryBit)
{
  int shown = 0;
  for (const TBlock& block : fencedBlocks(document()))
  {
    if (block.info.compare(0, 4, "dump") == 0) shown |= readOptions(block.info.substr(4)).mask;
  }
  EXPECT_EQ(shown, 0x3FFFFF);
}
