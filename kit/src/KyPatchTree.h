// KyPatchTree.h: a patch as a tree of edits. Edits of items hang together as the items do; those that nothing happens to
// but below them are there as well.
#pragma once

#include <deque>
#include <map>
#include <string>

#include "KySiblings.h"
#include "inventorykit/KyPatch.h"

namespace KyNInventoryKit
{
// The old or the new state of an item or a parameter, as far as the patch tells.
struct EditSide
{
  enum Field : unsigned int
  {
    AFTER = 1,
    DESCRIPTION = 2,
    ID = 4,
    VALUE = 8,    // with its type
    UNIT = 16,
    MODIFIABLE = 32,
    RELEVANCE = 64,
    ALL_OF_ITEM = AFTER | DESCRIPTION,
    ALL_OF_PARAMETER = ALL_OF_ITEM | VALUE | UNIT | MODIFIABLE | RELEVANCE
  };

  bool has(Field field) const { return (fields & field) != 0; }

  bool isPresent = true;      // false before what is added, and after what is removed
  unsigned int fields = 0;    // bits of Field: which of these are told
  bool isFirst = false;       // AFTER: there is no sibling in front
  Sibling after;
  Sibling id;
  std::string description;
  unsigned int type = 0;
  std::string value;    // as valueText gives it
  std::string unit;
  bool modifiable = false;
  unsigned int relevance = 0;
};

struct Edit
{
  Sibling name;
  std::size_t line = 0;         // of the document; 0: only something below is changed
  std::size_t order = 0;        // among the changes of the document
  bool hasOwnChange = false;    // it is added, removed or changed
  bool isMoved = false;
  EditSide sides[2];    // old and new
};

struct ItemEdit : Edit
{
  std::size_t number = 0;    // place in PatchTree::items
  ItemEdit* parent = nullptr;
  std::map<Sibling, ItemEdit*> items;
  std::map<Sibling, Edit> parameters;
};

struct PatchTree
{
  PatchTree() : items(1) {}

  std::deque<ItemEdit> items;    // parents before children; the first is the root's
  std::size_t changeCount = 0;
};

// The address of an item's edit and of a parameter's.
std::string addressOf(const ItemEdit& edit);
std::string addressOf(const ItemEdit& item, const Edit& parameter);
}    // namespace KyNInventoryKit
