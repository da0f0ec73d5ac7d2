// Trees a million levels deep, on a stack of 256 KiB: what looks at trees in memory or writes them as text takes them, what
// stores them or reads them refuses them with a report.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "inventory/KyInventoryTree.h"
#include "inventorykit/KyInventoryKit.h"
#include "support/KyDeepAddress.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryIDs;
using namespace KyNInventoryKit;

namespace
{
constexpr unsigned int LEVELS = 1000000;           // below the root
constexpr unsigned int INDENTED_LEVELS = 50000;    // where each level writes lines of a hundred bytes

// ROOT/BOARD/BOARD/..., and SIZE at the end.
TreePointer chain(int size = 7, unsigned int levels = LEVELS)
{
  KyTestPool pool;
  TreePointer root(new KyCInventoryItem(pool, ROOT, "ROOT"));
  EXPECT_NE(root->createParameter<int>(pool, deepAddress(levels) / SIZE, size, "kB", false, 1), nullptr);
  return root;
}

// A section of as many levels, which no program of ours writes.
std::string deepSection()
{
  std::string stream("\x01", 1);    // its version
  for (unsigned int n = 0; n < LEVELS; ++n)
    stream.append("\x01\x64\x01\x01", 4);    // a composite starts: ID 100, index 1, no description
  stream.append(LEVELS, '\x02');             // and ends
  KyTestPool pool;
  KyCInventoryItem root(pool, ROOT, "ROOT");
  std::string section = sectionOf(pool, root);
  section.replace(24, section.size() - 48, stream);
  for (int n = 0; n < 4; ++n)    // the size in the header and in the trailer
  {
    const char byte = static_cast<char>(stream.size() >> (24 - 8 * n));
    section[16 + static_cast<std::size_t>(n)] = byte;
    section[section.size() - 20 + static_cast<std::size_t>(n)] = byte;
  }
  return section;
}
}    // namespace

TEST(KyKitMillionLevels, areMeasuredAndCompared)
{
  onASmallStack(
      []
      {
        const TreePointer before = chain(7);
        const TreePointer after = chain(8);
        EXPECT_EQ(measure(*before).depth, LEVELS + 1);
        EXPECT_EQ(firstDifference(*before, *before), "");
        const std::string different = firstDifference(*before, *after);
        EXPECT_EQ(different.size(), LEVELS * 6 + 11) << different.substr(different.size() - 20);
        const Difference difference = compareTrees(*before, *after);
        ASSERT_EQ(difference.changes().size(), 1u);
        EXPECT_EQ(difference.addressOf(difference.changes()[0]).size(), LEVELS * 6 + 4);
        EXPECT_GT(differenceToJson(difference).size(), LEVELS * 5);
      });
}

TEST(KyKitMillionLevels, areSearched)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const TreePointer root = chain();
        Query query;
        ASSERT_TRUE(readPattern(pool, "**/SIZE", query));
        ASSERT_TRUE(readCondition(pool, ". > 6", query));
        const std::vector<Node> found = find(*root, query);
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].parameter, root->getParameter(deepAddress(LEVELS) / SIZE));
        AddressTexts texts;
        EXPECT_EQ(texts.of(found[0]).size(), LEVELS * 6 + 4);
      });
}

TEST(KyKitMillionLevels, areChangedByAddress)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const TreePointer root = chain();
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        ParameterChange change;
        change.value = "9";
        EXPECT_NE(changeParameter(pool, *root, deep / SIZE, change), nullptr);
        EXPECT_NE(lookUp(pool, *root, deep / SIZE).parameter, nullptr);
        EXPECT_TRUE(renameItem(pool, *root, deep, CPU));
        EXPECT_TRUE(removeNodes(pool, *root, {BOARD}, Ambiguity::REFUSED));
        EXPECT_EQ(root->getFirstSubItem(), nullptr);
      });
}

TEST(KyKitMillionLevels, haveAnAddressThatIsWrittenAndReadAsText)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const KyCInventoryAddress deep = deepAddress(LEVELS);
        KyCInventoryAddress read;
        ASSERT_TRUE(readAddress(pool, addressText(deep), read));
        EXPECT_TRUE(read == deep);
      });
}

TEST(KyKitMillionLevels, areAnonymized)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const TreePointer root = chain();
        const TreePointer copy = anonymizedTree(pool, *root, "key");
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(firstDifference(*copy, *root), "");
      });
}

TEST(KyKitMillionLevels, areExportedButNotImported)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        const TreePointer root = chain();
        std::string text;
        EXPECT_TRUE(exportTree(pool, *root, Format::CSV, text));
        EXPECT_TRUE(exportTree(pool, *root, Format::JSON_LINES, text));
        EXPECT_EQ(importTree(pool, text, Format::JSON_LINES), nullptr);
        const std::vector<KyReport> reports = pool.takeReports();
        ASSERT_EQ(reports.size(), 1u);
        EXPECT_EQ(reports[0].code, 0x1505002u);
      });
}

TEST(KyKitMillionLevels, areExportedIndentedButNotImported)
{
  onASmallStack(
      []
      {
        const TreePointer root = chain(7, INDENTED_LEVELS);
        for (const Format format : {Format::JSON, Format::MARKUP})
        {
          KyTestPool pool;
          std::string text;
          EXPECT_TRUE(exportTree(pool, *root, format, text));
          EXPECT_EQ(importTree(pool, text, format), nullptr);
          EXPECT_EQ(pool.takeReports().size(), 1u);
        }
      });
}

TEST(KyKitMillionLevels, cannotBeStored)
{
  onASmallStack(
      []
      {
        KyTestPool pool;
        EXPECT_EQ(sectionOf(pool, *chain()), "");
        EXPECT_EQ(pool.takeReports().size(), 3u);
      });
}

TEST(KyKitMillionLevels, ofASectionAreFoundOut)
{
  const std::string section = deepSection();
  onASmallStack(
      [&]
      {
        const CheckResult result = checkBytes(section, "deep.kyinv", CheckOptions());
        EXPECT_EQ(result.verdict, Verdict::DAMAGED);
        KyTestPool pool;
        Inspection inspection;
        EXPECT_TRUE(inspectBytes(pool, section, "deep.kyinv", SectionEnd::READ, inspection));
        EXPECT_EQ(inspection.damage, "composites are nested deeper than 4096 levels");
        EXPECT_EQ(inspection.depth, 4096u);
      });
}
