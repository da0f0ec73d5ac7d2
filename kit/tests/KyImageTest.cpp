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
    EXPECT_EQ(extracted(section), section);    // as it stands
  }
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
