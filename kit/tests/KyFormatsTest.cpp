// Trees as texts of common formats, and back.
#include "inventorykit/KyFormats.h"

#include <chrono>

#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KySectionFile.h"
#include "support/KySampleTree.h"
#include "support/KySmallStack.h"
#include "support/KyTestPool.h"
#include "unit/persistence/KyRandomTree.h"

using namespace KyNInventoryKit;

namespace
{
const char* const s_all =
    "ROOT[3]  NAME  String  \"A & B\\nC\"  unit=\"\\xB5V\"\n"
    "ROOT[3]  SIZE  Int32  -5  unit=\"kB\"  modifiable  relevance=7  description=\"how \\\"large\\\"\"\n"
    "ROOT[3]/BOARD[2]  SIZE64  ULong64  18446744073709551615\n"
    "ROOT[3]/BOARD[2]  VOLTAGE_MAX  Float32  0.1\n"
    "ROOT[3]/BOARD[2]  VERSION  Version  1.2.3.4\n"
    "ROOT[3]/BOARD[2]  INFO  String  \"a\\xFF\"\n"
    "ROOT[3]/5000  description=\"spare\"\n"
    "ROOT[3]/CPU";

std::string exported(const KyCInventoryItem& root, Format format)
{
  KyTestPool pool;
  std::string text;
  EXPECT_TRUE(exportTree(pool, root, format, text));
  return text;
}

// The reports of an import that fails.
std::vector<KyReport> reportsOf(const std::string& text, Format format)
{
  KyTestPool pool;
  EXPECT_EQ(importTree(pool, text, format), nullptr) << text;
  return pool.takeReports();
}

// The last report, which tells the place.
std::string reasonOf(const std::string& text, Format format)
{
  const std::vector<KyReport> reports = reportsOf(text, format);
  return reports.empty() ? "none" : reports.back().text;
}

std::string json(const std::string& root)
{
  return "{\"format\": \"kyinventory\", \"version\": 1, \"root\": " + root + "}";
}

std::string reasonOfJson(const std::string& root) { return reasonOf(json(root), Format::JSON); }

void expectRoundTrip(const KyCInventoryItem& root, Format format)
{
  KyTestPool pool;
  const std::string text = exported(root, format);
  const TreePointer tree = importTree(pool, text, format);
  ASSERT_NE(tree, nullptr) << text.substr(0, 2000);
  EXPECT_EQ(KyTreeDifference(root, *tree), "");
  EXPECT_EQ(exported(*tree, format), text);
}

#ifdef KY_HAVE_PUGIXML
const std::vector<Format> s_lossless = {Format::JSON, Format::MARKUP};
#else
const std::vector<Format> s_lossless = {Format::JSON};
#endif
}    // namespace

// ---- What the formats look like ----

TEST(KyFormats, jsonHasOneLineAParameterAndLeavesOutWhatIsUsual)
{
  KySampleTree sample(s_all);
  EXPECT_EQ(exported(sample.root(), Format::JSON),
            R"({
  "format": "kyinventory",
  "version": 1,
  "root": {
    "id": "ROOT",
    "index": 3,
    "parameters": [
      {"id": "NAME", "type": "String", "value": "A & B\nC", "unit": {"bytes":"tVY="}},
      {"id": "SIZE", "type": "Int32", "value": -5, "unit": "kB", "modifiable": true, "relevance": 7, "description": "how \"large\""}
    ],
    "items": [
      {
        "id": "BOARD",
        "index": 2,
        "parameters": [
          {"id": "SIZE64", "type": "ULong64", "value": "18446744073709551615"},
          {"id": "VOLTAGE_MAX", "type": "Float32", "value": "0.1"},
          {"id": "VERSION", "type": "Version", "value": "1.2.3.4"},
          {"id": "INFO", "type": "String", "value": {"bytes":"Yf8="}}
        ]
      },
      {
        "id": 5000,
        "description": "spare"
      },
      {
        "id": "CPU"
      }
    ]
  }
}
)");
}

TEST(KyFormats, jsonLinesHaveEveryFieldAndAnAddress)
{
  KySampleTree sample(
      "ROOT NAME=\"x\"; BOARD[2] SIZE Int32 5 unit=\"kB\" modifiable relevance=7; BOARD[2]/5000 OFFSET=1; CPU");
  EXPECT_EQ(
      exported(sample.root(), Format::JSON_LINES),
      R"({"address":"NAME","type":"String","value":"x","unit":"","modifiable":false,"relevance":0,"description":"NAME"}
{"address":"BOARD[2]/SIZE","type":"Int32","value":5,"unit":"kB","modifiable":true,"relevance":7,"description":"SIZE"}
{"address":"BOARD[2]/5000/OFFSET","type":"Int32","value":1,"unit":"","modifiable":false,"relevance":0,"description":"OFFSET"}
)");
}

TEST(KyFormats, csvQuotesWhatNeedsIt)
{
  KySampleTree sample(
      "ROOT NAME String \"a \\\"b\\\", c\\nd\" unit=\"x,y\"; BOARD[2] SIZE Int32 5 unit=\"kB\" modifiable relevance=7");
  EXPECT_EQ(exported(sample.root(), Format::CSV),
            "address,type,value,unit,modifiable,relevance,description\n"
            "NAME,String,\"a \"\"b\"\", c\nd\",\"x,y\",no,0,NAME\n"
            "BOARD[2]/SIZE,Int32,5,kB,yes,7,SIZE\n");
}

TEST(KyFormats, markupSaysWhatTheDumpLeavesOut)
{
  KySampleTree sample(s_all);
  EXPECT_EQ(exported(sample.root(), Format::MARKUP),
            R"(<ITEM ID="ROOT[3]">
    <PARAM ID="NAME" Type="String">
        <VALUE>A &amp; B
C</VALUE>
        <UNIT Encoding="base64">tVY=</UNIT>
        <ISMODIFIABLE>No</ISMODIFIABLE>
        <RELEVANCE>0</RELEVANCE>
    </PARAM>
    <PARAM ID="SIZE" Descr="how &quot;large&quot;" Type="Int32">
        <VALUE>-5</VALUE>
        <UNIT>kB</UNIT>
        <ISMODIFIABLE>Yes</ISMODIFIABLE>
        <RELEVANCE>7</RELEVANCE>
    </PARAM>
    <ITEM ID="BOARD[2]">
        <PARAM ID="SIZE64" Type="ULong64">
            <VALUE>18446744073709551615</VALUE>
            <ISMODIFIABLE>No</ISMODIFIABLE>
            <RELEVANCE>0</RELEVANCE>
        </PARAM>
        <PARAM ID="VOLTAGE_MAX" Type="Float32">
            <VALUE>0.1</VALUE>
            <ISMODIFIABLE>No</ISMODIFIABLE>
            <RELEVANCE>0</RELEVANCE>
        </PARAM>
        <PARAM ID="VERSION" Type="Version">
            <VALUE>1.2.3.4</VALUE>
            <ISMODIFIABLE>No</ISMODIFIABLE>
            <RELEVANCE>0</RELEVANCE>
        </PARAM>
        <PARAM ID="INFO" Type="String">
            <VALUE Encoding="base64">Yf8=</VALUE>
            <ISMODIFIABLE>No</ISMODIFIABLE>
            <RELEVANCE>0</RELEVANCE>
        </PARAM>
    </ITEM>
    <ITEM ID="5000" Descr="spare">
    </ITEM>
    <ITEM ID="CPU">
    </ITEM>
</ITEM>
)");
}

TEST(KyFormats, markupOfOrdinaryTreesIsTheDump)
{
  KyTestPool pool;
  KySampleTree sample(
      "ROOT NAME=\"a\\nb <c>\"; BOARD[2] SIZE Int32 5 unit=\"kB\" modifiable relevance=7; 5000 description=\"spare\"\n"
      "BOARD[2] GAIN:Float64=1.5 VERSION:Version=1.2.3.4 ID:UInt8=255");
  EXPECT_EQ(exported(sample.root(), Format::MARKUP), sample.root().toString(pool, 0x200100, 0).c_str());
}

TEST(KyFormats, anEmptyRootIsATreeInEveryFormat)
{
  KySampleTree sample("ROOT");
  EXPECT_EQ(exported(sample.root(), Format::JSON),
            "{\n  \"format\": \"kyinventory\",\n  \"version\": 1,\n  \"root\": {\n    \"id\": \"ROOT\"\n  }\n}\n");
  EXPECT_EQ(exported(sample.root(), Format::JSON_LINES), "");
  EXPECT_EQ(exported(sample.root(), Format::CSV), "address,type,value,unit,modifiable,relevance,description\n");
  EXPECT_EQ(exported(sample.root(), Format::MARKUP), "<ITEM ID=\"ROOT\">\n</ITEM>\n");
  for (const Format format : s_lossless)
    expectRoundTrip(sample.root(), format);
}

TEST(KyFormats, anUnknownValueTypeIsAReportWithItsAddress)
{
  KySampleTree sample("ROOT/BOARD[2] SIZE 0x777 0");
  for (const Format format : {Format::JSON, Format::JSON_LINES, Format::CSV, Format::MARKUP})
  {
    KyTestPool pool;
    std::string text = "old";
    EXPECT_FALSE(exportTree(pool, sample.root(), format, text));
    EXPECT_EQ(text, "");
    EXPECT_REPORTS(pool, {0x1505000, "exportTree",
                          "BOARD[2]/SIZE is of the unknown type 0x777: it has no value that could be exported."});
  }
}

TEST(KyFormats, formatsHaveNames)
{
  Format format = Format::CSV;
  EXPECT_TRUE(formatOfName("json", format) && format == Format::JSON);
  EXPECT_TRUE(formatOfName("jsonl", format) && format == Format::JSON_LINES);
  EXPECT_TRUE(formatOfName("csv", format) && format == Format::CSV);
  EXPECT_TRUE(formatOfName("markup", format) && format == Format::MARKUP);
  EXPECT_FALSE(formatOfName("JSON", format) || formatOfName("", format));
}

TEST(KyFormats, aTextTellsItsFormat)
{
  KySampleTree sample("ROOT NAME=\"x\"");
  for (const Format wanted : {Format::JSON, Format::JSON_LINES, Format::CSV, Format::MARKUP})
  {
    Format format = wanted == Format::CSV ? Format::JSON : Format::CSV;
    EXPECT_TRUE(detectFormat("\xEF\xBB\xBF" + exported(sample.root(), wanted), format) && format == wanted);
  }
  Format format = Format::CSV;
  EXPECT_TRUE(detectFormat("\n {\"$schema\": \"a\", \"root\": 1", format) && format == Format::JSON);
  EXPECT_TRUE(detectFormat("{\"value\": {\"bytes\": \"\"}, \"address\"", format) && format == Format::JSON_LINES);
  for (const char* text : {"", " \n", "INVE", "[]", "\"x\""})
    EXPECT_FALSE(detectFormat(text, format)) << text;
  KyTestPool pool;
  EXPECT_EQ(importTree(pool, "INVE"), nullptr);
  EXPECT_REPORTS(pool, {0x1505003, "importTree",
                        "The text is of no format that can be imported: neither JSON, JSON lines nor mark-up."});
  EXPECT_EQ(importTree(pool, exported(sample.root(), Format::CSV)), nullptr);
  EXPECT_REPORTS(pool, {0x1505004, "importTree", "A tree cannot be imported from CSV."});
}

// ---- Round trips ----

TEST(KyFormats, everythingComesBack)
{
  KySampleTree sample(s_all);
  for (const Format format : s_lossless)
    expectRoundTrip(sample.root(), format);
}

TEST(KyFormats, textsOfEveryKindComeBack)
{
  KySampleTree sample("ROOT");
  const std::string texts[] = {std::string("a\0b", 3),
                               "\r\n",
                               " ",
                               "\n",
                               "\n\n",
                               "\na\n    ",
                               "\t",
                               "\x01\x1B[31m",
                               "\x7F",
                               "\xC2\x85",
                               "\xEF\xBF\xBE",
                               "\xEF\xBF\xBF",
                               "\xED\xA0\x80",
                               "\xF0\x9F\x98\x80",
                               "\xC0\x80",
                               "&amp;",
                               "]]>",
                               "<!--",
                               "{\"bytes\": \"\"}",
                               "\"",
                               "\\",
                               "",
                               "\xEF\xBB\xBF",
                               "%s"};
  KyTestPool pool;
  unsigned int index = 0;
  for (const std::string& text : texts)
    sample.root().createParameter(pool, KyNInventoryIDs::BOARD[++index] / KyNInventoryIDs::NAME,
                                  KyCString(text.data(), static_cast<unsigned int>(text.size())),
                                  text.substr(0, text.find('\0')).c_str(), false, 0);
  for (const Format format : s_lossless)
    expectRoundTrip(sample.root(), format);
}

TEST(KyFormats, siblingsOfOneIdAndItemsBesideParametersOfOneIdComeBackInOrder)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, KyCInventoryAddress(0xFFFFFFFFu, 0), "no name");
  for (const unsigned int index : {7u, 7u, 0u, 0xFFFFFFFFu, 7u})
  {
    auto* item = new KyCInventoryItem(pool, KyCInventoryAddress(585, index), "BOARD");
    asComposite(&root)->attach(asComposite(item));
  }
  asComposite(&root)->attach(asComposite(new KyCInventoryItem(pool, KyCInventoryAddress(0), "DUMMY")));
  auto* parameter = new KyCInventoryParameter(pool, KyNInventoryIDs::BOARD, "", 5, "", false, 0);
  asComposite(&root)->addParameter(pool, (KyCParam*)parameter);
  for (const Format format : s_lossless)
    expectRoundTrip(root, format);
}

// An assignment can bring that about.
TEST(KyFormats, twoParametersOfOneIdAreShownAndNotTakenBack)
{
  KySampleTree sample("ROOT SIZE=1; ROOT OFFSET=2");
  *sample.parameter("OFFSET") = *sample.parameter("SIZE");
  EXPECT_EQ(exported(sample.root(), Format::CSV),
            "address,type,value,unit,modifiable,relevance,description\n"
            "SIZE,Int32,1,,no,0,SIZE\nSIZE,Int32,1,,no,0,SIZE\n");
  EXPECT_EQ(reasonOf(exported(sample.root(), Format::JSON), Format::JSON),
            "Line 8, column 7 (root item): the item has a parameter SIZE already.");
#ifdef KY_HAVE_PUGIXML
  EXPECT_EQ(reasonOf(exported(sample.root(), Format::MARKUP), Format::MARKUP),
            "Line 7, column 6 (SIZE): the item has a parameter SIZE already.");
#endif
}

TEST(KyFormats, randomTreesOfEveryTypeAndExtremeComeBackToTheSameBytes)
{
  for (unsigned int seed = 1; seed <= 60; ++seed)
  {
    KyTestPool pool;
    const KyItemPtr made = KyRandomTree(seed).make(pool, 40);
    KyBytes bytes = storedTree(made.get());
    const KyItemPtr tree = ::readTree(pool, bytes);    // a stored one: units have no more than 100 bytes
    ASSERT_NE(tree, nullptr);
    bytes = storedTree(tree.get());
    for (const Format format : s_lossless)
    {
      const std::string text = exported(*tree, format);
      const TreePointer same = importTree(pool, text);
      ASSERT_NE(same, nullptr) << "seed " << seed;
      EXPECT_TRUE(storedTree(same.get()) == bytes) << "seed " << seed;
    }
  }
}

TEST(KyFormats, jsonLinesMakeParametersByAddress)
{
  KyTestPool pool;
  KySampleTree sample(
      "ROOT NAME=\"x\"; BOARD[2] SIZE Int32 5 unit=\"kB\" modifiable relevance=7 description=\"d\"; BOARD[2]/5000[3] "
      "GAIN:Float32=0.1");
  const TreePointer tree =
      importTree(pool, exported(sample.root(), Format::JSON_LINES) + "\n  \r\n", Format::JSON_LINES);
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), *tree), "");
}

// ---- JSON that people and programs write ----

TEST(KyFormats, jsonFieldsMayStandInAnyOrderAndNumbersMayBeStrings)
{
  KyTestPool pool;
  const TreePointer tree = importTree(
      pool,
      "\xEF\xBB\xBF{\"root\":{\"items\":[{\"parameters\":[{\"value\":\"12\",\"type\":\"int32\",\"id\":\"SIZE\"},"
      "{\"id\":\"GAIN\",\"type\":\"Float32\",\"value\":1.5},{\"id\":\"OFFSET\",\"type\":\"Long64\",\"value\":-7},"
      "{\"id\":\"INFO\",\"type\":\"String\",\"value\":\"\\u00b5\"}],\"id\":\"BOARD\"}],\"id\":\"ROOT\"},"
      "\"version\":1,\"$schema\":\"x\",\"format\":\"kyinventory\"}");
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(KyTreeDifference(
                *tree, KySampleTree("ROOT/BOARD SIZE=12 GAIN:Float32=1.5 OFFSET:Long64=-7 INFO=\"\xC2\xB5\"").root()),
            "");
}

TEST(KyFormats, whatIsNoJsonIsToldWithLineAndColumn)
{
  EXPECT_EQ(
      reasonOf("{\n  \"format\": \"kyinventory\",\n  }", Format::JSON),
      "This is not JSON: line 3, column 3: syntax error while parsing object key - unexpected '}'; expected string "
      "literal.");
  EXPECT_EQ(reasonOf("{\"format\": \"\xFF\"}", Format::JSON).substr(0, 37), "This is not JSON: line 1, column 13: ");
  EXPECT_EQ(reasonOf(json("{\"id\": \"ROOT\"}") + "x", Format::JSON).substr(0, 37),
            "This is not JSON: line 1, column 64: ");
  EXPECT_EQ(reasonOf("", Format::JSON).substr(0, 36), "This is not JSON: line 1, column 1: ");
}

TEST(KyFormats, whatIsWrongInJsonIsToldWithItsPlaceAndAddress)
{
  // The root begins in column 49.
  EXPECT_EQ(reasonOfJson("[]"), "Line 1, column 49 (root item): \"root\" is of the wrong kind.");
  EXPECT_EQ(reasonOfJson("5"), "Line 1, column 49 (root item): \"root\" is of the wrong kind.");
  EXPECT_EQ(reasonOfJson("{}"), "Line 1, column 49 (root item): \"id\" is missing.");
  EXPECT_EQ(reasonOfJson("{\"id\": \"ROOT\", \"id\": \"ROOT\"}"),
            "Line 1, column 64 (root item): \"id\" stands there twice.");
  EXPECT_EQ(reasonOfJson("{\"id\": \"ROOT\", \"name\": 1}"),
            "Line 1, column 64 (root item): an item has no field \"name\".");
  EXPECT_EQ(reasonOfJson("{\"id\": -1}"),
            "Line 1, column 56 (root item): \"id\" takes whole numbers from 0 to 4294967295.");
  EXPECT_EQ(reasonOfJson("{\"id\": 4294967296}"),
            "Line 1, column 56 (root item): \"id\" takes whole numbers from 0 to 4294967295.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"index\": 1.5}"),
            "Line 1, column 68 (root item): \"index\" takes whole numbers from 0 to 4294967295.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"description\": 5}"),
            "Line 1, column 74 (root item): \"description\" is of the wrong kind.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"description\": \"\\u0000\"}"),
            "Line 1, column 74 (root item): \"description\" holds a zero byte.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"description\": {\"bytes\": \"A\"}}"),
            "Line 1, column 74 (root item): \"bytes\" is not in base64.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"description\": {}}"), "Line 1, column 74 (root item): \"bytes\" is missing.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"items\": {}}"),
            "Line 1, column 68 (root item): \"items\" is of the wrong kind.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"items\": [5]}"), "Line 1, column 69 (root item): an item is expected.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1, \"parameters\": [[]]}"),
            "Line 1, column 74 (root item): a parameter is expected.");
  EXPECT_EQ(reasonOfJson("{\"id\": 1,\n\"items\": [{\"id\": \"BOARD\", \"index\": 2,\n  \"parameters\": [\n {\"id\": "
                         "\"SIZE\", \"unit\": 5}]}]}"),
            "Line 4, column 25 (BOARD[2]/SIZE): \"unit\" is of the wrong kind.");
}

TEST(KyFormats, whatIsWrongWithAParameterOfJsonIsTold)
{
  const auto reason = [](const std::string& parameter)
  { return reasonOfJson("{\"id\": 1, \"parameters\": [" + parameter + "]}"); };
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"type\": \"Int32\"}"), "Line 1, column 74 (SIZE): \"value\" is missing.");
  EXPECT_EQ(
      reason("{\"id\": \"SIZE\", \"type\": \"int\"}"),
      "Line 1, column 97 (SIZE): \"int\" is no type; the types are Int8, Int16, Int32, Long64, UInt8, UInt16, UInt32, "
      "ULong64, Float32, Float64, String, Version.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"type\": \"Int32\", \"value\": 1.5}"),
            "Line 1, column 115 (SIZE): \"value\" is of the wrong kind.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"type\": \"Int32\", \"value\": true}"),
            "Line 1, column 115 (SIZE): \"value\" is of the wrong kind.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"type\": \"String\", \"value\": 5}"),
            "Line 1, column 116 (SIZE): \"value\" is of the wrong kind.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"type\": \"String\", \"value\": {\"bytes\": \"AB\"}}"),
            "Line 1, column 116 (SIZE): \"bytes\" is not in base64.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"modifiable\": 1}"),
            "Line 1, column 103 (SIZE): \"modifiable\" is of the wrong kind.");
  EXPECT_EQ(reason("{\"id\": \"SIZE\", \"unit\": \"" + std::string(101, 'x') + "\"}"),
            "Line 1, column 97 (SIZE): the unit is longer than 100 bytes.");
  const std::string twice = "{\"id\": \"SIZE\", \"type\": \"Int32\", \"value\": 1}";
  EXPECT_EQ(reason(twice + ", " + twice), "Line 1, column 119 (root item): the item has a parameter SIZE already.");
}

TEST(KyFormats, aValueOutOfRangeIsToldByItsTypeAndThenByItsPlace)
{
  const std::vector<KyReport> reports = reportsOf(
      json("{\"id\": 1, \"parameters\": [{\"id\": \"SIZE\", \"type\": \"UInt8\", \"value\": 256}]}"), Format::JSON);
  EXPECT_TRUE(sameReports(
      reports,
      {{0x1500803, "setValueText", "\"256\" is not a value of type UInt8, which takes whole numbers from 0 to 255."},
       {0x1505002, "importTree", "Line 1, column 115 (SIZE): the type cannot take the value."}}));
}

TEST(KyFormats, aMisspelledIdIsToldWithTheNearestNames)
{
  EXPECT_TRUE(
      sameReports(reportsOf(json("{\"id\": \"BORD\"}"), Format::JSON),
                  {{0x1500800, "readElement", "BORD is not an inventory ID. Did you mean BOARD?"},
                   {0x1505002, "importTree", "Line 1, column 56 (root item): \"BORD\" is not the name of an ID."}}));
}

TEST(KyFormats, anotherFormatOrVersionOfJsonIsRefused)
{
  EXPECT_EQ(reasonOf("{\"format\": \"other\"}", Format::JSON),
            "Line 1, column 12 (root item): the format is not \"kyinventory\".");
  EXPECT_EQ(reasonOf("{\"version\": 2}", Format::JSON), "Line 1, column 13 (root item): the version is not 1.");
  EXPECT_EQ(reasonOf("{\"format\": \"kyinventory\", \"version\": 1}", Format::JSON),
            "Line 1, column 1 (root item): \"root\" is missing.");
  EXPECT_EQ(reasonOf("[]", Format::JSON), "Line 1, column 1 (root item): an object is expected.");
}

TEST(KyFormats, whatIsWrongInJsonLinesIsToldWithItsLine)
{
  const std::string good = "{\"address\": \"BOARD/SIZE\", \"type\": \"Int32\", \"value\": 1}\n";
  EXPECT_EQ(reasonOf(good + good, Format::JSON_LINES),
            "Line 2, column 1 (BOARD/SIZE): there is such a parameter already.");
  EXPECT_EQ(reasonOf(good + "\n{\"address\": \"\", \"type\": 5}", Format::JSON_LINES),
            "Line 3, column 13 (line): the address names no parameter.");
  EXPECT_EQ(reasonOf(good + "{\"address\": \"A//B\"}", Format::JSON_LINES),
            "Line 2, column 13 (line): \"A//B\" is not an address.");
  EXPECT_EQ(reasonOf(good + "{\"address\": \"SIZE\"}", Format::JSON_LINES),
            "Line 2, column 1 (SIZE): \"type\" is missing.");
  EXPECT_EQ(reasonOf(good + "5", Format::JSON_LINES), "Line 2, column 1 (line): an object is expected.");
  EXPECT_EQ(reasonOf(good + "{", Format::JSON_LINES).substr(0, 36), "This is not JSON: line 2, column 2: ");
}

#ifdef KY_HAVE_PUGIXML
// ---- Mark-up that people and dumps write ----

TEST(KyFormats, markupTakesTheDefaultDumpWithItsBrokenLines)
{
  KyTestPool pool;
  KySampleTree sample(
      "ROOT NAME=\"a\\nb\\n\\n  c\"; BOARD[2] INFO=\"one\\n\" SIZE Int32 5; BOARD[2]/CPU[0] GAIN:Float32=0.1 "
      "NAME=\"\"");
  for (const int options : {0, 0x4, 0x20, 0x24, 0x40, 0x2, 0x4800, 0x100})
  {
    const TreePointer tree = importTree(pool, sample.root().toString(pool, options, 0).c_str(), Format::MARKUP);
    ASSERT_NE(tree, nullptr) << options;
    EXPECT_EQ(KyTreeDifference(sample.root(), *tree), "") << options;
  }
}

TEST(KyFormats, markupTakesDeclarationCommentsSectionsOfTextAndReferences)
{
  KyTestPool pool;
  const TreePointer tree =
      importTree(pool,
                 "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!-- by hand -->\r\n<ITEM ID='ROOT'>\r\n"
                 "<PARAM Type='String' ID='NAME'><VALUE>&#x41;&#10;<![CDATA[<&amp;>]]>&lt;&#128512;</VALUE>"
                 "</PARAM>\r\n<ITEM ID='5000'/></ITEM>\r\n");
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(
      KyTreeDifference(*tree, KySampleTree("ROOT NAME=\"A\\n<&amp;><\xF0\x9F\x98\x80\"; 5000 description=\"\"").root()),
      "");
}

TEST(KyFormats, whatIsNoMarkupIsToldWithLineAndColumn)
{
  EXPECT_EQ(reasonOf("<ITEM ID=\"ROOT\">\n  <ITEM ID=\"CPU\"></ITM>\n</ITEM>", Format::MARKUP),
            "This is not mark-up: line 2, column 20: start-end tags mismatch.");
  EXPECT_EQ(reasonOf(std::string("<ITEM ID=\"ROOT\">\n\0</ITEM>", 25), Format::MARKUP),
            "This is not mark-up: line 2, column 1: there is a zero byte.");
  EXPECT_EQ(reasonOf("<!-- nothing -->", Format::MARKUP),
            "This is not mark-up: line 1, column 17: no document element found.");
  EXPECT_EQ(reasonOf("", Format::MARKUP), "This is not mark-up: line 1, column 1: no document element found.");
}

TEST(KyFormats, markupExpandsNoEntities)
{
  EXPECT_EQ(
      reasonOf("<!DOCTYPE ITEM [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>\n<ITEM ID=\"ROOT\" Descr=\"&b;\"></ITEM>",
               Format::MARKUP),
      "Line 1, column 11 (root item): a document type is not taken.");
  EXPECT_EQ(reasonOf("<ITEM ID=\"ROOT\" Descr=\"&b;\"></ITEM>", Format::MARKUP),
            "Line 1, column 2 (root item): the value of Descr has an unknown reference.");
  for (const char* reference : {"&", "&;", "&#;", "&#0;", "&#x0;", "&#1;", "&#xD800;", "&#xFFFE;", "&#x110000;",
                                "&#4294967337;", "&#-1;", "&#x;", "&#1x;"})
    EXPECT_EQ(reasonOf("<ITEM ID=\"ROOT\"><PARAM ID=\"NAME\" Type=\"String\"><VALUE>" + std::string(reference) +
                           "</VALUE></PARAM></ITEM>",
                       Format::MARKUP),
              "Line 1, column 55 (NAME): VALUE has an unknown reference.")
        << reference;
}

TEST(KyFormats, whatIsWrongInMarkupIsToldWithItsPlaceAndAddress)
{
  const auto reason = [](const std::string& content)
  { return reasonOf("<ITEM ID=\"ROOT\">\n<ITEM ID=\"BOARD[2]\">\n" + content + "</ITEM>\n</ITEM>", Format::MARKUP); };
  EXPECT_EQ(reason("<BOARD/>"), "Line 3, column 2 (BOARD[2]): a PARAM or an ITEM is expected.");
  EXPECT_EQ(reason("text"), "Line 3, column 1 (BOARD[2]): there is text where an element is expected.");
  EXPECT_EQ(reason("<ITEM/>"), "Line 3, column 2 (BOARD[2]): ID is missing.");
  EXPECT_EQ(reason("<ITEM ID=\"CPU\" ID=\"CPU\"/>"),
            "Line 3, column 2 (BOARD[2]): \"ID\" is no attribute of ITEM, or stands there twice.");
  EXPECT_EQ(reason("<ITEM ID=\"CPU\" Type=\"Int8\"/>"),
            "Line 3, column 2 (BOARD[2]): \"Type\" is no attribute of ITEM, or stands there twice.");
  for (const char* id : {"", "CPU[", "CPU[]", "CPU[2", "CPU[2]x", "CPU[-1]", "CPU[4294967296]", "CPU.", "CPU.2x",
                         "4294967296", "0x5", "[2]"})
    EXPECT_EQ(reason("<ITEM ID=\"" + std::string(id) + "\"/>"),
              "Line 3, column 2 (BOARD[2]): \"" + std::string(id) + "\" is not an ID.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\"/>"), "Line 3, column 2 (BOARD[2]): Type is missing.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE[2]\" Type=\"Int8\"/>"), "Line 3, column 2 (BOARD[2]): a parameter has no index.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"/>"), "Line 3, column 2 (BOARD[2]/SIZE): VALUE is missing.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><NAME/></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): VALUE, UNIT, ISMODIFIABLE or RELEVANCE is expected.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE>1</VALUE><VALUE/></PARAM>"),
            "Line 3, column 47 (BOARD[2]/SIZE): VALUE stands there twice.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE><b/></VALUE></PARAM>"),
            "Line 3, column 38 (BOARD[2]/SIZE): VALUE holds more than a text.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE x=\"y\">1</VALUE></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): VALUE has an unknown attribute or encoding.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE Encoding=\"base64\">MQ==</VALUE></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): a value of this type is not in base64.");
  EXPECT_EQ(reason("<PARAM ID=\"NAME\" Type=\"String\"><VALUE Encoding=\"base64\">MQ</VALUE></PARAM>"),
            "Line 3, column 33 (BOARD[2]/NAME): VALUE is not in base64.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><ISMODIFIABLE>yes</ISMODIFIABLE></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): ISMODIFIABLE takes Yes and No.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><RELEVANCE>-1</RELEVANCE></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): RELEVANCE takes whole numbers from 0 to 4294967295.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><UNIT>" + std::string(101, 'x') + "</UNIT></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): the unit is longer than 100 bytes.");
  EXPECT_EQ(reason("<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE>128</VALUE></PARAM>"),
            "Line 3, column 31 (BOARD[2]/SIZE): the type cannot take the value.");
  const std::string size = "<PARAM ID=\"SIZE\" Type=\"Int8\"><VALUE>1</VALUE></PARAM>";
  EXPECT_EQ(reason(size + size), "Line 3, column 55 (BOARD[2]/SIZE): the item has a parameter SIZE already.");
  EXPECT_EQ(reasonOf("<ITEM ID=\"ROOT\"/><ITEM ID=\"ROOT\"/>", Format::MARKUP),
            "Line 1, column 19 (root item): there is more than one root item.");
  EXPECT_EQ(reasonOf("<PARAM ID=\"SIZE\"/>", Format::MARKUP), "Line 1, column 2 (root item): an ITEM is expected.");
}
#else
TEST(KyFormats, thisBuildSaysThatItCannotReadMarkup)
{
  EXPECT_TRUE(sameReports(reportsOf("<ITEM ID=\"ROOT\"></ITEM>", Format::MARKUP),
                          {{0x1505005, "importTree",
                            "This build cannot read mark-up: the pugixml library was not there when it was built."}}));
}
#endif

// ---- Damage, depth and size ----

TEST(KyFormats, everyCutAndEveryChangedByteIsATreeOrAReport)
{
  KySampleTree sample(s_all);
  for (const Format format : {Format::JSON, Format::JSON_LINES, Format::MARKUP})
  {
    const std::string text = exported(sample.root(), format);
    for (std::size_t n = 0; n < text.size(); ++n)
    {
      for (const char c : {'\0', '\xFF', '"', '{', ']', '<', '&', '9'})
      {
        std::string damaged = text;
        damaged[n] = c;
        KyCErrorListPool pool;
        const TreePointer tree = importTree(pool, damaged, format);
        EXPECT_EQ(tree == nullptr, pool.getErrorCount() != 0) << damaged;
      }
      KyCErrorListPool pool;
      const TreePointer tree = importTree(pool, text.substr(0, n), format);
      EXPECT_EQ(tree == nullptr, pool.getErrorCount() != 0) << n;
    }
  }
}

TEST(KyFormats, treesOf4096LevelsComeBackAndOneMoreIsRefused)
{
  KyTestPool pool;
  KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
  KyCInventoryItem* item = &root;
  for (int level = 2; level <= 4096; ++level)
  {
    auto* below = new KyCInventoryItem(pool, KyNInventoryIDs::BOARD, "BOARD");
    item->addItem(KyCInventoryAddress(), below);
    item = below;
  }
  onASmallStack(
      [&]
      {
        for (const Format format : s_lossless)
          expectRoundTrip(root, format);
      });
  item->addItem(KyCInventoryAddress(), new KyCInventoryItem(pool, KyNInventoryIDs::BOARD, "BOARD"));
  for (const Format format : s_lossless)
    EXPECT_NE(reasonOf(exported(root, format), format).find("items are nested deeper than 4096 levels"),
              std::string::npos);
  EXPECT_NE(reasonOf(
                "{\"address\": \"" +
                    []
                    {
                      std::string path = "CPU";
                      for (int n = 0; n < 4096; ++n)
                        path += "/CPU";
                      return path;
                    }() +
                    "\"}",
                Format::JSON_LINES)
                .find("items are nested deeper than 4096 levels"),
            std::string::npos);
}

TEST(KyFormats, aMillionBracketsAreRefusedAtOnce)
{
  onASmallStack(
      []
      {
        EXPECT_EQ(reasonOf(std::string(1000000, '['), Format::JSON),
                  "Line 1, column 1 (root item): an object is expected.");
        std::string text = "{\"root\":";
        for (int n = 0; n < 1000000; ++n)
          text += "{\"items\":[";
        EXPECT_NE(reasonOf(text, Format::JSON).find("deeper than 4096"), std::string::npos);
        std::string elements;
        for (int n = 0; n < 300000; ++n)
          elements += "<a>";
        reasonOf(elements, Format::MARKUP);
        for (int n = 0; n < 300000; ++n)
          elements += "</a>";
        reasonOf(elements, Format::MARKUP);
      });
}

TEST(KyFormats, largeFlatTreesTakeNearLinearTime)
{
  const auto seconds = [](unsigned int boards)
  {
    KyTestPool pool;
    KyCInventoryItem root(pool, KyNInventoryIDs::ROOT, "ROOT");
    for (unsigned int n = 1; n <= boards; ++n)
      root.createParameter(pool, KyNInventoryIDs::BOARD[n] / KyNInventoryIDs::SIZE, n, "kB", false, 0);
    const auto begin = std::chrono::steady_clock::now();
    for (const Format format : {Format::JSON, Format::JSON_LINES, Format::MARKUP})
    {
      KyCErrorListPool ignored;    // a build without pugixml
      const TreePointer tree = importTree(ignored, exported(root, format), format);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  const double small = seconds(2000);
  EXPECT_LT(seconds(20000), 100 * small + 0.5);
}
