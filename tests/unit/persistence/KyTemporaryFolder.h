// KyTemporaryFolder.h: a folder for the files of one test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "unit/persistence/KyStoredBytes.h"

class KyTemporaryFolder
{
public:
  KyTemporaryFolder()
  {
    std::string name = ::testing::TempDir() + "kyinv-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    m_path = name;
  }
  ~KyTemporaryFolder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  KyTemporaryFolder(const KyTemporaryFolder&) = delete;
  KyTemporaryFolder& operator=(const KyTemporaryFolder&) = delete;

  std::string pathOf(const std::string& name) const { return m_path + "/" + name; }

  // The path of a new file with these bytes.
  std::string file(const KyBytes& bytes) const
  {
    const std::string path = pathOf("section.kyinv");
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
  }

private:
  std::string m_path;
};
