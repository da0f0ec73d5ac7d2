// KyCatalogueTexts.h: the whole catalogue as it must be, written down for comparison.
#pragma once

#include "base/KyMessageCodes.h"

struct KyCatalogueRow
{
  unsigned int number;       // place in the catalogue
  unsigned int namedCode;    // as code names it
  unsigned int code;         // as users see it
  const char* text;
};

// clang-format off
const KyCatalogueRow s_catalogueRows[] = {
    // group 0: section files and memory blocks
    {0, KY_MSG_CANNOT_DESERIALIZE_FROM_FILE, 0x1300000,
     "Cannot deserialize inventory data from file %1."},
    {1, KY_MSG_CANNOT_OPEN_FILE, 0x1300001,
     "Cannot open file %1."},
    {2, KY_MSG_CANNOT_SET_FILE_POSITION, 0x1300002,
     "Cannot set file read position."},
    {3, KY_MSG_ERROR_READING_FILE, 0x1300003,
     "Error while reading inventory data from file %1."},
    {4, KY_MSG_CANNOT_WRITE_BUFFER, 0x1300004,
     "Internal error. Kyrel Support information: Cannot write to buffer object."},
    {5, KY_MSG_CANNOT_READ_FILE, 0x1300005,
     "Cannot read from file."},
    {6, KY_MSG_OUT_OF_MEMORY, 0x1300006,
     "Out of memory."},
    {7, KY_MSG_HEADER_SIZE_INCOMPATIBLE, 0x1300007,
     "Inventory data file is incompatible. Kyrel Support information: Inventory section header has incompatible "
     "size %1 (expected %2)."},
    {8, KY_MSG_TRAILER_SIZE_INCOMPATIBLE, 0x1300008,
     "Inventory data file is incompatible. Kyrel Support information: Inventory section trailer has incompatible "
     "size %1 (expected %2)."},
    {9, KY_MSG_SECTION_VERSION_INCOMPATIBLE, 0x1300009,
     "Inventory data file is incompatible. Kyrel Support information: Inventory section has incompatible version "
     "%1 (expected %2)."},
    {10, KY_MSG_CANNOT_SERIALIZE_SECTION, 0x130000A,
     "Internal error. Kyrel Support information: Cannot serialize inventory tree."},
    {11, KY_MSG_CANNOT_DESERIALIZE_FROM_MEMORY, 0x130000B,
     "Internal error. Kyrel Support information: Cannot deserialize inventory data from memory."},
    {12, KY_MSG_SECTION_CORRUPT, 0x130000C,
     "Inventory section is corrupt."},
    {13, KY_MSG_ERROR_SEEKING_IN_MEMORY, 0x130000D,
     "Error while seeking inventory data in memory block."},
    {14, KY_MSG_CANNOT_CREATE_BUFFER, 0x130000E,
     "Internal error. Kyrel Support information: Cannot create KyCBuffer object."},
    {15, KY_MSG_CANNOT_CREATE_ITEM_FACTORY, 0x130000F,
     "Internal error. Kyrel Support information: Cannot create KyCInventoryItemFactory object."},
    {16, KY_MSG_CANNOT_GET_FILE_POSITION, 0x1300010,
     "Cannot get file read position."},
    // group 1: items
    {17, KY_MSG_ITEM_INIT_ID_NOT_ONE_ELEMENT, 0x1300800,
     "Internal error. Kyrel Support information: Initializing item or parameter of category %1: ID has not exactly "
     "one element."},
    {18, KY_MSG_PARAMETER_DOES_NOT_EXIST, 0x1300801,
     "Parameter %1 does not exist at item %2."},
    {19, KY_MSG_CANNOT_ATTACH_TREE, 0x1300802,
     "Internal error. Kyrel Support information: Cannot attach inventory tree."},
    {20, KY_MSG_CANNOT_MERGE_TREE, 0x1300803,
     "Internal error. Kyrel Support information: Cannot merge inventory tree."},
    {21, KY_MSG_CANNOT_WRITE_NEW_VALUE, 0x1300804,
     "Cannot write new value for parameter %1."},
    {22, KY_MSG_CANNOT_ADOPT_NEW_VALUE, 0x1300805,
     "Cannot adopt new value for parameter %1."},
    {23, KY_MSG_CHANGE_NOT_IMPLEMENTED, 0x1300806,
     "Internal error. Kyrel Support information: Cannot change value of parameter %1. Feature is not implemented."},
    {24, KY_MSG_CANNOT_UPDATE_VALUE, 0x1300807,
     "Cannot update value for parameter %1."},
    {25, KY_MSG_EMPTY_ADDRESS, 0x1300808,
     "Internal error. Kyrel Support information: An empty address is not allowed."},
    {26, KY_MSG_CANNOT_FIND_OR_CREATE_PATH, 0x1300809,
     "Cannot find or create path."},
    {27, KY_MSG_ID_NOT_PREDEFINED, 0x130080A,
     "Cannot assign non-predefined ID %1 to item or parameter."},
    {28, KY_MSG_CANNOT_CREATE_PARAMETER, 0x130080B,
     "Cannot create parameter %1."},
    {29, KY_MSG_CANNOT_ALLOCATE_ITEM, 0x130080C,
     "Internal error. Kyrel Support information: Cannot allocate KyCInventoryItem object."},
    {30, KY_MSG_CANNOT_ALLOCATE_PARAMETER, 0x130080D,
     "Internal error. Kyrel Support information: Cannot allocate KyCInventoryParameter object."},
    {31, KY_MSG_CANNOT_HOOK_PARAMETER, 0x130080E,
     "Internal error. Kyrel Support information: Cannot hook KyCInventoryParameter object."},
    {32, KY_MSG_CANNOT_COPY_SUBTREE, 0x130080F,
     "Internal error. Kyrel Support information: Cannot copy subtree."},
    {33, KY_MSG_CANNOT_GENERATE_STRING, 0x1300810,
     "Internal error. Kyrel Support information: Cannot generate string representation of inventory tree."},
    {34, KY_MSG_CHECK_FAILED, 0x1300811,
     "Check failed for parameter %1."},
    {35, KY_MSG_CANNOT_ADD_PARAMETER, 0x1300812,
     "Cannot add parameter with ID %1 at %2."},
    {36, KY_MSG_SHARED_DATA_MUTUAL_REFERENCE, 0x1300813,
     "Internal error. Kyrel Support information: Shared data items may not reference each other. Item %1 or one of "
     "its ancestors has a %2 parameter."},
    {37, KY_MSG_SHARED_DATA_NESTED_REFERENCE, 0x1300814,
     "Internal error. Kyrel Support information: Item %1 has a %2 parameter although one of its ancestors already "
     "does."},
    {38, KY_MSG_SHARED_DATA_ITEM_MISSING, 0x1300815,
     "Internal error. Kyrel Support information: Item %1 references shared data item %2, but the shared data item "
     "does not exist."},
    {39, KY_MSG_CANNOT_ADD_ITEM, 0x1300816,
     "Internal error. Kyrel Support information: Cannot add item %1 to inventory tree below item %2."},
    {40, KY_MSG_CANNOT_SET_UPDATE_CREATE_METHOD, 0x1300817,
     "Internal error. Kyrel Support information: Cannot set update create method for item %1."},
    {41, KY_MSG_CANNOT_SET_UPDATER, 0x1300818,
     "Internal error. Kyrel Support information: Cannot set updater for item %1."},
    {42, KY_MSG_ID_NOT_ONE_ELEMENT, 0x1300819,
     "Internal error. Kyrel Support information: ID has not exactly one element: %1"},
    {43, KY_MSG_ID_ALREADY_EXISTS, 0x130081A,
     "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID %1 at %2. The ID "
     "already exists."},
    {44, KY_MSG_ID_ALREADY_EXISTS_AT_PARENT, 0x130081B,
     "Internal error. Kyrel Support information: Cannot change ID of %1 to %2. The ID already exists at the parent "
     "item."},
    // group 2: parameters
    {45, KY_MSG_PARAMETER_INIT_ID_NOT_ONE_ELEMENT, 0x1301000,
     "Internal error. Kyrel Support information: Initializing parameter %1: ID has not exactly one element."},
    {46, KY_MSG_NO_DESIGNATED_VALUE_SPECIFIED, 0x1301001,
     "Internal error. Kyrel Support information: No designated value specified."},
    {47, KY_MSG_CANNOT_CREATE_DESIGNATED_PARAMETER, 0x1301002,
     "Internal error. Kyrel Support information: Cannot create parameter object to store designated value for "
     "parameter %1."},
    {48, KY_MSG_DESIGNATED_VALUE_INCOMPATIBLE_TYPE, 0x1301003,
     "Internal error. Kyrel Support information: Designated value for parameter %1 has incompatible type."},
    {49, KY_MSG_NO_DESIGNATED_VALUE_DEFINED, 0x1301004,
     "Internal error. Kyrel Support information: No designated value defined for parameter %1."},
    {50, KY_MSG_PARAMETER_UNKNOWN_TYPE, 0x1301005,
     "Internal error. Kyrel Support information: Parameter %1 has unknown type."},
    {51, KY_MSG_CANNOT_RETRIEVE_DESIGNATED_VALUE, 0x1301006,
     "Internal error. Kyrel Support information: Cannot retrieve designated value for parameter %1."},
    {52, KY_MSG_CANNOT_SET_VALUE, 0x1301007,
     "Cannot set value of parameter %1."},
    {53, KY_MSG_CANNOT_GET_VALUE, 0x1301008,
     "Cannot get value of parameter %1."},
    {54, KY_MSG_CANNOT_SET_WRITE_OR_UPDATE_METHOD, 0x1301009,
     "Internal error. Kyrel Support information: Cannot set write or update method for parameter %1."},
    {55, KY_MSG_CANNOT_SET_DESIGNATED_VALUE, 0x130100A,
     "Internal error. Kyrel Support information: Cannot set designated value for parameter %1."},
    // group 3: predefined ID registration
    {56, KY_MSG_CANNOT_ALLOCATE_ID, 0x1301800,
     "Internal error. Kyrel Support information: Cannot allocate memory during initialization of inventory ID %1."},
    {57, KY_MSG_INVALID_ID_CATEGORY, 0x1301801,
     "Internal error. Kyrel Support information: Invalid category value for inventory ID %1."},
    // group 4: custom parameter encoding
    {58, KY_MSG_UNIT_TOO_LONG, 0x1302000,
     "Unit serialization length exceeds limit of %1 bytes."},
    // group 5: serializer and factory
    {59, KY_MSG_CANNOT_DESERIALIZE_PARAMETER, 0x1302800,
     "Cannot deserialize inventory parameter."},
    {60, KY_MSG_CANNOT_DESERIALIZE_TREE, 0x1302801,
     "Cannot deserialize inventory tree."},
    {61, KY_MSG_CANNOT_CREATE_SERIALIZER, 0x1302802,
     "Internal error. Kyrel Support information: Cannot create KyCInventoryBinSerializer object."},
    {62, KY_MSG_CANNOT_SERIALIZE_TREE, 0x1302803,
     "Cannot serialize inventory tree."},
    {63, KY_MSG_CANNOT_SERIALIZE_PARAMETER, 0x1302804,
     "Cannot serialize inventory parameter."},
    {64, KY_MSG_CANNOT_CREATE_DESERIALIZER, 0x1302805,
     "Internal error. Kyrel Support information: Cannot create KyCInventoryBinDeSerializer object."},
    {65, KY_MSG_CANNOT_ATTACH_COMPOSITE, 0x1302806,
     "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1"},
};
// clang-format on
