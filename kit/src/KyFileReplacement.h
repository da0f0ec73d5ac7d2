// KyFileReplacement.h: writes a file whole or not at all.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"

namespace KyNInventoryKit
{
// Writes the bytes to a temporary file beside the target, flushes it and renames it; see KySectionFile.h for the rest.
// Signals that would end the program wait meanwhile (SIGHUP, SIGINT, SIGQUIT, SIGTERM; in this thread: others of the program
// must block them themselves), so that no temporary file stays. SIGXFSZ is not sent; the failure is reported.
bool replaceFile(KyCErrorListPool& pool, const std::string& path, const std::string& bytes);
}    // namespace KyNInventoryKit
