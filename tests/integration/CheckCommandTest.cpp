// kyinventory check: what it prints, and its exit codes.
#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

class Check : public Tool
{
};

TEST_F(Check, soundFileIsFineWithExitCode0)
{
  const std::string file = store("a.kyinv", "ROOT/BOARD[2] NAME=\"I/O\"");
  const Outcome outcome = run("check " + file);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, file + ": fine\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Check, notesAloneAreExitCode0)
{
  const std::string file = store("a.kyinv", "ROOT description=\"rack 7\"");
  const Outcome outcome = run("check " + file);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out, file +
                             ": note at byte 25 (0x19), .: The description is not the name of the ID, ROOT. "
                             "(0x1502012)\n"
                             "    Nothing, if the description was chosen.\n" +
                             file + ": fine, 1 note\n");
}

TEST_F(Check, warningsAreExitCode1)
{
  const std::string file = store("a.kyinv", "ROOT/BOARD[2] SHARED_DATA_INDEX:UInt32=7");
  const Outcome outcome = run("check " + file);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out,
            file +
                ": warning at byte 34 (0x22), BOARD[2]: Internal error. Kyrel Support information: Item BOARD[2] "
                "references shared data item SHARED_DATA[7], but the shared data item does not exist. (0x1300815)\n"
                "    Correct the index, or add the shared data.\n" +
                file + ": 1 warning\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Check, damagedFileIsExitCode3WithTheOffsetInTheFile)
{
  std::string bytes = contentOf(store("a.kyinv", "ROOT NAME=\"I/O\""));
  bytes[bytes.size() - 25] = '\x07';    // the end of the root
  write("a.kyinv", "image" + bytes);
  const Outcome outcome = run("check " + path("a.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(
      outcome.out,
      path("a.kyinv") +
          ": error at byte 57 (0x39), NAME: The stored tree is damaged: the record is of an unknown kind; what was "
          "read last is NAME. (0x1502000)\n"
          "    Restore the file from a good copy, or have it written again.\n" +
          path("a.kyinv") + ": damaged, 1 error\n");
}

TEST_F(Check, sectionWithADamagedTrailerIsSavedAsTheRemedySays)
{
  std::string bytes = contentOf(store("a.kyinv", "ROOT NAME=\"I/O\""));
  const std::string before = bytes;
  bytes[bytes.size() - 9] = '\x02';    // the version
  write("a.kyinv", bytes);
  const std::string file = path("a.kyinv");
  const std::string at = std::to_string(bytes.size() - 24);
  const Outcome outcome = run("check " + file);
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, file + ": error at byte " + at +
                             " (0x35): The trailer is of version 2; only version 1 can be read. (0x1502004)\n"
                             "    Read it with a newer version of the library, or restore it from a good copy.\n" +
                             file +
                             ": note at byte 0 (0x0): The section at the start of the file reads as a tree; what is "
                             "damaged at the end keeps it from being read. (0x1502017)\n"
                             "    Save it: kyinventory extract FILE --at start -o NEW. Compare the tree with what it "
                             "should hold, and use NEW.\n" +
                             file + ": damaged, 1 error, 1 note\n");
  EXPECT_EQ(run("extract " + file + " --at start -o " + path("new")).exitCode, 0);
  EXPECT_EQ(contentOf(path("new")), before);
}

TEST_F(Check, controlCharactersOfFileNamesAreShownAsBytes)
{
  store("a\x1B[1m\nb", "ROOT");
  EXPECT_EQ(run("check '" + path("a\x1B[1m\nb") + "'").out, path("a\\x1B[1m\\x0Ab") + ": fine\n");
  EXPECT_EQ(run("check '" + path("no\x1B") + "'").out, path("no\\x1B") + ": error: Cannot read " + path("no\\x1B") +
                                                           ": No such file or directory. (0x1500000)\n"
                                                           "    Check the path and the permissions.\n" +
                                                           path("no\\x1B") + ": unreadable, 1 error\n");
}

TEST_F(Check, readingADamagedOrCutFileLeadsToIt)
{
  const std::string bytes = contentOf(store("a.kyinv", "ROOT NAME=\"I/O\""));
  std::string damaged = bytes;
  damaged[bytes.size() - 25] = '\x07';
  write("damaged", damaged);
  write("cut", bytes.substr(0, bytes.size() - 30));
  Outcome outcome = run("show " + path("damaged"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err.substr(outcome.err.find("kyinventory: what to do: ")),
            "kyinventory: what to do: Get the bytes from their source again; of a file, kyinventory check FILE tells "
            "where it is damaged.\n");
  outcome = run("get " + path("cut") + " NAME");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("cut") +
                             ": Cannot read from file. (0x1300005, readInventoryDataHeaderFromFile)\n"
                             "kyinventory: Error while reading inventory data from file " +
                             path("cut") +
                             ". (0x1300003, readInventoryDataFromFile)\n"
                             "kyinventory: what to do: kyinventory check FILE tells where; restore the file, and check "
                             "the medium.\n");
}

TEST_F(Check, theWorstOfSeveralFilesGivesTheExitCode)
{
  const std::string fine = store("fine", "ROOT");
  const std::string findings = store("findings", "ROOT/BOARD SHARED_DATA_INDEX:UInt32=7");
  EXPECT_EQ(run("check " + fine + " " + fine).exitCode, 0);
  EXPECT_EQ(run("check " + findings + " " + fine).exitCode, 1);
  const Outcome outcome = run("check " + path("missing") + " " + findings + " " + fine);
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out.find(path("missing") + ": error: Cannot read " + path("missing") +
                             ": No such file or directory. (0x1500000)\n"
                             "    Check the path and the permissions.\n" +
                             path("missing") + ": unreadable, 1 error\n" + findings + ": warning at"),
            0u)
      << outcome.out;
}

TEST_F(Check, manyFindingsOfOneCodeAreListedInPartUnlessAllAreAskedFor)
{
  std::string text = "ROOT";
  for (int n = 1; n <= 25; ++n)
    text += "; BOARD[" + std::to_string(n) + "] SHARED_DATA_INDEX:UInt32=9";
  const std::string file = store("a.kyinv", text);
  const Outcome some = run("check " + file);
  EXPECT_NE(some.out.find(file + ": 5 more of 0x1300815; --all lists them\n" + file + ": 25 warnings\n"),
            std::string::npos)
      << some.out;
  const Outcome all = run("check --all " + file);
  EXPECT_EQ(all.out.find(" more of "), std::string::npos);
  EXPECT_NE(all.out.find("BOARD[25]:"), std::string::npos);
}

TEST_F(Check, jsonIsAnArrayOfFiles)
{
  const std::string fine = store("fine", "ROOT");
  const Outcome outcome = run("check --json " + fine + " " + path("missing"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out,
            "[\n"
            "  {\n"
            "    \"file\": \"" +
                fine +
                "\",\n"
                "    \"verdict\": \"fine\",\n"
                "    \"errors\": 0,\n"
                "    \"warnings\": 0,\n"
                "    \"notes\": 0,\n"
                "    \"findings\": []\n"
                "  },\n"
                "  {\n"
                "    \"file\": \"" +
                path("missing") +
                "\",\n"
                "    \"verdict\": \"unreadable\",\n"
                "    \"errors\": 1,\n"
                "    \"warnings\": 0,\n"
                "    \"notes\": 0,\n"
                "    \"findings\": [\n"
                "      {\n"
                "        \"severity\": \"error\",\n"
                "        \"code\": 22020096,\n"
                "        \"codeText\": \"0x1500000\",\n"
                "        \"text\": \"Cannot read " +
                path("missing") +
                ": No such file or directory.\",\n"
                "        \"remedy\": \"Check the path and the permissions.\"\n"
                "      }\n"
                "    ]\n"
                "  }\n"
                "]\n");
}

TEST_F(Check, standardInputIsCheckedOnce)
{
  EXPECT_EQ(run("check - -").exitCode, 2);
  EXPECT_EQ(run("check - -").err, "kyinventory: standard input can stand for one file only\n");
  EXPECT_EQ(run("check -").out,    // nothing comes from there
            "standard input: error: standard input holds no inventory section, neither at its end nor at its start. "
            "(0x1500002)\n"
            "    Name a file with a section, or have the end of this one restored.\n"
            "standard input: damaged, 1 error\n");
}

TEST_F(Check, noFileIsWrongUsage) { EXPECT_EQ(run("check").exitCode, 2); }

#ifdef KY_HAVE_HOST
TEST_F(Check, treesOfRealMachinesAreFine)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  for (const auto& entry : fs::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    EXPECT_EQ(run("scan --force --topology " + entry.path().string() + " -o " + path("machine")).exitCode, 0);
    const Outcome outcome = run("check " + path("machine"));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    const Outcome bytes = run("inspect --bytes " + path("machine"));
    EXPECT_EQ(bytes.exitCode, 0) << bytes.err;
    EXPECT_EQ(bytes.out.find("not read"), std::string::npos);
  }
}
#endif
}    // namespace
