// The texts of the example's own reports.
#include "Messages.h"

#include "errorhandling/KyCErrorManager.h"

namespace
{
// In code order.
const char* const s_messages[] = {
    "Cannot open %1: %2.",
    "Cannot read %1: %2.",
    "Cannot write \"%1\" to %2: %3.",
    "%1 did not take \"%2\": it holds \"%3\".",
    "%1: \"%2\" is no number from 0 to 4294967295.",
    "%1 is not in the range %2 .. %3.",
    "\"%1\" is none of: %2.",
    "The line's direction is \"%1\": only an output can be set.",
    "There is no parameter %1.",
    "No attribute file is known for parameter %1.",
};
const unsigned int s_groupBoundaries[] = {0, sizeof s_messages / sizeof s_messages[0]};
const KyResText s_table = {s_messages, s_groupBoundaries, 1, MSG_CANNOT_OPEN};
}    // namespace

MessageTable::MessageTable() { KyCErrorManager::getSingleton()->_registerMessages(&s_table); }

MessageTable::~MessageTable() { KyCErrorManager::getSingleton()->_unregisterMessages(&s_table); }
