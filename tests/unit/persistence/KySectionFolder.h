// KySectionFolder.h: a folder for the section files of one test.
#pragma once

#include <string>

#include "support/KyFiles.h"
#include "unit/persistence/KyStoredBytes.h"

class KySectionFolder : public KyTemporaryFolder
{
public:
  // The path of a new file with these bytes; the one before is gone.
  std::string file(const KyBytes& bytes) const
  {
    return write("section.kyinv", std::string(bytes.begin(), bytes.end()));
  }
};
