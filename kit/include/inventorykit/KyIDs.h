// KyIDs.h: the predefined IDs, looked up by name or number.
//
//   for (const KyNInventoryKit::NamedID& id : KyNInventoryKit::findIDs("voltage_*")) std::puts(id.name);
#pragma once

#include <string>
#include <vector>

#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
struct NamedID
{
  unsigned int id;
  const char* name;    // holds as long as the inventory library is loaded
};

// The predefined IDs that a text asks for, in the order of their numbers, which begin with the 0 of DUMMY. Upper and lower
// case count as the same letter.
//
//   pattern     empty: all. With "*" (any characters) or "?" (any one): the names of this form. A number, decimal or
//               with 0x in front: the ID of this number. Any other text: the names that contain it
//
// Result:     empty when there is none; nearestNames (KyAddressText.h) tells what may have been meant.
KY_INVENTORYKIT_API std::vector<NamedID> findIDs(const std::string& pattern);
}    // namespace KyNInventoryKit
