// kyinventory patch: what it writes, and when it writes nothing.
#include <algorithm>
#include <vector>

#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

const char s_before[] = "ROOT/BOARD SIZE=1 NAME=\"\\xFF\"; CPU; DEVICE OFFSET:ULong64=18446744073709551615";
const char s_after[] =
    "ROOT/DEVICE OFFSET:ULong64=9007199254740993; BOARD NAME=\"\\xFF\" SIZE=2; BOARD[2] ID:Float32=0.1";

class PatchCommand : public Tool
{
protected:
  // Stores the two trees and what leads from the first to the second.
  void storeAll() const
  {
    store("a.kyinv", s_before);
    store("b.kyinv", s_after);
    EXPECT_EQ(run("diff --json " + path("a.kyinv") + " " + path("b.kyinv") + " >" + path("d.json") + " #").exitCode, 1);
  }
};

TEST_F(PatchCommand, makesTheNewFileOfTheOldOneAndBack)
{
  storeAll();
  const std::string old = contentOf(path("a.kyinv"));
  const Outcome outcome = run("patch " + path("a.kyinv") + " " + path("d.json"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(contentOf(path("a.kyinv")), contentOf(path("b.kyinv")));
  EXPECT_EQ(run("patch --reverse " + path("a.kyinv") + " " + path("d.json")).exitCode, 0);
  EXPECT_EQ(contentOf(path("a.kyinv")), old);
}

TEST_F(PatchCommand, writesToAnotherFileWithO)
{
  storeAll();
  const std::string old = contentOf(path("a.kyinv"));
  const std::string command = "patch " + path("a.kyinv") + " " + path("d.json") + " -o " + path("c.kyinv");
  EXPECT_EQ(run(command).exitCode, 0);
  EXPECT_EQ(contentOf(path("a.kyinv")), old);
  EXPECT_EQ(contentOf(path("c.kyinv")), contentOf(path("b.kyinv")));
  const Outcome again = run(command);
  EXPECT_EQ(again.exitCode, 4);
  EXPECT_EQ(again.err, "kyinventory: " + path("c.kyinv") + ": exists already; --force writes over it\n");
  EXPECT_EQ(run(command + " --force").exitCode, 0);
}

TEST_F(PatchCommand, keepsTheImageAroundTheSection)
{
  storeAll();
  const std::string image(5000, '\xA5');
  write("image.bin", image + contentOf(path("a.kyinv")));
  EXPECT_EQ(run("patch " + path("image.bin") + " " + path("d.json")).exitCode, 0);
  EXPECT_EQ(contentOf(path("image.bin")), image + contentOf(path("b.kyinv")));
}

TEST_F(PatchCommand, aDryRunTellsAndWritesNothing)
{
  storeAll();
  const std::string old = contentOf(path("a.kyinv"));
  const Outcome outcome = run("patch --dry-run " + path("a.kyinv") + " " + path("d.json"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "7 changes apply\n");
  EXPECT_EQ(contentOf(path("a.kyinv")), old);
  const Outcome reverse = run("patch --dry-run --reverse " + path("a.kyinv") + " " + path("d.json"));
  EXPECT_EQ(reverse.exitCode, 1);
  EXPECT_EQ(reverse.out, "");
  EXPECT_EQ(run("patch --dry-run - " + path("d.json") + " <" + path("a.kyinv") + " >/dev/null #").exitCode, 0);
}

TEST_F(PatchCommand, conflictsAreAllToldWithTheirAddressesAndNothingIsWritten)
{
  storeAll();
  const std::string c = store("c.kyinv", "ROOT/BOARD SIZE=5 NAME=\"\\xFF\"; CPU NAME=\"mine\"; BOARD[2]");
  const std::string old = contentOf(c);
  const Outcome outcome = run("patch " + c + " " + path("d.json"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  const std::string start = "kyinventory: " + c + ": The patch does not apply at ";
  const std::string end = ". (0x1501800, checkPatch)\n";
  EXPECT_EQ(outcome.err, start + "DEVICE: there is no such item" + end + start + "BOARD/SIZE: the value is 5, not 1" +
                             end + start + "CPU: it would be removed with its parameter NAME" + end + start +
                             "BOARD[2]: there is such an item already" + end +
                             "kyinventory: what to do: Bring the tree to the state that the report asks for, or take a "
                             "new difference.\n");
  EXPECT_EQ(contentOf(c), old);
}

TEST_F(PatchCommand, zeroBytesOfConflictsAreShown)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"a\\x00b\"");
  const std::string b = store("b.kyinv", "ROOT NAME=\"c\"");
  const std::string c = store("c.kyinv", "ROOT NAME=\"\\x00d\"");
  run("diff --json " + a + " " + b + " >" + path("d.json") + " #");
  const Outcome outcome = run("patch " + c + " " + path("d.json"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err,
            "kyinventory: " + c +
                ": The patch does not apply at NAME: the value is \"\\x00d\", not \"a\\x00b\". (0x1501800, "
                "checkPatch)\n"
                "kyinventory: what to do: Bring the tree to the state that the report asks for, or take a "
                "new difference.\n");
}

TEST_F(PatchCommand, textsOfConflictsAreQuotedAsInDifferences)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"Bench 7\"");
  const std::string b = store("b.kyinv", "ROOT NAME=\"\"");
  run("diff --json " + a + " " + b + " >" + path("d.json") + " #");
  const Outcome outcome = run("patch " + b + " " + path("d.json"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "kyinventory: " + b +
                             ": The patch does not apply at NAME: the value is \"\", not \"Bench 7\". (0x1501800, "
                             "checkPatch)\n"
                             "kyinventory: what to do: Bring the tree to the state that the report asks for, or take a "
                             "new difference.\n");
}

// Trees that others have made may have items of the ID 0, called DUMMY.
TEST_F(PatchCommand, itemsOfTheID0AreComparedPatchedAndRemovedLikeOthers)
{
  write("a.json", "{\"format\":\"kyinventory\",\"version\":1,\"root\":{\"id\":\"ROOT\",\"items\":[{\"id\":0}]}}");
  write("b.json",
        "{\"format\":\"kyinventory\",\"version\":1,\"root\":{\"id\":\"ROOT\",\"items\":[{\"id\":\"DUMMY\",\"index\":2,"
        "\"items\":[{\"id\":0}],\"parameters\":[{\"id\":\"SIZE\",\"type\":\"Int32\",\"value\":7}]}]}}");
  const std::string a = path("a.kyinv");
  const std::string b = path("b.kyinv");
  ASSERT_EQ(run("import " + path("a.json") + " -o " + a).exitCode, 0);
  ASSERT_EQ(run("import " + path("b.json") + " -o " + b).exitCode, 0);
  EXPECT_EQ(run("diff " + a + " " + b).out,
            "- DUMMY           item\n"
            "+ DUMMY[2]        item\n"
            "+ DUMMY[2]/SIZE   Int32 7\n"
            "+ DUMMY[2]/DUMMY  item\n");
  run("diff --json " + a + " " + b + " >" + path("d.json") + " #");
  const Outcome patched = run("patch " + a + " " + path("d.json"));
  EXPECT_EQ(patched.exitCode, 0);
  EXPECT_EQ(patched.err, "");
  EXPECT_EQ(contentOf(a), contentOf(b));

  EXPECT_EQ(run("get " + a + " DUMMY[2]/SIZE 0[2]/SIZE /DUMMY[2]/SIZE").out, "7\n7\n7\n");
  EXPECT_EQ(run("show " + a + " 0[2]/0 --options 0x200000").exitCode, 0);
  for (const char* pattern : {"DUMMY", "0", "/DUMMY[2]", "D?MMY"})
    EXPECT_EQ(run("find " + a + " '" + pattern + "'").out, "DUMMY[2]\t\t\n") << pattern;
  EXPECT_EQ(run("shell " + a + " -c 'cd /DUMMY[2]; get SIZE; cd /; cd 0[2]; get SIZE'").out, "7\n7\n");
  EXPECT_EQ(run("export --format jsonl " + a + " -o " + path("a.jsonl")).exitCode, 0);
  EXPECT_EQ(run("import " + path("a.jsonl") + " -o " + path("c.kyinv")).exitCode, 0);
  EXPECT_EQ(run("get " + path("c.kyinv") + " 0[2]/SIZE").out, "7\n");
  EXPECT_EQ(run("set " + a + " DUMMY[2]/SIZE=8").exitCode, 0);
  EXPECT_EQ(run("get " + a + " DUMMY[2]/SIZE").out, "8\n");
  EXPECT_EQ(run("rename " + a + " DUMMY[2] BOARD").exitCode, 0);
  EXPECT_EQ(run("rename " + a + " BOARD 0[2]").exitCode, 0);
  EXPECT_EQ(run("get " + a + " DUMMY[2]/SIZE").out, "8\n");
  EXPECT_EQ(run("rm " + a + " 0[2]/DUMMY").exitCode, 0);
  EXPECT_EQ(run("rm " + a + " DUMMY[2]").exitCode, 0);
  EXPECT_EQ(run("find " + a + " '**'").out, ".\t\t\n");
}

TEST_F(PatchCommand, oneOfTheTwoMayComeFromStandardInput)
{
  storeAll();
  const Outcome changes = run("patch " + path("a.kyinv") + " - -o " + path("c.kyinv") + " <" + path("d.json") + " #");
  EXPECT_EQ(changes.exitCode, 0);
  EXPECT_EQ(contentOf(path("c.kyinv")), contentOf(path("b.kyinv")));
  const Outcome tree = run("patch - " + path("d.json") + " -o - <" + path("a.kyinv") + " >" + path("e.kyinv") + " #");
  EXPECT_EQ(tree.exitCode, 0);
  EXPECT_EQ(contentOf(path("e.kyinv")), contentOf(path("b.kyinv")));
  const Outcome both = run("patch - - -o " + path("f.kyinv"));
  EXPECT_EQ(both.exitCode, 2);
  EXPECT_EQ(both.err, "kyinventory: standard input can stand for one file only\n");
  const Outcome inPlace = run("patch - " + path("d.json"));
  EXPECT_EQ(inPlace.exitCode, 2);
  EXPECT_EQ(inPlace.err, "kyinventory: standard input cannot be changed in place; name a file with -o\n");
}

TEST_F(PatchCommand, whatIsNoPatchGivesExitCode3WithItsPlace)
{
  storeAll();
  const std::string old = contentOf(path("a.kyinv"));
  write("bad.json",
        "{\n  \"format\": \"kyinventory-diff\",\n  \"version\": 1,\n  \"changes\": [\n    {\"change\": 5}]}");
  const Outcome outcome = run("patch " + path("a.kyinv") + " " + path("bad.json"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("bad.json") +
                             " is not a patch: line 5: \"change\" must be a string. (0x1501000, readPatch)\n"
                             "kyinventory: what to do: Write it with kyinventory diff --json, or correct that line; "
                             "docs/diff-format.md describes the form.\n");
  EXPECT_EQ(contentOf(path("a.kyinv")), old);
  EXPECT_EQ(run("patch " + path("a.kyinv") + " " + path("missing.json")).exitCode, 3);
  EXPECT_EQ(run("patch " + path("missing.kyinv") + " " + path("d.json")).exitCode, 3);
  EXPECT_EQ(run("patch " + path("d.json") + " " + path("d.json")).exitCode, 3);
}

TEST_F(PatchCommand, theFormForPeopleIsNotRead)
{
  storeAll();
  run("diff " + path("a.kyinv") + " " + path("b.kyinv") + " >" + path("d.txt") + " #");
  EXPECT_EQ(run("patch " + path("a.kyinv") + " " + path("d.txt")).exitCode, 3);
}

TEST_F(PatchCommand, anEmptyPatchLeavesTheFileAlone)
{
  storeAll();
  run("diff --json " + path("a.kyinv") + " " + path("a.kyinv") + " >" + path("none.json") + " #");
  const fs::file_time_type time = fs::last_write_time(path("a.kyinv")) - std::chrono::hours(1);
  fs::last_write_time(path("a.kyinv"), time);
  EXPECT_EQ(run("patch " + path("a.kyinv") + " " + path("none.json")).exitCode, 0);
  EXPECT_EQ(fs::last_write_time(path("a.kyinv")), time);
}

TEST_F(PatchCommand, aPatchOfOneChangeSaysSo)
{
  const std::string a = store("a.kyinv", "ROOT SIZE=1");
  const std::string b = store("b.kyinv", "ROOT SIZE=2");
  run("diff --json " + a + " " + b + " >" + path("d.json") + " #");
  EXPECT_EQ(run("patch --dry-run " + a + " " + path("d.json")).out, "1 change applies\n");
}

#ifdef KY_HAVE_HOST
TEST_F(PatchCommand, everyRealMachineCanBeMadeOfTheOneBeforeIt)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  std::vector<fs::path> topologies;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".xml") topologies.push_back(entry.path());
  std::sort(topologies.begin(), topologies.end());
  std::string before;
  for (const fs::path& topology : topologies)
  {
    const std::string after = path(topology.stem().string() + ".kyinv");
    ASSERT_EQ(run("scan --topology " + topology.string() + " -o " + after).exitCode, 0);
    EXPECT_EQ(run("diff --order " + after + " " + after).exitCode, 0);
    if (!before.empty())
    {
      run("diff --json " + before + " " + after + " >" + path("d.json") + " #");
      const Outcome there = run("patch " + before + " " + path("d.json") + " --force -o " + path("there.kyinv"));
      EXPECT_EQ(there.exitCode, 0) << there.err;
      EXPECT_EQ(contentOf(path("there.kyinv")), contentOf(after)) << topology;
      EXPECT_EQ(run("patch --reverse " + path("there.kyinv") + " " + path("d.json")).exitCode, 0);
      EXPECT_EQ(contentOf(path("there.kyinv")), contentOf(before)) << topology;
    }
    before = after;
  }
  EXPECT_GT(topologies.size(), 1u);
}
#endif
}    // namespace
