// KyEditMessages.cpp: the texts of reports about changing, finding and explaining, registered while the library is
// loaded.
#include "KyEditMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
// In code order.
const char* const s_messages[] = {
    // Changing
    "%1 does not exist: %2 has no %3.%4",
    "%1 names %2 items and parameters.",
    "The root item cannot be removed.",
    "%1 cannot get the ID %2: %3 has an item or a parameter of this ID already.",
    "%1 exists and is of type %2; it cannot be created as %3.",
    "%1 names an item; only parameters have a value, a unit, a modifiable flag and a relevance.",
    "The unit \"%1\" is longer than the %2 bytes that a stored tree keeps.",
    "%1 names a parameter; only items can get another ID.",

    // Finding
    "\"%1\" is not a pattern of addresses: %2.",
    "No inventory ID matches \"%1\".",
    "\"%1\" is not a condition: %2.",
    "\"%1\" is not a regular expression: %2.",

    // Explaining
    "\"%1\" is not a message code, such as 0x1300005.",
    "No message has the code %1.%2",
};
const unsigned int s_groupBoundaries[] = {0, sizeof s_messages / sizeof s_messages[0]};
const KyResText s_table = {s_messages, s_groupBoundaries, 1, 0x1504000};

const KyCMessageTable s_registration(s_table);
}    // namespace
