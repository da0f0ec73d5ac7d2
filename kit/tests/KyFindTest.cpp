// Patterns of addresses.
#include "inventorykit/KyFind.h"

#include <random>

#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyTree.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
const char* const s_tree =
    "ROOT NAME=\"rack\" SERIAL_NUMBER=1\n"
    "BOARD SERIAL_NUMBER=2 SIZE=3\n"
    "BOARD/IOCHANNEL VOLTAGE_MIN=4 VOLTAGE_MAX=5\n"
    "BOARD/IOCHANNEL[2] VOLTAGE_MIN=6\n"
    "BOARD/IOCHANNEL[8] VOLTAGE_MAX=7\n"
    "BOARD[2]/IOCHANNEL[9] VOLTAGE_MAX=8\n"
    "BOARD[2]/CPU SERIAL_NUMBER=9\n"
    "5000[3] SIZE=10";

std::string found(KyCInventoryItem& root, const Query& query)
{
  std::string texts;
  AddressTexts addresses;
  for (const Node& node : find(root, query))
    texts += (texts.empty() ? "" : " ") + addresses.of(node);
  return texts;
}

std::string found(const std::string& pattern)
{
  KySampleTree sample(s_tree);
  KyTestPool pool;
  Query query;
  EXPECT_TRUE(readPattern(pool, pattern, query));
  return found(sample.root(), query);
}

// What reading reports; the query must stay as it was.
std::string report(const std::string& pattern)
{
  KyCErrorListPool pool;
  Query query;
  EXPECT_FALSE(readPattern(pool, pattern, query)) << pattern;
  EXPECT_EQ(query.pattern, nullptr);
  EXPECT_EQ(pool.getErrorCount(), 1u);
  return pool.getEntry(0).text;
}
}    // namespace

TEST(KyFind, wildcardsStandInNames)
{
  EXPECT_EQ(found("BOARD/IOCHANNEL/VOLTAGE_*"),
            "BOARD/IOCHANNEL/VOLTAGE_MIN BOARD/IOCHANNEL/VOLTAGE_MAX BOARD/IOCHANNEL[2]/VOLTAGE_MIN "
            "BOARD/IOCHANNEL[8]/VOLTAGE_MAX BOARD[2]/IOCHANNEL[9]/VOLTAGE_MAX");
  EXPECT_EQ(found("B?ARD/S*"), "BOARD/SERIAL_NUMBER BOARD/SIZE");
  EXPECT_EQ(found("*"), "NAME SERIAL_NUMBER BOARD BOARD[2] 5000[3]");
}

TEST(KyFind, indexSetsAreNumbersAndRanges)
{
  EXPECT_EQ(found("BOARD[*]/IOCHANNEL[2-8]/VOLTAGE_*"),
            "BOARD/IOCHANNEL[2]/VOLTAGE_MIN BOARD/IOCHANNEL[8]/VOLTAGE_MAX");
  EXPECT_EQ(found("BOARD/IOCHANNEL[1,9]"), "BOARD/IOCHANNEL BOARD[2]/IOCHANNEL[9]");
  EXPECT_EQ(found("BOARD/IOCHANNEL[8-9,1-1,7-8]"), "BOARD/IOCHANNEL BOARD/IOCHANNEL[8] BOARD[2]/IOCHANNEL[9]");
  EXPECT_EQ(found("BOARD[0,3-4294967295]"), "");
}

TEST(KyFind, withoutBracketsAnyIndexIsMeant)
{
  EXPECT_EQ(found("BOARD"), "BOARD BOARD[2]");
  EXPECT_EQ(found("BOARD[1]"), "BOARD");
}

TEST(KyFind, parametersHaveTheIndex1)
{
  EXPECT_EQ(found("SERIAL_NUMBER[1]"), "SERIAL_NUMBER");
  EXPECT_EQ(found("SERIAL_NUMBER[*]"), "SERIAL_NUMBER");
  EXPECT_EQ(found("SERIAL_NUMBER[2]"), "");
}

TEST(KyFind, twoStarsStandForAnyNumberOfElements)
{
  EXPECT_EQ(found("**/SERIAL_NUMBER"), "SERIAL_NUMBER BOARD/SERIAL_NUMBER BOARD[2]/CPU/SERIAL_NUMBER");
  EXPECT_EQ(found("BOARD[2]/**"),
            "BOARD[2] BOARD[2]/IOCHANNEL[9] BOARD[2]/IOCHANNEL[9]/VOLTAGE_MAX BOARD[2]/CPU BOARD[2]/CPU/SERIAL_NUMBER");
  EXPECT_EQ(found("**/IOCHANNEL[9]/**"), "BOARD[2]/IOCHANNEL[9] BOARD[2]/IOCHANNEL[9]/VOLTAGE_MAX");
  EXPECT_EQ(found("BOARD/**/**/CPU/**/SERIAL_NUMBER"), "BOARD[2]/CPU/SERIAL_NUMBER");
}

TEST(KyFind, aloneTwoStarsStandForEverything)
{
  KySampleTree sample(s_tree);
  KyTestPool pool;
  Query query;
  const std::string all = found(sample.root(), query);
  EXPECT_EQ(found("**"), all);
  EXPECT_EQ(all.substr(0, 26), ". NAME SERIAL_NUMBER BOARD");
}

TEST(KyFind, theRootItemIsADotOrNothing)
{
  EXPECT_EQ(found("."), ".");
  EXPECT_EQ(found(""), ".");
}

TEST(KyFind, idsWithoutANameAreFoundByNumberAndForm)
{
  EXPECT_EQ(found("5000"), "5000[3]");
  EXPECT_EQ(found("0x1388/SIZE"), "5000[3]/SIZE");
  EXPECT_EQ(found("50*"), "5000[3]");
  EXPECT_EQ(found("585[2]"), "BOARD[2]");
}

TEST(KyFind, itemsOrParametersAloneAreFound)
{
  KySampleTree sample(s_tree);
  KyTestPool pool;
  Query query;
  ASSERT_TRUE(readPattern(pool, "*", query));
  query.findsParameters = false;
  EXPECT_EQ(found(sample.root(), query), "BOARD BOARD[2] 5000[3]");
  query.findsParameters = true;
  query.findsItems = false;
  EXPECT_EQ(found(sample.root(), query), "NAME SERIAL_NUMBER");
}

TEST(KyFind, addressesAreRelativeToWhereTheSearchStarts)
{
  KySampleTree sample(s_tree);
  KyTestPool pool;
  Query query;
  ASSERT_TRUE(readPattern(pool, "IOCHANNEL[2]/*", query));
  EXPECT_EQ(found(*sample.item("BOARD"), query), "BOARD/IOCHANNEL[2]/VOLTAGE_MIN");
}

TEST(KyFind, siblingsThatShareAnAddressAreAllFound)
{
  KySampleTree sample("ROOT/BOARD; BOARD[2]; BOARD[3]");
  sample.item("BOARD[3]")->setID(KyNInventoryIDs::BOARD[1]);
  KyTestPool pool;
  Query query;
  ASSERT_TRUE(readPattern(pool, "BOARD[1]", query));
  const std::vector<Node> nodes = find(sample.root(), query);
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_NE(nodes[0].item, nodes[1].item);
}

TEST(KyFind, whatIsNoPatternIsReportedWithItsPlace)
{
  const std::string isNot = " is not a pattern of addresses: ";
  EXPECT_EQ(report("A//B").substr(0, 2), "A ") << "the ID comes first";
  EXPECT_EQ(report("CPU//B"),
            "\"CPU//B\"" + isNot + "the name of an ID, with * or ? perhaps, is expected at character 5.");
  EXPECT_EQ(report("CPU/"), "\"CPU/\"" + isNot + "the name of an ID, with * or ? perhaps, is expected at character 5.");
  EXPECT_EQ(report("CPU[2"), "\"CPU[2\"" + isNot + "\"]\", \",\" or \"-\" is expected at character 6.");
  EXPECT_EQ(report("CPU[]"), "\"CPU[]\"" + isNot + "an index from 0 to 4294967295 is expected at character 5.");
  EXPECT_EQ(
      report("CPU[5-3]"),
      "\"CPU[5-3]\"" + isNot + "an index that is not below the first one of its range is expected at character 8.");
  EXPECT_EQ(report("CPU[2-]"), "\"CPU[2-]\"" + isNot + "an index from 0 to 4294967295 is expected at character 7.");
  EXPECT_EQ(report("CPU]"), "\"CPU]\"" + isNot + "\"/\" or \"[\" is expected at character 4.");
  EXPECT_EQ(report("**[2]"), "\"**[2]\"" + isNot + "\"/\" or \"[\" is expected at character 3.");
  EXPECT_EQ(report("4294967296"), "\"4294967296\"" + isNot + "an ID from 0 to 4294967295 is expected at character 1.");
  EXPECT_EQ(report("SERIAL_NUMBR"), "SERIAL_NUMBR is not an inventory ID. Did you mean SERIAL_NUMBER?");
  EXPECT_EQ(report("NO_SUCH_*"), "No inventory ID matches \"NO_SUCH_*\".");
}

TEST(KyFind, manyTwoStarsAndDeepTreesTakeNeitherTimeNorStack)
{
  KySampleTree sample("ROOT");
  KyTestPool pool;
  KyCInventoryItem* item = &sample.root();
  for (unsigned int n = 0; n < 5000; ++n)
    item = item->addPath(pool, KyNInventoryIDs::BOARD);
  std::string pattern;
  for (unsigned int n = 0; n < 30; ++n)
    pattern += "**/BOARD/";
  Query query;
  ASSERT_TRUE(readPattern(pool, pattern + "**/CPU", query));
  EXPECT_TRUE(find(sample.root(), query).empty());
  ASSERT_TRUE(readPattern(pool, pattern + "BOARD", query));
  EXPECT_EQ(find(sample.root(), query).size(), 5000u - 30);
}

// A slow second opinion: tries every way to match the rest of a path with the rest of a pattern.
namespace
{
using Path = std::vector<unsigned int>;

bool matchesSlowly(const std::vector<std::string>& pattern, std::size_t p, const Path& path, std::size_t n)
{
  if (p == pattern.size()) return n == path.size();
  if (pattern[p] == "**")
    return matchesSlowly(pattern, p + 1, path, n) || (n < path.size() && matchesSlowly(pattern, p, path, n + 1));
  if (n == path.size()) return false;
  const bool isSame = pattern[p] == "*" || pattern[p] == KyNInventoryIDs::Map.get(path[n]);
  return isSame && matchesSlowly(pattern, p + 1, path, n + 1);
}

Path pathOf(const Node& node)
{
  const KyCInventoryAddress address =
      node.parameter != nullptr ? node.parameter->getAddress() : node.item->getAddress();
  Path path;
  for (unsigned int n = 0; n < address.getLength(); ++n)
    path.push_back(address.getElements()[n].id);
  return path;
}
}    // namespace

TEST(KyFind, agreesWithASlowSearchOnRandomTreesAndPatterns)
{
  std::mt19937 engine(11);
  const auto random = [&]() { return static_cast<unsigned int>(engine()); };
  const std::vector<std::string> names = {"BOARD", "CPU", "SIZE", "*", "**", "**"};
  for (int round = 0; round < 300; ++round)
  {
    KySampleTree sample("ROOT");
    KyTestPool pool;
    std::vector<KyCInventoryItem*> items = {&sample.root()};
    for (unsigned int n = 0; n < 25; ++n)
    {
      KyCInventoryItem* const parent = items[random() % items.size()];
      const unsigned int kind = random() % 3;
      if (kind == 2 && parent->getParameter(KyNInventoryIDs::SIZE) == nullptr)
        parent->createParameter(pool, KyNInventoryIDs::SIZE, 1, nullptr, false, 0);
      else
        items.push_back(parent->addPath(pool, (kind == 0 ? KyNInventoryIDs::BOARD : KyNInventoryIDs::CPU)[1 + n]));
    }
    std::vector<std::string> elements;
    std::string pattern;
    for (unsigned int n = 1 + random() % 5; n > 0; --n)
    {
      elements.push_back(names[random() % names.size()]);
      pattern += (pattern.empty() ? "" : "/") + elements.back();
    }
    Query all;
    Query query;
    ASSERT_TRUE(readPattern(pool, pattern, query));
    std::vector<Node> expected;
    for (const Node& node : find(sample.root(), all))
      if (matchesSlowly(elements, 0, pathOf(node), 0)) expected.push_back(node);
    const std::vector<Node> actual = find(sample.root(), query);
    ASSERT_EQ(actual.size(), expected.size()) << pattern;
    for (std::size_t n = 0; n < actual.size(); ++n)
      EXPECT_TRUE(actual[n].item == expected[n].item && actual[n].parameter == expected[n].parameter) << pattern;
  }
}
