// KyHostMessages.h: the codes of this library's own messages; the texts stand in KyHostMessages.cpp.
#pragma once

constexpr unsigned int KY_HOST_MSG_CANNOT_OPEN = 0x1400000;      // "%s%s": path, reason
constexpr unsigned int KY_HOST_MSG_CANNOT_READ = 0x1400001;      // "%s%s": path, reason
constexpr unsigned int KY_HOST_MSG_TOO_LARGE = 0x1400002;        // "%s%u": path, most bytes
constexpr unsigned int KY_HOST_MSG_NO_TOPOLOGY = 0x1400003;      // "%s": path
constexpr unsigned int KY_HOST_MSG_HWLOC_FAILED = 0x1400004;     // "%s%s": function of hwloc, reason
constexpr unsigned int KY_HOST_MSG_OTHER_MACHINE = 0x1400005;    // no arguments
constexpr unsigned int KY_HOST_MSG_CANNOT_BUILD = 0x1400006;     // "%s": path, or "this machine"
constexpr unsigned int KY_HOST_MSG_NO_LIVE_VALUE = 0x1400007;    // "%s%s": path, reason
