// KySessionMessages.cpp: the messages about sessions, registered while the library is loaded.
#include "KySessionMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_messages[] = {
    "The quote %1 is not closed.",     "There is no item %1.%2",
    "%1 is a parameter, not an item.", "There is no parameter %1.%2",
    "%1 is an item, not a parameter.", "%1 has been changed by someone else since it was read.",
};

constexpr unsigned int s_groups[] = {0, 6};

const KyResText s_table = {s_messages, s_groups, 1, 0x01503000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[1], "the group covers the messages");

const KyCMessageTable s_registration(s_table);
}    // namespace
