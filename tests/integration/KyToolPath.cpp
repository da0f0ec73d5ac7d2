#include "integration/KyToolTest.h"

const char* const kyToolPath = KY_TOOL_PATH;
