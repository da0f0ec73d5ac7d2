// A second opinion on look-ups: a search written to be obviously right, compared on all small trees.

#include <memory>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"

using namespace KyNInventoryIDs;

namespace
{
// Stands for "on and on in a ring".
constexpr unsigned int TOO_MANY_FRIENDS = 20;

KyCInventoryItem* naiveGetItem(KyCInventoryItem* item, const KyCInventoryAddress& address, unsigned int friends = 0)
{
  if (address.isEmpty()) return item;
  for (KyCInventoryItem* sub = item->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
  {
    if (sub->getID() == address.getFirstElement()) return naiveGetItem(sub, address.getSubAddress());
  }
  KyCInventoryItem* const other = KyInventoryAccess::getFriend(*item);
  return other == nullptr || friends == TOO_MANY_FRIENDS ? nullptr : naiveGetItem(other, address, friends + 1);
}

KyCInventoryParameter* naiveOwnParameter(const KyCInventoryItem* item, unsigned int id)
{
  KyCInventoryParameter* parameter = item->getParameterByOrdinalNumber(0);
  while (parameter != nullptr && parameter->getID().getCategory() != id)
    parameter = parameter->getNext();
  return parameter;
}

KyCInventoryParameter* naiveGetParameter(KyCInventoryItem* item, const KyCInventoryAddress& address)
{
  KyCInventoryItem* const owner = naiveGetItem(item, address.getHeadAddress());
  if (owner == nullptr || address.isEmpty()) return nullptr;
  KyCInventoryParameter* const own = naiveOwnParameter(owner, address.getCategory());
  KyCInventoryItem* const other = KyInventoryAccess::getFriend(*owner);
  return own != nullptr || other == nullptr ? own : naiveOwnParameter(other, address.getCategory());
}

// The shape of the children of one node: which of two indices each child has, in list order.
const std::vector<std::vector<unsigned int>> s_siblings = {{}, {1}, {2}, {1, 1}, {1, 2}, {2, 1}, {2, 2}};

struct TTree
{
  std::unique_ptr<KyCInventoryItem> root;
  std::vector<KyCInventoryItem*> items;    // all of them, the root first
};

KyCInventoryItem* attachBoard(KyCErrorListPool& pool, KyCInventoryItem* parent, unsigned int index)
{
  KyCInventoryItem* const item = new (pool) KyCInventoryItem(pool, BOARD[index], "BOARD");
  EXPECT_EQ(KyInventoryAccess::toComposite(parent)->attach(KyInventoryAccess::toComposite(item)), 0);
  return item;
}

// Every third item has a SIZE, every fourth a NAME, from an offset on that differs from tree to tree.
void addParameters(KyCErrorListPool& pool, TTree& tree, unsigned int offset)
{
  for (KyCInventoryItem* item : tree.items)
  {
    ++offset;
    if (offset % 3 == 0) item->createParameter<int>(pool, SIZE, 1, "", false, 0);
    if (offset % 4 == 0) item->createParameter<int>(pool, NAME, 1, "", false, 0);
  }
}

TTree makeTree(KyCErrorListPool& pool, const std::vector<unsigned int>& children, unsigned int shapeOfFirst,
               unsigned int shapeOfSecond, unsigned int offset)
{
  TTree tree;
  tree.root.reset(new (pool) KyCInventoryItem(pool, ROOT, "ROOT"));
  tree.items.push_back(tree.root.get());
  const unsigned int shapes[] = {shapeOfFirst, shapeOfSecond};
  for (std::size_t n = 0; n < children.size(); ++n)
  {
    KyCInventoryItem* const child = attachBoard(pool, tree.root.get(), children[n]);
    tree.items.push_back(child);
    for (unsigned int index : s_siblings[shapes[n]])
      tree.items.push_back(attachBoard(pool, child, index));
  }
  addParameters(pool, tree, offset);
  return tree;
}

// Up to three elements of BOARD[1], BOARD[2] and BOARD[3], which no tree has.
std::vector<KyCInventoryAddress> allAddresses()
{
  std::vector<KyCInventoryAddress> addresses(1);
  for (std::size_t n = 0; addresses[n].getLength() < 3; ++n)
  {
    for (unsigned int index = 1; index <= 3; ++index)
      addresses.push_back(addresses[n] / BOARD[index]);
  }
  return addresses;
}

void expectSameAnswers(KyCInventoryItem* start, const std::vector<KyCInventoryAddress>& addresses)
{
  for (const KyCInventoryAddress& address : addresses)
  {
    ASSERT_EQ(start->getItem(address), naiveGetItem(start, address)) << address.toString().c_str();
    for (const KyCInventoryAddress& parameter : {address, address / SIZE, address / NAME[2]})
      ASSERT_EQ(start->getParameter(parameter), naiveGetParameter(start, parameter)) << parameter.toString().c_str();
  }
}

// Without friends, and with every item as the friend of every other one and of itself.
void expectSameAnswersWithFriends(TTree& tree, const std::vector<KyCInventoryAddress>& addresses)
{
  expectSameAnswers(tree.root.get(), addresses);
  for (KyCInventoryItem* user : tree.items)
  {
    for (KyCInventoryItem* shared : tree.items)
    {
      KyInventoryAccess::setFriend(*user, shared);
      expectSameAnswers(tree.root.get(), addresses);
    }
    KyInventoryAccess::setFriend(*user, nullptr);
  }
}
}    // namespace

TEST(KyCInventoryItem, lookUpsAgreeWithTheNaiveSearchOnAllSmallTrees)
{
  KyTestPool pool;
  const std::vector<KyCInventoryAddress> addresses = allAddresses();
  const unsigned int shapeCount = static_cast<unsigned int>(s_siblings.size());
  unsigned int treeCount = 0;
  for (const std::vector<unsigned int>& children : s_siblings)
  {
    const unsigned int firstShapes = children.empty() ? 1 : shapeCount;
    const unsigned int secondShapes = children.size() < 2 ? 1 : shapeCount;
    for (unsigned int first = 0; first < firstShapes; ++first)
    {
      for (unsigned int second = 0; second < secondShapes; ++second)
      {
        TTree tree = makeTree(pool, children, first, second, treeCount++);
        expectSameAnswersWithFriends(tree, addresses);
        if (HasFatalFailure()) return;
      }
    }
  }
  EXPECT_EQ(treeCount, 211u);
}
