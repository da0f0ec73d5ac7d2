// Runs every data case of this folder: <case>.tree, dumped with <case>.options, gives the bytes of <case>.expected.
// The folder is read anew at each run, so a new case is three new files and nothing else.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "KyDumpCase.h"
#include "support/KyFiles.h"

namespace
{
const std::filesystem::path folder = KY_SOURCE_DIR "/tests/golden/dump";

// The names of the cases, by whichever of their files is there.
std::set<std::string> caseNames()
{
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
  {
    const std::string extension = entry.path().extension().string();
    if (extension == ".tree" || extension == ".options" || extension == ".expected")
    {
      names.insert(entry.path().stem().string());
    }
  }
  return names;
}

std::string readCaseFile(const std::string& name, const char* extension)
{
  return contentOf((folder / (name + extension)).string());
}
}    // namespace

TEST(DumpCases, giveTheirExpectedBytes)
{
  for (const std::string& name : caseNames())
  {
    SCOPED_TRACE(name);
    const KyDumpOptions options = readOptions(readCaseFile(name, ".options"));
    EXPECT_EQ(dumpOf(readCaseFile(name, ".tree"), options), readCaseFile(name, ".expected"));
  }
}

TEST(DumpCases, sayWhyTheyExist)
{
  for (const std::string& name : caseNames())
  {
    EXPECT_TRUE(readOptions(readCaseFile(name, ".options")).hasComment) << name;
  }
}

TEST(DumpCases, areAllThere) { EXPECT_GE(caseNames().size(), 30u); }
