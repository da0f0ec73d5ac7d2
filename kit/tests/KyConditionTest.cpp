// Conditions on values.
#include <cmath>
#include <limits>

#include "inventorykit/KyFind.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
// Whether a condition is true of the root item of a tree.
bool holds(const std::string& tree, const std::string& condition)
{
  KySampleTree sample(tree);
  KyTestPool pool;
  Query query;
  EXPECT_TRUE(readPattern(pool, ".", query));
  EXPECT_TRUE(readCondition(pool, condition, query)) << condition;
  return !find(sample.root(), query).empty();
}

std::string reports(const std::string& condition)
{
  KyCErrorListPool pool;
  Query query;
  EXPECT_FALSE(readCondition(pool, condition, query)) << condition;
  EXPECT_EQ(query.condition, nullptr);
  std::string texts;
  for (const KyReport& report : readReports(pool))
    texts += report.text + "\n";
  return texts;
}

// Without its frame, for a condition with one report.
std::string problem(const std::string& condition)
{
  const std::string text = reports(condition);
  const std::string frame = "\"" + condition + "\" is not a condition: ";
  EXPECT_EQ(text.compare(0, frame.size(), frame), 0) << text;
  return text.size() > frame.size() + 2 ? text.substr(frame.size(), text.size() - frame.size() - 2) : text;
}
}    // namespace

TEST(KyCondition, numbersAreComparedWithEveryOperator)
{
  const char* const tree = "ROOT VOLTAGE_MAX=10.5 SIZE:Int8=-3";
  EXPECT_TRUE(holds(tree, "VOLTAGE_MAX > 10"));
  EXPECT_TRUE(holds(tree, "VOLTAGE_MAX>=10.5"));
  EXPECT_TRUE(holds(tree, "VOLTAGE_MAX == 1.05e1"));
  EXPECT_FALSE(holds(tree, "VOLTAGE_MAX != 10.5"));
  EXPECT_TRUE(holds(tree, "SIZE < -2"));
  EXPECT_TRUE(holds(tree, "SIZE <= -3"));
  EXPECT_FALSE(holds(tree, "SIZE < -3"));
  EXPECT_TRUE(holds(tree, "-3 == SIZE"));
  EXPECT_TRUE(holds(tree, "SIZE < VOLTAGE_MAX"));
  EXPECT_TRUE(holds("ROOT SIZE=31", "SIZE == 0x1F and SIZE == +31"));
}

TEST(KyCondition, sixtyFourBitsAndFloatsAreComparedExactly)
{
  const char* const tree =
      "ROOT SIZE:ULong64=18446744073709551615 OFFSET:Long64=9007199254740993 VOLTAGE_MAX:Float64=9007199254740992 "
      "ID:Long64=-9223372036854775808";
  EXPECT_TRUE(holds(tree, "SIZE == 18446744073709551615"));
  EXPECT_TRUE(holds(tree, "SIZE < 18446744073709551616"));
  EXPECT_TRUE(holds(tree, "SIZE > 18446744073709551614"));
  EXPECT_FALSE(holds(tree, "SIZE == -1"));
  EXPECT_TRUE(holds(tree, "SIZE > ID"));
  EXPECT_TRUE(holds(tree, "OFFSET > VOLTAGE_MAX"));
  EXPECT_TRUE(holds(tree, "VOLTAGE_MAX < OFFSET and VOLTAGE_MAX != OFFSET"));
  EXPECT_TRUE(holds(tree, "ID == -9223372036854775808"));
  EXPECT_TRUE(holds(tree, "ID > -9223372036854775809"));
  EXPECT_TRUE(holds("ROOT SIZE=-1", "SIZE > -1.5 and SIZE < -0.5"));
}

TEST(KyCondition, aNumberWithAFractionHasThePrecisionOfTheParameter)
{
  EXPECT_TRUE(holds("ROOT OFFSET:Float32=0.1", "OFFSET == 0.1"));
  EXPECT_TRUE(holds("ROOT OFFSET:Float64=0.1", "OFFSET == 0.1"));
  EXPECT_FALSE(holds("ROOT OFFSET:Float32=0.1 SIZE:Float64=0.1", "OFFSET == SIZE"));
}

TEST(KyCondition, nothingIsBelowOrAboveANaN)
{
  const char* const tree = "ROOT OFFSET:Float64=1";
  KySampleTree sample(tree);
  KyTestPool pool;
  sample.parameter("OFFSET")->setValue(pool, std::numeric_limits<double>::quiet_NaN());
  Query query;
  ASSERT_TRUE(readPattern(pool, ".", query));
  for (const char* condition : {"OFFSET < 1", "OFFSET >= 1", "OFFSET == 1", "OFFSET == nan", "OFFSET == OFFSET"})
  {
    ASSERT_TRUE(readCondition(pool, condition, query));
    EXPECT_TRUE(find(sample.root(), query).empty()) << condition;
  }
  ASSERT_TRUE(readCondition(pool, "OFFSET != OFFSET", query));
  EXPECT_FALSE(find(sample.root(), query).empty());
  EXPECT_TRUE(holds("ROOT OFFSET:Float64=1", "OFFSET < inf and OFFSET > -inf"));
}

TEST(KyCondition, versionsAreComparedAsVersions)
{
  const char* const tree = "ROOT ID Version 1.10.0.0";
  EXPECT_TRUE(holds(tree, "ID > 1.9"));
  EXPECT_TRUE(holds(tree, "ID == 1.10"));
  EXPECT_TRUE(holds(tree, "ID > \"1.9.9.9\""));
  EXPECT_TRUE(holds(tree, "ID < 2"));
  EXPECT_FALSE(holds(tree, "ID < 1.10.0.0"));
  EXPECT_TRUE(holds("ROOT NAME=\"1.10.2\"", "NAME > 1.9.5"));
}

TEST(KyCondition, textsAreComparedByteByByte)
{
  const char* const tree = "ROOT NAME=\"it's \\\"5\\\" \\\\\"";
  EXPECT_TRUE(holds(tree, "NAME == \"it's \\\"5\\\" \\\\\""));
  EXPECT_TRUE(holds(tree, "NAME == 'it\\'s \"5\" \\\\'"));
  EXPECT_TRUE(holds(tree, "NAME > \"it\" and NAME < 'j'"));
  EXPECT_TRUE(holds("ROOT NAME=\"\"", "NAME == \"\""));
}

TEST(KyCondition, textsAndNumbersAreReadAsOneAnother)
{
  EXPECT_TRUE(holds("ROOT SERIAL_NUMBER=\"0012\"", "SERIAL_NUMBER == 12"));
  EXPECT_FALSE(holds("ROOT SERIAL_NUMBER=\"0012\"", "SERIAL_NUMBER == \"12\""));
  EXPECT_TRUE(holds("ROOT SIZE=12", "SIZE == \"12\" and SIZE < \"13.5\""));
}

TEST(KyCondition, whatCannotBeComparedIsNotEqual)
{
  EXPECT_TRUE(holds("ROOT NAME=\"abc\"", "NAME != 5"));
  EXPECT_FALSE(holds("ROOT NAME=\"abc\"", "NAME == 5 or NAME < 5 or NAME > 5"));
  EXPECT_TRUE(holds("ROOT SIZE=5 ID Version 5.0.0.0", "SIZE == 5"));
  EXPECT_TRUE(holds("ROOT SIZE=5; ROOT ID Version 5.0.0.0", "SIZE != ID"));
}

TEST(KyCondition, nothingIsTrueOfAValueThatIsNotThere)
{
  const char* const tree = "ROOT SIZE=1; BOARD";
  EXPECT_FALSE(holds(tree, "NAME == \"a\" or NAME != \"a\" or NAME ~ \"\" or NAME != SIZE or BOARD != 1"));
  EXPECT_TRUE(holds(tree, "not NAME == \"a\""));
  EXPECT_FALSE(holds(tree, ". == 1")) << "an item has no value";
}

TEST(KyCondition, anAddressAloneAsksWhetherItExists)
{
  const char* const tree = "ROOT/BOARD[2] NAME=\"x\"";
  EXPECT_TRUE(holds(tree, "BOARD[2]/NAME and BOARD[2]"));
  EXPECT_FALSE(holds(tree, "BOARD"));
  EXPECT_TRUE(holds(tree, "not BOARD"));
  EXPECT_TRUE(holds(tree, "585[2]/NAME"));
}

TEST(KyCondition, regularExpressionsAreFoundInValues)
{
  const char* const tree = "ROOT NAME=\"AI12\" SIZE=4096";
  EXPECT_TRUE(holds(tree, "NAME ~ \"^AI[0-9]+$\""));
  EXPECT_TRUE(holds(tree, "NAME ~ '^\\w+$'"));
  EXPECT_TRUE(holds(tree, "SIZE ~ \"09\""));
  EXPECT_FALSE(holds(tree, "NAME ~ \"ai\""));
  EXPECT_TRUE(holds("ROOT NAME=\"a.b\"", "NAME ~ \"a\\.b\""));
}

TEST(KyCondition, andBindsStrongerThanOrAndNotStrongerThanBoth)
{
  const char* const tree = "ROOT SIZE=1";
  EXPECT_TRUE(holds(tree, "SIZE == 1 or SIZE == 2 and SIZE == 3"));
  EXPECT_FALSE(holds(tree, "(SIZE == 1 or SIZE == 2) and SIZE == 3"));
  EXPECT_TRUE(holds(tree, "not SIZE == 2 and SIZE == 1"));
  EXPECT_FALSE(holds(tree, "not (SIZE == 2 or SIZE == 1)"));
  EXPECT_TRUE(holds(tree, "not not SIZE"));
  EXPECT_TRUE(holds(tree, "((SIZE)) and (not(SIZE==2))"));
}

TEST(KyCondition, isAboutTheParametersItemAndItsOwnValue)
{
  KySampleTree sample("ROOT/BOARD VOLTAGE_MIN=1 VOLTAGE_MAX=20; BOARD[2] VOLTAGE_MIN=15");
  KyTestPool pool;
  Query query;
  ASSERT_TRUE(readPattern(pool, "**/VOLTAGE_*", query));
  ASSERT_TRUE(readCondition(pool, ". > 10", query));
  std::vector<Node> found = find(sample.root(), query);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0].parameter, sample.parameter("BOARD/VOLTAGE_MAX"));
  EXPECT_EQ(found[1].parameter, sample.parameter("BOARD[2]/VOLTAGE_MIN"));
  ASSERT_TRUE(readCondition(pool, ". > 10 and VOLTAGE_MAX", query));
  found = find(sample.root(), query);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].parameter, sample.parameter("BOARD/VOLTAGE_MAX"));
}

TEST(KyCondition, whatIsWrongIsReportedWithItsPlace)
{
  const std::string operand = "an address, a number or a text in quotes is expected at character ";
  EXPECT_EQ(problem(""), operand + "1");
  EXPECT_EQ(problem("SIZE >"), operand + "7");
  EXPECT_EQ(problem("SIZE > and"), operand + "8");
  EXPECT_EQ(problem("SIZE = 5"), "\"and\", \"or\" or the end is expected at character 6");
  EXPECT_EQ(problem("SIZE 5"), "\"and\", \"or\" or the end is expected at character 6");
  EXPECT_EQ(problem("SIZE == 5)"), "\"and\", \"or\" or the end is expected at character 10");
  EXPECT_EQ(problem("(SIZE == 5"), "\")\" is expected at character 11");
  EXPECT_EQ(problem("5"), "==, !=, <, <=, >, >= or ~ is expected at character 2");
  EXPECT_EQ(problem("not 5 == \"5\""), "an address on one side of the comparison is expected at character 5");
  EXPECT_EQ(problem("SIZE == 5x"), operand + "9");
  EXPECT_EQ(problem("SIZE == 1.2.3.4.5"), operand + "9");
  EXPECT_EQ(problem("NAME == \"x"), "a closing \" is expected at character 11");
  EXPECT_EQ(problem("NAME ~ x"), "a text in quotes is expected at character 8");
  EXPECT_EQ(reports("NAME ~ \"a(\""),
            "\"a(\" is not a regular expression: \")\" is expected at character 3.\n"
            "\"NAME ~ \"a(\"\" is not a condition: a regular expression is expected at character 8.\n");
  EXPECT_EQ(reports("SIZE > 1 and NAMES == 5"),
            "NAMES is not an inventory ID. Did you mean NAME?\n"
            "\"SIZE > 1 and NAMES == 5\" is not a condition: an address is expected at character 14.\n");
}

TEST(KyCondition, bracketsMayBeDeep)
{
  const std::string open(100000, '(');
  EXPECT_TRUE(holds("ROOT SIZE=1", open + "SIZE == 1" + std::string(100000, ')')));
  std::string nots;
  for (int n = 0; n < 30000; ++n)
    nots += "not ";
  EXPECT_TRUE(holds("ROOT SIZE=1", nots + "SIZE == 1"));
}
