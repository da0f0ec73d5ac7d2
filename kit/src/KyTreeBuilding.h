// KyTreeBuilding.h: trees as they may be stored, beyond what the methods of items let one build: items of one ID and index
// side by side, an item and a parameter of one ID, IDs that are not predefined, descriptions of any kind.
#pragma once

#include <memory>
#include <string>

#include "composite/KyCComposite.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"

namespace KyNInventoryKit
{
using ParameterPointer = std::unique_ptr<KyCInventoryParameter>;

// The node of the base library that every item is. Items keep this base to themselves, since it lets one build what their
// own methods refuse; here that is what is wanted. The cast that passes over the access is the one of the C language.
inline KyCComposite& compositeOf(KyCInventoryItem& item) { return *(KyCComposite*)&item; }
inline const KyCComposite& compositeOf(const KyCInventoryItem& item) { return *(const KyCComposite*)&item; }

// ID and index without a temporary address.
inline unsigned int idOf(const KyCInventoryItem& item) { return compositeOf(item).getClassId(); }
inline unsigned int indexOf(const KyCInventoryItem& item) { return compositeOf(item).getUnitId(); }

// A parameter's ID without a temporary address.
inline unsigned int idOf(const KyCInventoryParameter& parameter) { return ((const KyCParam&)parameter).getId(); }

// Gives an item another description.
void setDescription(KyCErrorListPool& pool, KyCInventoryItem& item, const std::string& description);

// Hangs a free item at the end of another one's sub-items, whatever siblings of its ID there are; the tree owns it then.
void appendItem(KyCInventoryItem& parent, KyCInventoryItem& item);

// Hangs a free parameter at the end of an item's parameters. The item owns it then.
//
// Result:     false, with a report, when the item has one of its ID; it stays the caller's.
bool appendParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter& parameter);

// A free parameter of a type (a code) with the value that the text names (see KyValueText.h).
//
// Result:     null on failure.
// Errors:     those of setValueText
ParameterPointer makeParameter(KyCErrorListPool& pool, unsigned int id, const std::string& description,
                               unsigned int type, const std::string& text, const std::string& unit, bool modifiable,
                               unsigned int relevance);
}    // namespace KyNInventoryKit
