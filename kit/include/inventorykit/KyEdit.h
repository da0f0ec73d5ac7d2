// KyEdit.h: changes trees as people ask for it: by address and by text.
//
//   #include "inventorykit/KyValueText.h"    // typeOfName
//
//   KyNInventoryKit::ParameterChange change;
//   change.value = "12.5";
//   change.createType = KyNInventoryKit::typeOfName("Float64");    // make it when it is missing
//   if (KyNInventoryKit::changeParameter(pool, *tree, address, change) != nullptr) ...
//
// Each of these is done wholly or, with a report, not at all. Whoever wants several of them wholly or not at all stores
// the tree when all have succeeded, and throws it away otherwise.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// What is to become of a parameter; what is not given stays as it is.
struct ParameterChange
{
  std::optional<std::string> value;    // as KyValueText.h reads it, by the parameter's own type
  std::optional<std::string> unit;     // at most 100 bytes: more is not stored
  std::optional<bool> isModifiable;
  std::optional<unsigned int> relevance;

  // The code of a type: a missing parameter is created, with the missing items on the way to it; what is not given is
  // then empty, no, or 0. A parameter that is there is changed, provided that it is of this type. 0: a missing one is
  // an error.
  unsigned int createType = 0;
};

// Changes a parameter. The modifiable flag that it has is not looked at.
//
// Result:     the parameter; null on failure.
// Errors:     0x1504000  there is no such parameter (function "lookUp")
//             0x1504004  it is there with another type than the one to create
//             0x1504005  the address names an item: the empty one, one with an index other than 1, or one that there is
//             0x1504006  the unit is too long
//             those of setValueText and createParameter, for the value
KY_INVENTORYKIT_API KyCInventoryParameter* changeParameter(KyCErrorListPool& pool, KyCInventoryItem& top,
                                                           const KyCInventoryAddress& address,
                                                           const ParameterChange& change);

enum class Ambiguity
{
  REFUSED,      // an address that names several items and parameters is an error
  REMOVE_ALL    // all of them are removed
};

// Removes parameters, and items with all that is in them. An address may stand twice, and may name something inside of
// what another one names. Parents stay, also when nothing is left in them.
//
// Result:     whether all are gone; otherwise none is.
// Errors:     0x1504000  there is nothing at an address (function "lookUp"); one report for each such address
//             0x1504001  an address names several siblings, or an item and a parameter
//             0x1504002  an address is empty: top stays
KY_INVENTORYKIT_API bool removeNodes(KyCErrorListPool& pool, KyCInventoryItem& top,
                                     const std::vector<KyCInventoryAddress>& addresses, Ambiguity ambiguity);

// Gives an item another ID and index, and the ID's name as its description; of several siblings that share the address,
// the first one. The item that has this ID and index already stays as it is.
//
//   id          one element, predefined. DUMMY, whose number is 0, is one: everything here finds such an item again, but the
//               library's own reader of addresses takes neither its name nor its number
//
// Errors:     0x1504000  there is no such item (function "lookUp")
//             0x1504003  its parent has another item of this ID and index, or a parameter of this ID
//             0x1504007  the address names a parameter
//             0x1500800  the ID is not predefined
//             0x1500802  `id` has not exactly one element
KY_INVENTORYKIT_API bool renameItem(KyCErrorListPool& pool, KyCInventoryItem& top, const KyCInventoryAddress& address,
                                    const KyCInventoryAddress& id);
}    // namespace KyNInventoryKit
