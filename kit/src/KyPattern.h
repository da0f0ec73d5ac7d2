// KyPattern.h: the elements of an address pattern, and following them down a tree.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"

namespace KyNInventoryKit
{
// Which elements of a pattern may come next, once an item has been walked into: their numbers, rising.
using PatternPlaces = std::vector<unsigned int>;

// A plain value, not changed any more once it has been read.
class Pattern
{
public:
  bool read(KyCErrorListPool& pool, const std::string& text);

  // The places for the item at which the pattern starts.
  PatternPlaces start() const;

  // Adds to `next` (empty) where the places of a parent lead by way of a sub-item or parameter of this ID and index.
  void follow(const unsigned int* places, unsigned int count, unsigned int id, unsigned int index,
              PatternPlaces& next) const;

  // Whether one of the places is behind the last element.
  bool isMatch(const PatternPlaces& places) const { return !places.empty() && places.back() == m_elements.size(); }

private:
  struct Element
  {
    bool isAnyNumber = false;    // "**"
    std::vector<bool> names;     // of the predefined IDs those that match
    std::string form;            // for IDs without a name
    bool isOneID = false;        // `id` alone
    unsigned int id = 0;
    std::vector<std::pair<unsigned int, unsigned int>> indices;    // ranges, ordered and apart; empty: all
  };

  void add(PatternPlaces& places, unsigned int place) const;
  static bool matches(const Element& element, unsigned int id, unsigned int index);
  friend class PatternReader;

  std::vector<Element> m_elements;
};
}    // namespace KyNInventoryKit
