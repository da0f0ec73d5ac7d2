// KyPatchMessages.cpp: the message catalogue of patches, registered while the library is loaded.
#include "KyPatchMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_patchMessages[] = {
    // Documents
    "%1 is not a patch: line %2: %3.",

    // Applying
    "The patch does not apply at %1: %2.",
};

// The first message of each group, and the end.
constexpr unsigned int s_patchGroups[] = {0, 1, 2};

const KyResText s_patchTable = {s_patchMessages, s_patchGroups, sizeof(s_patchGroups) / sizeof(s_patchGroups[0]) - 1,
                                0x01501000};

static_assert(sizeof(s_patchMessages) / sizeof(s_patchMessages[0]) ==
                  s_patchGroups[sizeof(s_patchGroups) / sizeof(s_patchGroups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_patchRegistration(s_patchTable);
}    // namespace
