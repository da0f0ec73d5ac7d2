// KyDiff.h: what differs between two trees, by address and not by position.
//
//   const KyNInventoryKit::Difference difference = KyNInventoryKit::compareTrees(*before, *after);
//   for (const KyNInventoryKit::Change& change : difference.changes())
//     std::cout << difference.addressOf(change) << "  " << KyNInventoryKit::changeText(change) << "\n";
//
// Items are paired by ID and index, level by level from the roots, which are a pair whatever their IDs; parameters by
// their ID. Of siblings with one ID and index the first is paired with the first, the second with the second, and so on;
// an address names all but the first of them by their number: "BOARD[2]#2/SIZE". An item or a parameter that is on one
// side alone is removed or added, with everything below it; each item and parameter of it is a change of its own.
//
// The order of siblings is no content. Siblings that are on both sides and in another order are MOVED: as few of them as
// explain the new order. A Difference that holds nothing else is equal.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
enum class ChangeKind
{
  ADDED,
  REMOVED,
  CHANGED,
  MOVED
};

// One side of a change: what it is about, in the old or in the new tree.
struct ChangeSide
{
  const KyCInventoryItem* item = nullptr;              // the item, or the parameter's item; null where there is none
  const KyCInventoryParameter* parameter = nullptr;    // null: the change is the item's own
  const KyCInventoryItem* previousItem = nullptr;      // the sibling in front of it; null: it is the first
  const KyCInventoryParameter* previousParameter = nullptr;
};

struct Change
{
  ChangeKind kind = ChangeKind::CHANGED;
  ChangeSide before;    // nothing in it when ADDED
  ChangeSide after;     // nothing in it when REMOVED

  bool isOfParameter() const { return before.parameter != nullptr || after.parameter != nullptr; }
};

struct ChangeCounts
{
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t changed = 0;
  std::size_t moved = 0;
};

class SiblingNumbers;

// The changes that lead from one tree to another, items before what is below them, in the new tree's order; what is
// removed stands where it was. Borrows both trees, which must outlive it unchanged. Used by one thread at a time: it keeps
// what it found out about addresses. One that was moved from can only be assigned to and destroyed.
class KY_INVENTORYKIT_API Difference
{
public:
  Difference();    // without changes
  ~Difference();
  Difference(Difference&& other) noexcept;
  Difference& operator=(Difference&& other) noexcept;

  const std::vector<Change>& changes() const { return m_changes; }
  bool isEqual() const;    // nothing but the order differs
  const ChangeCounts& items() const { return m_items; }
  const ChangeCounts& parameters() const { return m_parameters; }

  // The address that a change is about: that of the new tree, or of the old one for what is removed. "." is the root.
  // Cost:       linear in the depth. The first question about an item's children numbers all of them.
  std::string addressOf(const Change& change) const;

  // The name of an item or a parameter among its siblings: "BOARD[2]", or "BOARD[2]#3" for the third of that name.
  std::string nameOf(const KyCInventoryItem& item) const;
  std::string nameOf(const KyCInventoryParameter& parameter) const;

private:
  friend class TreeComparison;
  void add(const Change& change);

  std::vector<Change> m_changes;
  ChangeCounts m_items;
  ChangeCounts m_parameters;
  std::unique_ptr<SiblingNumbers> m_numbers;
};

// Compares everything that a section stores.
//
// Cost:       linear in the size of the trees; where siblings were added, removed or moved, these are sorted. Needs no
//             stack, however deep the trees.
KY_INVENTORYKIT_API Difference compareTrees(const KyCInventoryItem& before, const KyCInventoryItem& after);

// One line about a change, without its address: "UInt32 4", "10.5 V -> 12 V", "unit \"V\" -> \"mV\"". Strings are quoted,
// with control characters and bytes that are no UTF-8 as \n, \t or \xNN.
KY_INVENTORYKIT_API std::string changeText(const Change& change);

// The changes as a JSON document, which readPatch takes: see KyPatch.h. Order is part of it, always.
KY_INVENTORYKIT_API std::string differenceToJson(const Difference& difference);
}    // namespace KyNInventoryKit
