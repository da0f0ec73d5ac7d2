// Regular expressions: forms, errors, and hostile ones.
#include "KyRegularExpression.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>

using namespace KyNInventoryKit;

namespace
{
bool isFound(const std::string& expression, const std::string& text)
{
  RegularExpression read;
  EXPECT_TRUE(read.read(expression)) << expression << ": " << read.problem();
  return read.problem().empty() && read.isFoundIn(text);
}

std::string problemOf(const std::string& expression)
{
  RegularExpression read;
  EXPECT_FALSE(read.read(expression)) << expression;
  return read.problem();
}
}    // namespace

TEST(KyRegularExpression, isFoundAnywhereUnlessItIsAnchored)
{
  EXPECT_TRUE(isFound("oar", "boards"));
  EXPECT_FALSE(isFound("^oar", "boards"));
  EXPECT_TRUE(isFound("^boa", "boards"));
  EXPECT_TRUE(isFound("rds$", "boards"));
  EXPECT_FALSE(isFound("ard$", "boards"));
  EXPECT_TRUE(isFound("^$", ""));
  EXPECT_FALSE(isFound("^$", "a"));
  EXPECT_TRUE(isFound("", "anything"));
}

TEST(KyRegularExpression, repetitionsCount)
{
  EXPECT_TRUE(isFound("^ab*c$", "ac"));
  EXPECT_TRUE(isFound("^ab*c$", "abbbc"));
  EXPECT_FALSE(isFound("^ab+c$", "ac"));
  EXPECT_TRUE(isFound("^ab?c$", "abc"));
  EXPECT_FALSE(isFound("^ab?c$", "abbc"));
  EXPECT_TRUE(isFound("^a{3}$", "aaa"));
  EXPECT_FALSE(isFound("^a{3}$", "aa"));
  EXPECT_TRUE(isFound("^a{2,}$", "aaaa"));
  EXPECT_FALSE(isFound("^a{2,}$", "a"));
  EXPECT_TRUE(isFound("^(ab){1,2}$", "abab"));
  EXPECT_FALSE(isFound("^(ab){1,2}$", "ababab"));
  EXPECT_FALSE(isFound("^(ab){1,2}$", ""));
  EXPECT_TRUE(isFound("^a{0}b$", "b"));
}

TEST(KyRegularExpression, branchesAndGroupsNest)
{
  EXPECT_TRUE(isFound("^(AI|AO|DI)[0-9]+$", "AO12"));
  EXPECT_FALSE(isFound("^(AI|AO|DI)[0-9]+$", "DO12"));
  EXPECT_TRUE(isFound("^a|b$", "xb"));
  EXPECT_TRUE(isFound("^(a|)b$", "b"));
  EXPECT_TRUE(isFound("^((a|b)c|d)*$", "acbcd"));
  EXPECT_TRUE(isFound("^(a*)*$", "aaa"));
  EXPECT_TRUE(isFound("^()$", ""));
}

TEST(KyRegularExpression, setsAndEscapesAreOfBytes)
{
  EXPECT_TRUE(isFound("^[^a-c]$", "d"));
  EXPECT_FALSE(isFound("^[^a-c]$", "b"));
  EXPECT_TRUE(isFound("^[]x-]+$", "]-x"));
  EXPECT_TRUE(isFound("^\\d\\D\\w\\W\\s\\S$", "1a_- x"));
  EXPECT_FALSE(isFound("a.c\\.", "abcd"));
  EXPECT_TRUE(isFound("\\x41\\t\\n", "A\t\n"));
  EXPECT_TRUE(isFound("[\\d\\x80]$", "\x80"));
  EXPECT_TRUE(isFound("a.b", std::string("a\0b", 3)));
}

TEST(KyRegularExpression, whatIsWrongIsToldWithItsPlace)
{
  EXPECT_EQ(problemOf("a("), "\")\" is expected at character 3");
  EXPECT_EQ(problemOf("a)b"), "a \"(\" for this \")\" in front or the end is expected at character 2");
  EXPECT_EQ(problemOf("*a"), "something to repeat in front of the repetition is expected at character 1");
  EXPECT_EQ(problemOf("a**"), "something to repeat in front of the repetition is expected at character 3");
  EXPECT_EQ(problemOf("^*"), "something to repeat in front of the repetition is expected at character 2");
  EXPECT_EQ(problemOf("[a"), "\"]\" is expected at character 3");
  EXPECT_EQ(problemOf("[z-a]"), "a range from a lower to a higher character is expected at character 3");
  EXPECT_EQ(problemOf("a{2"), "\"{\" with one or two counts from 0 to 9999 is expected at character 2");
  EXPECT_EQ(problemOf("a{3,2}"), "\"{\" with one or two counts from 0 to 9999 is expected at character 2");
  EXPECT_EQ(problemOf("a\\"), "a character behind the backslash is expected at character 2");
  EXPECT_EQ(problemOf("\\1"), "\\d \\w \\s \\D \\W \\S \\n \\t \\r or \\xHH is expected at character 1");
  EXPECT_EQ(problemOf("\\xg0"), "\\x with two hexadecimal digits is expected at character 1");
  EXPECT_EQ(problemOf("((a{999}){999}){999}"), "it is larger than 10000 steps");
}

TEST(KyRegularExpression, agreesWithTheStandardLibraryOnRandomExpressions)
{
  std::mt19937 random(5);
  const std::string letters = "aab()|*+?.^$";
  unsigned int compared = 0;
  for (int n = 0; n < 3000; ++n)
  {
    std::string expression;
    for (unsigned int length = 1 + random() % 8; length > 0; --length)
      expression += letters[random() % letters.size()];
    RegularExpression own;
    if (!own.read(expression)) continue;
    try
    {
      const std::regex other(expression, std::regex::extended);
      for (const char* text : {"", "a", "b", "ab", "ba", "aab", "bbaa", "abab"})
        EXPECT_EQ(own.isFoundIn(text), std::regex_search(text, other)) << expression << " in " << text;
      ++compared;
    }
    catch (const std::regex_error&)
    {
      continue;    // it takes no empty branches
    }
  }
  EXPECT_GT(compared, 200u);
}

TEST(KyRegularExpression, hostileExpressionsAndTextsTakeNeitherTimeNorStack)
{
  EXPECT_FALSE(isFound("^(a|a)*(a|aa)*(a*)*b$", std::string(100000, 'a')));
  EXPECT_FALSE(isFound("(a|b)*a(a|b){20}c", std::string(20000, 'a')));
  EXPECT_TRUE(isFound(std::string(50000, '(') + "a" + std::string(50000, ')'), "a"));
  EXPECT_NE(problemOf(std::string(100000, '(')), "");
  EXPECT_NE(problemOf(std::string(100000, 'a') + "{9999}"), "");
}
