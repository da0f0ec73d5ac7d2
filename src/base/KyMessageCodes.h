// KyMessageCodes.h: the code of every message of the inventory library, in catalogue order.
//
// A code is 0x1300000 + group * 0x800 + position in the group; the texts stand in KyMessageCatalogue.cpp, their causes
// and remedies in docs/error-codes.md. Codes are permanent: a message that nobody reports keeps its place, so that the
// ones behind it keep theirs. The comment above each code is its text; "arguments" names the argFormat to report it
// with, null where none is named.
#pragma once

// ---- group 0: inventory section files and memory blocks

// "Cannot deserialize inventory data from file %1."    arguments "%s": file name
constexpr unsigned int KY_MSG_CANNOT_DESERIALIZE_FROM_FILE = 0x1300000;
// "Cannot open file %1."    arguments "%s": path
constexpr unsigned int KY_MSG_CANNOT_OPEN_FILE = 0x1300001;
// "Cannot set file read position."
constexpr unsigned int KY_MSG_CANNOT_SET_FILE_POSITION = 0x1300002;
// "Error while reading inventory data from file %1."    arguments "%s": path
constexpr unsigned int KY_MSG_ERROR_READING_FILE = 0x1300003;
// "Internal error. Kyrel Support information: Cannot write to buffer object."
constexpr unsigned int KY_MSG_CANNOT_WRITE_BUFFER = 0x1300004;
// "Cannot read from file."
constexpr unsigned int KY_MSG_CANNOT_READ_FILE = 0x1300005;
// "Out of memory."
constexpr unsigned int KY_MSG_OUT_OF_MEMORY = 0x1300006;
// "Inventory data file is incompatible. Kyrel Support information: Inventory section header has incompatible size %1
// (expected %2)."    arguments "%d%d": stored size, 24
constexpr unsigned int KY_MSG_HEADER_SIZE_INCOMPATIBLE = 0x1300007;
// "Inventory data file is incompatible. Kyrel Support information: Inventory section trailer has incompatible size %1
// (expected %2)."    arguments "%d%d": stored size, 24
constexpr unsigned int KY_MSG_TRAILER_SIZE_INCOMPATIBLE = 0x1300008;
// "Inventory data file is incompatible. Kyrel Support information: Inventory section has incompatible version %1
// (expected %2)."    arguments "%d%d": stored version, 1
constexpr unsigned int KY_MSG_SECTION_VERSION_INCOMPATIBLE = 0x1300009;
// "Internal error. Kyrel Support information: Cannot serialize inventory tree."
constexpr unsigned int KY_MSG_CANNOT_SERIALIZE_SECTION = 0x130000A;
// "Internal error. Kyrel Support information: Cannot deserialize inventory data from memory."
constexpr unsigned int KY_MSG_CANNOT_DESERIALIZE_FROM_MEMORY = 0x130000B;
// "Inventory section is corrupt."
constexpr unsigned int KY_MSG_SECTION_CORRUPT = 0x130000C;
// "Error while seeking inventory data in memory block."
constexpr unsigned int KY_MSG_ERROR_SEEKING_IN_MEMORY = 0x130000D;
// "Internal error. Kyrel Support information: Cannot create KyCBuffer object."
constexpr unsigned int KY_MSG_CANNOT_CREATE_BUFFER = 0x130000E;
// "Internal error. Kyrel Support information: Cannot create KyCInventoryItemFactory object."
constexpr unsigned int KY_MSG_CANNOT_CREATE_ITEM_FACTORY = 0x130000F;
// "Cannot get file read position."
constexpr unsigned int KY_MSG_CANNOT_GET_FILE_POSITION = 0x1300010;

// ---- group 1: inventory items

// "Internal error. Kyrel Support information: Initializing item or parameter of category %1: ID has not exactly one
// element."    arguments "%s": the description
constexpr unsigned int KY_MSG_ITEM_INIT_ID_NOT_ONE_ELEMENT = 0x1300800;
// "Parameter %1 does not exist at item %2."    arguments "%s%s": parameter address, item address
constexpr unsigned int KY_MSG_PARAMETER_DOES_NOT_EXIST = 0x1300801;
// "Internal error. Kyrel Support information: Cannot attach inventory tree."    nobody reports it
constexpr unsigned int KY_MSG_CANNOT_ATTACH_TREE = 0x1300802;
// "Internal error. Kyrel Support information: Cannot merge inventory tree."
constexpr unsigned int KY_MSG_CANNOT_MERGE_TREE = 0x1300803;
// "Cannot write new value for parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_WRITE_NEW_VALUE = 0x1300804;
// "Cannot adopt new value for parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_ADOPT_NEW_VALUE = 0x1300805;
// "Internal error. Kyrel Support information: Cannot change value of parameter %1. Feature is not implemented."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_CHANGE_NOT_IMPLEMENTED = 0x1300806;
// "Cannot update value for parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_UPDATE_VALUE = 0x1300807;
// "Internal error. Kyrel Support information: An empty address is not allowed."
constexpr unsigned int KY_MSG_EMPTY_ADDRESS = 0x1300808;
// "Cannot find or create path."
constexpr unsigned int KY_MSG_CANNOT_FIND_OR_CREATE_PATH = 0x1300809;
// "Cannot assign non-predefined ID %1 to item or parameter."    arguments "%s": the ID
constexpr unsigned int KY_MSG_ID_NOT_PREDEFINED = 0x130080A;
// "Cannot create parameter %1."    arguments "%s": name of the ID
constexpr unsigned int KY_MSG_CANNOT_CREATE_PARAMETER = 0x130080B;
// "Internal error. Kyrel Support information: Cannot allocate KyCInventoryItem object."
constexpr unsigned int KY_MSG_CANNOT_ALLOCATE_ITEM = 0x130080C;
// "Internal error. Kyrel Support information: Cannot allocate KyCInventoryParameter object."    nobody reports it
constexpr unsigned int KY_MSG_CANNOT_ALLOCATE_PARAMETER = 0x130080D;
// "Internal error. Kyrel Support information: Cannot hook KyCInventoryParameter object."
constexpr unsigned int KY_MSG_CANNOT_HOOK_PARAMETER = 0x130080E;
// "Internal error. Kyrel Support information: Cannot copy subtree."
constexpr unsigned int KY_MSG_CANNOT_COPY_SUBTREE = 0x130080F;
// "Internal error. Kyrel Support information: Cannot generate string representation of inventory tree."
constexpr unsigned int KY_MSG_CANNOT_GENERATE_STRING = 0x1300810;
// "Check failed for parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CHECK_FAILED = 0x1300811;
// "Cannot add parameter with ID %1 at %2."    arguments "%s%s": parameter ID, item address
constexpr unsigned int KY_MSG_CANNOT_ADD_PARAMETER = 0x1300812;
// "Internal error. Kyrel Support information: Shared data items may not reference each other. Item %1 or one of its
// ancestors has a %2 parameter."    a warning; arguments "%s%s": item address, name of the parameter's ID
constexpr unsigned int KY_MSG_SHARED_DATA_MUTUAL_REFERENCE = 0x1300813;
// "Internal error. Kyrel Support information: Item %1 has a %2 parameter although one of its ancestors already does."
//     a warning; arguments "%s%s": item address, name of the parameter's ID
constexpr unsigned int KY_MSG_SHARED_DATA_NESTED_REFERENCE = 0x1300814;
// "Internal error. Kyrel Support information: Item %1 references shared data item %2, but the shared data item does not
// exist."    a warning; arguments "%s%s": item address, address of the shared data item
constexpr unsigned int KY_MSG_SHARED_DATA_ITEM_MISSING = 0x1300815;
// "Internal error. Kyrel Support information: Cannot add item %1 to inventory tree below item %2."
//     arguments "%s%s": item ID, ID of the other item
constexpr unsigned int KY_MSG_CANNOT_ADD_ITEM = 0x1300816;
// "Internal error. Kyrel Support information: Cannot set update create method for item %1."
//     arguments "%s": item address
constexpr unsigned int KY_MSG_CANNOT_SET_UPDATE_CREATE_METHOD = 0x1300817;
// "Internal error. Kyrel Support information: Cannot set updater for item %1."    arguments "%s": item address
constexpr unsigned int KY_MSG_CANNOT_SET_UPDATER = 0x1300818;
// "Internal error. Kyrel Support information: ID has not exactly one element: %1"    arguments "%s": the ID
constexpr unsigned int KY_MSG_ID_NOT_ONE_ELEMENT = 0x1300819;
// "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID %1 at %2. The ID already
// exists."    arguments "%s%s": the ID, item address
constexpr unsigned int KY_MSG_ID_ALREADY_EXISTS = 0x130081A;
// "Internal error. Kyrel Support information: Cannot change ID of %1 to %2. The ID already exists at the parent item."
//     arguments "%s%s": new ID, item address: not in the order that the wording suggests
constexpr unsigned int KY_MSG_ID_ALREADY_EXISTS_AT_PARENT = 0x130081B;

// ---- group 2: inventory parameters

// "Internal error. Kyrel Support information: Initializing parameter %1: ID has not exactly one element."
//     arguments "%s": the parameter's name, "not specified" when it has none
constexpr unsigned int KY_MSG_PARAMETER_INIT_ID_NOT_ONE_ELEMENT = 0x1301000;
// "Internal error. Kyrel Support information: No designated value specified."
constexpr unsigned int KY_MSG_NO_DESIGNATED_VALUE_SPECIFIED = 0x1301001;
// "Internal error. Kyrel Support information: Cannot create parameter object to store designated value for parameter
// %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_CREATE_DESIGNATED_PARAMETER = 0x1301002;
// "Internal error. Kyrel Support information: Designated value for parameter %1 has incompatible type."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_DESIGNATED_VALUE_INCOMPATIBLE_TYPE = 0x1301003;
// "Internal error. Kyrel Support information: No designated value defined for parameter %1."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_NO_DESIGNATED_VALUE_DEFINED = 0x1301004;
// "Internal error. Kyrel Support information: Parameter %1 has unknown type."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_PARAMETER_UNKNOWN_TYPE = 0x1301005;
// "Internal error. Kyrel Support information: Cannot retrieve designated value for parameter %1."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_RETRIEVE_DESIGNATED_VALUE = 0x1301006;
// "Cannot set value of parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_SET_VALUE = 0x1301007;
// "Cannot get value of parameter %1."    arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_GET_VALUE = 0x1301008;
// "Internal error. Kyrel Support information: Cannot set write or update method for parameter %1."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_SET_WRITE_OR_UPDATE_METHOD = 0x1301009;
// "Internal error. Kyrel Support information: Cannot set designated value for parameter %1."
//     arguments "%s": parameter address
constexpr unsigned int KY_MSG_CANNOT_SET_DESIGNATED_VALUE = 0x130100A;

// ---- group 3: registration of the predefined IDs

// "Internal error. Kyrel Support information: Cannot allocate memory during initialization of inventory ID %1."
//     arguments "%s": name of the ID
constexpr unsigned int KY_MSG_CANNOT_ALLOCATE_ID = 0x1301800;
// "Internal error. Kyrel Support information: Invalid category value for inventory ID %1."
//     arguments "%s": name of the ID
constexpr unsigned int KY_MSG_INVALID_ID_CATEGORY = 0x1301801;

// ---- group 4: custom part of a stored parameter

// "Unit serialization length exceeds limit of %1 bytes."    arguments "%d": 100
constexpr unsigned int KY_MSG_UNIT_TOO_LONG = 0x1302000;

// ---- group 5: serializers and factory

// "Cannot deserialize inventory parameter."
constexpr unsigned int KY_MSG_CANNOT_DESERIALIZE_PARAMETER = 0x1302800;
// "Cannot deserialize inventory tree."
constexpr unsigned int KY_MSG_CANNOT_DESERIALIZE_TREE = 0x1302801;
// "Internal error. Kyrel Support information: Cannot create KyCInventoryBinSerializer object."
// Kept on purpose: reading a tree (KyCInventoryItemFactory::deserialize) reports this one too, although it is the
// deserializer that could not be created.
constexpr unsigned int KY_MSG_CANNOT_CREATE_SERIALIZER = 0x1302802;
// "Cannot serialize inventory tree."
constexpr unsigned int KY_MSG_CANNOT_SERIALIZE_TREE = 0x1302803;
// "Cannot serialize inventory parameter."
constexpr unsigned int KY_MSG_CANNOT_SERIALIZE_PARAMETER = 0x1302804;
// "Internal error. Kyrel Support information: Cannot create KyCInventoryBinDeSerializer object."
constexpr unsigned int KY_MSG_CANNOT_CREATE_DESERIALIZER = 0x1302805;
// "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1"
//     arguments "%d": result of KyCComposite::attach
constexpr unsigned int KY_MSG_CANNOT_ATTACH_COMPOSITE = 0x1302806;
