// KyPatchMessages.cpp: the message catalogue of patches, registered while the library is loaded.
#include "KyPatchMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_messages[] = {
    // Documents
    "%1 is not a patch: line %2: %3.",

    // Applying
    "The patch does not apply at %1: %2.",
};

// The first message of each group, and the end.
constexpr unsigned int s_groups[] = {0, 1, 2};

const KyResText s_table = {s_messages, s_groups, sizeof(s_groups) / sizeof(s_groups[0]) - 1, 0x01501000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[sizeof(s_groups) / sizeof(s_groups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_registration(s_table);
}    // namespace
