// KyCompositeMessages.cpp: the texts of this library's reports, known to the error manager while the library is loaded.
#include "KyCompositeMessages.h"

#include "errorhandling/KyCMessageTable.h"
#include "errorhandling/KyResText.h"

namespace
{

const char* const s_messages[] = {
    // Strings and buffers, 0x01100000
    "A text of %1 characters does not fit into the address space.",
    "The buffer holds %1 bytes; %2 bytes more exceed its limit of 4294967295 bytes.",
    "A null pointer was given for %1 bytes of a buffer.",
    "Buffer flag %1 is unknown; 0 stands for a scalar, 1 for a byte string.",
    "A scalar of %1 bytes has no place in a buffer; scalars have 1, 2, 4 or 8 bytes.",
    "%1 is no position in a buffer.",
    "%1 bytes at position %2 cannot be overwritten: the buffer holds %3 bytes.",
    "%1 bytes at position %2 cannot be read: the buffer holds %3 bytes.",
    "The write position %1 cannot advance by %2 bytes: %3 bytes are allocated.",

    // Parameters, 0x01100800
    "Parameter %1 is of type %2; it cannot be read as %3.",
    "Parameter %1 is of type %2; it cannot be set as %3.",
    "Parameter %1 has the unknown type code %2 and no value.",

    // Composites, 0x01101000
    "A null parameter was given to composite (%1, %2).",
    "Parameter %1 belongs to a composite already; it cannot be added to composite (%2, %3).",
    "Parameter %1 cannot be added to composite (%2, %3), which has one of that id.",

    // Serializer and deserializer, 0x01101800
    "The serializer is in use or could not be constructed.",
    "The deserializer is in use or could not be constructed.",
    "Composites nested deeper than %1 levels cannot be stored.",
    "Parameter %1 (%2) has the unknown value type %3; it cannot be stored.",
    "A stream cannot hold more than 4294967295 bytes.",
    "The stream is empty.",
    "The stream has version %1; version %2 is expected.",
    "The stream is damaged at byte %1: %2.",
    "Custom parameter %1 was not created.",
    "Custom parameter %1 was created with value type %2 instead of %3.",
    "Composite (%1, %2) has two parameters of the id %3; it cannot be stored.",
};

// The first message of each group, and the end.
constexpr unsigned int s_groups[] = {0, 9, 12, 15, 26};

const KyResText s_table = {s_messages, s_groups, sizeof(s_groups) / sizeof(s_groups[0]) - 1, 0x01100000};

static_assert(sizeof(s_messages) / sizeof(s_messages[0]) == s_groups[sizeof(s_groups) / sizeof(s_groups[0]) - 1],
              "the groups cover the messages");

const KyCMessageTable s_registration(s_table);

}    // namespace
