// What a difference says, applied as a patch, makes one tree of the other to the last bit: over random trees with all
// that a file may hold, siblings of one name among it.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "KyTreeBuilding.h"
#include "inventorykit/KyDiff.h"
#include "inventorykit/KyPatch.h"
#include "inventorykit/KyValueText.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
class RandomTrees
{
public:
  explicit RandomTrees(unsigned int seed) : m_random(seed) {}

  unsigned int below(unsigned int limit) { return static_cast<unsigned int>(m_random()) % limit; }

  // An item with parameters and sub-items of few different names.
  TreePointer make(unsigned int items)
  {
    TreePointer root = makeItem();
    std::vector<KyCInventoryItem*> all = {root.get()};
    while (all.size() < items)
    {
      KyCInventoryItem& parent = *all[below(static_cast<unsigned int>(all.size()))];
      all.push_back(makeItem().release());
      appendItem(parent, *all.back());
    }
    return root;
  }

  // A copy in which each item and parameter may be changed, missing, in another place, or have company.
  TreePointer changed(const KyCInventoryItem& original)
  {
    TreePointer root = changedItem(original);
    std::vector<std::pair<const KyCInventoryItem*, KyCInventoryItem*>> open = {{&original, root.get()}};
    while (!open.empty())
    {
      const auto [from, to] = open.back();
      open.pop_back();
      std::vector<const KyCInventoryItem*> subs;
      for (const KyCInventoryItem* sub = from->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
        subs.insert(below(8) == 0 ? subs.begin() : subs.end(), sub);
      for (const KyCInventoryItem* sub : subs)
      {
        if (below(8) == 0) appendItem(*to, *makeItem().release());
        if (below(8) == 0) continue;
        KyCInventoryItem* const copy = changedItem(*sub).release();
        appendItem(*to, *copy);
        open.emplace_back(sub, copy);
      }
    }
    return root;
  }

private:
  TreePointer makeItem()
  {
    const unsigned int id = 1 + below(3) * 40;
    const unsigned int index = below(3);
    auto item = std::make_unique<KyCInventoryItem>(m_pool, KyCInventoryAddress(id, index), text().c_str());
    for (unsigned int n = below(4); n > 0; --n)
      addParameter(*item);
    return item;
  }

  TreePointer changedItem(const KyCInventoryItem& original)
  {
    const std::string description = below(10) == 0 ? text() : original.getDescription();
    auto item = std::make_unique<KyCInventoryItem>(m_pool, original.getID(), description.c_str());
    for (const auto* p = original.getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    {
      if (below(10) == 0) addParameter(*item);
      if (below(10) == 0 || item->getParameter(p->getID()) != nullptr) continue;
      auto copy = std::make_unique<KyCInventoryParameter>(*p);
      if (below(10) == 0) copy->setUnit(text().c_str());
      if (below(10) == 0) copy->setModifiableFlag(below(2) == 0);
      if (below(10) == 0) copy->setRelevance(below(3));
      if (appendParameter(m_pool, *item, *copy)) copy.release();
    }
    if (below(10) == 0) addParameter(*item);
    return item;
  }

  void addParameter(KyCInventoryItem& item)
  {
    static const std::pair<const char*, std::vector<std::string>> s_values[] = {
        {"Int8", {"-128", "127", "0"}},
        {"Int16", {"-32768", "32767"}},
        {"Int32", {"-2147483648", "5"}},
        {"Long64", {"-9223372036854775808", "9007199254740993"}},
        {"UInt8", {"0", "255"}},
        {"UInt16", {"65535"}},
        {"UInt32", {"4294967295"}},
        {"ULong64", {"18446744073709551615"}},
        {"Float32", {"0.1", "-0", "nan", "nan(0xffc12345)", "nan(0x7fa00001)", "inf", "-inf", "1e-45"}},
        {"Float64",
         {"0.1", "-0", "nan", "nan(0xfff8123456789abc)", "nan(0x7ff4000000000001)", "inf", "-inf", "5e-324"}},
        {"String", {"", "text", std::string("a\0b\n\x1B", 5), "\xFF\xFE", "\xC3\xA9", "a text of some length"}},
        {"Version", {"0.0.0.0", "4294967295.1.2.3"}}};
    const auto& [type, values] = s_values[below(12)];
    const std::string& value = values[below(static_cast<unsigned int>(values.size()))];
    const std::string description = text();
    const std::string unit = text();
    ParameterPointer parameter =
        makeParameter(m_pool, 1 + below(5) * 300, description, typeOfName(type), value, unit, below(2) == 0, below(3));
    ASSERT_NE(parameter, nullptr);
    if (item.getParameter(parameter->getID()) != nullptr) return;
    if (appendParameter(m_pool, item, *parameter)) parameter.release();
  }

  std::string text()
  {
    static const std::string s_texts[] = {"", "BOARD", "\xFF", "\"quoted\"\n", "a longer text than fits in place"};
    return s_texts[below(5)];
  }

  KyTestPool m_pool;
  std::mt19937 m_random;
};

// Applies the difference of two trees to a copy of the first, and takes it back.
void expectRoundTrip(const KyCInventoryItem& before, const KyCInventoryItem& after, TreePointer copy)
{
  KyTestPool pool;
  Patch patch;
  const std::string json = differenceToJson(compareTrees(before, after));
  ASSERT_TRUE(readPatch(pool, json, "patch", patch));
  ASSERT_EQ(firstDifference(before, *copy), "");
  ASSERT_TRUE(applyPatch(pool, copy, patch, PatchDirection::FORWARD)) << json;
  ASSERT_EQ(firstDifference(*copy, after), "") << json;
  EXPECT_TRUE(compareTrees(*copy, after).changes().empty());
  ASSERT_TRUE(applyPatch(pool, copy, patch, PatchDirection::REVERSE)) << json;
  ASSERT_EQ(firstDifference(*copy, before), "") << json;
}
}    // namespace

TEST(KyPatchRandom, treesAndTheirChangedCopiesGoThereAndBack)
{
  for (unsigned int seed = 1; seed <= 300 && !::testing::Test::HasFailure(); ++seed)
  {
    const TreePointer before = RandomTrees(seed).make(1 + seed % 60);
    const TreePointer after = RandomTrees(seed + 1000).changed(*before);
    expectRoundTrip(*before, *after, RandomTrees(seed).make(1 + seed % 60));
    expectRoundTrip(*after, *before, RandomTrees(seed + 1000).changed(*before));
  }
}

TEST(KyPatchRandom, treesThatHaveNothingToDoWithEachOtherGoThereAndBack)
{
  for (unsigned int seed = 1; seed <= 100 && !::testing::Test::HasFailure(); ++seed)
  {
    const TreePointer before = RandomTrees(seed).make(40);
    const TreePointer after = RandomTrees(seed + 1000).make(40);
    expectRoundTrip(*before, *after, RandomTrees(seed).make(40));
  }
}

TEST(KyPatchRandom, everyPermutationOfFiveItemsGoesThereAndBack)
{
  const auto make = [](const std::vector<unsigned int>& order)
  {
    KyTestPool pool;
    auto root = std::make_unique<KyCInventoryItem>(pool, KyCInventoryAddress(1), "");
    for (const unsigned int n : order)
    {
      // Two of them share a name, and are told apart by what they hold.
      auto item =
          std::make_unique<KyCInventoryItem>(pool, KyCInventoryAddress(n == 4 ? 3 : n), std::to_string(n).c_str());
      appendItem(*root, *item.release());
    }
    return root;
  };
  std::vector<unsigned int> order = {1, 2, 3, 4, 5};
  const TreePointer before = make(order);
  do
  {
    for (std::size_t count = 0; count <= order.size(); ++count)
    {
      const std::vector<unsigned int> some(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count));
      const TreePointer after = make(some);
      expectRoundTrip(*before, *after, make({1, 2, 3, 4, 5}));
      if (::testing::Test::HasFailure()) return;
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(KyPatchRandom, aTreeOfTheDeepestKindGoesThereAndBackWithoutAStack)
{
  const auto make = [](unsigned int levels, const char* description)
  {
    KyTestPool pool;
    auto root = std::make_unique<KyCInventoryItem>(pool, KyCInventoryAddress(1), "");
    KyCInventoryItem* item = root.get();
    for (unsigned int n = 1; n < levels; ++n)
    {
      auto* const sub = new KyCInventoryItem(pool, KyCInventoryAddress(2), description);
      appendItem(*item, *sub);
      item = sub;
    }
    return root;
  };
  const TreePointer before = make(1, "");
  const TreePointer after = make(4096, "a");
  expectRoundTrip(*before, *after, make(1, ""));
}

TEST(KyPatchRandom, manySiblingsTakeNoQuadraticTime)
{
  constexpr unsigned int count = 50000;
  const auto make = [](bool isReversed, unsigned int id)
  {
    KyTestPool pool;
    auto root = std::make_unique<KyCInventoryItem>(pool, KyCInventoryAddress(1), "");
    for (unsigned int n = 0; n < count; ++n)
    {
      const unsigned int index = isReversed ? count - n : n;
      appendItem(*root, *new KyCInventoryItem(pool, KyCInventoryAddress(id, index), ""));
    }
    return root;
  };
  const TreePointer before = make(false, 2);
  expectRoundTrip(*before, *make(true, 2), make(false, 2));    // all but one move
  const auto twins = []()
  {
    KyTestPool pool;
    auto root = std::make_unique<KyCInventoryItem>(pool, KyCInventoryAddress(1), "");
    for (unsigned int n = 0; n < count; ++n)
      appendItem(*root, *new KyCInventoryItem(pool, KyCInventoryAddress(2), ""));
    return root;
  };
  expectRoundTrip(*before, *twins(), make(false, 2));
}
