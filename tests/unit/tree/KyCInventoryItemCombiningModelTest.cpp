// Merging, copying and friends on thousands of random trees: the library and the slow model must agree.

#include <memory>
#include <random>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "support/KyTreeModel.h"
#include "unit/persistence/KyStoredBytes.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr unsigned int SEEDS = 2000;

// What a tree may hold. Few IDs, some of them for items and parameters alike, so that much is on both sides and clashes
// are common.
struct TRules
{
  bool friends;
  bool likeSiblings;
  bool clashes;    // an item of a parameter's ID below one item
};

class KyCRandomModel
{
public:
  explicit KyCRandomModel(unsigned int seed) : m_random(seed) {}

  KyModelPtr make(const TRules& rules)
  {
    KyModelPtr root = std::make_unique<KyModelItem>(KyModelElement{ROOT.getCategory(), 1});
    std::vector<KyModelItem*> all = {root.get()};
    for (unsigned int n = below(14); n > 0; --n)
    {
      KyModelItem* const parent = all[below(static_cast<unsigned int>(all.size()))];
      const KyModelElement element = randomElement();
      if (!rules.likeSiblings && parent->getItem({element}) != nullptr) continue;
      all.push_back(parent->append(std::make_unique<KyModelItem>(element)));
    }
    for (KyModelItem* item : all)
      addParameters(*item, rules);
    for (KyModelItem* item : all)
    {
      if (rules.friends && below(3) == 0) item->other = all[below(static_cast<unsigned int>(all.size()))];
    }
    return root;
  }

  KyModelPath makePath()
  {
    KyModelPath path;
    for (unsigned int n = below(4); n > 0; --n)
      path.push_back(randomElement());
    return path;
  }

  unsigned int below(unsigned int limit) { return static_cast<unsigned int>(m_random()) % limit; }

private:
  KyModelElement randomElement()
  {
    const unsigned int ids[] = {BOARD.getCategory(), CPU.getCategory(), SIZE.getCategory()};
    const unsigned int id = ids[below(3)];
    const unsigned int index = 1 + below(2);
    return {id, index};
  }

  void addParameters(KyModelItem& item, const TRules& rules)
  {
    const unsigned int ids[] = {SIZE.getCategory(), NAME.getCategory(), OFFSET.getCategory(), CPU.getCategory()};
    for (unsigned int n = below(4); n > 0; --n)
    {
      const unsigned int id = ids[below(below(4) == 0 ? 4 : 3)];
      const int value = static_cast<int>(below(1000000));
      const bool taken = item.getItem({{id, 1}}) != nullptr || item.getItem({{id, 2}}) != nullptr;
      if (item.getParameter({{id, 1}}) == nullptr && (rules.clashes || !taken)) item.parameters.push_back({id, value});
    }
  }

  std::mt19937 m_random;
};

KyCInventoryAddress addressOf(const KyModelPath& path)
{
  KyCInventoryAddress address;
  for (const KyModelElement& element : path)
    address.append(KyCInventoryAddress(element.first, element.second));
  return address;
}

// The same answers for random paths from every item of the model.
void expectSameLookUps(KyCRandomModel& random, KyModelItem& model, const KyModelMap& items)
{
  KyTestPool pool;
  for (unsigned int n = 0; n < 10; ++n)
  {
    const KyModelPath path = random.makePath();
    KyCInventoryItem* const start = items.at(&model);
    KyModelItem* const expected = model.getItem(path);
    EXPECT_EQ(start->getItem(addressOf(path)), expected == nullptr ? nullptr : items.at(expected));
    const KyModelItem::TParameter* const parameter = model.getParameter(path);
    const KyCInventoryParameter* const found = start->getParameter(addressOf(path));
    ASSERT_EQ(found == nullptr, parameter == nullptr);
    EXPECT_EQ(found == nullptr ? 0 : found->getValue<int>(pool), parameter == nullptr ? 0 : parameter->value);
  }
  for (const KyModelPtr& sub : model.subItems)
    expectSameLookUps(random, *sub, items);
}

std::string difference(const KyCInventoryItem& tree, const KyModelItem& model)
{
  const KyItemPtr expected(buildModel(model));
  return KyTreeDifference(tree, *expected);
}

// What the seeds have led to, so that a test shows that it has seen everything.
struct TSeen
{
  unsigned int clean = 0;
  unsigned int reported = 0;
  unsigned int givenUp = 0;
};

void expectSameMerge(unsigned int seed, const TRules& targetRules, const TRules& sourceRules, unsigned int flags,
                     TSeen& seen)
{
  KyCRandomModel random(seed);
  const KyModelPtr modelTarget = random.make(targetRules);
  KyModelPtr modelSource = random.make(sourceRules);
  KyModelMap items;
  KyModelMap sourceItems;
  KyCInventoryItem* target = buildModel(*modelTarget, items);
  KyCInventoryItem* source = buildModel(*modelSource, sourceItems);
  const KyItemPtr owner(target);
  items.insert(sourceItems.begin(), sourceItems.end());

  KyModelOutcome expected;
  modelMerge(expected, *modelTarget, std::move(modelSource), flags);
  KyTestPool pool;
  KyCInventoryItem::mergeTree(pool, target, source, flags);

  EXPECT_TRUE(sameReports(pool.takeReports(), expected.reports));
  EXPECT_EQ(source, nullptr);
  EXPECT_EQ(target, owner.get());
  EXPECT_EQ(difference(*target, *modelTarget), "");
  expectSameLookUps(random, *modelTarget, items);
  for (const KyModelPtr& givenUp : expected.givenUp)
  {
    const KyItemPtr item(items.at(givenUp.get()));
    EXPECT_EQ(item->getParent(), nullptr);
    EXPECT_EQ(difference(*item, *givenUp), "");
  }
  const KyItemPtr read = extractFromMemory(pool, storedSection(target));
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(KyTreeDifference(*target, *read), "") << "stored and read back";

  ++(expected.reports.empty() ? seen.clean : seen.reported);
  seen.givenUp += static_cast<unsigned int>(expected.givenUp.size());
}

void expectSameMerges(const TRules& targetRules, const TRules& sourceRules, unsigned int flags)
{
  TSeen seen;
  for (unsigned int seed = 1; seed <= SEEDS && !::testing::Test::HasFailure(); ++seed)
  {
    SCOPED_TRACE("seed " + std::to_string(seed));
    expectSameMerge(seed, targetRules, sourceRules, flags, seen);
  }
  EXPECT_GT(seen.clean, SEEDS / 10);
  EXPECT_GT(seen.reported, SEEDS / 10);
  EXPECT_GT(seen.givenUp, SEEDS / 10);
}

constexpr TRules PLAIN = {false, false, false};
constexpr TRules WILD = {false, true, true};
constexpr TRules WILD_WITH_FRIENDS = {true, true, true};
}    // namespace

TEST(KyCInventoryItemModel, mergesAgreeWithParameters) { expectSameMerges(PLAIN, PLAIN, 1); }
TEST(KyCInventoryItemModel, mergesAgreeWithoutParameters) { expectSameMerges(PLAIN, PLAIN, 0); }
TEST(KyCInventoryItemModel, mergesOfTreesWithClashesAgreeWithParameters) { expectSameMerges(WILD, WILD, 1); }
TEST(KyCInventoryItemModel, mergesOfTreesWithClashesAgreeWithoutParameters) { expectSameMerges(WILD, WILD, 0); }

// Friends in the target alone: a source's friends would end with it.
TEST(KyCInventoryItemModel, mergesIntoTreesWithFriendsAgreeWithParameters)
{
  expectSameMerges(WILD_WITH_FRIENDS, WILD, 1);
}

TEST(KyCInventoryItemModel, mergesIntoTreesWithFriendsAgreeWithoutParameters)
{
  expectSameMerges(WILD_WITH_FRIENDS, WILD, 0);
}

TEST(KyCInventoryItemModel, copiesAgree)
{
  unsigned int reported = 0;
  for (unsigned int seed = 1; seed <= SEEDS && !HasFailure(); ++seed)
  {
    SCOPED_TRACE("seed " + std::to_string(seed));
    KyCRandomModel random(seed);
    const KyModelPtr model = random.make(WILD_WITH_FRIENDS);
    KyModelMap items;
    const KyItemPtr tree(buildModel(*model, items));
    KyModelOutcome expected;
    const KyModelPtr modelCopied = modelCopy(expected, *model);
    KyTestPool pool;
    KyCInventoryItem* copy = nullptr;
    tree->copyTree(pool, copy);
    const KyItemPtr owner(copy);
    EXPECT_TRUE(sameReports(pool.takeReports(), expected.reports));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(difference(*copy, *modelCopied), "");
    EXPECT_EQ(difference(*tree, *model), "") << "the original is as it was";
    reported += expected.reports.empty() ? 0 : 1;
  }
  EXPECT_GT(reported, SEEDS / 10);
  EXPECT_LT(reported, SEEDS - SEEDS / 10);
}
