// KyHostSourcesTest.cpp: reading small files that may be anything.
#include "KyHostSources.h"

#include <sys/stat.h>

#include "KyHostTestSupport.h"

TEST(KyHostSources, readFileGivesTheContentAndNothingForAMissingFileOrAFolder)
{
  const KyTemporaryFolder folder;
  EXPECT_EQ(KyHostSources::readFile(folder.write("a", "content\n")), "content\n");
  EXPECT_EQ(KyHostSources::readFile(folder.write("empty", "")), "");
  EXPECT_EQ(KyHostSources::readFile(folder.path("missing")), "");
  EXPECT_EQ(KyHostSources::readFile(folder.path("")), "");
}

TEST(KyHostSources, readFileStopsAt64KiB)
{
  const KyTemporaryFolder folder;
  EXPECT_EQ(KyHostSources::readFile(folder.write("big", std::string(200000, 'x'))).size(), 65536u);
}

TEST(KyHostSources, readFileDoesNotWaitForAPipe)
{
  const KyTemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(KyHostSources::readFile(folder.path("pipe")), "");
}

TEST(KyHostSources, readFileTellsWhyAFileCannotBeRead)
{
  const KyTemporaryFolder folder;
  std::string content = "before";
  EXPECT_EQ(KyHostSources::readFile(folder.path("missing"), 10, content), ENOENT);
  EXPECT_EQ(content, "");
  EXPECT_EQ(KyHostSources::readFile(folder.path(""), 10, content), EISDIR);
  EXPECT_EQ(KyHostSources::readFile("/dev/zero", 10, content), EINVAL);
  EXPECT_EQ(KyHostSources::readFile(folder.write("a", "0123456789abc"), 10, content), 0);
  EXPECT_EQ(content, "0123456789");
}

TEST(KyHostSources, sysNumbersOfGivesTheNumbersInRisingOrder)
{
  const KyTemporaryFolder folder;
  for (const char* const name : {"temp10_input", "temp2_input", "temp1_label", "temp_input", "temp3_input.old",
                                 "temp-1_input", "atemp4_input", "temp4x_input", "temp99999999999_input"})
    folder.write(std::string("class/hwmon/hwmon0/") + name, "");
  const KyHostSources sources = {folder.path(""), "", ""};
  EXPECT_EQ(sources.sysNumbersOf("class/hwmon/hwmon0", "temp", "_input"), (std::vector<unsigned int>{2, 10}));
  EXPECT_TRUE(sources.sysNumbersOf("class/none", "temp", "_input").empty());
}

TEST(KyHostSources, sysFoldersWithGivesSortedNamesThatHaveTheEntry)
{
  const KyTemporaryFolder folder;
  folder.write("class/net/wlan0/device/vendor", "");
  folder.write("class/net/lo/mtu", "65536\n");
  folder.write("class/net/eth0/device/vendor", "");
  const KyHostSources sources = {folder.path(""), "", ""};
  EXPECT_EQ(sources.sysFoldersWith("class/net", "device"), (std::vector<std::string>{"eth0", "wlan0"}));
  EXPECT_TRUE(sources.sysFoldersWith("class/none", "device").empty());
}
