// KyFormatMessages.cpp: the messages about formats and pseudonyms, registered while the library is loaded.
#include "KyFormatMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
const char* const s_messages[] = {
    "%1 is of the unknown type %2: it has no value that could be exported.",
    "This is not %1: line %2, column %3: %4.",
    "Line %1, column %2 (%3): %4.",
    "The text is of no format that can be imported: neither JSON, JSON lines nor mark-up.",
    "A tree cannot be imported from %1.",
    "This build cannot read mark-up: the pugixml library was not there when it was built.",
    "There is no random key to be had: %1.",
};

constexpr unsigned int s_groups[] = {0, 7};

const KyResText s_table = {s_messages, s_groups, 1, 0x01505000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[1], "the group covers the messages");

const KyCMessageTable s_registration(s_table);
}    // namespace
