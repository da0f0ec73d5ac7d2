// KyAddressText.h: addresses that people type.
//
//   KyCInventoryAddress address;
//   if (!KyNInventoryKit::readAddress(pool, "BOARD[2]/SERIAL_NUMBER", address)) ...    // the pool tells what is wrong
//
// The text is that of KyCInventoryAddress, read strictly: what its reader would pass over ("A//B", "A[2", "A[x]", a "/" at
// the end) is an error here, with a report that names the place. The empty text, "." and "/" name the root item.
//
// Unlike that reader this one takes DUMMY and 0: a tree may have items of the ID 0, and all that a tree has can be named.
#pragma once

#include <string>
#include <vector>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryItem.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// Reads an address. A "/" may stand in front, as those write it who count from the root.
//
// Errors:     0x1500800  an ID is not predefined; the text names the nearest ones
//             0x1500801  the text has no form of an address; the text names the place and what is expected there
// Result:     false on failure; the address is then empty.
KY_INVENTORYKIT_API bool readAddress(KyCErrorListPool& pool, const std::string& text, KyCInventoryAddress& address);

// As readAddress, for one element: "BOARD[2]". No "/" stands in front of one.
//
// Errors:     also 0x1500802  there is more than one element, or none
KY_INVENTORYKIT_API bool readElement(KyCErrorListPool& pool, const std::string& text, KyCInventoryAddress& element);

// Finds the predefined ID of this name, and the 0 of DUMMY too.
//
// Result:     false when there is none; `id` is then left as it was.
// Cost:       constant.
KY_INVENTORYKIT_API bool findID(const std::string& name, unsigned int& id);

// The predefined ID of this name; 0 when there is none. Of DUMMY, whose ID is 0, findID tells more.
// Cost:       constant.
KY_INVENTORYKIT_API unsigned int idOfName(const std::string& name);

// The names of predefined IDs that a misspelled one most likely stands for, the likeliest first; at most `count`, and
// none when nothing is near. Near is what differs in at most every fourth letter, and not in more than one letter more than
// the nearest; where there is none such, what begins with the name, or what the name begins with. Upper and lower case
// count as the same letter; a name that is right but for those stands alone.
KY_INVENTORYKIT_API std::vector<std::string> nearestNames(const std::string& name, unsigned int count);

// As nearestNames, among other names than those of IDs.
KY_INVENTORYKIT_API std::vector<std::string> nearestOf(const std::string& name,
                                                       const std::vector<std::string>& candidates, unsigned int count);

// The text form of an address; "." for the empty one.
KY_INVENTORYKIT_API std::string addressText(const KyCInventoryAddress& address);
}    // namespace KyNInventoryKit
