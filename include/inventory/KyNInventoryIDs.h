// KyNInventoryIDs.h: the predefined IDs, each an address of one element with the index 1.
//
//   KyNInventoryIDs::BOARD                                       the first (or only) board
//   KyNInventoryIDs::BOARD[2] / KyNInventoryIDs::SERIAL_NUMBER    the serial number of the second one
//
// Some IDs are named like macros of other headers: BYTE_ORDER (<endian.h>), TEST (GoogleTest), MIN, OPEN, INFO ... This
// header may be included before or after those: it declares all its IDs and leaves every macro as it was. While such a
// macro is defined, though, the compiler puts its replacement wherever the name stands. A program that has the macro
// reaches the ID in one of these ways:
//
//   #undef BYTE_ORDER                                     when the program does not need the macro;
//   const KyCInventoryAddress byteOrder(92);              by its number, which never changes; they stand in
//                                                         inventory/KyPredefinedIDs.inc;
//   KyCInventoryAddress byteOrder;                        by its name as text.
//   byteOrder.readFromString("BYTE_ORDER");
#pragma once

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryTagMap.h"
#include "inventory/KyInventoryTreeApi.h"

// All of this is complete when the library is loaded and read-only from then on, so any number of threads may use it.
namespace KyNInventoryIDs
{
// The names of the predefined IDs; ID n is getCategory() of the address and position n of the map.
extern KY_INVENTORY_API KyCInventoryTagMap Map;

// The empty address: the item itself, where an address is relative to one.
extern KY_INVENTORY_API const KyCInventoryAddress THIS_NODE;

// From ID 0, DUMMY, to Map.getCount() - 1; new ones come behind the last.
#define KY_PREDEFINED_ID(id, name) extern KY_INVENTORY_API const KyCInventoryAddress name;
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
}    // namespace KyNInventoryIDs
