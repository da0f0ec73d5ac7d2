// kyinventory append, extract and strip: sections at the ends of images.
#include <sys/stat.h>

#include "integration/KyToolTest.h"

namespace
{
class Image : public Tool
{
protected:
  Image()
  {
    m_section = contentOf(store("section", "ROOT/CPU[2] SIZE=7"));
    m_other = contentOf(store("other", "ROOT"));
    write("image", "firmware");
  }
  // Runs a command that is to succeed without a word.
  void expectSilence(const std::string& arguments)
  {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
  }

  std::string m_section;
  std::string m_other;
};

TEST_F(Image, appendExtractAndStripInPlace)
{
  expectSilence("append " + path("image") + " " + path("section"));
  EXPECT_EQ(contentOf(path("image")), "firmware" + m_section);
  expectSilence("extract " + path("image") + " -o " + path("extracted"));
  EXPECT_EQ(contentOf(path("extracted")), m_section);
  expectSilence("strip " + path("image"));
  EXPECT_EQ(contentOf(path("image")), "firmware");
}

TEST_F(Image, sectionAtTheStart)
{
  expectSilence("append --at start " + path("image") + " " + path("section"));
  EXPECT_EQ(contentOf(path("image")), m_section + "firmware");
  EXPECT_EQ(run("show " + path("image")).exitCode, 0);
  expectSilence("strip " + path("image"));
  EXPECT_EQ(contentOf(path("image")), "firmware");
}

TEST_F(Image, outputIsAnotherFileAndTheImageStays)
{
  expectSilence("append " + path("image") + " " + path("section") + " -o " + path("new"));
  EXPECT_EQ(contentOf(path("image")), "firmware");
  EXPECT_EQ(contentOf(path("new")), "firmware" + m_section);
  const Outcome outcome = run("strip " + path("new") + " -o " + path("image"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("image") + ": exists already; --force writes over it\n");
  expectSilence("strip " + path("new") + " -o " + path("image") + " --force");
  EXPECT_EQ(contentOf(path("image")), "firmware");
  EXPECT_EQ(contentOf(path("new")), "firmware" + m_section);
}

TEST_F(Image, standardInputAndOutputStandForFiles)
{
  EXPECT_EQ(run("extract " + path("section") + " -o -").out, m_section);
  EXPECT_EQ(run("append " + path("image") + " " + path("section") + " -o -").out, "firmware" + m_section);
  EXPECT_EQ(run("strip - ").err, "kyinventory: standard input cannot be changed in place; name a file with -o\n");
  EXPECT_EQ(run("strip -").exitCode, 2);
  EXPECT_EQ(run("append - " + path("section")).exitCode, 2);
  EXPECT_EQ(run("append - - -o " + path("new")).exitCode, 2);
}

TEST_F(Image, sectionOfAnImageIsTakenAlone)
{
  write("source", "other firmware" + m_section);
  expectSilence("append " + path("image") + " " + path("source"));
  EXPECT_EQ(contentOf(path("image")), "firmware" + m_section);
}

TEST_F(Image, imageWithASectionIsLeftAloneUnlessItIsReplaced)
{
  write("image", "firmware" + m_other);
  const Outcome outcome = run("append " + path("image") + " " + path("section"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("image") +
                             " has a section at its end already. (0x1502801, appendSection)\n"
                             "kyinventory: what to do: Replace it, or take it away first.\nkyinventory: " +
                             path("image") + ": --replace puts the new section in its place\n");
  EXPECT_EQ(contentOf(path("image")), "firmware" + m_other);
  expectSilence("append --replace " + path("image") + " " + path("section"));
  EXPECT_EQ(contentOf(path("image")), "firmware" + m_section);
}

TEST_F(Image, sectionAtTheStartThatIsNotReadIsTold)
{
  write("image", "firmware" + m_other);
  const Outcome outcome = run("append --at start " + path("image") + " " + path("section"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("image") + ": has a section at its end, too, and that one is what is read\n");
  EXPECT_EQ(contentOf(path("image")), m_section + "firmware" + m_other);
  expectSilence("extract --at start " + path("image") + " -o " + path("first"));
  EXPECT_EQ(contentOf(path("first")), m_section);
  expectSilence("strip --at start " + path("image"));
  EXPECT_EQ(contentOf(path("image")), "firmware" + m_other);
}

TEST_F(Image, fileWithoutASectionIsExitCode3AndNothingIsWritten)
{
  write("plain", "plain");
  const Outcome outcome = run("append " + path("image") + " " + path("plain"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("plain") +
                " holds no inventory section, neither at its end nor at its start. (0x1500002, "
                "extractSection)\n"
                "kyinventory: what to do: Check that it is the right file; get it from its source again.\n");
  EXPECT_EQ(contentOf(path("image")), "firmware");
  EXPECT_EQ(run("strip " + path("image")).exitCode, 3);
  EXPECT_EQ(run("extract " + path("image") + " -o " + path("new")).exitCode, 3);
  EXPECT_FALSE(std::filesystem::exists(path("new")));
  EXPECT_EQ(run("append " + path("missing") + " " + path("section")).exitCode, 3);
}

TEST_F(Image, damagedSectionIsNotTakenAway)
{
  std::string bytes = "firmware" + m_section;
  bytes[8 + 24 + 1] = '\x07';
  write("image", bytes);
  const Outcome outcome = run("strip " + path("image"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_NE(outcome.err.find("The stream is damaged at byte 1"), std::string::npos) << outcome.err;
  EXPECT_EQ(contentOf(path("image")), bytes);
  EXPECT_EQ(run("extract " + path("image") + " -o " + path("new")).exitCode, 3);
}

TEST_F(Image, sectionWithADamagedHeaderIsNotTakenAwayInPart)
{
  std::string bytes = "firmware" + m_section;
  bytes[8 + 11] = '\x09';    // the version
  write("image", bytes);
  const std::string whatToDo =
      "kyinventory: what to do: Save the section: kyinventory extract FILE -o NEW. Where what stands there is the "
      "damaged "
      "record, cut the section off by other means: it begins with a header's byte named here, and ends 24 bytes behind "
      "a "
      "trailer's.\n";
  const std::string refusal = "kyinventory: " + path("image") +
                              " stays as it is: at byte 8, where the header of its section must be, stands one of "
                              "version 9. (0x1502805, ";
  Outcome outcome = run("strip " + path("image"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, refusal + "stripSection)\n" + whatToDo);
  outcome = run("append --replace " + path("image") + " " + path("other"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, refusal + "stripSection)\n" + whatToDo);
  outcome = run("set " + path("image") + " CPU[2]/SIZE=8");
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, refusal + "replaceTree)\n" + whatToDo);
  EXPECT_EQ(contentOf(path("image")), bytes);
  expectSilence("extract " + path("image") + " -o " + path("new"));
  EXPECT_EQ(contentOf(path("new")), m_section);
}

TEST_F(Image, damagedEndThatIsNamedIsReportedWithItsPlace)
{
  std::string bytes = m_section;
  bytes[11] = '\x09';
  write("image", bytes);
  const std::string report = "kyinventory: The section at the start of " + path("image") +
                             " cannot be read: its header, at byte 0, is of version 9. (0x1502804, ";
  const std::string whatToDo =
      "kyinventory: what to do: kyinventory check FILE tells more; where the section can be read from its other end, "
      "kyinventory extract FILE --at start or --at end saves it.\n";
  Outcome outcome = run("strip " + path("image") + " --at start -o " + path("new"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, report + "stripSection)\n" + whatToDo);
  outcome = run("extract " + path("image") + " --at start -o -");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, report + "extractSection)\n" + whatToDo);
  EXPECT_FALSE(std::filesystem::exists(path("new")));
}

TEST_F(Image, modeIsKeptAndNothingIsLeftBeside)
{
  ASSERT_EQ(::chmod(path("image").c_str(), 0640), 0);
  expectSilence("append " + path("image") + " " + path("section"));
  struct stat file = {};
  ASSERT_EQ(::stat(path("image").c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 07777u, 0640u);
  unsigned int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(path("")))
    files += entry.path().filename().string().rfind("image", 0) == 0 ? 1 : 0;
  EXPECT_EQ(files, 1u);
}

TEST_F(Image, emptyImageBecomesTheSection)
{
  write("image", "");
  expectSilence("append " + path("image") + " " + path("section"));
  EXPECT_EQ(contentOf(path("image")), m_section);
  expectSilence("strip " + path("image"));
  EXPECT_EQ(contentOf(path("image")), "");
}

TEST_F(Image, wrongUsageIsExitCode2)
{
  EXPECT_EQ(run("append " + path("image")).exitCode, 2);
  EXPECT_EQ(run("append --at middle " + path("image") + " " + path("section")).exitCode, 2);
  EXPECT_EQ(run("extract " + path("image")).exitCode, 2);
  EXPECT_EQ(run("strip").exitCode, 2);
}

TEST_F(Image, filesOfMoreThan4GiBAreRefused)
{
  write("large", "");
  std::error_code error;
  std::filesystem::resize_file(path("large"), std::uintmax_t{1} << 32, error);
  if (error) GTEST_SKIP() << "no sparse files here: " << error.message();
  for (const std::string& command : {"append " + path("large") + " " + path("section"), "strip " + path("large")})
  {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.err, "kyinventory: " + path("large") +
                               " has more than 4294967295 bytes, the most that sections can be read from. (0x1502800, "
                               "readBytes)\n"
                               "kyinventory: what to do: Cut off the part with the section.\n");
  }
}
}    // namespace
