// SectionFile.h: section files as the sub-commands read and write them.
#pragma once

#include <memory>
#include <string>

#include "inventory/KyCInventoryItem.h"

using TreePointer = std::unique_ptr<KyCInventoryItem>;

// Reads the tree of the section at the end or the start of a file. Null, after a message on standard error, when the
// file cannot be read, holds no section or is damaged.
TreePointer readSectionFile(const std::string& path);

// Stores the tree as a section file, once its bytes have been found to read back equal. The bytes go to a temporary file beside the target, which is flushed to the disk
// and then takes the target's place: the target is the old or the new file, whole, whatever happens. "-" is standard
// output. False, after a message on standard error, when it cannot be done; the target is then as it was.
bool writeSectionFile(const std::string& path, KyCInventoryItem& root);

// Whether what was stored at this path can be read from there: true for a file; false for "-", a pipe and a device, where
// reading may wait for ever.
bool isReadableAgain(const std::string& path);
