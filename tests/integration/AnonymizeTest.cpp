// kyinventory anonymize and scan --anonymize, run as a program.
#include <regex>
#include <set>

#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

class AnonymizeTool : public Tool
{
protected:
  void SetUp() override
  {
    store("a.kyinv", "ROOT SYSTEMNAME=\"rack7\" SERIAL_NUMBER=\"AB12345\" VERSION=\"10.2.3.4\" INFO=\"of rack7\"");
  }

  // What the copy of a.kyinv that these arguments make holds.
  std::string copy(const std::string& arguments) const
  {
    const Outcome outcome = run("anonymize " + path("a.kyinv") + " -o " + path("b.kyinv") + " --force " + arguments);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
    return run("show --plain --options 0xC9080 " + path("b.kyinv")).out;
  }
};
}    // namespace

TEST_F(AnonymizeTool, makesACopyWithPseudonymsAndLeavesTheFileAlone)
{
  const std::string before = contentOf(path("a.kyinv"));
  EXPECT_TRUE(std::regex_match(copy(""), std::regex("ROOT\n(    )+\n? *host-[0-9a-f]{8}\n *\n? *[A-Z][A-Z0-9]{9}\n "
                                                    "*\n? *10.2.3.4\n *\n? *of host-[0-9a-f]{8}\n")))
      << copy("");
  EXPECT_EQ(contentOf(path("a.kyinv")), before);
}

TEST_F(AnonymizeTool, aKeyMakesPseudonymsTheSameAndRandomOnesDiffer)
{
  write("key", "team key\n");
  write("key2", "team key");
  const std::string keyed = copy("--key 'team key'");
  EXPECT_EQ(copy("--key 'team key'"), keyed);
  EXPECT_EQ(copy("--key-file " + path("key")), keyed);
  EXPECT_EQ(copy("--key-file " + path("key2")), keyed);
  EXPECT_NE(copy("--key other"), keyed);
  EXPECT_NE(copy(""), copy(""));
}

TEST_F(AnonymizeTool, wrongUsageGives2)
{
  const std::string file = path("a.kyinv");
  EXPECT_EQ(run("anonymize " + file).exitCode, 2);
  EXPECT_EQ(run("anonymize " + file + " -o ''").exitCode, 2);
  EXPECT_EQ(run("anonymize " + file + " -o x --key ''").exitCode, 2);
  EXPECT_EQ(run("anonymize " + file + " -o x --key a --key-file b").exitCode, 2);
  EXPECT_EQ(run("scan --key a").exitCode, 2);
}

TEST_F(AnonymizeTool, withoutAUsableKeyOrInputNothingIsWritten)
{
  const std::string file = path("a.kyinv");
  Outcome outcome = run("anonymize " + file + " -o " + path("b.kyinv") + " --key-file " + path("none"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err,
            "kyinventory: Cannot read " + path("none") +
                ": No such file or directory. (0x1500000, readBytes)\n"
                "kyinventory: what to do: Check the path and the permissions; see what the system says.\n");
  write("empty", "\n");
  outcome = run("anonymize " + file + " -o " + path("b.kyinv") + " --key-file " + path("empty"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("empty") + ": holds no key\n");
  EXPECT_EQ(run("anonymize " + path("empty") + " -o " + path("b.kyinv")).exitCode, 3);
  EXPECT_FALSE(fs::exists(path("b.kyinv")));
  write("b.kyinv", "old");
  EXPECT_EQ(run("anonymize " + file + " -o " + path("b.kyinv")).exitCode, 4);
  EXPECT_EQ(contentOf(path("b.kyinv")), "old");
}

#ifdef KY_HAVE_HOST
TEST_F(AnonymizeTool, nothingThatNamesARealMachineIsLeft)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    const std::string scan = "scan --force --topology " + entry.path().string() + " -o ";
    EXPECT_EQ(run(scan + path("m.kyinv")).exitCode, 0);
    EXPECT_EQ(run(scan + path("n.kyinv") + " --anonymize --key k").exitCode, 0);
    EXPECT_EQ(run("anonymize --key k --force " + path("m.kyinv") + " -o " + path("o.kyinv")).exitCode, 0);
    const std::string after = contentOf(path("n.kyinv"));
    EXPECT_EQ(contentOf(path("o.kyinv")), after);

    // Every serial number, address and name in the tree as it was.
    const std::string lines = run("export --format csv " + path("m.kyinv")).out;
    const std::regex secret(
        "(?:SERIAL_NUMBER|MAC_ADDRESS|UNITID|SYSTEMNAME|IPADDRESS),String,([^,\n]+),|"
        "((?:[0-9a-fA-F]{2}:){5,}[0-9a-fA-F]{2})");
    std::set<std::string> originals;
    for (std::sregex_iterator at(lines.begin(), lines.end(), secret), end; at != end; ++at)
      originals.insert((*at)[1].matched ? (*at)[1].str() : (*at)[2].str());
    for (const std::string& original : originals)
      EXPECT_EQ(after.find(original), std::string::npos) << entry.path() << " " << original;
    count += originals.size();
    EXPECT_EQ(run("show " + path("n.kyinv")).exitCode, 0);
  }
  EXPECT_GT(count, 10u);
}
#endif
