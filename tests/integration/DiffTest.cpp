// kyinventory diff: what it prints, and its exit codes.
#include "integration/KyToolTest.h"

namespace
{
using Diff = Tool;

const char s_before[] =
    "ROOT/BOARD NAME=\"old\"; BOARD/IOCHANNEL[3] VOLTAGE_MAX Float64 10.5 unit=\"V\"; CPU; DEVICE SIZE=1";
const char s_after[] =
    "ROOT/DEVICE SIZE=1; BOARD NAME=\"new\"; BOARD/IOCHANNEL[3] VOLTAGE_MAX Float64 12.0 unit=\"V\"; BOARD[2] ID=7";

TEST_F(Diff, equalTreesGiveNothingAndExitCode0)
{
  const std::string a = store("a.kyinv", s_before);
  const Outcome outcome = run("diff " + a + " " + a);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Diff, changesArePrintedInColumnsWithExitCode1)
{
  const std::string a = store("a.kyinv", s_before);
  const std::string b = store("b.kyinv", s_after);
  const Outcome outcome = run("diff " + a + " " + b);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "~ BOARD/NAME                      \"old\" -> \"new\"\n"
            "~ BOARD/IOCHANNEL[3]/VOLTAGE_MAX  10.5 V -> 12 V\n"
            "- CPU                             item\n"
            "+ BOARD[2]                        item\n"
            "+ BOARD[2]/ID                     Int32 7\n");
}

TEST_F(Diff, withOrderMovesAreDifferences)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD; CPU; DEVICE");
  const std::string b = store("b.kyinv", "ROOT/DEVICE; BOARD; CPU");
  const Outcome without = run("diff " + a + " " + b);
  EXPECT_EQ(without.exitCode, 0);
  EXPECT_EQ(without.out, "");
  const Outcome with = run("diff --order " + a + " " + b);
  EXPECT_EQ(with.exitCode, 1);
  EXPECT_EQ(with.out, "> DEVICE  item in another place\n");
}

TEST_F(Diff, theSummaryCounts)
{
  const std::string a = store("a.kyinv", s_before);
  const std::string b = store("b.kyinv", s_after);
  const Outcome outcome = run("diff --summary " + a + " " + b);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out,
            "items:      1 added, 1 removed, 0 changed\n"
            "parameters: 1 added, 0 removed, 2 changed\n");
  EXPECT_EQ(run("diff --summary --order " + a + " " + b).out,
            "items:      1 added, 1 removed, 0 changed, 1 moved\n"
            "parameters: 1 added, 0 removed, 2 changed, 0 moved\n");
  const Outcome same = run("diff --summary " + a + " " + a);
  EXPECT_EQ(same.exitCode, 0);
  EXPECT_EQ(same.out,
            "items:      0 added, 0 removed, 0 changed\n"
            "parameters: 0 added, 0 removed, 0 changed\n");
}

TEST_F(Diff, jsonIsOneDocumentWithOneChangeALine)
{
  const std::string a = store("a.kyinv", s_before);
  const std::string b = store("b.kyinv", s_after);
  const Outcome outcome = run("diff --json " + a + " " + b);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "{\n"
            "  \"format\": \"kyinventory-diff\",\n"
            "  \"version\": 1,\n"
            "  \"changes\": [\n"
            "    {\"change\":\"moved\",\"item\":\"DEVICE\",\"old\":{\"after\":\"CPU\"},\"new\":{\"after\":null}},\n"
            "    {\"change\":\"changed\",\"parameter\":\"BOARD/NAME\",\"old\":{\"type\":\"String\",\"value\":\"old\"},"
            "\"new\":{\"type\":\"String\",\"value\":\"new\"}},\n"
            "    {\"change\":\"changed\",\"parameter\":\"BOARD/IOCHANNEL[3]/VOLTAGE_MAX\","
            "\"old\":{\"type\":\"Float64\",\"value\":\"10.5\"},\"new\":{\"type\":\"Float64\",\"value\":\"12\"}},\n"
            "    {\"change\":\"removed\",\"item\":\"CPU\",\"after\":\"BOARD\",\"description\":\"CPU\"},\n"
            "    {\"change\":\"added\",\"item\":\"BOARD[2]\",\"after\":\"BOARD\",\"description\":\"BOARD\"},\n"
            "    {\"change\":\"added\",\"parameter\":\"BOARD[2]/ID\",\"after\":null,\"type\":\"Int32\",\"value\":7,"
            "\"unit\":\"\",\"modifiable\":false,\"relevance\":0,\"description\":\"ID\"}\n"
            "  ]\n"
            "}\n");
  const Outcome same = run("diff --json " + a + " " + a);
  EXPECT_EQ(same.exitCode, 0);
  EXPECT_EQ(same.out, "{\n  \"format\": \"kyinventory-diff\",\n  \"version\": 1,\n  \"changes\": []\n}\n");
}

TEST_F(Diff, theExampleOfTheFormatsPageIsTrue)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD SIZE=1");
  const std::string b = store("b.kyinv", "ROOT/BOARD SIZE=2; BOARD[2] ID:Float32=0.1");
  const std::string example = "```json\n" + run("diff --json " + a + " " + b).out + "```\n";
  EXPECT_NE(contentOf(KY_SOURCE_DIR "/docs/diff-format.md").find(example), std::string::npos) << example;
}

TEST_F(Diff, oneTreeMayComeFromStandardInput)
{
  const std::string a = store("a.kyinv", "ROOT SIZE=1");
  const std::string b = store("b.kyinv", "ROOT SIZE=2");
  EXPECT_EQ(run("diff - " + b + " <" + a + " >/dev/null #").exitCode, 1);
  EXPECT_EQ(run("diff " + b + " - <" + b + " >/dev/null #").exitCode, 0);
  const Outcome both = run("diff - -");
  EXPECT_EQ(both.exitCode, 2);
  EXPECT_EQ(both.err, "kyinventory: standard input can stand for one file only\n");
}

TEST_F(Diff, aFileThatCannotBeReadGivesExitCode3)
{
  const std::string a = store("a.kyinv", "ROOT");
  const Outcome outcome = run("diff " + a + " " + path("missing.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: Cannot read " + path("missing.kyinv") +
                ": No such file or directory. (0x1500000, readBytes)\n"
                "kyinventory: what to do: Check the path and the permissions; see what the system says.\n");
}

TEST_F(Diff, wrongUsageGivesExitCode2)
{
  const std::string a = store("a.kyinv", "ROOT");
  EXPECT_EQ(run("diff " + a).exitCode, 2);
  EXPECT_EQ(run("diff --json --summary " + a + " " + a).exitCode, 2);
}

TEST_F(Diff, aTextOfAFileStaysOnItsLine)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"a\"");
  const std::string b = store("b.kyinv", "ROOT NAME=\"b\\n+ FAKE\\x1B[31m\\xC2\\x9B\\xFF\\xC3\\xA9\"");
  EXPECT_EQ(run("diff " + a + " " + b).out, "~ NAME  \"a\" -> \"b\\n+ FAKE\\x1B[31m\\xC2\\x9B\\xFF\xC3\xA9\"\n");
}

TEST_F(Diff, aFullOutputDeviceGivesExitCode4)
{
  const std::string a = store("a.kyinv", "ROOT SIZE=1");
  const std::string b = store("b.kyinv", "ROOT SIZE=2");
  EXPECT_EQ(run("diff " + a + " " + b + " >/dev/full 2>" + path("full.txt") + " ; exit $? #").exitCode, 4);
  EXPECT_EQ(contentOf(path("full.txt")), "kyinventory: standard output: No space left on device\n");
}
}    // namespace
