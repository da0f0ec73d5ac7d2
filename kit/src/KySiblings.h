// KySiblings.h: items and parameters among their siblings, where several may share an ID.
#pragma once

#include <algorithm>
#include <numeric>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "KyTreeBuilding.h"

namespace KyNInventoryKit
{
// ID and index, and which of several siblings with these, from 1. A parameter's index is always 1.
struct Sibling
{
  unsigned int id = 0;
  unsigned int index = 1;
  unsigned int number = 1;
};
inline std::tuple<unsigned int, unsigned int, unsigned int> keyOf(const Sibling& sibling)
{
  return {sibling.id, sibling.index, sibling.number};
}
inline bool operator==(const Sibling& a, const Sibling& b) { return keyOf(a) == keyOf(b); }
inline bool operator!=(const Sibling& a, const Sibling& b) { return !(a == b); }
inline bool operator<(const Sibling& a, const Sibling& b) { return keyOf(a) < keyOf(b); }

// "BOARD[2]#3"; an ID without a name of its own is a number. Exact: readSiblings reads the same one.
std::string siblingText(const Sibling& sibling);

// The siblings that an address in this form names, from the root down; none for ".".
//
// Result:     false, with what is wrong, when the text has another form.
bool readSiblings(const std::string& text, std::vector<Sibling>& path, std::string& problem);

// The number of one ID and index is not known yet here.
inline Sibling unnumbered(const KyCInventoryItem& item) { return {idOf(item), indexOf(item), 1}; }
inline Sibling unnumbered(const KyCInventoryParameter& parameter) { return {idOf(parameter), 1, 1}; }

inline const KyCInventoryItem* firstOf(const KyCInventoryItem& parent, const KyCInventoryItem* /*kind*/)
{
  return parent.getFirstSubItem();
}
inline const KyCInventoryParameter* firstOf(const KyCInventoryItem& parent, const KyCInventoryParameter* /*kind*/)
{
  return parent.getParameterByOrdinalNumber(0);
}

template <typename Node>
struct NamedNode
{
  Sibling name;
  const Node* node;
};

// The sub-items or parameters of an item with their names, in list order. Sorted, not hashed: whoever made the file may
// have chosen the IDs so that they collide.
template <typename Node>
std::vector<NamedNode<Node>> namedNodes(const KyCInventoryItem& parent)
{
  std::vector<NamedNode<Node>> nodes;
  for (const Node* node = firstOf(parent, static_cast<const Node*>(nullptr)); node != nullptr; node = node->getNext())
    nodes.push_back({unnumbered(*node), node});
  std::vector<std::size_t> order(nodes.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&nodes](std::size_t a, std::size_t b) { return nodes[a].name < nodes[b].name; });
  for (std::size_t n = 1; n < order.size(); ++n)
  {
    const Sibling& before = nodes[order[n - 1]].name;
    Sibling& name = nodes[order[n]].name;
    if (before.id == name.id && before.index == name.index) name.number = before.number + 1;
  }
  return nodes;
}

// The numbers of items and parameters among siblings of their name, found out for all siblings at once and kept.
class SiblingNumbers
{
public:
  Sibling nameOf(const KyCInventoryItem& item);
  Sibling nameOf(const KyCInventoryParameter& parameter);

  std::string addressOf(const KyCInventoryItem& item);
  std::string addressOf(const KyCInventoryParameter& parameter);

private:
  template <typename Node>
  Sibling numbered(const Node& node, const KyCInventoryItem* parent, std::unordered_set<const void*>& known);

  std::unordered_map<const void*, unsigned int> m_numbers;    // of those that are not the first
  std::unordered_set<const void*> m_knownItems;               // the parents whose sub-items are in it
  std::unordered_set<const void*> m_knownParameters;
  const KyCInventoryItem* m_lastItem = nullptr;    // the next question is often about the same one
  std::string m_lastAddress;
};

// Finds sub-items and parameters by their names.
class SiblingFinder
{
public:
  const KyCInventoryItem* findItem(const KyCInventoryItem& parent, const Sibling& name);
  const KyCInventoryParameter* findParameter(const KyCInventoryItem& parent, const Sibling& name);

private:
  template <typename Node>
  using Lists = std::unordered_map<const KyCInventoryItem*, std::vector<NamedNode<Node>>>;
  template <typename Node>
  static const Node* find(Lists<Node>& lists, const KyCInventoryItem& parent, const Sibling& name);

  Lists<KyCInventoryItem> m_items;
  Lists<KyCInventoryParameter> m_parameters;
};
}    // namespace KyNInventoryKit
