// KyTreeBuilder.h: builds a tree from its leaves up, whatever a stored tree may hold: unknown IDs, siblings of one ID.
//
//   KyTreeBuilder builder(pool);
//   builder.startItem();
//   builder.fields().id = 1;
//   builder.addParameter(std::move(parameter));
//   builder.endItem();
//   TreePointer tree = builder.takeRoot();
#pragma once

#include <string>
#include <vector>

#include "KyTreeBuilding.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
// As many levels of items as a stored tree can have.
constexpr unsigned int s_deepestLevel = 4096;

// As many bytes of a unit as a stored tree keeps.
constexpr std::size_t s_longestUnit = 100;

struct ItemFields
{
  unsigned int id = 0;
  unsigned int index = 1;
  std::string description;    // no zero byte
};

// One tree. An item is made when it ends, so its fields may come behind its parameters and sub-items.
class KyTreeBuilder
{
public:
  // The pool takes the reports of the libraries below.
  explicit KyTreeBuilder(KyCErrorListPool& pool) : m_pool(pool) {}

  void startItem() { m_open.emplace_back(); }

  // The fields of the item that started last; at(n) of the one on level n, 0 being the root.
  ItemFields& fields() { return m_open.back().fields; }
  const ItemFields& at(std::size_t level) const { return m_open[level].fields; }
  std::size_t depth() const { return m_open.size(); }

  // Adds a parameter to the item that started last. The IDs of one item's parameters must be different: see endItem.
  void addParameter(ParameterPointer parameter) { m_open.back().parameters.push_back(std::move(parameter)); }

  // Makes the item that started last. Two parameters of one ID are a report and end the building.
  //
  // Result:  false after a report.
  bool endItem();

  // The finished tree; null before the root has ended.
  TreePointer takeRoot() { return std::move(m_root); }

private:
  struct OpenItem
  {
    ItemFields fields;
    std::vector<ParameterPointer> parameters;
    std::vector<TreePointer> subItems;
  };

  KyCErrorListPool& m_pool;
  std::vector<OpenItem> m_open;
  TreePointer m_root;
};

// The name of an ID; empty when it has none, or one that stands for another ID.
std::string nameOfID(unsigned int id);

// What a description is when none is given: the ID's name.
std::string defaultDescription(unsigned int id);

// "BOARD[2]"; an ID without a name is a number.
std::string elementText(unsigned int id, unsigned int index);
}    // namespace KyNInventoryKit
