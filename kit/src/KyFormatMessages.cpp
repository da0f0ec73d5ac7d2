// KyFormatMessages.cpp: the messages about formats and pseudonyms, registered while the library is loaded.
#include "KyFormatMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_formatMessages[] = {
    "%1 is of the unknown type %2: it has no value that could be exported.",
    "This is not %1: line %2, column %3: %4.",
    "Line %1, column %2 (%3): %4.",
    "The text is of no format that can be imported: neither JSON, JSON lines nor mark-up.",
    "A tree cannot be imported from %1.",
    "This build cannot read mark-up: the pugixml library was not there when it was built.",
    "There is no random key to be had: %1.",
};

constexpr unsigned int s_formatGroups[] = {0, 7};

const KyResText s_formatTable = {s_formatMessages, s_formatGroups, 1, 0x01505000};

static_assert(sizeof(s_formatMessages) / sizeof(s_formatMessages[0]) == s_formatGroups[1],
              "the group covers the messages");

const KyCMessageTable s_formatRegistration(s_formatTable);
}    // namespace
