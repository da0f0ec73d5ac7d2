// KyHostMessages.cpp: the message catalogue of libKyInventoryHost, registered while the library is loaded.
#include "KyHostMessages.h"

#include "errorhandling/KyCMessageTable.h"

namespace
{
// In code order. Codes are permanent: a new text goes to the end.
const char* const s_messages[] = {
    "Cannot open topology file %1: %2.",
    "Cannot read topology file %1: %2.",
    "Topology file %1 is too large: more than %2 bytes.",
    "File %1 is not a hardware topology that hwloc can read.",
    "Cannot find out the hardware topology: %1 failed: %2.",
    "Cannot take the inventory of this machine: hwloc's environment variables put another one in its place.",
    "Cannot build the inventory of %1.",
    "Cannot read the current value from %1: %2.",
};
const unsigned int s_groupBoundaries[] = {0, sizeof s_messages / sizeof s_messages[0]};
const KyResText s_table = {s_messages, s_groupBoundaries, 1, 0x1400000};

const KyCMessageTable s_registration(s_table);
}    // namespace
