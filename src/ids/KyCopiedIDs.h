// KyCopiedIDs.h: predefined IDs that the program holds itself.
#pragma once

// Lets each copy of a predefined ID that the loader has put into the program's own data refer to its own element, as
// every address does, instead of the one in the library. Once, while the library is loaded.
void kyCompleteCopiedIDs() noexcept;
