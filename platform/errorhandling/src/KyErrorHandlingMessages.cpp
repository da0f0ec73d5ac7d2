// KyErrorHandlingMessages.cpp: the texts of libKyErrorHandling's own catalogue.
#include "KyErrorHandlingMessages.h"

namespace
{
const char* const s_messages[] = {
    "Out of memory.",                                                        // 0x1000000
    "Cannot delete an error list that the error manager did not create.",    // 0x1000001
};
const unsigned int s_groupBoundaries[] = {0, sizeof s_messages / sizeof s_messages[0]};
}    // namespace

const KyResText kyErrorHandlingMessages = {s_messages, s_groupBoundaries, 1, 0x1000000};
