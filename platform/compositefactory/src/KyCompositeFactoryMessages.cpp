// KyCompositeFactoryMessages.cpp: the texts of this library's reports, known to the error manager while the library is
// loaded.
#include "KyCompositeFactoryMessages.h"

#include "errorhandling/KyCMessageTable.h"
#include "errorhandling/KyResText.h"

namespace
{

const char* const s_messages[] = {
    // Driving the serializers, 0x01200000
    "No binary serializer is installed.",
    "No binary deserializer is installed.",
    "No buffer was given.",
    "No parameter was given.",

    // Creating composites, 0x01200800
    "Composite (%1, %2) cannot be created.",
    "Composite (%1, %2) cannot be attached: error %3.",
    "Composite (%1, %2) was created, but not below the composite it belongs to.",

    // Libraries, 0x01201000
    "The factory was not constructed completely.",
    "The library path \"%1\" names no folder.",
    "The library cannot be loaded: %1",
    "The library %1 has no function %2.",
    "Composite (%1, %2) has a library already.",
    "There is no library for composite (%1, %2) in the library folders.",
    "No library folder was given.",
};

// The first message of each group, and the end.
constexpr unsigned int s_groups[] = {0, 4, 7, 14};

const KyResText s_table = {s_messages, s_groups, sizeof(s_groups) / sizeof(s_groups[0]) - 1, 0x01200000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[sizeof(s_groups) / sizeof(s_groups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_registration(s_table);

}    // namespace
