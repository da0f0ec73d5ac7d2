// KyCCompositeModelTest.cpp: children and parameters under random operations, against plain vectors; long lists in all
// orders; deep trees. A list operation that took linear time would make this program run for minutes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <numeric>
#include <vector>

#include "KyTestNode.h"
#include "composite/KyCComposite.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"

namespace
{

class KyRandom
{
public:
  explicit KyRandom(std::uint64_t seed) : m_state(seed) {}

  unsigned int next(unsigned int limit)
  {
    m_state = m_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<unsigned int>((m_state >> 33) % limit);
  }

  template <typename T>
  void shuffle(std::vector<T>& items)
  {
    for (unsigned int n = static_cast<unsigned int>(items.size()); n > 1; --n)
      std::swap(items[n - 1], items[next(n)]);
  }

private:
  std::uint64_t m_state;
};

// How long the lists grow, and how many different numbers there are: few give many duplicates.
struct KyShape
{
  unsigned int length;
  unsigned int numbers;
  unsigned int steps;
};

const KyShape s_shapes[] = {{6, 3, 20000},   {14, 100, 20000},   {20, 4, 30000},   {40, 40, 30000},  {300, 1, 20000},
                            {300, 7, 30000}, {300, 1000, 30000}, {2000, 4, 20000}, {2000, 30, 20000}};

// ---- Children ----

class KyChildrenModel
{
public:
  KyChildrenModel(const KyShape& shape, std::uint64_t seed) : m_shape(shape), m_random(seed), m_root(m_pool, 1, 1) {}

  ~KyChildrenModel()
  {
    for (KyTestNode* node : m_free)
      delete node;
  }

  void step()
  {
    switch (m_random.next(8))
    {
      case 0:
      case 1:
        attach();
        break;
      case 2:
        detach();
        break;
      case 3:
        rename();
        break;
      case 4:
        remove();
        break;
      default:
        lookUp();
    }
  }

  void compareWhole() const
  {
    const KyCComposite* child = m_root.getChild();
    for (const KyTestNode* expected : m_children)
    {
      ASSERT_EQ(expected, child);
      ASSERT_EQ(&m_root, child->getParent());
      child = child->getSibling();
    }
    ASSERT_EQ(nullptr, child);
    EXPECT_EQ(m_children.size() + m_free.size() + 1, KyTestNode::s_alive);
  }

private:
  unsigned int number() { return m_random.next(m_shape.numbers); }

  KyTestNode* takeRandom(std::vector<KyTestNode*>& nodes)
  {
    const unsigned int n = m_random.next(static_cast<unsigned int>(nodes.size()));
    KyTestNode* const node = nodes[n];
    nodes.erase(nodes.begin() + n);
    return node;
  }

  void attach()
  {
    if (m_children.size() >= m_shape.length) return;
    const bool again = !m_free.empty() && m_random.next(2) == 0;
    KyTestNode* const node = again ? takeRandom(m_free) : new (m_pool) KyTestNode(m_pool, number(), 1, nullptr);
    ASSERT_EQ(0, m_root.attach(node));
    m_children.push_back(node);
  }

  void detach()
  {
    if (m_children.empty()) return;
    KyTestNode* const node = takeRandom(m_children);
    ASSERT_EQ(0, m_root.detachChild(node));
    m_free.push_back(node);
    if (m_free.size() > 10) delete takeRandom(m_free);
  }

  void rename()
  {
    if (m_children.empty()) return;
    m_children[m_random.next(static_cast<unsigned int>(m_children.size()))]->setIds(number(), 1);
  }

  void remove()
  {
    if (!m_children.empty() && m_random.next(4) == 0) delete takeRandom(m_children);
  }

  void lookUp()
  {
    const unsigned int wanted = number();
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [wanted](const KyTestNode* node) { return node->getClassId() == wanted; });
    ASSERT_EQ(found != m_children.end() ? *found : nullptr, m_root.findChild(wanted, 1));
    ASSERT_EQ(nullptr, m_root.findChild(wanted, 2));
  }

  KyShape m_shape;
  KyRandom m_random;
  KyTestPool m_pool;
  KyTestNode m_root;
  std::vector<KyTestNode*> m_children;
  std::vector<KyTestNode*> m_free;
};

// ---- Parameters ----

class KyParametersModel
{
public:
  KyParametersModel(const KyShape& shape, std::uint64_t seed) : m_shape(shape), m_random(seed), m_root(m_pool, 1, 1) {}

  void step()
  {
    switch (m_random.next(9))
    {
      case 0:
      case 1:
        add();
        break;
      case 2:
        removeById();
        break;
      case 3:
        assign();
        break;
      case 4:
        deleteOne();
        break;
      case 5:
        lookUpByIndex();
        break;
      default:
        lookUpById();
    }
  }

  void compareWhole() const
  {
    for (unsigned int n = 0; n < m_parameters.size(); ++n)
      ASSERT_EQ(m_parameters[n], m_root.getParameterByIndex(n));
    ASSERT_EQ(nullptr, m_root.getParameterByIndex(static_cast<unsigned int>(m_parameters.size())));
    const KyCParam* parameter = m_root.getFirstParameter();
    for (const KyTestParam* expected : m_parameters)
    {
      ASSERT_EQ(expected, parameter);
      parameter = expected->getNextParam();
    }
    ASSERT_EQ(nullptr, parameter);
    EXPECT_EQ(m_parameters.size(), KyTestParam::s_alive);
  }

private:
  unsigned int number() { return m_random.next(m_shape.numbers); }
  unsigned int place() { return m_random.next(static_cast<unsigned int>(m_parameters.size())); }

  KyTestParam* find(unsigned int id) const
  {
    const auto found = std::find_if(m_parameters.begin(), m_parameters.end(),
                                    [id](const KyTestParam* parameter) { return parameter->getId() == id; });
    return found != m_parameters.end() ? *found : nullptr;
  }

  void forget(KyTestParam* parameter)
  {
    m_parameters.erase(std::find(m_parameters.begin(), m_parameters.end(), parameter));
  }

  // Ids beyond the shape's, too: the list would stay short when there are few of them.
  void add()
  {
    if (m_parameters.size() >= m_shape.length) return;
    const unsigned int id = m_random.next(2) == 0 ? number() : 1000000 + m_random.next(1000000);
    KyTestParam* const parameter = new (m_pool) KyTestParam(m_pool, id);
    const bool isRefused = find(id) != nullptr;
    m_root.addParameter(m_pool, parameter);
    if (isRefused)
    {
      EXPECT_REPORTS(m_pool, {0x01101002, "addParameter", ""});
      delete parameter;
      return;
    }
    m_parameters.push_back(parameter);
  }

  void removeById()
  {
    const unsigned int id = m_parameters.empty() || m_random.next(4) == 0 ? number() : m_parameters[place()]->getId();
    KyTestParam* const expected = find(id);
    ASSERT_EQ(expected, m_root.removeParameter(m_pool, id));
    if (expected == nullptr) return;
    forget(expected);
    ASSERT_EQ(nullptr, expected->getParentComposite());
    ASSERT_EQ(nullptr, expected->getNextParam());
    delete expected;
  }

  void assign()
  {
    if (m_parameters.empty()) return;
    const KyTestParam source(m_pool, number());
    static_cast<KyCParam&>(*m_parameters[place()]) = source;
  }

  void deleteOne()
  {
    if (m_parameters.empty() || m_random.next(4) != 0) return;
    KyTestParam* const parameter = m_parameters[place()];
    forget(parameter);
    delete parameter;
  }

  void lookUpByIndex()
  {
    const unsigned int n = m_random.next(m_shape.length + 2);
    ASSERT_EQ(n < m_parameters.size() ? m_parameters[n] : nullptr, m_root.getParameterByIndex(n));
    if (n + 1 >= m_parameters.size()) return;
    ASSERT_EQ(m_parameters[n + 1], m_root.getParameterByIndex(n + 1));
  }

  void lookUpById()
  {
    const unsigned int id = number();
    ASSERT_EQ(find(id), m_root.getParameterById(id));
  }

  KyShape m_shape;
  KyRandom m_random;
  KyTestPool m_pool;
  KyTestNode m_root;
  std::vector<KyTestParam*> m_parameters;
};

template <typename TModel>
void runModel(std::uint64_t seed)
{
  for (const KyShape& shape : s_shapes)
  {
    SCOPED_TRACE(testing::Message() << "length " << shape.length << ", numbers " << shape.numbers);
    TModel model(shape, seed++);
    for (unsigned int step = 0; step < shape.steps; ++step)
    {
      model.step();
      if (step % 500 == 0) model.compareWhole();
      if (testing::Test::HasFatalFailure()) return;
    }
    model.compareWhole();
    if (testing::Test::HasFatalFailure()) return;
  }
}

}    // namespace

TEST(KyCCompositeModel, childrenAgreeWithAVector)
{
  for (std::uint64_t seed = 1; seed <= 3; ++seed)
    runModel<KyChildrenModel>(seed * 1000);
}

TEST(KyCCompositeModel, parametersAgreeWithAVector)
{
  for (std::uint64_t seed = 1; seed <= 3; ++seed)
    runModel<KyParametersModel>(seed * 2000);
}

// ---- Long lists ----

namespace
{

constexpr unsigned int MANY = 100000;

// The numbers 0 .. MANY-1 from the front, from the back, and in no order.
std::vector<std::vector<unsigned int>> orders()
{
  std::vector<unsigned int> forward(MANY);
  std::iota(forward.begin(), forward.end(), 0u);
  std::vector<unsigned int> backward(forward.rbegin(), forward.rend());
  std::vector<unsigned int> shuffled(forward);
  KyRandom(5).shuffle(shuffled);
  return {forward, backward, shuffled};
}

std::vector<KyTestNode*> attachMany(KyTestPool& pool, KyTestNode& root, bool same)
{
  std::vector<KyTestNode*> children(MANY);
  for (unsigned int n = 0; n < MANY; ++n)
  {
    children[n] = new (pool) KyTestNode(pool, same ? 7 : n, 1, nullptr);
    root.attach(children[n]);
  }
  return children;
}

std::vector<KyTestParam*> addMany(KyTestPool& pool, KyTestNode& root)
{
  std::vector<KyTestParam*> parameters(MANY);
  for (unsigned int n = 0; n < MANY; ++n)
  {
    parameters[n] = new (pool) KyTestParam(pool, n * 3);
    root.addParameter(pool, parameters[n]);
  }
  return parameters;
}

}    // namespace

TEST(KyCCompositeLongList, findsEveryChildAndNoOther)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  for (unsigned int n = 0; n < MANY; ++n)
  {
    ASSERT_EQ(nullptr, root.findChild(n, 1));    // between the additions
    ASSERT_EQ(0, root.attach(new (pool) KyTestNode(pool, n, 1, nullptr)));
  }
  for (unsigned int n = 0; n < MANY; ++n)
    ASSERT_EQ(n, root.findChild(n, 1)->getClassId());
  EXPECT_EQ(nullptr, root.findChild(MANY, 1));
}

TEST(KyCCompositeLongList, renamesEveryChildWithALookUpBetween)
{
  for (const std::vector<unsigned int>& order : orders())
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestNode*> children = attachMany(pool, root, false);
    for (const unsigned int n : order)
    {
      children[n]->setIds(n, 2);
      ASSERT_EQ(children[n], root.findChild(n, 2));
      ASSERT_EQ(nullptr, root.findChild(n, 1));
    }
  }
}

TEST(KyCCompositeLongList, renamesEveryChildToTheSameNumbersAndBack)
{
  for (const std::vector<unsigned int>& order : orders())
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestNode*> children = attachMany(pool, root, false);
    unsigned int lowest = MANY;
    for (const unsigned int n : order)
    {
      children[n]->setIds(MANY, 9);
      lowest = std::min(lowest, n);
      ASSERT_EQ(children[lowest], root.findChild(MANY, 9));
    }
    for (const unsigned int n : order)
    {
      children[n]->setIds(n, 1);
      ASSERT_EQ(children[n], root.findChild(n, 1));
    }
    EXPECT_EQ(nullptr, root.findChild(MANY, 9));
  }
}

TEST(KyCCompositeLongList, detachesAndDeletesChildrenOfTheSameNumbersInAnyOrder)
{
  for (const std::vector<unsigned int>& order : orders())
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestNode*> children = attachMany(pool, root, true);
    ASSERT_EQ(children[0], root.findChild(7, 1));
    std::vector<bool> isGone(MANY);
    unsigned int first = 0;
    for (const unsigned int n : order)
    {
      ASSERT_EQ(0, root.detachChild(children[n]));
      delete children[n];
      isGone[n] = true;
      while (first < MANY && isGone[first])
        ++first;
      ASSERT_EQ(first < MANY ? children[first] : nullptr, root.findChild(7, 1));
    }
    EXPECT_EQ(nullptr, root.getChild());
  }
  EXPECT_EQ(0u, KyTestNode::s_alive);
}

TEST(KyCCompositeLongList, destroysChildrenOfTheSameNumbersWithTheirParent)
{
  KyTestPool pool;
  {
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestNode*> children = attachMany(pool, root, true);
    ASSERT_EQ(children[0], root.findChild(7, 1));
  }
  EXPECT_EQ(0u, KyTestNode::s_alive);
}

TEST(KyCCompositeLongList, removesEveryParameterByIdInAnyOrder)
{
  for (const std::vector<unsigned int>& order : orders())
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestParam*> parameters = addMany(pool, root);
    for (const unsigned int n : order)
    {
      ASSERT_EQ(parameters[n], root.removeParameter(pool, n * 3));
      ASSERT_EQ(nullptr, root.getParameterById(n * 3));
      delete parameters[n];
    }
    EXPECT_EQ(nullptr, root.getFirstParameter());
    EXPECT_NO_REPORTS(pool);
  }
}

TEST(KyCCompositeLongList, deletesEveryParameterInAnyOrder)
{
  for (const std::vector<unsigned int>& order : orders())
  {
    KyTestPool pool;
    KyTestNode root(pool, 1, 1);
    const std::vector<KyTestParam*> parameters = addMany(pool, root);
    for (const unsigned int n : order)
      delete parameters[n];
    EXPECT_EQ(nullptr, root.getFirstParameter());
    EXPECT_EQ(0u, KyTestParam::s_alive);
  }
}

TEST(KyCCompositeLongList, keepsTheFirstParameterWhileTheOthersGoFromTheFront)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  const std::vector<KyTestParam*> parameters = addMany(pool, root);
  for (unsigned int n = 1; n < MANY; ++n)
    delete root.removeParameter(pool, n * 3);
  EXPECT_EQ(parameters[0], root.getFirstParameter());
  EXPECT_EQ(nullptr, parameters[0]->getNextParam());
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCCompositeLongList, givesParametersByIndexInAnyOrder)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  const std::vector<KyTestParam*> parameters = addMany(pool, root);
  for (const std::vector<unsigned int>& order : orders())
    for (const unsigned int n : order)
      ASSERT_EQ(parameters[n], root.getParameterByIndex(n));
  EXPECT_EQ(nullptr, root.getParameterByIndex(MANY));
}

TEST(KyCCompositeLongList, walksByIndexWhileParametersAreRemovedOnTheWay)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  addMany(pool, root);
  unsigned int seen = 0;
  unsigned int kept = 0;
  while (KyCParam* const parameter = root.getParameterByIndex(kept))
  {
    ASSERT_EQ(seen * 3, parameter->getId());
    if (seen++ % 3 == 0)
      ++kept;
    else
      delete parameter;
  }
  EXPECT_EQ(MANY, seen);
  while (kept > 0)    // and back again, emptying the list from its end
  {
    KyCParam* const parameter = root.getParameterByIndex(--kept);
    ASSERT_EQ(kept * 9, parameter->getId());
    if (kept % 2 == 0) delete parameter;
  }
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCCompositeLongList, refusesTheSameIdAmongMany)
{
  KyTestPool pool;
  KyTestNode root(pool, 1, 1);
  addMany(pool, root);
  KyTestParam repeated(pool, 3 * (MANY - 1));
  root.addParameter(pool, &repeated);
  EXPECT_REPORTS(pool, {0x01101002, "addParameter", ""});
}

// ---- Deep trees ----

namespace
{

constexpr unsigned int DEEP = 1000000;

}    // namespace

TEST(KyCCompositeDeepTree, isDestroyedOnASmallStack)
{
  KyTestPool pool;
  KyTestNode* const root = new (pool) KyTestNode(pool, 1, 1, nullptr);
  KyTestNode* deepest = root;
  for (unsigned int level = 1; level < DEEP; ++level)
  {
    KyTestNode* const child = new (pool) KyTestNode(pool, level, 1, nullptr);
    ASSERT_EQ(0, deepest->attach(child));
    if (level % 16 == 0) deepest->addParameter(pool, new (pool) KyTestParam(pool, 1));
    deepest = child;
  }
  EXPECT_EQ(DEEP, KyTestNode::s_alive);
  onASmallStack([root] { delete static_cast<KyCComposite*>(root); });
  EXPECT_EQ(0u, KyTestNode::s_alive);
  EXPECT_EQ(0u, KyTestParam::s_alive);
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCCompositeDeepTree, isBuiltFromTheBottomAndFromPiecesAsFast)
{
  KyTestPool pool;
  KyTestNode* top = new (pool) KyTestNode(pool, 0, 1, nullptr);
  for (unsigned int level = 1; level < MANY; ++level)
  {
    KyTestNode* const above = new (pool) KyTestNode(pool, level, 1, nullptr);
    ASSERT_EQ(0, above->attach(top));
    top = above;
  }
  KyTestNode* deepest = static_cast<KyTestNode*>(top);
  while (deepest->getChild() != nullptr)
    deepest = static_cast<KyTestNode*>(deepest->getChild());
  for (unsigned int level = 0; level < MANY; ++level)    // a pair of nodes at a time below the deepest one
  {
    KyTestNode* const upper = new (pool) KyTestNode(pool, level, 2, nullptr);
    KyTestNode* const lower = new (pool) KyTestNode(pool, level, 3, nullptr);
    ASSERT_EQ(0, upper->attach(lower));
    ASSERT_EQ(0, deepest->attach(upper));
    deepest = lower;
  }
  EXPECT_EQ(-2, deepest->attach(top));
  EXPECT_EQ(3 * MANY, KyTestNode::s_alive);
  delete top;
  EXPECT_EQ(0u, KyTestNode::s_alive);
}
