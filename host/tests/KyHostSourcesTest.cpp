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
