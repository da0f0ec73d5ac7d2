// KyCVersionTest.cpp: order and text of versions.
#include <gtest/gtest.h>

#include "composite/KyCVersion.h"

TEST(KyCVersion, isZeroByDefault)
{
  const KyCVersion version;
  EXPECT_EQ(0u, version.getMajor());
  EXPECT_EQ(0u, version.getMinor());
  EXPECT_EQ(0u, version.getMaintenance());
  EXPECT_EQ(0u, version.getBuild());
  EXPECT_STREQ("0.0.0.0", version.toString().c_str());
}

TEST(KyCVersion, givesItsNumbersByName)
{
  const KyCVersion version(1, 2, 3, 4294967295u);
  EXPECT_EQ(1u, version.getMajor());
  EXPECT_EQ(2u, version.getMinor());
  EXPECT_EQ(3u, version.getMaintenance());
  EXPECT_EQ(4294967295u, version.getBuild());
}

TEST(KyCVersion, toStringJoinsTheNumbersByDots)
{
  EXPECT_STREQ("1.2.3.4", KyCVersion(1, 2, 3, 4).toString().c_str());
  EXPECT_STREQ("10.0.0.417", KyCVersion(10, 0, 0, 417).toString().c_str());
  EXPECT_STREQ("4294967295.4294967295.4294967295.4294967295",
               KyCVersion(4294967295u, 4294967295u, 4294967295u, 4294967295u).toString().c_str());
}

TEST(KyCVersion, fromStringTakesOneToFourNumbers)
{
  KyCVersion version(9, 9, 9, 9);
  EXPECT_TRUE(version.fromString("7"));
  EXPECT_EQ(KyCVersion(7, 0, 0, 0), version);
  EXPECT_TRUE(version.fromString("7.8"));
  EXPECT_EQ(KyCVersion(7, 8, 0, 0), version);
  EXPECT_TRUE(version.fromString("7.8.9"));
  EXPECT_EQ(KyCVersion(7, 8, 9, 0), version);
  EXPECT_TRUE(version.fromString("7.8.9.4294967295"));
  EXPECT_EQ(KyCVersion(7, 8, 9, 4294967295u), version);
  EXPECT_TRUE(version.fromString("007.08.0.000"));
  EXPECT_EQ(KyCVersion(7, 8, 0, 0), version);
}

TEST(KyCVersion, fromStringRefusesEverythingElseAndChangesNothing)
{
  const char* const refused[] = {"",
                                 ".",
                                 "1.",
                                 ".1",
                                 "1..2",
                                 "1.2.3.4.",
                                 "1.2.3.4.5",
                                 "-1",
                                 "+1",
                                 "1.-2",
                                 "1.+2",
                                 " 1",
                                 "1 ",
                                 "1. 2",
                                 "1\n",
                                 "1.2,3",
                                 "v1",
                                 "1a",
                                 "0x1",
                                 "4294967296",
                                 "1.2.3.4294967296",
                                 "99999999999999999999",
                                 "1.2.3.4 ",
                                 "\xC2\xB2"};
  for (const char* text : refused)
  {
    KyCVersion version(9, 8, 7, 6);
    EXPECT_FALSE(version.fromString(text)) << '"' << text << '"';
    EXPECT_EQ(KyCVersion(9, 8, 7, 6), version) << '"' << text << '"';
  }
  KyCVersion version(9, 8, 7, 6);
  EXPECT_FALSE(version.fromString(nullptr));
  EXPECT_EQ(KyCVersion(9, 8, 7, 6), version);
}

TEST(KyCVersion, comparesByNumbersTheFirstWeighingMost)
{
  const KyCVersion rising[] = {KyCVersion(0, 0, 0, 0),  KyCVersion(0, 0, 0, 2),
                               KyCVersion(0, 0, 0, 10), KyCVersion(0, 0, 1, 0),
                               KyCVersion(0, 1, 0, 0),  KyCVersion(0, 4294967295u, 0, 0),
                               KyCVersion(1, 0, 0, 0),  KyCVersion(4294967295u, 0, 0, 0)};
  constexpr unsigned int count = sizeof(rising) / sizeof(rising[0]);
  for (unsigned int a = 0; a < count; ++a)
  {
    for (unsigned int b = 0; b < count; ++b)
    {
      EXPECT_EQ(a == b, rising[a] == rising[b]) << a << ", " << b;
      EXPECT_EQ(a != b, rising[a] != rising[b]) << a << ", " << b;
      EXPECT_EQ(a < b, rising[a] < rising[b]) << a << ", " << b;
      EXPECT_EQ(a <= b, rising[a] <= rising[b]) << a << ", " << b;
      EXPECT_EQ(a > b, rising[a] > rising[b]) << a << ", " << b;
      EXPECT_EQ(a >= b, rising[a] >= rising[b]) << a << ", " << b;
    }
  }
}

TEST(KyCVersion, textReadsBackToTheSameVersion)
{
  const KyCVersion version(4294967295u, 0, 17, 4294967294u);
  KyCVersion back;
  EXPECT_TRUE(back.fromString(version.toString().c_str()));
  EXPECT_EQ(version, back);
}
