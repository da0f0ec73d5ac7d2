// LiveValues.h: which values of a tree are live, and what became of them since they were last looked at. Prints nothing.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

// The parameters of a tree that have an update method. The tree is borrowed and must outlive this; nobody else may add
// or take away items or parameters meanwhile.
class LiveValues
{
public:
  struct Value
  {
    std::string address;
    std::string value;    // as text; floating-point numbers as the shortest text that reads back equal
    std::string unit;
  };
  struct Change
  {
    std::string address;
    std::string oldValue;
    std::string newValue;
    std::string unit;
  };
  struct Failure
  {
    std::string address;
    std::vector<KyErrorEntry> reports;    // the update method's own, then the walk's
  };
  struct Round
  {
    std::unique_ptr<KyCErrorListPool> pool;    // owns the texts of the failures' reports
    std::vector<Change> changes;               // in the tree's order
    std::vector<Failure> failures;             // only of values that could be updated in the round before
  };

  explicit LiveValues(KyCInventoryItem& root);

  // Each live value as it is now, in the order of the tree: an item's parameters before its sub-items.
  std::vector<Value> values() const;
  // Runs the update walk over the tree.
  Round update();

private:
  struct Entry
  {
    KyCInventoryParameter* parameter;
    Value known;
  };

  std::vector<Failure> newFailures(const KyCErrorListPool& pool);

  KyCInventoryItem& m_root;
  std::vector<Entry> m_entries;
  std::set<std::string> m_failing;    // addresses that could not be updated in the last round
};
