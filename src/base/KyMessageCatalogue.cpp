// KyMessageCatalogue.cpp: the texts of the inventory library's messages and their registration.
#include "base/KyMessageCatalogue.h"

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"

namespace
{
// clang-format off
// In the order of KyMessageCodes.h: a message's code follows from its place. In a section of its own, where tools find
// the texts of a built library without running it.
__attribute__((section(".dataMSG"))) const char* const s_messages[] = {
    // group 0: inventory section files and memory blocks, from 0x1300000
    "Cannot deserialize inventory data from file %1.",
    "Cannot open file %1.",
    "Cannot set file read position.",
    "Error while reading inventory data from file %1.",
    "Internal error. Kyrel Support information: Cannot write to buffer object.",
    "Cannot read from file.",
    "Out of memory.",
    // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one text on two lines
    "Inventory data file is incompatible. Kyrel Support information: Inventory section header has incompatible size "
    "%1 (expected %2).",
    "Inventory data file is incompatible. Kyrel Support information: Inventory section trailer has incompatible size "
    "%1 (expected %2).",
    "Inventory data file is incompatible. Kyrel Support information: Inventory section has incompatible version %1 "
    "(expected %2).",
    "Internal error. Kyrel Support information: Cannot serialize inventory tree.",
    "Internal error. Kyrel Support information: Cannot deserialize inventory data from memory.",
    "Inventory section is corrupt.",
    "Error while seeking inventory data in memory block.",
    "Internal error. Kyrel Support information: Cannot create KyCBuffer object.",
    "Internal error. Kyrel Support information: Cannot create KyCInventoryItemFactory object.",
    "Cannot get file read position.",

    // group 1: inventory items, from 0x1300800
    "Internal error. Kyrel Support information: Initializing item or parameter of category %1: ID has not exactly "
    "one element.",
    "Parameter %1 does not exist at item %2.",
    "Internal error. Kyrel Support information: Cannot attach inventory tree.",
    "Internal error. Kyrel Support information: Cannot merge inventory tree.",
    "Cannot write new value for parameter %1.",
    "Cannot adopt new value for parameter %1.",
    "Internal error. Kyrel Support information: Cannot change value of parameter %1. Feature is not implemented.",
    "Cannot update value for parameter %1.",
    "Internal error. Kyrel Support information: An empty address is not allowed.",
    "Cannot find or create path.",
    "Cannot assign non-predefined ID %1 to item or parameter.",
    "Cannot create parameter %1.",
    "Internal error. Kyrel Support information: Cannot allocate KyCInventoryItem object.",
    "Internal error. Kyrel Support information: Cannot allocate KyCInventoryParameter object.",
    "Internal error. Kyrel Support information: Cannot hook KyCInventoryParameter object.",
    "Internal error. Kyrel Support information: Cannot copy subtree.",
    "Internal error. Kyrel Support information: Cannot generate string representation of inventory tree.",
    "Check failed for parameter %1.",
    "Cannot add parameter with ID %1 at %2.",
    "Internal error. Kyrel Support information: Shared data items may not reference each other. Item %1 or one of "
    "its ancestors has a %2 parameter.",
    "Internal error. Kyrel Support information: Item %1 has a %2 parameter although one of its ancestors already does.",
    "Internal error. Kyrel Support information: Item %1 references shared data item %2, but the shared data item "
    "does not exist.",
    "Internal error. Kyrel Support information: Cannot add item %1 to inventory tree below item %2.",
    "Internal error. Kyrel Support information: Cannot set update create method for item %1.",
    "Internal error. Kyrel Support information: Cannot set updater for item %1.",
    "Internal error. Kyrel Support information: ID has not exactly one element: %1",
    "Internal error. Kyrel Support information: Cannot create or add item or parameter with ID %1 at %2. The ID "
    "already exists.",
    "Internal error. Kyrel Support information: Cannot change ID of %1 to %2. The ID already exists at the parent "
    "item.",

    // group 2: inventory parameters, from 0x1301000
    "Internal error. Kyrel Support information: Initializing parameter %1: ID has not exactly one element.",
    "Internal error. Kyrel Support information: No designated value specified.",
    "Internal error. Kyrel Support information: Cannot create parameter object to store designated value for "
    "parameter %1.",
    "Internal error. Kyrel Support information: Designated value for parameter %1 has incompatible type.",
    "Internal error. Kyrel Support information: No designated value defined for parameter %1.",
    "Internal error. Kyrel Support information: Parameter %1 has unknown type.",
    "Internal error. Kyrel Support information: Cannot retrieve designated value for parameter %1.",
    "Cannot set value of parameter %1.",
    "Cannot get value of parameter %1.",
    "Internal error. Kyrel Support information: Cannot set write or update method for parameter %1.",
    "Internal error. Kyrel Support information: Cannot set designated value for parameter %1.",

    // group 3: registration of the predefined IDs, from 0x1301800
    "Internal error. Kyrel Support information: Cannot allocate memory during initialization of inventory ID %1.",
    "Internal error. Kyrel Support information: Invalid category value for inventory ID %1.",

    // group 4: custom part of a stored parameter, from 0x1302000
    "Unit serialization length exceeds limit of %1 bytes.",

    // group 5: serializers and factory, from 0x1302800
    "Cannot deserialize inventory parameter.",
    "Cannot deserialize inventory tree.",
    "Internal error. Kyrel Support information: Cannot create KyCInventoryBinSerializer object.",
    "Cannot serialize inventory tree.",
    "Cannot serialize inventory parameter.",
    "Internal error. Kyrel Support information: Cannot create KyCInventoryBinDeSerializer object.",
    "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1",
};
// clang-format on

constexpr unsigned int s_groupCount = 6;
constexpr unsigned int s_groupBoundaries[s_groupCount + 1] = {0, 17, 45, 56, 58, 59, 66};
constexpr unsigned int s_codeBase = 0x1300000;

static_assert(sizeof s_messages / sizeof s_messages[0] == s_groupBoundaries[s_groupCount],
              "the groups cover the messages");

// Code of the last message of a group.
constexpr unsigned int lastCode(unsigned int group)
{
  return s_codeBase + group * 0x800 + (s_groupBoundaries[group + 1] - s_groupBoundaries[group]) - 1;
}
static_assert(lastCode(0) == KY_MSG_CANNOT_GET_FILE_POSITION && lastCode(1) == KY_MSG_ID_ALREADY_EXISTS_AT_PARENT &&
                  lastCode(2) == KY_MSG_CANNOT_SET_DESIGNATED_VALUE && lastCode(3) == KY_MSG_INVALID_ID_CATEGORY &&
                  lastCode(4) == KY_MSG_UNIT_TOO_LONG && lastCode(5) == KY_MSG_CANNOT_ATTACH_COMPOSITE,
              "the named codes and the groups agree");
static_assert(sizeof(void*) != 4 || sizeof(KyResText) == 16, "registration record on x86");
}    // namespace

const KyResText KyInventoryTree::messageCatalogue = {s_messages, s_groupBoundaries, s_groupCount, s_codeBase};

void KyInventoryTree::registerMessages() { kyErrorManager()._registerMessages(&messageCatalogue); }

KyInventoryTree::KyCErrMsgResourceHandler::~KyCErrMsgResourceHandler()
{
  kyErrorManager()._unregisterMessages(&messageCatalogue);
}
