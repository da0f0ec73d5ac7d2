// KyPatch.h: applies a recorded difference to a tree: wholly or not at all.
//
//   #include "inventorykit/KyDiff.h"
//
//   const std::string json = KyNInventoryKit::differenceToJson(KyNInventoryKit::compareTrees(*before, *after));
//   KyNInventoryKit::Patch patch;
//   if (KyNInventoryKit::readPatch(pool, json, "changes.json", patch))
//     KyNInventoryKit::applyPatch(pool, tree, patch, KyNInventoryKit::PatchDirection::FORWARD);
//
// The JSON document is an object with these fields, and no others:
//
//   format    "kyinventory-diff"
//   version   1
//   changes   an array of objects, one a change. An item stands before what is below it
//
// A change names what it is about in the field "item" or "parameter", by an address from the root down: elements as in
// "BOARD[2]", joined by "/"; "." is the root. An element may end in "#2", "#3", ...: the second, third, ... sibling of its
// ID and index. An ID that is not predefined is a decimal number. An address has at most 4096 elements. The field "change" tells what the others are:
//
//   "added", "removed"    after, description; for a parameter also type, value, unit, modifiable, relevance: all of them
//   "changed"             old and new, objects with those of the fields of the above (without after) that differ, the
//                         same ones in both; type and value stand together. For the root also id
//   "moved"               old and new, objects with the field after
//
//   after         the name of the sibling behind which it stands: the last element of its address; null: it is the first
//   type          "Int8", "Int16", "Int32", "Long64", "UInt8", "UInt16", "UInt32", "ULong64", "Float32", "Float64",
//                 "String" or "Version"
//   value         a number for integers of up to 32 bits; a string for 64 bits, for floating-point numbers ("0.1", "nan",
//                 "inf") and for versions; a text for strings
//   unit, description     texts
//   modifiable    true or false
//   relevance     0 .. 4294967295
//   id            the new or the old ID and index of the root: "ROOT"
//
// A text is a string, or, when it is no UTF-8 or holds a zero byte, {"bytes": "..."} with its bytes in base64.
//
// What the patch says about the tree before is checked in full before anything changes: each item and parameter that it
// changes, moves or removes is there with the values that it had, what it adds is not, and an item that it removes holds
// nothing more than the patch knows of. Each thing that is otherwise is reported. Order is not checked: what stands behind
// a sibling that is not there goes to the end. Applied to the tree that the difference was taken from, a patch gives the
// other tree to the last bit, order included; the other way round with REVERSE.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
struct PatchTree;

// A patch that has been read. Knows no tree, and can be applied to any number of them, by several threads at once to
// different trees. One that was moved from can only be assigned to and destroyed.
class KY_INVENTORYKIT_API Patch
{
public:
  Patch();    // without changes
  ~Patch();
  Patch(Patch&& other) noexcept;
  Patch& operator=(Patch&& other) noexcept;

  std::size_t changeCount() const;    // entries of the document

  const PatchTree& tree() const { return *m_tree; }    // the library's own

private:
  friend KY_INVENTORYKIT_API bool readPatch(KyCErrorListPool& pool, const std::string& json, const std::string& name,
                                            Patch& patch);
  std::unique_ptr<PatchTree> m_tree;
};

enum class PatchDirection
{
  FORWARD,
  REVERSE
};

// Reads the document.
//
//   name        what the document is called in reports
//
// Result:     false on failure; the patch is then empty.
// Errors:     0x1501000  it is no such document; the text names the line and what is wrong there
// Cost:       near-linear; memory in proportion to the document. Nesting is limited to what the form needs.
KY_INVENTORYKIT_API bool readPatch(KyCErrorListPool& pool, const std::string& json, const std::string& name,
                                   Patch& patch);

// Whether the patch applies; nothing changes.
//
// Errors:     0x1501800  something is not as the patch has it; one report for each, with its address
KY_INVENTORYKIT_API bool checkPatch(KyCErrorListPool& pool, const KyCInventoryItem& root, const Patch& patch,
                                    PatchDirection direction);

// Applies the patch, when checkPatch finds nothing.
//
//   root        the tree; another item may be its root afterwards (when the root's ID changes)
//
// Result:     false when it does not apply: the tree is as it was. Or when there was no memory, with the base library's
//             reports, or std::bad_alloc: then it may be changed in part and should not be used.
// Errors:     those of checkPatch
// Methods and auxiliary info of a parameter that gets another type or description are lost, and the root's when its ID
// changes; trees that were read from files have none.
KY_INVENTORYKIT_API bool applyPatch(KyCErrorListPool& pool, TreePointer& root, const Patch& patch,
                                    PatchDirection direction);
}    // namespace KyNInventoryKit
