// KyKitMessages.cpp: the message catalogue of libKyInventoryKit, registered while the library is loaded.
#include "KyKitMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_messages[] = {
    // Files
    "Cannot read %1: %2.",
    "%1 is a folder.",
    "%1 holds no inventory section, neither at its end nor at its start.",
    "Cannot write %1: %2.",
    "Cannot write %1: it is a link that leads to no file.",
    "Cannot write %1: its owner cannot be kept: %2.",
    "%1 exists already.",
    "Nothing is written: the tree would not read back equal at %1.",
    "Out of memory.",
    "Cannot replace %1: it is no ordinary file.",

    // Addresses and values
    "%1 is not an inventory ID.%2",
    "\"%1\" is not an address: %2.",
    "\"%1\" is not one element of an address, such as BOARD[2].",
    "\"%1\" is not a value of type %2, which takes %3.",
    "A parameter of type %1 has no value.",
};

// The first message of each group, and the end.
constexpr unsigned int s_groups[] = {0, 10, 15};

const KyResText s_table = {s_messages, s_groups, sizeof(s_groups) / sizeof(s_groups[0]) - 1, 0x01500000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[sizeof(s_groups) / sizeof(s_groups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_registration(s_table);
}    // namespace
