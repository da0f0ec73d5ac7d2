// KyCCompositeTest.cpp: the links of a node and what it refuses.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "KyTestNode.h"
#include "composite/KyCComposite.h"
#include "support/KyPoolFailure.h"
#include "support/KyTestPool.h"

namespace
{

constexpr unsigned int PARAM_NULL = 0x01101000;
constexpr unsigned int PARAM_OWNED = 0x01101001;
constexpr unsigned int PARAM_DUPLICATE = 0x01101002;

KyTestNode* makeNode(KyTestPool& pool, unsigned int classId, unsigned int unitId = 1)
{
  return new (pool) KyTestNode(pool, classId, unitId);
}

// The class ids of the children, in list order and joined by spaces.
std::string childrenOf(const KyCComposite& node)
{
  std::string text;
  for (const KyCComposite* child = node.getChild(); child != nullptr; child = child->getSibling())
    text += (text.empty() ? "" : " ") + std::to_string(child->getClassId());
  return text;
}

std::string parametersOf(const KyCComposite& node)
{
  std::string text;
  for (unsigned int n = 0; node.getParameterByIndex(n) != nullptr; ++n)
    text += (text.empty() ? "" : " ") + std::to_string(node.getParameterByIndex(n)->getId());
  return text;
}

}    // namespace

TEST(KyCComposite, startsAlone)
{
  KyTestPool pool;
  const KyTestNode node(pool, 4294967295u, 17, "a description");
  EXPECT_EQ(4294967295u, node.getClassId());
  EXPECT_EQ(17u, node.getUnitId());
  EXPECT_STREQ("a description", node.getDescription());
  EXPECT_EQ(nullptr, node.getParent());
  EXPECT_EQ(nullptr, node.getChild());
  EXPECT_EQ(nullptr, node.getSibling());
  EXPECT_EQ(nullptr, node.getFriend());
  EXPECT_EQ(nullptr, node.getFirstParameter());
  EXPECT_EQ(nullptr, node.getParameterById(0));
  EXPECT_EQ(nullptr, node.getParameterByIndex(0));
  EXPECT_EQ(nullptr, node.findChild(1, 1));
  EXPECT_NO_REPORTS(pool);
}

// ---- Description ----

TEST(KyCComposite, copiesTheDescriptionAndTakesNullAsEmpty)
{
  KyTestPool pool;
  char description[] = "rack";
  KyCComposite node(pool, 1, 1, description);
  description[0] = 'X';
  EXPECT_STREQ("rack", node.getDescription());
  node.setDescription(pool, "another rack");
  EXPECT_STREQ("another rack", node.getDescription());
  node.setDescription(pool, node.getDescription() + 8);
  EXPECT_STREQ("rack", node.getDescription());
  node.setDescription(pool, nullptr);
  EXPECT_STREQ("", node.getDescription());
  const KyCComposite nameless(pool, 1, 1, nullptr);
  EXPECT_STREQ("", nameless.getDescription());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, keepsThePointerOfAStaticDescription)
{
  KyTestPool pool;
  static const char text[] = "rack";
  KyNPoolAllocator::failAfter(0);    // nothing is allocated
  KyTestNode* const node = new KyTestNode(pool, 1, 1, KyTestNode::staticText(text));
  EXPECT_EQ(text, node->getDescription());
  KyNPoolAllocator::reset();
  node->setDescription(pool, "own");
  EXPECT_STREQ("own", node->getDescription());
  node->setStaticDescription(text);
  EXPECT_EQ(text, node->getDescription());
  node->setStaticDescription(nullptr);
  EXPECT_STREQ("", node->getDescription());
  delete node;
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, descriptionWithoutMemoryReports)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  KyCComposite node(pool, 1, 1, "rack");
  KyNPoolAllocator::reset();
  EXPECT_STREQ("", node.getDescription());
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});
  node.setDescription(pool, "rack");
  KyNPoolAllocator::failAfter(0);
  node.setDescription(pool, "board");
  KyNPoolAllocator::reset();
  EXPECT_STREQ("rack", node.getDescription());
  EXPECT_REPORTS(pool, {OUT_OF_MEMORY, "", "Out of memory."});
}

// ---- Children ----

TEST(KyCComposite, attachAppendsAtTheEnd)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* const first = makeNode(pool, 10);
  KyTestNode* const second = makeNode(pool, 20);
  KyTestNode* const third = makeNode(pool, 30);
  EXPECT_EQ(0, root.attach(first));
  EXPECT_EQ(0, root.attach(second));
  EXPECT_EQ(0, root.attach(third));
  EXPECT_EQ(first, root.getChild());
  EXPECT_EQ(second, first->getSibling());
  EXPECT_EQ(third, second->getSibling());
  EXPECT_EQ(nullptr, third->getSibling());
  EXPECT_EQ(&root, first->getParent());
  EXPECT_EQ(&root, third->getParent());
  EXPECT_EQ("10 20 30", childrenOf(root));
}

TEST(KyCComposite, attachRefusesANullChild)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  EXPECT_EQ(-1, root.attach(nullptr));
  EXPECT_EQ(nullptr, root.getChild());
}

TEST(KyCComposite, attachRefusesTheNodeItselfAndItsAncestors)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  EXPECT_EQ(-2, root.attach(&root));
  KyTestNode* const child = makeNode(pool, 2);
  root.attach(child);
  KyTestNode* const grandchild = makeNode(pool, 3);
  child->attach(grandchild);
  EXPECT_EQ(-2, grandchild->attach(&root));
  EXPECT_EQ(-2, grandchild->attach(grandchild));    // before -3: it has a parent, too
  EXPECT_EQ(-2, grandchild->attach(child));
  EXPECT_EQ(-2, child->attach(&root));
  EXPECT_EQ("2", childrenOf(root));
  EXPECT_EQ("3", childrenOf(*child));
  EXPECT_EQ("", childrenOf(*grandchild));
}

TEST(KyCComposite, attachRefusesAChildOfAnotherNode)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode other(pool, 2, 1);
  KyTestNode* const child = makeNode(pool, 3);
  child->attach(makeNode(pool, 4));
  EXPECT_EQ(0, root.attach(child));
  EXPECT_EQ(-3, other.attach(child));
  EXPECT_EQ(-3, root.attach(child));    // its own, too
  EXPECT_EQ(-3, other.attach(child->getChild()));
  EXPECT_EQ(&root, child->getParent());
  EXPECT_EQ("3", childrenOf(root));
  EXPECT_EQ("", childrenOf(other));
}

TEST(KyCComposite, attachFindsAncestorsInWideAndDeepTreesAlike)
{
  KyTestPool pool;
  KyTestNode* const root = makeNode(pool, 1);
  KyTestNode* deepest = root;
  for (unsigned int level = 0; level < 50; ++level)
  {
    for (unsigned int n = 0; n < 5; ++n)
      deepest->attach(makeNode(pool, 100 + n));
    KyTestNode* const next = makeNode(pool, 2);
    deepest->attach(next);
    deepest = next;
  }
  for (KyCComposite* node = deepest; node != nullptr; node = node->getParent())
    EXPECT_EQ(-2, deepest->attach(node));
  KyTestNode* const lonely = makeNode(pool, 3);
  lonely->attach(makeNode(pool, 4));
  EXPECT_EQ(0, deepest->attach(lonely));
  EXPECT_EQ(-2, lonely->attach(root));
  delete root;
}

TEST(KyCComposite, detachChildGivesTheChildBack)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  std::unique_ptr<KyTestNode> children[4];
  for (unsigned int n = 0; n < 4; ++n)
  {
    children[n].reset(makeNode(pool, n));
    root.attach(children[n].get());
  }
  EXPECT_EQ(0, root.detachChild(children[1].get()));
  EXPECT_EQ("0 2 3", childrenOf(root));
  EXPECT_EQ(nullptr, children[1]->getParent());
  EXPECT_EQ(nullptr, children[1]->getSibling());
  EXPECT_EQ(0, root.detachChild(children[3].get()));
  EXPECT_EQ("0 2", childrenOf(root));
  EXPECT_EQ(0, root.detachChild(children[0].get()));
  EXPECT_EQ("2", childrenOf(root));
  EXPECT_EQ(0, root.attach(children[1].get()));
  EXPECT_EQ("2 1", childrenOf(root));
  EXPECT_EQ(0, root.detachChild(children[2].get()));
  EXPECT_EQ(0, root.detachChild(children[1].get()));
  EXPECT_EQ(nullptr, root.getChild());
}

TEST(KyCComposite, detachChildRefusesWhatIsNoChild)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* const child = makeNode(pool, 2);
  KyTestNode* const grandchild = makeNode(pool, 3);
  root.attach(child);
  child->attach(grandchild);
  KyTestNode stranger(pool, 4, 1);
  EXPECT_EQ(-1, root.detachChild(nullptr));
  EXPECT_EQ(-1, root.detachChild(&root));
  EXPECT_EQ(-1, root.detachChild(grandchild));
  EXPECT_EQ(-1, root.detachChild(&stranger));
  EXPECT_EQ("2", childrenOf(root));
}

TEST(KyCComposite, findChildGivesTheFirstInListOrder)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* const first = makeNode(pool, 5, 1);
  KyTestNode* const second = makeNode(pool, 5, 1);
  KyTestNode* const other = makeNode(pool, 5, 2);
  root.attach(first);
  root.attach(second);
  root.attach(other);
  EXPECT_EQ(first, root.findChild(5, 1));
  EXPECT_EQ(other, root.findChild(5, 2));
  EXPECT_EQ(nullptr, root.findChild(1, 5));
  root.detachChild(first);
  EXPECT_EQ(second, root.findChild(5, 1));
  root.attach(first);
  EXPECT_EQ(second, root.findChild(5, 1));
  second->setIds(6, 6);
  EXPECT_EQ(first, root.findChild(5, 1));
  EXPECT_EQ(second, root.findChild(6, 6));
  EXPECT_EQ(6u, second->getClassId());
  EXPECT_EQ(6u, second->getUnitId());
}

TEST(KyCComposite, amongManyChildrenThatCountUpTheFirstInListOrderIsFoundAllTheSame)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* children[41];
  for (unsigned int n = 1; n <= 40; ++n)
    root.attach(children[n] = makeNode(pool, 5, n));
  EXPECT_EQ(children[40], root.findChild(5, 40));
  EXPECT_EQ(children[7], root.findChild(5, 7));
  EXPECT_EQ(nullptr, root.findChild(6, 7));
  EXPECT_EQ(nullptr, root.findChild(5, 41));

  children[7]->setIds(6, 7);    // stays where it was
  EXPECT_EQ(nullptr, root.findChild(5, 7));
  EXPECT_EQ(children[7], root.findChild(6, 7));
  root.detachChild(children[9]);
  EXPECT_EQ(nullptr, root.findChild(5, 9));
  EXPECT_EQ(children[10], root.findChild(5, 10));
  root.attach(children[9]);    // at the end now
  EXPECT_EQ(children[9], root.findChild(5, 9));

  children[30]->setIds(5, 20);    // behind the other one
  EXPECT_EQ(children[20], root.findChild(5, 20));
  children[3]->setIds(5, 20);    // in front of it
  EXPECT_EQ(children[3], root.findChild(5, 20));
  root.detachChild(children[3]);
  EXPECT_EQ(children[20], root.findChild(5, 20));
  delete children[20];
  EXPECT_EQ(children[30], root.findChild(5, 20));
  delete children[3];
}

TEST(KyCComposite, anEarlierChildThatGetsTheNumbersOfTheOneFoundLastIsFoundInItsPlace)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* const first = makeNode(pool, 5, 1);
  KyTestNode* const second = makeNode(pool, 5, 2);
  root.attach(first);
  root.attach(second);
  EXPECT_EQ(second, root.findChild(5, 2));
  first->setIds(5, 2);
  EXPECT_EQ(first, root.findChild(5, 2));
  EXPECT_EQ(nullptr, root.findChild(5, 1));
  first->setIds(5, 1);
  EXPECT_EQ(second, root.findChild(5, 2));
}

TEST(KyCComposite, theChildFoundLastIsNotFoundOnceItIsDetachedDeletedOrRenamed)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* const child = makeNode(pool, 5, 1);
  root.attach(child);
  EXPECT_EQ(child, root.findChild(5, 1));
  child->setIds(6, 1);
  EXPECT_EQ(nullptr, root.findChild(5, 1));
  EXPECT_EQ(child, root.findChild(6, 1));
  root.detachChild(child);
  EXPECT_EQ(nullptr, root.findChild(6, 1));
  root.attach(child);
  EXPECT_EQ(child, root.findChild(6, 1));
  delete child;
  EXPECT_EQ(nullptr, root.findChild(6, 1));
}

TEST(KyCComposite, everyIdIsFoundAndNoOtherAmongChildrenAndParameters)
{
  KyTestPool pool;
  for (const unsigned int step : {1u, 3u, 64u, 0x10000001u})
  {
    KyTestNode root(pool, 1, 1);
    for (unsigned int n = 0; n < 15; ++n)
    {
      root.attach(makeNode(pool, 2 * n * step, 1));
      root.addParameter(pool, new (pool) KyTestParam(pool, (2 * n + 1) * step));
    }
    for (unsigned int n = 0; n < 40; ++n)
    {
      const bool isChild = n % 2 == 0 && n < 30;
      const bool isParameter = n % 2 == 1 && n < 30;
      EXPECT_EQ(root.findChild(n * step, 1) != nullptr, isChild) << n << " " << step;
      EXPECT_EQ(root.getParameterById(n * step) != nullptr, isParameter) << n << " " << step;
    }
  }
}

TEST(KyCComposite, friendIsKeptAndNotOwned)
{
  KyTestPool pool;
  KyTestNode shared(pool, 1, 1);
  {
    KyTestNode node(pool, 2, 1);
    node.setFriend(&shared);
    EXPECT_EQ(&shared, node.getFriend());
    node.setFriend(nullptr);
    EXPECT_EQ(nullptr, node.getFriend());
    node.setFriend(&shared);
  }
  EXPECT_EQ(1u, shared.getClassId());
}

// ---- Parameters ----

TEST(KyCComposite, addParameterAppendsAtTheEnd)
{
  KyTestPool pool;
  KyTestNode node(pool, 1, 1);
  KyTestParam* const first = new (pool) KyTestParam(pool, 30);
  KyTestParam* const second = new (pool) KyTestParam(pool, 10);
  node.addParameter(pool, first);
  node.addParameter(pool, second);
  EXPECT_EQ(first, node.getFirstParameter());
  EXPECT_EQ(second, first->getNextParam());
  EXPECT_EQ(nullptr, second->getNextParam());
  EXPECT_EQ(&node, first->getParentComposite());
  EXPECT_EQ(first, node.getParameterById(30));
  EXPECT_EQ(second, node.getParameterById(10));
  EXPECT_EQ(nullptr, node.getParameterById(20));
  EXPECT_EQ(first, node.getParameterByIndex(0));
  EXPECT_EQ(second, node.getParameterByIndex(1));
  EXPECT_EQ(nullptr, node.getParameterByIndex(2));
  EXPECT_EQ(nullptr, node.getParameterByIndex(4294967295u));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, addParameterRefusesNullOwnedAndRepeatedOnes)
{
  KyTestPool pool;
  KyTestNode node(pool, 11, 12);
  KyTestNode other(pool, 13, 14);
  KyTestParam* const owned = new (pool) KyTestParam(pool, 5);
  node.addParameter(pool, owned);
  KyTestParam repeated(pool, 5);
  EXPECT_NO_REPORTS(pool);

  node.addParameter(pool, nullptr);
  EXPECT_REPORTS(pool, {PARAM_NULL, "addParameter", "A null parameter was given to composite (11, 12)."});
  other.addParameter(pool, owned);
  node.addParameter(pool, owned);
  EXPECT_REPORTS(pool,
                 {PARAM_OWNED, "addParameter",
                  "Parameter 5 belongs to a composite already; it cannot be added to composite (13, 14)."},
                 {PARAM_OWNED, "addParameter",
                  "Parameter 5 belongs to a composite already; it cannot be added to composite (11, 12)."});
  node.addParameter(pool, &repeated);
  EXPECT_REPORTS(pool, {PARAM_DUPLICATE, "addParameter",
                        "Parameter 5 cannot be added to composite (11, 12), which has one of that id."});
  EXPECT_EQ(nullptr, repeated.getParentComposite());
  EXPECT_EQ(&node, owned->getParentComposite());
  EXPECT_EQ("5", parametersOf(node));
  EXPECT_EQ("", parametersOf(other));
}

TEST(KyCComposite, removeParameterGivesTheParameterBack)
{
  KyTestPool pool;
  KyTestNode node(pool, 1, 1);
  for (unsigned int id = 1; id <= 4; ++id)
    node.addParameter(pool, new (pool) KyTestParam(pool, id));
  std::unique_ptr<KyTestParam> second(static_cast<KyTestParam*>(node.removeParameter(pool, 2)));
  ASSERT_NE(nullptr, second);
  EXPECT_EQ(2u, second->getId());
  EXPECT_EQ(nullptr, second->getParentComposite());
  EXPECT_EQ(nullptr, second->getNextParam());
  EXPECT_EQ("1 3 4", parametersOf(node));
  delete node.removeParameter(pool, 4);
  EXPECT_EQ("1 3", parametersOf(node));
  node.addParameter(pool, second.release());
  EXPECT_EQ("1 3 2", parametersOf(node));
  delete node.removeParameter(pool, 1);
  delete node.removeParameter(pool, 3);
  delete node.removeParameter(pool, 2);
  EXPECT_EQ("", parametersOf(node));
  EXPECT_EQ(nullptr, node.getFirstParameter());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, removeParameterOfAnUnknownIdIsNullAndNoReport)
{
  KyTestPool pool;
  KyTestNode node(pool, 1, 1);
  EXPECT_EQ(nullptr, node.removeParameter(pool, 1));
  node.addParameter(pool, new (pool) KyTestParam(pool, 1));
  EXPECT_EQ(nullptr, node.removeParameter(pool, 2));
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, assignmentMayGiveTwoParametersOneIdAndTheFirstIsFound)
{
  for (const unsigned int count : {4u, 40u})
  {
    KyTestPool pool;
    KyTestNode node(pool, 1, 1);
    for (unsigned int id = 1; id <= count; ++id)
      node.addParameter(pool, new (pool) KyTestParam(pool, id));
    KyCParam* const second = node.getParameterByIndex(1);
    KyCParam* const last = node.getParameterByIndex(count - 1);
    *second = *last;
    EXPECT_EQ(second, node.getParameterById(count));
    EXPECT_EQ(nullptr, node.getParameterById(2));
    EXPECT_EQ(second, node.removeParameter(pool, count));
    EXPECT_EQ(last, node.getParameterById(count));
    delete second;
    EXPECT_NO_REPORTS(pool);
  }
}

// ---- Destruction ----

TEST(KyCComposite, deletesItsChildrenAndParametersOnce)
{
  KyTestPool pool;
  {
    KyTestNode root(pool, 1, 1);
    for (unsigned int n = 0; n < 20; ++n)
    {
      KyTestNode* const child = makeNode(pool, n);
      root.attach(child);
      root.addParameter(pool, new (pool) KyTestParam(pool, n));
      for (unsigned int m = 0; m < 20; ++m)
      {
        child->attach(makeNode(pool, m));
        child->addParameter(pool, new (pool) KyTestParam(pool, m));
      }
    }
    EXPECT_EQ(421u, KyTestNode::s_alive);
    EXPECT_EQ(420u, KyTestParam::s_alive);
  }
  EXPECT_EQ(0u, KyTestNode::s_alive);
  EXPECT_EQ(0u, KyTestParam::s_alive);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCComposite, deletionOfAChildUnlinksIt)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  KyTestNode* children[3];
  for (unsigned int n = 0; n < 3; ++n)
  {
    children[n] = makeNode(pool, n);
    root.attach(children[n]);
  }
  delete children[1];
  EXPECT_EQ("0 2", childrenOf(root));
  delete children[0];
  EXPECT_EQ("2", childrenOf(root));
  delete children[2];
  EXPECT_EQ("", childrenOf(root));
  EXPECT_EQ(0, root.attach(makeNode(pool, 7)));
  EXPECT_EQ("7", childrenOf(root));
}

namespace
{

// Looks around in its destructor, and takes a node with it that hangs elsewhere in the tree.
class KyCuriousNode : public KyCComposite
{
public:
  KyCuriousNode(KyCErrorListPool& pool, unsigned int classId, std::vector<std::string>& diary, KyCComposite* companion)
      : KyCComposite(pool, classId, 1, "curious"), m_diary(diary), m_companion(companion)
  {
  }

  ~KyCuriousNode() override
  {
    m_diary.push_back(std::to_string(getClassId()) + (getParent() == nullptr ? " free" : " hanging") +
                      (getChild() == nullptr ? " childless" : " with children") + ", parameter " +
                      (getParameterById(1) != nullptr ? "there" : "gone"));
    delete m_companion;
  }

private:
  std::vector<std::string>& m_diary;
  KyCComposite* m_companion;
};

}    // namespace

TEST(KyCComposite, derivedDestructorsSeeAnIntactNodeBeforeThoseOfItsChildren)
{
  KyTestPool pool;
  std::vector<std::string> diary;
  KyTestNode* const root = makeNode(pool, 1);
  KyTestNode* const companion = makeNode(pool, 99);
  KyCuriousNode* const outer = new (pool) KyCuriousNode(pool, 2, diary, nullptr);
  KyCuriousNode* const inner = new (pool) KyCuriousNode(pool, 3, diary, companion);
  root->attach(outer);
  outer->attach(inner);
  outer->attach(companion);    // inner's destructor deletes its own sibling
  outer->addParameter(pool, new (pool) KyTestParam(pool, 1));
  inner->addParameter(pool, new (pool) KyTestParam(pool, 1));
  delete root;
  EXPECT_EQ((std::vector<std::string>{"2 free with children, parameter there", "3 free childless, parameter there"}),
            diary);
  EXPECT_EQ(0u, KyTestNode::s_alive);
  EXPECT_NO_REPORTS(pool);
}

// ---- Virtual operations ----

namespace
{

class KyCallRecorder : public KyCComposite
{
public:
  explicit KyCallRecorder(KyCErrorListPool& pool) : KyCComposite(pool, 1, 1, "recorder") {}
  void update(KyCErrorListPool&) override { m_called = "update"; }
  void PreInit(KyCErrorListPool&) override { m_called = "PreInit"; }
  void PostInit(KyCErrorListPool&) override { m_called = "PostInit"; }
  void PreApply(KyCErrorListPool&) override { m_called = "PreApply"; }
  void PostApply(KyCErrorListPool&) override { m_called = "PostApply"; }
  void PreReset(KyCErrorListPool&) override { m_called = "PreReset"; }
  void PostReset(KyCErrorListPool&) override { m_called = "PostReset"; }
  void traverseHook(KyCErrorListPool&, unsigned int value) override
  {
    m_called = "traverseHook " + std::to_string(value);
  }
  void virtualDummyFunction4() override { m_called = "virtualDummyFunction4"; }
  void virtualDummyFunction3() override { m_called = "virtualDummyFunction3"; }
  void virtualDummyFunction2() override { m_called = "virtualDummyFunction2"; }
  void virtualDummyFunction1() override { m_called = "virtualDummyFunction1"; }

  std::string m_called;
};

// The operation in a slot of the object's virtual table, as code built by others calls it.
template <typename TFunction>
TFunction slotOf(const KyCComposite& node, unsigned int slot)
{
  void* const* const table = *reinterpret_cast<void* const* const*>(&node);
  return reinterpret_cast<TFunction>(table[slot]);
}

}    // namespace

TEST(KyCComposite, virtualOperationsStandInTheirSlots)
{
  using TWithPool = void (*)(KyCComposite*, KyCErrorListPool&);
  using TWithValue = void (*)(KyCComposite*, KyCErrorListPool&, unsigned int);
  using TPlain = void (*)(KyCComposite*);
  KyTestPool pool;
  KyCallRecorder node(pool);
  const char* const withPool[] = {"update", "PreInit", "PostInit", "PreApply", "PostApply", "PreReset", "PostReset"};
  for (unsigned int n = 0; n < 7; ++n)
  {
    slotOf<TWithPool>(node, 2 + n)(&node, pool);
    EXPECT_EQ(withPool[n], node.m_called);
  }
  slotOf<TWithValue>(node, 9)(&node, pool, 77);
  EXPECT_EQ("traverseHook 77", node.m_called);
  const char* const plain[] = {"virtualDummyFunction4", "virtualDummyFunction3", "virtualDummyFunction2",
                               "virtualDummyFunction1"};
  for (unsigned int n = 0; n < 4; ++n)
  {
    slotOf<TPlain>(node, 10 + n)(&node);
    EXPECT_EQ(plain[n], node.m_called);
  }
}

TEST(KyCComposite, destructorsStandInTheFirstTwoSlots)
{
  using TDestructor = void (*)(KyCComposite*);
  KyTestPool pool;
  KyTestNode* const node = makeNode(pool, 1);
  EXPECT_EQ(1u, KyTestNode::s_alive);
  slotOf<TDestructor>(*node, 1)(node);    // deleting
  EXPECT_EQ(0u, KyTestNode::s_alive);
  void* const memory = ::operator new(sizeof(KyTestNode));
  KyTestNode* const placed = new (memory) KyTestNode(pool, 1, 1);
  slotOf<TDestructor>(*placed, 0)(placed);    // complete
  EXPECT_EQ(0u, KyTestNode::s_alive);
  ::operator delete(memory);
}

TEST(KyCComposite, baseDoesNothingInItsVirtualOperations)
{
  KyTestPool pool;
  KyTestNode node(pool, 1, 1);
  node.update(pool);
  node.PreInit(pool);
  node.PostInit(pool);
  node.PreApply(pool);
  node.PostApply(pool);
  node.PreReset(pool);
  node.PostReset(pool);
  node.traverseHook(pool, 1);
  node.virtualDummyFunction4();
  node.virtualDummyFunction3();
  node.virtualDummyFunction2();
  node.virtualDummyFunction1();
  EXPECT_NO_REPORTS(pool);
}
