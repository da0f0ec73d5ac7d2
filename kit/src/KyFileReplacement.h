// KyFileReplacement.h: writes a file whole or not at all.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"

namespace KyNInventoryKit
{
// Writes the bytes to a temporary file beside the target, flushes it and renames it; see KySectionFile.h for the rest.
bool replaceFile(KyCErrorListPool& pool, const std::string& path, const std::string& bytes);
}    // namespace KyNInventoryKit
