// Sections at the ends of images.
#include "inventorykit/KyImage.h"

#include "KySectionBytes.h"
#include "inventorykit/KySectionFile.h"
#include "support/KyFiles.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
const std::string sample = sectionOfData(sampleStream);
const std::string other = sectionOfData(bytesOfHex("01 01 01 01 01 02"));

class KyImage : public ::testing::Test
{
protected:
  std::string appended(std::string image, SectionEnd at, Replace replace = Replace::NO)
  {
    EXPECT_TRUE(appendSection(m_pool, image, "f", sample, at, replace));
    return image;
  }
  std::string stripped(std::string image, SectionEnd at = SectionEnd::READ)
  {
    EXPECT_TRUE(stripSection(m_pool, image, "f", at));
    return image;
  }
  std::string extracted(const std::string& image, SectionEnd at = SectionEnd::READ)
  {
    std::string section;
    EXPECT_TRUE(extractSection(m_pool, image, "f", at, section));
    return section;
  }

  KyTestPool m_pool;
};
}    // namespace

TEST_F(KyImage, appendExtractAndStripAtBothEnds)
{
  const std::string images[] = {
      "", "x", "firmware", std::string(100, '\0'), "INVE", "more INVE", sectionMarks + std::string(7, 'x')};
  for (const std::string& image : images)
  {
    EXPECT_EQ(appended(image, SectionEnd::END), image + sample);
    EXPECT_EQ(stripped(appended(image, SectionEnd::END)), image);
    EXPECT_EQ(extracted(appended(image, SectionEnd::END)), sample);
    EXPECT_EQ(appended(image, SectionEnd::START), sample + image);
    EXPECT_EQ(stripped(appended(image, SectionEnd::START)), image);
    EXPECT_EQ(extracted(appended(image, SectionEnd::START)), sample);
  }
}

TEST_F(KyImage, appendingBehindASectionIsRefusedUnlessItIsReplaced)
{
  std::string image = "firmware" + other;
  EXPECT_FALSE(appendSection(m_pool, image, "f", sample, SectionEnd::END, Replace::NO));
  EXPECT_REPORTS(m_pool, {0x1502801, "appendSection", "f has a section at its end already."});
  EXPECT_EQ(image, "firmware" + other);
  EXPECT_EQ(appended(image, SectionEnd::END, Replace::YES), "firmware" + sample);

  image = other + "firmware";
  EXPECT_FALSE(appendSection(m_pool, image, "f", sample, SectionEnd::START, Replace::NO));
  EXPECT_REPORTS(m_pool, {0x1502801, "appendSection", "f has a section at its start already."});
  EXPECT_EQ(appended(image, SectionEnd::START, Replace::YES), sample + "firmware");
  EXPECT_EQ(appended(image, SectionEnd::END), image + sample);    // at the other end
}

TEST_F(KyImage, replacingWithoutASectionAppends)
{
  EXPECT_EQ(appended("firmware", SectionEnd::END, Replace::YES), "firmware" + sample);
}

TEST_F(KyImage, damagedSectionIsNeitherReplacedNorStrippedNorExtracted)
{
  std::string image = "firmware" + sample;
  image[8 + 24 + 29] = '\x07';
  const std::string before = image;
  EXPECT_FALSE(appendSection(m_pool, image, "f", sample, SectionEnd::END, Replace::YES));
  EXPECT_EQ(m_pool.takeReports().size(), 3u);
  EXPECT_FALSE(stripSection(m_pool, image, "f", SectionEnd::READ));
  EXPECT_EQ(m_pool.takeReports().size(), 3u);
  std::string section = "as it was";
  EXPECT_FALSE(extractSection(m_pool, image, "f", SectionEnd::READ, section));
  EXPECT_EQ(m_pool.takeReports().size(), 3u);
  EXPECT_EQ(section, "as it was");
  EXPECT_EQ(image, before);
}

TEST_F(KyImage, trailerThatClaimsTooMuchIsReported)
{
  std::string image = "firmware" + trailerOf({1000});
  EXPECT_FALSE(stripSection(m_pool, image, "f", SectionEnd::READ));
  EXPECT_REPORTS(m_pool, {0x130000C, "seekInventoryDataTrailerInMem", ""}, {0x130000D, "readInventoryDataFromMem", ""});
}

TEST_F(KyImage, sectionsAtBothEndsAreChosen)
{
  const std::string image = other + "firmware" + sample;
  EXPECT_EQ(extracted(image), sample);
  EXPECT_EQ(extracted(image, SectionEnd::END), sample);
  EXPECT_EQ(extracted(image, SectionEnd::START), other);
  EXPECT_EQ(stripped(image), other + "firmware");
  EXPECT_EQ(stripped(image, SectionEnd::START), "firmware" + sample);
}

TEST_F(KyImage, missingSectionIsReported)
{
  std::string section;
  EXPECT_FALSE(extractSection(m_pool, "firmware", "f", SectionEnd::READ, section));
  EXPECT_REPORTS(m_pool,
                 {0x1500002, "extractSection", "f holds no inventory section, neither at its end nor at its start."});
  std::string image = "firmware" + sample;
  EXPECT_FALSE(stripSection(m_pool, image, "f", SectionEnd::START));
  EXPECT_REPORTS(m_pool, {0x1502802, "stripSection", "f has no section at its start."});
}

TEST_F(KyImage, sectionWithoutDataIsNoSectionToAppend)
{
  std::string image = "firmware";
  EXPECT_FALSE(appendSection(m_pool, image, "f", sectionOfData(""), SectionEnd::END, Replace::NO));
  EXPECT_EQ(m_pool.takeReports().size(), 1u);
  EXPECT_EQ(image, "firmware");
}

TEST_F(KyImage, sectionThatLostItsHeaderOrTrailerGetsANewOne)
{
  for (const std::string& section : {sample.substr(24), sample.substr(0, 63)})
  {
    std::string image = "firmware";
    EXPECT_TRUE(appendSection(m_pool, image, "f", section, SectionEnd::END, Replace::NO));
    EXPECT_EQ(image, "firmware" + sample);
    EXPECT_EQ(extracted(section), sample);    // as it was
  }
}

TEST_F(KyImage, sectionDamagedAtOneEndIsSavedFromTheOther)
{
  const std::string header = headerOf({39});
  const std::string trailer = trailerOf({39});
  for (const SectionSizes& sizes : {SectionSizes{39, 24, 24, 2}, SectionSizes{9999}, SectionSizes{35}})
    EXPECT_EQ(extracted(header + sampleStream + trailerOf(sizes), SectionEnd::START), sample);
  for (const SectionSizes& sizes : {SectionSizes{39, 24, 24, 9}, SectionSizes{9999}, SectionSizes{35}})
  {
    EXPECT_EQ(extracted(headerOf(sizes) + sampleStream + trailer), sample);
    EXPECT_EQ(extracted("firmware" + headerOf(sizes) + sampleStream + trailer, SectionEnd::END), sample);
  }
}

TEST_F(KyImage, damagedEndThatWasAskedForIsReportedWithItsPlace)
{
  std::string section;
  EXPECT_FALSE(extractSection(m_pool, headerOf({39, 24, 24, 9}) + sampleStream + trailerOf({39}), "f",
                              SectionEnd::START, section));
  EXPECT_REPORTS(m_pool, {0x1502804, "extractSection",
                          "The section at the start of f cannot be read: its header, at byte 0, is of version 9."});
  std::string image = headerOf({39}) + sampleStream + trailerOf({39, 24, 23});
  EXPECT_FALSE(stripSection(m_pool, image, "f", SectionEnd::END));
  EXPECT_REPORTS(m_pool,
                 {0x1502804, "stripSection",
                  "The section at the end of f cannot be read: its trailer, at byte 63, gives its own size as 23 "
                  "bytes."});
  EXPECT_FALSE(extractSection(m_pool, sample.substr(0, 60), "f", SectionEnd::START, section));
  EXPECT_REPORTS(m_pool, {0x1502804, "extractSection",
                          "The section at the start of f cannot be read: its header, at byte 0, asks for 63 bytes, "
                          "and the file has 60."});
}

TEST_F(KyImage, sectionIsNotTakenAwayWithoutItsDamagedHeaderOrTrailer)
{
  std::string damagedMark = sample;
  damagedMark[2] = 'W';
  const struct
  {
    std::string image;
    const char* report;
  } cases[] = {
      {"firmware" + headerOf({39, 24, 24, 9}) + sampleStream + trailerOf({39}),
       "f stays as it is: at byte 8, where the header of its section must be, stands one of version 9."},
      {damagedMark,
       "f stays as it is: at byte 0, where the header of its section must be, stands none: its mark reads 49 4E 57 45 "
       "55 4B 59 AA."},
      {sample.substr(4),
       "f stays as it is: at byte 0, where the header of its section must be, stands none: the trailer gives its "
       "size as 24 bytes, and there are 20."},
      {headerOf({39}) + sampleStream + trailerOf({39, 24, 24, 2}) + "firmware",
       "f stays as it is: at byte 63, where the trailer of its section must be, stands one of version 2."},
      {sample.substr(0, 86) + '\xAB',
       "f stays as it is: at byte 63, where the trailer of its section must be, stands none: its mark reads 49 4E 56 "
       "45 55 4B 59 AB."},
      {sample.substr(0, 70),
       "f stays as it is: at byte 63, where the trailer of its section must be, stands none: the header gives its "
       "size as 24 bytes, and there are 7."},
      {"firmware that is long enough" + headerOf({39}) + sampleStream + trailerOf({39, 280}),
       "f stays as it is: at byte 0, where the header of its section must be, stands none: the trailer gives its "
       "size as 280 bytes, and there are 52."}};
  for (const auto& one : cases)
  {
    std::string image = one.image;
    EXPECT_FALSE(stripSection(m_pool, image, "f", SectionEnd::READ));
    EXPECT_REPORTS(m_pool, {0x1502805, "stripSection", one.report});
    EXPECT_EQ(image, one.image);
    EXPECT_EQ(extracted(image), sample);
  }
  EXPECT_EQ(stripped(sample.substr(24)), "");    // nothing there that could be damaged
  EXPECT_EQ(stripped(sample.substr(0, 63)), "");
}

TEST_F(KyImage, longHeadersAndTrailersStay)
{
  const SectionSizes sizes = {39, 26, 25};
  const std::string section = headerOf(sizes) + "ab" + sampleStream + "c" + trailerOf(sizes);
  std::string image = "firmware";
  EXPECT_TRUE(appendSection(m_pool, image, "f", section, SectionEnd::END, Replace::NO));
  EXPECT_EQ(image, "firmware" + section);
  EXPECT_EQ(stripped(image), "firmware");
}

TEST_F(KyImage, imageThatEndsLikeAHeaderIsGivenBackWhole)
{
  const std::string image = "firmware" + headerOf({39});
  EXPECT_EQ(stripped(appended(image, SectionEnd::END)), image);
}

TEST_F(KyImage, imageThatEndsLikeASectionTakesNoneAtItsStartThatCouldNotBeRead)
{
  std::string image = "an image of more than 24 bytes" + sectionMarks;
  const std::string before = image;
  EXPECT_FALSE(appendSection(m_pool, image, "f", sample, SectionEnd::START, Replace::NO));
  EXPECT_REPORTS(
      m_pool, {0x1502803, "appendSection", "Nothing is written: the section would not read back from the start of f."});
  EXPECT_FALSE(appendSection(m_pool, image, "f", sample, SectionEnd::END, Replace::NO));
  EXPECT_REPORTS(m_pool, {0x1502801, "appendSection", "f has a section at its end already."});
  EXPECT_EQ(image, before);
}
