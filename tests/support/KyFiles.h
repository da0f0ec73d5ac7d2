// KyFiles.h: a folder for the files of one test, and what a file holds.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// A folder that is gone again, with all that is in it, at the end of the test.
class KyTemporaryFolder
{
public:
  KyTemporaryFolder()
  {
    std::string pattern = ::testing::TempDir() + "ky-test-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    m_path = pattern;
  }
  ~KyTemporaryFolder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  KyTemporaryFolder(const KyTemporaryFolder&) = delete;
  KyTemporaryFolder& operator=(const KyTemporaryFolder&) = delete;

  // The path of the folder itself, or of something in it.
  std::string path() const { return m_path.string(); }
  std::string path(const std::string& name) const { return (m_path / name).string(); }

  // Writes a file, with the folders on the way to it; gives its path.
  std::string write(const std::string& name, const std::string& content) const
  {
    const std::filesystem::path file = m_path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
  }

private:
  std::filesystem::path m_path;
};

// The bytes of a file; a missing file fails the test and gives an empty text.
inline std::string contentOf(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  if (!file) ADD_FAILURE() << "cannot read " << path;
  return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}
