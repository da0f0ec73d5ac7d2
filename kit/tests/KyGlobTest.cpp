// Names with wildcards.
#include "KyGlob.h"

#include <gtest/gtest.h>

#include <string>

using namespace KyNInventoryKit;

TEST(KyGlob, aStarStandsForAnyCharactersAndNone)
{
  EXPECT_TRUE(globMatches("VOLTAGE_*", "VOLTAGE_MAX"));
  EXPECT_TRUE(globMatches("VOLTAGE_*", "VOLTAGE_"));
  EXPECT_FALSE(globMatches("VOLTAGE_*", "VOLTAGE"));
  EXPECT_TRUE(globMatches("*_MAX", "A_MAX_MAX"));
  EXPECT_TRUE(globMatches("*A*B*", "xAyB"));
  EXPECT_FALSE(globMatches("*A*B*", "xByA"));
  EXPECT_TRUE(globMatches("*", ""));
}

TEST(KyGlob, aQuestionMarkStandsForOneCharacter)
{
  EXPECT_TRUE(globMatches("CP?", "CPU"));
  EXPECT_FALSE(globMatches("CP?", "CP"));
  EXPECT_FALSE(globMatches("CP?", "CPUS"));
}

TEST(KyGlob, withoutWildcardsTheTextsAreEqual)
{
  EXPECT_TRUE(globMatches("", ""));
  EXPECT_FALSE(globMatches("", "A"));
  EXPECT_FALSE(globMatches("CPU", "CPUS"));
  EXPECT_FALSE(globMatches("CPU", "cpu"));
}

TEST(KyGlob, manyStarsTakeNoExponentialTime)
{
  std::string pattern;
  for (int n = 0; n < 1000; ++n)
    pattern += "*A";
  EXPECT_FALSE(globMatches(pattern + "B", std::string(5000, 'A')));
}
