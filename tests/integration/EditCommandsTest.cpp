// kyinventory set, rm and rename: what they change, what they refuse, and that a file changes wholly or not at all.
#include "integration/KyToolTest.h"

namespace
{
class EditCommands : public Tool
{
protected:
  std::string sample() const { return store("a.kyinv", "ROOT NAME=\"rack\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/CPU"); }

  // Runs a command that must fail and leave the file as it was.
  void expectRefused(const std::string& arguments, int exitCode, const std::string& err) const
  {
    const std::string before = contentOf(path("a.kyinv"));
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, exitCode) << arguments;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, err) << arguments;
    EXPECT_EQ(contentOf(path("a.kyinv")), before) << arguments;
  }
};
}    // namespace

TEST_F(EditCommands, aPipeIsNotChangedInPlace)
{
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  const Outcome outcome = run("set " + path("pipe") + " SYSTEMNAME=x");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("pipe") + ": only ordinary files are changed in place; name a file with -o\n");
}

TEST_F(EditCommands, setChangesSeveralValuesInPlace)
{
  const std::string a = sample();
  const Outcome outcome = run("set " + a + " BOARD/SIZE=-32768 'NAME=a=b' BOARD/ID=0x10");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"a=b\"; BOARD SIZE:Int16=-32768 ID=16; BOARD[2]/CPU"), "");
}

TEST_F(EditCommands, setTakesTheEmptyTextAsAValue)
{
  EXPECT_EQ(run("set " + sample() + " NAME=").exitCode, 0);
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/CPU"), "");
}

TEST_F(EditCommands, setKeepsTheValueWhenOnlyOptionsAreGiven)
{
  EXPECT_EQ(run("set " + sample() + " BOARD/SIZE --unit kB --relevance 4294967295 --modifiable yes").exitCode, 0);
  EXPECT_EQ(
      difference("a.kyinv",
                 "ROOT NAME=\"rack\"; BOARD SIZE Int16 1 unit=\"kB\" modifiable relevance=4294967295; BOARD ID=2; "
                 "BOARD[2]/CPU"),
      "");
  EXPECT_EQ(run("set " + path("a.kyinv") + " BOARD/SIZE=1 --unit '' --relevance 0 --modifiable no").exitCode, 0);
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"rack\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/CPU"), "");
}

TEST_F(EditCommands, setCreatesParametersWithTheItemsOnTheWay)
{
  const std::string a = sample();
  EXPECT_EQ(run("set " + a + " BOARD[3]/CPU/VERSION=1.2 --create version --unit x --relevance 3").exitCode, 0);
  EXPECT_EQ(
      difference("a.kyinv",
                 "ROOT NAME=\"rack\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/CPU; BOARD[3]/CPU VERSION Version 1.2.0.0 "
                 "unit=\"x\" relevance=3"),
      "");
}

TEST_F(EditCommands, setReportsAValueThatTheTypeDoesNotTake)
{
  const std::string a = sample();
  const std::string noValue =
      "\"70000\" is not a value of type Int16, which takes whole numbers from -32768 to 32767. ";
  const std::string whatToDo = "kyinventory: what to do: Give a value that the type takes.\n";
  expectRefused("set " + a + " NAME=new BOARD/SIZE=70000", 2,
                "kyinventory: " + a + ": BOARD/SIZE: " + noValue + "(0x1500803, setValueText)\n" + whatToDo);
  expectRefused("set " + path("missing.kyinv") + " BOARD/SIZE=70000 --create Int16", 2,
                "kyinventory: BOARD/SIZE: " + noValue + "(0x1500803, createParameter)\n" + whatToDo);
}

TEST_F(EditCommands, setReportsAMissingParameterWithTheNearest)
{
  const std::string a = sample();
  expectRefused("set " + a + " NAME=new BOARD/SERIAL=5", 1,
                "kyinventory: " + a +
                    ": BOARD/SERIAL does not exist: BOARD has no SERIAL. "
                    "(0x1504000, lookUp)\n"
                    "kyinventory: what to do: Correct the address; kyinventory find lists what is there. To set a "
                    "parameter that is not there yet, use kyinventory set --create.\n");
}

TEST_F(EditCommands, setReportsItemsAndOtherTypes)
{
  const std::string a = sample();
  expectRefused("set " + a + " BOARD=5", 1,
                "kyinventory: " + a +
                    ": BOARD names an item; only parameters have a value, a unit, a modifiable flag and a relevance. "
                    "(0x1504005, changeParameter)\n"
                    "kyinventory: what to do: Name a parameter.\n");
  expectRefused("set " + a + " BOARD/SIZE=5 --create Int8", 1,
                "kyinventory: " + a +
                    ": BOARD/SIZE exists and is of type Int16; it cannot be created as Int8. (0x1504004, "
                    "changeParameter)\n"
                    "kyinventory: what to do: Leave out the type to set its value, or remove the parameter first.\n");
}

TEST_F(EditCommands, setTellsWherePredefinedIdsAreListed)
{
  const std::string a = sample();
  expectRefused("set " + a + " 70000/SIZE=1 --create UInt8", 1,
                "kyinventory: " + a +
                    ": Cannot assign non-predefined ID 70000 to item or parameter. (0x130080A, addPath)\n"
                    "kyinventory: " +
                    a +
                    ": Cannot find or create path. (0x1300809, createParameter)\n"
                    "kyinventory: what to do: Use a predefined ID: kyinventory ids lists them; in C++ they are the "
                    "constants of KyNInventoryIDs.\n");
}

TEST_F(EditCommands, setChecksTheCommandLineBeforeTheFile)
{
  const std::string a = path("missing.kyinv");
  EXPECT_EQ(run("set " + a).exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAME=x --create Text").exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAME=x --relevance -1").exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAME=x --relevance 4294967296").exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAME=x --modifiable maybe").exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAMEX=x").exitCode, 2);
  EXPECT_EQ(run("set " + a + " NAME=x --unit " + std::string(101, 'u')).exitCode, 2);
  EXPECT_EQ(run("set - NAME=x").exitCode, 2);
  Outcome outcome = run("set " + a + " NAME");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: NAME: has no value; write ADDRESS=VALUE\n");
  outcome = run("set " + a + " NAME --create String");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: NAME: has no value; write ADDRESS=VALUE\n");
  EXPECT_EQ(run("set " + a + " NAME=x").exitCode, 3);
}

TEST_F(EditCommands, setStoresACopyWhereTheOptionSays)
{
  const std::string a = sample();
  const std::string before = contentOf(a);
  EXPECT_EQ(run("set " + a + " NAME=new -o " + path("b.kyinv")).exitCode, 0);
  EXPECT_EQ(contentOf(a), before);
  EXPECT_EQ(difference("b.kyinv", "ROOT NAME=\"new\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/CPU"), "");
  const Outcome again = run("set " + a + " NAME=newer -o " + path("b.kyinv"));
  EXPECT_EQ(again.exitCode, 4);
  EXPECT_EQ(again.err, "kyinventory: " + path("b.kyinv") + ": exists already; --force writes over it\n");
  EXPECT_EQ(run("set " + a + " NAME=newer --force -o " + path("b.kyinv")).exitCode, 0);
  EXPECT_EQ(run("get " + path("b.kyinv") + " NAME").out, "newer\n");
}

TEST_F(EditCommands, setKeepsWhatStandsAroundTheSection)
{
  const std::string section = contentOf(sample());
  write("image.bin", "firmware" + section);
  EXPECT_EQ(run("set " + path("image.bin") + " NAME=longer-than-before").exitCode, 0);
  EXPECT_EQ(contentOf(path("image.bin")).substr(0, 12), "firmwareINVE");
  EXPECT_EQ(run("get " + path("image.bin") + " NAME").out, "longer-than-before\n");
}

TEST_F(EditCommands, aDamagedFileIsNeverWritten)
{
  std::string section = contentOf(sample());
  section[24] = '\x7F';
  write("a.kyinv", section);
  for (const std::string command : {"set ", "rm ", "rename "})
  {
    const std::string rest = command == "set " ? " NAME=x" : command == "rm " ? " NAME" : " BOARD CPU";
    EXPECT_EQ(run(command + path("a.kyinv") + rest).exitCode, 3);
    EXPECT_EQ(contentOf(path("a.kyinv")), section);
  }
}

TEST_F(EditCommands, removeTakesItemsAndParametersAway)
{
  const std::string a = sample();
  const Outcome outcome = run("rm " + a + " BOARD[2] BOARD/SIZE BOARD[2]/CPU");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"rack\"; BOARD ID=2"), "");
}

TEST_F(EditCommands, removeRefusesTheRootAndWhatIsMissing)
{
  const std::string a = sample();
  expectRefused("rm " + a + " NAME . BOARD[2]/ID", 1,
                "kyinventory: " + a +
                    ": The root item cannot be removed. (0x1504002, removeNodes)\n"
                    "kyinventory: " +
                    a +
                    ": BOARD[2]/ID does not exist: BOARD[2] has no ID. (0x1504000, lookUp)\n"
                    "kyinventory: what to do: Name what is to be removed below it.\n");
  EXPECT_EQ(run("rm " + a + " BOARD/").exitCode, 2);
  EXPECT_EQ(run("rm " + a).exitCode, 2);
}

TEST_F(EditCommands, removeAsksForAllWhereSiblingsShareAnAddress)
{
  KySampleTree tree("ROOT/BOARD ID=1; BOARD[2] ID=2; CPU");
  tree.item("BOARD[2]")->setID(KyNInventoryIDs::BOARD[1]);
  KyTestPool pool;
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, &tree.root());
  write("a.kyinv", std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition()));
  const std::string a = path("a.kyinv");
  const Outcome found = run("find " + a + " BOARD/ID");
  if (found.out != "BOARD/ID\t1\t\nBOARD/ID\t2\t\n") GTEST_SKIP() << "reading keeps no siblings of one address";
  expectRefused("rm " + a + " BOARD", 1,
                "kyinventory: " + a +
                    ": BOARD names 2 items and parameters. (0x1504001, removeNodes)\n"
                    "kyinventory: what to do: Give one of them another ID first (kyinventory rename), or remove all of "
                    "them (kyinventory rm --all).\n");
  EXPECT_EQ(run("rm --all " + a + " BOARD").exitCode, 0);
  EXPECT_EQ(difference("a.kyinv", "ROOT/CPU"), "");
}

TEST_F(EditCommands, renameGivesAnItemAnotherId)
{
  const std::string a = sample();
  const Outcome outcome = run("rename " + a + " BOARD[2]/CPU DEVICE[7]");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"rack\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/DEVICE[7]"), "");
}

TEST_F(EditCommands, renameTakesTheNumberOfAPredefinedId)
{
  EXPECT_EQ(run("rename " + sample() + " BOARD[2]/CPU 585[7]").exitCode, 0);
  EXPECT_EQ(difference("a.kyinv", "ROOT NAME=\"rack\"; BOARD SIZE:Int16=1 ID=2; BOARD[2]/BOARD[7]"), "");
  expectRefused("rename " + path("missing.kyinv") + " BOARD 99999", 2,
                "kyinventory: rename: 99999 is not an inventory ID. (0x1500800, renameItem)\n"
                "kyinventory: what to do: Correct the name; kyinventory ids lists all of them.\n");
}

TEST_F(EditCommands, renameRefusesWhatIsTaken)
{
  const std::string a = sample();
  const std::string whatToDo = "kyinventory: what to do: Choose an ID and index that are free.\n";
  expectRefused("rename " + a + " BOARD BOARD[2]", 1,
                "kyinventory: " + a +
                    ": BOARD cannot get the ID BOARD[2]: the root item has an item or a parameter of this ID already. "
                    "(0x1504003, renameItem)\n" +
                    whatToDo);
  expectRefused("rename " + a + " BOARD NAME", 1,
                "kyinventory: " + a +
                    ": BOARD cannot get the ID NAME: the root item has an item or a parameter of this ID already. "
                    "(0x1504003, renameItem)\n" +
                    whatToDo);
  expectRefused("rename " + a + " NAME CPU", 1,
                "kyinventory: " + a +
                    ": NAME names a parameter; only items can get another ID. (0x1504007, renameItem)\n"
                    "kyinventory: what to do: Create a parameter of the other ID, and remove this one.\n");
  expectRefused("rename " + a + " BOARD CPU/CPU", 2,
                "kyinventory: rename: \"CPU/CPU\" is not one element of an address, such as BOARD[2]. (0x1500802, "
                "readElement)\n"
                "kyinventory: what to do: Give one ID, with an index where it is not 1.\n");
  EXPECT_EQ(run("rename " + a + " BOARD").exitCode, 2);
}

#ifdef KY_HAVE_HOST
TEST_F(EditCommands, realMachinesAreChangedAndTakenApart)
{
  const std::filesystem::path folder = std::filesystem::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  const std::string tool = kyToolPath;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    const std::string file = path("machine.kyinv");
    ASSERT_EQ(run("scan --force --topology " + entry.path().string() + " -o " + file).exitCode, 0);
    const std::string all = "$(" + tool + " find --parameters " + file + " '**' | cut -f1)";
    EXPECT_EQ(run("set " + file + " --relevance 9 " + all).exitCode, 0) << entry.path();
    EXPECT_EQ(run("get --all " + file + " " + all + " | cut -f6 | sort -u >" + path("unique.txt") + " #").exitCode, 0);
    EXPECT_EQ(contentOf(path("unique.txt")), "9\n");
    EXPECT_EQ(run("rm " + file + " $(" + tool + " find " + file + " '*/**' | cut -f1)").exitCode, 0) << entry.path();
    EXPECT_EQ(run("find " + file + " '**'").out, ".\t\t\n");
  }
}
#endif

TEST_F(EditCommands, standardInputAndOutputMakeAPipe)
{
  const std::string a = sample();
  const std::string tool = kyToolPath;
  const std::string pipe = "rm - BOARD[2] -o - <" + a + " 2>/dev/null | " + tool + " rename - BOARD CPU -o - | " +
                           tool + " set - CPU/ID=9 -o " + path("b.kyinv") + " #";
  EXPECT_EQ(run(pipe).exitCode, 0);
  EXPECT_EQ(difference("b.kyinv", "ROOT NAME=\"rack\"; CPU SIZE:Int16=1 ID=9"), "");
}
