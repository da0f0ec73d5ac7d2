// KySessionMessages.cpp: the messages about sessions, registered while the library is loaded.
#include "KySessionMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_sessionMessages[] = {
    "The quote %1 is not closed.",     "There is no item %1.%2",
    "%1 is a parameter, not an item.", "There is no parameter %1.%2",
    "%1 is an item, not a parameter.", "%1 has been changed by someone else since it was read.",
};

constexpr unsigned int s_sessionGroups[] = {0, 6};

const KyResText s_sessionTable = {s_sessionMessages, s_sessionGroups, 1, 0x01503000};

static_assert(sizeof(s_sessionMessages) / sizeof(s_sessionMessages[0]) == s_sessionGroups[1],
              "the group covers the messages");

const KyCMessageTable s_sessionRegistration(s_sessionTable);
}    // namespace
