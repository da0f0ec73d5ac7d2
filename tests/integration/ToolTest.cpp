// The command-line tool, run as a program: what it prints, where, and its exit codes.
#include <regex>
#include <sstream>
#include <vector>

#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

TEST_F(Tool, helpIsPrintedWithExitCode0)
{
  const Outcome outcome = run("--help");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.out.find("scan"), std::string::npos);
  EXPECT_NE(outcome.out.find("show"), std::string::npos);
  EXPECT_NE(outcome.out.find("Exit codes:"), std::string::npos);
}

TEST_F(Tool, wrongUsageGivesExitCode2)
{
  EXPECT_EQ(run("").exitCode, 2);
  EXPECT_EQ(run("dance").exitCode, 2);
  EXPECT_EQ(run("show").exitCode, 2);
  storeSample("a.kyinv");
  EXPECT_EQ(run("show " + path("a.kyinv") + " --options 0x400000").exitCode, 2);
  EXPECT_EQ(run("show " + path("a.kyinv") + " --options fast").exitCode, 2);
  EXPECT_EQ(run("show " + path("a.kyinv") + " --options 0x").exitCode, 2);
  EXPECT_EQ(run("show " + path("a.kyinv") + " --options=-1").exitCode, 2);
  EXPECT_EQ(run("show " + path("a.kyinv") + " --options 010").exitCode, 0);    // decimal, not octal
  EXPECT_EQ(run("show " + path("a.kyinv") + " --depth -1").exitCode, 2);
  EXPECT_EQ(run("show " + path("a.kyinv") + " NO_SUCH_ID").exitCode, 2);
}

TEST_F(Tool, showPrintsTheWholeTreeAndTakesTextsLiterally)
{
  storeSample("a.kyinv");
  const Outcome outcome = run("show --options 0xC0000 " + path("a.kyinv"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD\">\n"
            "        <PARAM ID=\"NAME\" Type=\"String\">\n"
            "            <VALUE>100%s &lt;fast&gt;</VALUE>\n"
            "        </PARAM>\n"
            "        <ITEM ID=\"IOCHANNEL[3]\">\n"
            "            <PARAM ID=\"VOLTAGE_MAX\" Type=\"Float64\">\n"
            "                <VALUE>10.5</VALUE>\n"
            "                <UNIT>V</UNIT>\n"
            "            </PARAM>\n"
            "        </ITEM>\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "        <PARAM ID=\"SLOT_COUNT\" Type=\"UInt32\">\n"
            "            <VALUE>4</VALUE>\n"
            "        </PARAM>\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(Tool, showOfAnItemAddressPrintsThatItemAlone)
{
  storeSample("a.kyinv");
  const Outcome outcome = run("show " + path("a.kyinv") + " BOARD/IOCHANNEL[3] --options 0x8");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "<ITEM ID=\"IOCHANNEL[3]\">\n</ITEM>\n");
}

TEST_F(Tool, showOfAParameterAddressPrintsThatParameterAlone)
{
  storeSample("a.kyinv");
  const Outcome outcome = run("show " + path("a.kyinv") + " BOARD[2]/SLOT_COUNT --plain --options 0xC0001");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "SLOT_COUNT UInt32\n4\n");
}

TEST_F(Tool, showOfAMissingAddressSaysSoWithExitCode1)
{
  storeSample("a.kyinv");
  const Outcome outcome = run("show " + path("a.kyinv") + " BOARD[7]/NAME");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("a.kyinv") +
                ": BOARD[7]/NAME does not exist: the root item has no BOARD[7]. Did you mean BOARD[2] or BOARD? "
                "(0x1504000, lookUp)\n"
                "kyinventory: what to do: Correct the address; kyinventory find lists what is there. To set a "
                "parameter that is not there yet, use kyinventory set --create.\n");
}

TEST_F(Tool, showWithADepthLeavesDeeperItemsOut)
{
  storeSample("a.kyinv");
  EXPECT_EQ(run("show --options 0x8 --depth 0 " + path("a.kyinv")).out, "<ITEM ID=\"ROOT\">\n</ITEM>\n");
  EXPECT_EQ(run("show --options 0x8 --depth 1 " + path("a.kyinv")).out,
            "<ITEM ID=\"ROOT\">\n"
            "    <ITEM ID=\"BOARD\">\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"BOARD[2]\">\n"
            "    </ITEM>\n"
            "</ITEM>\n");
}

TEST_F(Tool, showReadsASectionBehindOtherContent)
{
  const std::string section = storeSample("a.kyinv");
  write("image.bin", std::string(1000, 'x') + section);
  EXPECT_EQ(run("show " + path("image.bin")).out, run("show " + path("a.kyinv")).out);
}

TEST_F(Tool, aFileWithoutASectionGetsAMessageOfTheToolsOwnAndExitCode3)
{
  write("plain.txt", std::string(100, 'x'));
  const Outcome outcome = run("show " + path("plain.txt"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("plain.txt") +
                " holds no inventory section, neither at its end nor at its start. (0x1500002, readTree)\n"
                "kyinventory: what to do: Check that it is the right file; get it from its source again.\n");
}

TEST_F(Tool, aMissingFileIsNamedWithExitCode3)
{
  const Outcome outcome = run("show " + path("missing.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err,
            "kyinventory: Cannot read " + path("missing.kyinv") +
                ": No such file or directory. (0x1500000, readBytes)\n"
                "kyinventory: what to do: Check the path and the permissions; see what the system says.\n");
}

TEST_F(Tool, aFolderIsRefusedWithExitCode3)
{
  const Outcome outcome = run("show " + m_folder.path());
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: " + m_folder.path() +
                             " is a folder. (0x1500001, readBytes)\n"
                             "kyinventory: what to do: Name a file in it.\n");
}

TEST_F(Tool, aDamagedSectionGivesItsReportsAndExitCode3)
{
  std::string section = storeSample("a.kyinv");
  section[24] = '\x7F';    // the stream's version
  write("damaged.kyinv", section);
  const Outcome outcome = run("show " + path("damaged.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("Cannot deserialize inventory tree. (0x1302801, deserialize)"), std::string::npos);
  EXPECT_NE(outcome.err.find("Cannot deserialize inventory data from file"), std::string::npos);
}

TEST_F(Tool, aFullOutputDeviceGivesExitCode4)
{
  storeSample("a.kyinv");
  const Outcome outcome = run("show " + path("a.kyinv") + " >/dev/full 2>" + path("full.txt") + " ; exit $? #");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(contentOf(path("full.txt")), "kyinventory: standard output: No space left on device\n");
}

TEST_F(Tool, messagesAreOneLineWithoutControlCharacters)
{
  const Outcome outcome = run("show \"$(printf 'a\\nb\\033c\\302\\233d\\303\\251')\"");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err.rfind("kyinventory: Cannot read a\\x0Ab\\x1Bc\\xC2\\x9Bd\xC3\xA9: ", 0), 0u) << outcome.err;
}

TEST_F(Tool, scanWithAnEmptyFileNameIsWrongUsage)
{
  for (const char* const arguments : {"scan --topology ''", "scan -o ''"})
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(outcome.out, "") << arguments;
    EXPECT_NE(outcome.err.find("must not be empty"), std::string::npos) << outcome.err;
  }
}

TEST_F(Tool, showSharedMarksWhatAnItemHasFromItsSharedItem)
{
  const std::string a =
      store("a.kyinv",
            "ROOT/SHARED_DATA[2] SIZE=16 NAME=\"shared\"; SHARED_DATA[2]/CPU OFFSET=5\n"
            "SHARED_DATA[2]/DEVICE ID=6; BOARD[7] SHARED_DATA_INDEX:UInt32=2 NAME=\"own\"; BOARD[7]/CPU");
  const Outcome outcome = run("show --shared " + a + " BOARD[7] --options 0xC0000");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "<ITEM ID=\"BOARD[7]\" Descr=\"BOARD\">\n"
            "    <PARAM ID=\"SHARED_DATA_INDEX\" Descr=\"SHARED_DATA_INDEX\" Type=\"UInt32\">\n"
            "        <VALUE>2</VALUE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"NAME\" Descr=\"NAME\" Type=\"String\">\n"
            "        <VALUE>own</VALUE>\n"
            "    </PARAM>\n"
            "    <PARAM ID=\"SIZE\" Descr=\"shared: SHARED_DATA[2]/SIZE\" Type=\"Int32\">\n"
            "        <VALUE>16</VALUE>\n"
            "    </PARAM>\n"
            "    <ITEM ID=\"CPU\" Descr=\"CPU\">\n"
            "        <PARAM ID=\"OFFSET\" Descr=\"shared: SHARED_DATA[2]/CPU/OFFSET\" Type=\"Int32\">\n"
            "            <VALUE>5</VALUE>\n"
            "        </PARAM>\n"
            "    </ITEM>\n"
            "    <ITEM ID=\"DEVICE\" Descr=\"shared: SHARED_DATA[2]/DEVICE\">\n"
            "        <PARAM ID=\"ID\" Descr=\"ID\" Type=\"Int32\">\n"
            "            <VALUE>6</VALUE>\n"
            "        </PARAM>\n"
            "    </ITEM>\n"
            "</ITEM>\n");
  EXPECT_EQ(run("show " + a + " BOARD[7]/SIZE").exitCode, 1) << "without --shared nothing is linked";
  EXPECT_EQ(run("show --shared " + a + " BOARD[7]/CPU/OFFSET --plain --options 0xC0001").out,
            "OFFSET shared: SHARED_DATA[2]/CPU/OFFSET Int32\n5\n");
}

TEST_F(Tool, showSharedWritesWarningsToStandardErrorWithExitCode0)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD[7] SHARED_DATA_INDEX:UInt32=2");
  const Outcome outcome = run("show --shared " + a + " BOARD[7] --options 0x8");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "<ITEM ID=\"BOARD[7]\" Descr=\"BOARD\">\n</ITEM>\n");
  EXPECT_EQ(outcome.err, "kyinventory: " + a +
                             ": Internal error. Kyrel Support information: Item BOARD[7] references shared data item "
                             "SHARED_DATA[2], but the shared data item does not exist. (0x1300815, linkSharedData)\n");
}

TEST_F(Tool, mergeMakesOneTreeOfSeveral)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"a\"; BOARD[1] SIZE=1");
  const std::string b = store("b.kyinv", "ROOT NAME=\"b\" OFFSET=2; BOARD[1] SIZE=3 OFFSET=4");
  const std::string c = store("c.kyinv", "ROOT/BOARD[2]/CPU SIZE=5");
  const Outcome outcome = run("merge " + a + " " + b + " " + c + " -o " + path("all.kyinv"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(difference("all.kyinv", "ROOT NAME=\"a\" OFFSET=2; BOARD[1] SIZE=1 OFFSET=4; BOARD[2]/CPU SIZE=5"), "");
}

TEST_F(Tool, mergeWithoutParametersTakesThoseOfNewItemsAlone)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD[1] SIZE=1");
  const std::string b = store("b.kyinv", "ROOT OFFSET=2; BOARD[1] OFFSET=4; BOARD[2] SIZE=5");
  EXPECT_EQ(run("merge --no-parameters " + a + " " + b + " -o " + path("all.kyinv")).exitCode, 0);
  EXPECT_EQ(difference("all.kyinv", "ROOT/BOARD[1] SIZE=1; BOARD[2] SIZE=5"), "");
}

TEST_F(Tool, mergeNamesTheFileAndTheAddressOfEachReportWithExitCode1)
{
  const std::string a = store("a.kyinv", "ROOT CPU=1; BOARD/IOCHANNEL/SIZE");
  const std::string b = store("b.kyinv", "ROOT/CPU/DEVICE; BOARD/IOCHANNEL SIZE=2; BOARD/DEVICE");
  const Outcome outcome = run("merge " + a + " " + b + " -o " + path("all.kyinv"));
  const std::string internal = "Internal error. Kyrel Support information: ";
  const std::string exists = internal + "Cannot create or add item or parameter with ID ";
  const std::string cannotMerge = internal + "Cannot merge inventory tree. (0x1300803, mergeTree)\n";
  const std::string subject = "kyinventory: " + b + ": ";
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err,
            subject + "CPU: " + exists + "CPU at root item. The ID already exists. (0x130081A, mergeTree)\n" + subject +
                "BOARD/IOCHANNEL/SIZE: " + exists +
                "SIZE at BOARD/IOCHANNEL. The ID already exists. (0x130081A, addParameter)\n" + subject +
                "BOARD/IOCHANNEL/SIZE: " + cannotMerge + subject + "BOARD/IOCHANNEL: " + cannotMerge + subject +
                "BOARD: " + cannotMerge + "kyinventory: stored in " + path("all.kyinv") + " all the same\n");
  EXPECT_EQ(difference("all.kyinv", "ROOT CPU=1; BOARD/IOCHANNEL/SIZE"), "");
}

TEST_F(Tool, mergeWritesOverAnExistingFileOnlyWhenForcedAndOverNoInput)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD[1]");
  const std::string b = store("b.kyinv", "ROOT/BOARD[2]");
  fs::create_symlink("b.kyinv", path("link.kyinv"));
  Outcome outcome = run("merge " + a + " " + b + " -o " + path("link.kyinv"));
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("link.kyinv") + ": is an input as well; name another file with -o\n");
  EXPECT_EQ(difference("b.kyinv", "ROOT/BOARD[2]"), "");

  write("old.kyinv", "old");
  outcome = run("merge " + a + " " + b + " -o " + path("old.kyinv"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("old.kyinv") + ": exists already; --force writes over it\n");
  EXPECT_EQ(contentOf(path("old.kyinv")), "old");

  EXPECT_EQ(run("merge --force " + a + " " + b + " -o " + path("old.kyinv")).exitCode, 0);
  EXPECT_EQ(difference("old.kyinv", "ROOT/BOARD[1]; BOARD[2]"), "");
  EXPECT_EQ(run("merge --force " + a + " " + b + " -o " + b).exitCode, 2);
  EXPECT_EQ(difference("b.kyinv", "ROOT/BOARD[2]"), "");
}

TEST_F(Tool, mergeWithAnUnreadableInputWritesNothingWithExitCode3)
{
  const std::string a = store("a.kyinv", "ROOT/BOARD[1]");
  EXPECT_EQ(run("merge " + a + " " + path("missing.kyinv") + " -o " + path("all.kyinv")).exitCode, 3);
  EXPECT_FALSE(fs::exists(path("all.kyinv")));
}

TEST_F(Tool, mergeNeedsTwoInputsAndAnOutput)
{
  const std::string a = store("a.kyinv", "ROOT");
  EXPECT_EQ(run("merge " + a + " -o " + path("all.kyinv")).exitCode, 2);
  EXPECT_EQ(run("merge " + a + " " + a).exitCode, 2);
}

TEST_F(Tool, mergeOfAFileWithItselfGivesThatFile)
{
  const std::string a = store("a.kyinv", "ROOT NAME=\"a\"; BOARD[2]/CPU SIZE=1");
  EXPECT_EQ(run("merge " + a + " " + a + " -o " + path("all.kyinv")).exitCode, 0);
  EXPECT_EQ(contentOf(path("all.kyinv")), contentOf(a));
}

TEST_F(Tool, watchRefusesWrongArgumentsAndNamesTheBounds)
{
  for (const char* const interval : {"0", "0.009", "86400.1", "-1", "fast", "nan", "inf", "1e1", "1,5", "1s", "0x1"})
  {
    const Outcome outcome = run(std::string("watch --count 1 --interval=") + interval);
    EXPECT_EQ(outcome.exitCode, 2) << interval;
    EXPECT_EQ(outcome.out, "") << interval;
    EXPECT_NE(outcome.err.find("--interval: must be a number of seconds from 0.01 to 86400"), std::string::npos)
        << outcome.err;
  }
  for (const char* const count : {"0", "-1", "1000000001", "4294967297", "many", "1.5"})
  {
    const Outcome outcome = run(std::string("watch --count=") + count);
    EXPECT_EQ(outcome.exitCode, 2) << count;
    EXPECT_NE(outcome.err.find("--count: must be a whole number from 1 to 1000000000"), std::string::npos)
        << outcome.err;
  }
  EXPECT_EQ(run("watch everything").exitCode, 2);
}

#ifdef KY_HAVE_HOST
// "2026-03-01T12:00:00.123Z", address, old value, new value, unit.
const char* const watchLine =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}Z"
    "\t[A-Z0-9_/]+(\\[[0-9]+\\][A-Z0-9_/]*)*\t[^\t]*\t[^\t]+\t[^\t]*";

std::vector<std::string> linesOf(const std::string& text)
{
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

TEST_F(Tool, watchPrintsOneTabSeparatedLineForEachChange)
{
  const Outcome outcome = run("watch --count 2 --interval 0.1");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  unsigned int uptimes = 0;
  for (const std::string& line : linesOf(outcome.out))
  {
    EXPECT_TRUE(std::regex_match(line, std::regex(watchLine))) << line;
    uptimes += line.find("\tOS_INFO/TIMER\t") != std::string::npos;
  }
  EXPECT_EQ(uptimes, 2u) << outcome.out;
}

TEST_F(Tool, watchPrintsAllValuesFirstWhenAskedTo)
{
  const Outcome outcome = run("watch --initial --count 1 --interval 0.05");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  unsigned int initial = 0;
  for (const std::string& line : linesOf(outcome.out))
  {
    EXPECT_TRUE(std::regex_match(line, std::regex(watchLine))) << line;
    initial += line.find("\tOS_INFO/TIMER\t\t") != std::string::npos;
  }
  EXPECT_EQ(initial, 1u) << outcome.out;
}

TEST_F(Tool, watchEndsWithExitCode0WhenInterrupted)
{
  for (const char* const signal : {"INT", "TERM"})
  {
    const std::string out = path("watched.txt");
    // The first line tells that it watches: only then the signal is sent.
    const std::string script = std::string("rm -f ") + out +
                               "; timeout --foreground -s KILL 60 env --default-signal=INT " + kyToolPath +
                               " watch --initial --interval 86400 >" + out + " & n=0; until [ -s " + out +
                               " ] || [ $n = 500 ]; do sleep 0.1; n=$((n+1)); done; kill -" + signal + " $!; wait $!";
    const int status = std::system(("bash -c '" + script + "'").c_str());
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0) << signal;
    EXPECT_NE(contentOf(out).find("OS_INFO/TIMER"), std::string::npos) << signal;
  }
}

TEST_F(Tool, watchEndsQuietlyWhenItsReaderIsGone)
{
  const std::string err = path("closed.txt");
  const std::string script = std::string("timeout 60 ") + kyToolPath + " watch --interval 0.05 2>" + err +
                             " | head -n 1 >/dev/null; [ ${PIPESTATUS[0]} = 141 ]";
  EXPECT_EQ(std::system(("bash -c '" + script + "'").c_str()), 0);
  EXPECT_EQ(contentOf(err), "");
}

TEST_F(Tool, watchIntoAFullDeviceGivesExitCode4)
{
  const Outcome outcome = run("watch --count 1 --interval 0.05 >/dev/full 2>" + path("full.txt") + " ; exit $? #");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(contentOf(path("full.txt")), "kyinventory: standard output: No space left on device\n");
}

TEST_F(Tool, scanIntoADeviceOrAPipeDoesNotReadItBack)
{
  const Outcome device = run("scan -o /dev/null");
  EXPECT_EQ(device.exitCode, 0) << device.err;
  EXPECT_EQ(device.err, "");
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  const std::string reader = "cat " + path("pipe") + " >" + path("piped.kyinv") + " & ";
  ASSERT_EQ(std::system((reader + "timeout 60 " + kyToolPath + " scan -o " + path("pipe") + " && wait").c_str()), 0);
  EXPECT_EQ(contentOf(path("piped.kyinv")).substr(0, 4), "INVE");
}

TEST_F(Tool, scanWritesOverAnExistingFileOnlyWhenForced)
{
  write("old.kyinv", "old");
  const Outcome outcome = run("scan -o " + path("old.kyinv"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "kyinventory: " + path("old.kyinv") + ": exists already; --force writes over it\n");
  EXPECT_EQ(contentOf(path("old.kyinv")), "old");
}

TEST_F(Tool, scanOfThisMachineStoresAFileThatShowPrintsAsScanDoes)
{
  const Outcome stored = run("scan -o " + path("machine.kyinv"));
  EXPECT_EQ(stored.exitCode, 0) << stored.err;
  EXPECT_EQ(stored.out, "");
  EXPECT_NE(stored.err.find("read back equal"), std::string::npos);
  const Outcome shown = run("show " + path("machine.kyinv"));
  EXPECT_EQ(shown.exitCode, 0);
  EXPECT_EQ(shown.out.rfind("<ITEM ID=\"ROOT\">\n", 0), 0u);
}

TEST_F(Tool, scanIntoAMissingFolderFailsWithExitCode4)
{
  const Outcome outcome = run("scan -o " + path("missing/machine.kyinv"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_NE(outcome.err.find(": No such file or directory. (0x1500003, writeBytes)"), std::string::npos);
}

TEST_F(Tool, scanKeepsThePermissionsOfTheFileItReplacesAndLeavesNothingBeside)
{
  write("machine.kyinv", "old");
  ASSERT_EQ(::chmod(path("machine.kyinv").c_str(), 0640), 0);
  EXPECT_EQ(run("scan --force -o " + path("machine.kyinv")).exitCode, 0);
  struct stat file = {};
  ASSERT_EQ(::stat(path("machine.kyinv").c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 07777, 0640u);
  unsigned int files = 0;
  for (const auto& entry : fs::directory_iterator(m_folder.path()))
    files += entry.path().filename().string().find("machine") == 0;
  EXPECT_EQ(files, 1u);
}

TEST_F(Tool, scanReplacesWhatALinkLeadsToAndKeepsTheLink)
{
  write("real.kyinv", "old");
  fs::create_symlink("real.kyinv", path("link.kyinv"));
  EXPECT_EQ(run("scan --force -o " + path("link.kyinv")).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(path("link.kyinv")));
  EXPECT_EQ(contentOf(path("real.kyinv")).substr(0, 4), "INVE");
}

TEST_F(Tool, scanIntoALinkThatLeadsNowhereFailsWithExitCode4AndKeepsTheLink)
{
  fs::create_symlink("nowhere.kyinv", path("link.kyinv"));
  const Outcome outcome = run("scan -o " + path("link.kyinv"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: Cannot write " + path("link.kyinv") +
                             ": it is a link that leads to no file. (0x1500004, writeBytes)\n"
                             "kyinventory: what to do: Remove the link, or make what it leads to.\n");
  EXPECT_TRUE(fs::is_symlink(path("link.kyinv")));
}

TEST_F(Tool, scanOfABrokenTopologyFileFailsWithExitCode3AndLeavesTheTargetAlone)
{
  write("broken.xml", "<topology><object");
  write("machine.kyinv", "old");
  const Outcome outcome = run("scan --force --topology " + path("broken.xml") + " -o " + path("machine.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_NE(outcome.err.find(path("broken.xml")), std::string::npos);
  EXPECT_EQ(contentOf(path("machine.kyinv")), "old");
}

TEST_F(Tool, topologyFilesOfRealMachinesScanTwiceToTheSameBytes)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  unsigned int files = 0;
  for (const auto& entry : fs::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    ++files;
    const std::string scan = "scan --force --topology " + entry.path().string() + " -o ";
    EXPECT_EQ(run(scan + path("first.kyinv")).exitCode, 0);
    EXPECT_EQ(run("show " + path("first.kyinv")).exitCode, 0);
    EXPECT_EQ(run(scan + path("second.kyinv")).exitCode, 0);
    EXPECT_EQ(contentOf(path("first.kyinv")), contentOf(path("second.kyinv"))) << entry.path();
  }
  EXPECT_GT(files, 0u);
}

TEST_F(Tool, mergeTakesTwoRealMachines)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  std::string inputs;
  unsigned int files = 0;
  for (const auto& entry : fs::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml" || files == 2) continue;
    const std::string scanned = path("machine" + std::to_string(++files) + ".kyinv");
    EXPECT_EQ(run("scan --topology " + entry.path().string() + " -o " + scanned).exitCode, 0);
    inputs += " " + scanned;
  }
  ASSERT_EQ(files, 2u);
  const Outcome outcome = run("merge" + inputs + " -o " + path("both.kyinv"));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(run("show " + path("both.kyinv")).exitCode, 0);
}
#else
TEST_F(Tool, scanAndWatchSayThatThisBuildCannotTakeInventories)
{
  for (const char* const command : {"scan", "watch"})
  {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 3) << command;
    EXPECT_NE(outcome.err.find("cannot take inventories"), std::string::npos) << command;
  }
}
#endif
}    // namespace
