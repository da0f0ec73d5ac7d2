// kyinventory export and import, run as a program.
#include "integration/KyToolTest.h"

namespace
{
namespace fs = std::filesystem;

const char* const s_sample =
    "ROOT/BOARD[2]  SIZE  UInt32  4096  unit=\"kB\"  modifiable  relevance=1\n"
    "ROOT/BOARD[2]  INFO  String  \"a\\xFF\"\n"
    "ROOT/5000  description=\"spare\"";

const char* const s_json = R"({
  "format": "kyinventory",
  "version": 1,
  "root": {
    "id": "ROOT",
    "items": [
      {
        "id": "BOARD",
        "index": 2,
        "parameters": [
          {"id": "SIZE", "type": "UInt32", "value": 4096, "unit": "kB", "modifiable": true, "relevance": 1},
          {"id": "INFO", "type": "String", "value": {"bytes":"Yf8="}}
        ]
      },
      {
        "id": 5000,
        "description": "spare"
      }
    ]
  }
}
)";

class ExportTool : public Tool
{
protected:
  void SetUp() override { store("a.kyinv", s_sample); }

  std::string quoted(const std::string& name) const { return "'" + path(name) + "'"; }
};

std::string validation(const std::string& schema, const std::string& document)
{
  return "python3 -c 'import json, jsonschema, sys; jsonschema.validate(json.load(open(sys.argv[1])), "
         "json.load(open(sys.argv[2])))' " +
         document + " " + schema + " >/dev/null 2>&1";
}
}    // namespace

TEST_F(ExportTool, jsonIsTheFormatWithoutAnOption)
{
  for (const char* option : {"", " --format json", " -o -"})
  {
    const Outcome outcome = run("export " + path("a.kyinv") + option);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, s_json);
  }
}

TEST_F(ExportTool, everyFormatIsPrinted)
{
  EXPECT_EQ(run("export --format jsonl " + path("a.kyinv")).out,
            "{\"address\":\"BOARD[2]/SIZE\",\"type\":\"UInt32\",\"value\":4096,\"unit\":\"kB\",\"modifiable\":true,"
            "\"relevance\":1,\"description\":\"SIZE\"}\n"
            "{\"address\":\"BOARD[2]/INFO\",\"type\":\"String\",\"value\":{\"bytes\":\"Yf8=\"},\"unit\":\"\","
            "\"modifiable\":false,\"relevance\":0,\"description\":\"INFO\"}\n");
  EXPECT_EQ(run("export --format csv " + path("a.kyinv")).out,
            "address,type,value,unit,modifiable,relevance,description\n"
            "BOARD[2]/SIZE,UInt32,4096,kB,yes,1,SIZE\n"
            "BOARD[2]/INFO,String,a\xFF,,no,0,INFO\n");
  EXPECT_EQ(run("export --format markup " + path("a.kyinv")).out, R"(<ITEM ID="ROOT">
    <ITEM ID="BOARD[2]">
        <PARAM ID="SIZE" Type="UInt32">
            <VALUE>4096</VALUE>
            <UNIT>kB</UNIT>
            <ISMODIFIABLE>Yes</ISMODIFIABLE>
            <RELEVANCE>1</RELEVANCE>
        </PARAM>
        <PARAM ID="INFO" Type="String">
            <VALUE Encoding="base64">Yf8=</VALUE>
            <ISMODIFIABLE>No</ISMODIFIABLE>
            <RELEVANCE>0</RELEVANCE>
        </PARAM>
    </ITEM>
    <ITEM ID="5000" Descr="spare">
    </ITEM>
</ITEM>
)");
}

TEST_F(ExportTool, anExistingFileIsWrittenOverWithForceAlone)
{
  write("a.json", "old");
  Outcome outcome = run("export " + path("a.kyinv") + " -o " + path("a.json"));
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("a.json") + ": exists already; --force writes over it\n");
  EXPECT_EQ(contentOf(path("a.json")), "old");
  outcome = run("export " + path("a.kyinv") + " -o " + path("a.json") + " --force");
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.out + outcome.err, "");
  EXPECT_EQ(contentOf(path("a.json")), s_json);
}

TEST_F(ExportTool, wrongUsageGives2AndAnUnusableInput3)
{
  EXPECT_EQ(run("export").exitCode, 2);
  EXPECT_EQ(run("export --format xml " + path("a.kyinv")).exitCode, 2);
  EXPECT_EQ(run("import " + path("a.json")).exitCode, 2);
  EXPECT_EQ(run("import --format csv -o x " + path("a.json")).exitCode, 2);
  write("b.kyinv", "nothing");
  const Outcome outcome = run("export " + path("b.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(run("import " + path("missing") + " -o " + path("b.kyinv") + " --force").exitCode, 3);
  EXPECT_EQ(contentOf(path("b.kyinv")), "nothing");
}

TEST_F(ExportTool, importGivesBackTheSameBytes)
{
  for (const char* format : {"json", "markup"})
  {
#ifndef KY_HAVE_PUGIXML
    if (std::string(format) == "markup") continue;
#endif
    EXPECT_EQ(run("export " + path("a.kyinv") + " --format " + format + " -o " + path("text") + " --force").exitCode,
              0);
    const Outcome outcome = run("import " + path("text") + " -o " + path("b.kyinv") + " --force");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out + outcome.err, "");
    EXPECT_EQ(contentOf(path("b.kyinv")), contentOf(path("a.kyinv")));
    EXPECT_EQ(run("import --format " + std::string(format) + " - -o - < " + path("text")).exitCode, 3)
        << "standard input is empty here";
  }
}

TEST_F(ExportTool, importWritesNothingWhenAnythingIsWrong)
{
  write(
      "a.json",
      "{\"format\": \"kyinventory\", \"version\": 1,\n \"root\": {\"id\": \"ROOT\", \"items\": [{\"id\": \"BORD\"}]}}");
  write("b.kyinv", "old");
  Outcome outcome = run("import " + path("a.json") + " -o " + path("b.kyinv") + " --force");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "kyinventory: " + path("a.json") +
                             ": BORD is not an inventory ID. Did you mean BOARD? (0x1500800, readElement)\n"
                             "kyinventory: " +
                             path("a.json") +
                             ": Line 2, column 42 (?): \"BORD\" is not the name of an ID. (0x1505002, importTree)\n"
                             "kyinventory: what to do: Correct the name; kyinventory ids lists all of them.\n");
  EXPECT_EQ(contentOf(path("b.kyinv")), "old");
  outcome = run("import " + path("a.json") + " -o " + path("c.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_FALSE(fs::exists(path("c.kyinv")));
  EXPECT_EQ(run("import " + path("a.json") + " -o " + path("b.kyinv")).exitCode, 4);
}

TEST_F(ExportTool, importTakesJsonLines)
{
  write("a.jsonl", "{\"address\": \"BOARD[2]/SIZE\", \"type\": \"UInt32\", \"value\": 4096, \"unit\": \"kB\"}\n");
  EXPECT_EQ(run("import " + path("a.jsonl") + " -o " + path("b.kyinv")).exitCode, 0);
  EXPECT_EQ(difference("b.kyinv", "ROOT/BOARD[2] SIZE UInt32 4096 unit=\"kB\""), "");
}

#ifdef KY_HAVE_PUGIXML
TEST_F(ExportTool, importTakesWhatShowPrints)
{
  store("c.kyinv", "ROOT NAME=\"a\\nb & c\"; BOARD[2] GAIN:Float32=0.1");
  EXPECT_EQ(run("import " + path("c.txt") + " -o " + path("d.kyinv")).exitCode, 3);
  write("c.txt", run("show " + path("c.kyinv")).out);
  EXPECT_EQ(run("import " + path("c.txt") + " -o " + path("d.kyinv")).exitCode, 0);
  EXPECT_EQ(contentOf(path("d.kyinv")), contentOf(path("c.kyinv")));
}
#else
TEST_F(ExportTool, importSaysThatThisBuildCannotReadMarkup)
{
  write("c.txt", "<ITEM ID=\"ROOT\"></ITEM>");
  const Outcome outcome = run("import " + path("c.txt") + " -o " + path("d.kyinv"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_NE(outcome.err.find("This build cannot read mark-up"), std::string::npos);
}
#endif

TEST_F(ExportTool, theSchemaTakesWhatIsExportedAndRefusesWhatIsNot)
{
  if (std::system("python3 -c 'import jsonschema' 2>/dev/null") != 0) GTEST_SKIP() << "no python3-jsonschema";
  const std::string schema = KY_SOURCE_DIR "/docs/schema/inventory.schema.json";
  store("types.kyinv",
        "ROOT[3] TEST_I8:Int8=-128 TEST_I16:Int16=-32768 TEST_I32:Int32=-2147483648 TEST_I64:Long64=-5 "
        "TEST_UI8:UInt8=255\n"
        "ROOT[3] TEST_UI16:UInt16=65535 TEST_UI32:UInt32=4294967295 TEST_UI64:ULong64=18446744073709551615\n"
        "ROOT[3] TEST_F32:Float32=1.5 TEST_F64:Float64=-0.1 TEST_S=\"\\x00\" TEST_V:Version=1.2.3.4 NAME=\"\"\n"
        "ROOT[3]/5000[0] SIZE Int32 1 unit=\"\\xFF\" modifiable relevance=4294967295 description=\"\\x01\\xFF\"");
  for (const char* name : {"a.kyinv", "types.kyinv"})
  {
    EXPECT_EQ(run("export " + path(name) + " -o " + path("valid.json") + " --force").exitCode, 0);
    EXPECT_EQ(std::system(validation(schema, path("valid.json")).c_str()), 0) << contentOf(path("valid.json"));
  }
  for (const char* root :
       {"5", "{}", "{\"id\": -1}", "{\"id\": 1, \"name\": 1}", "{\"id\": 1, \"index\": 4294967296}",
        "{\"id\": 1, \"items\": {}}", "{\"id\": 1, \"parameters\": [{\"id\": 1, \"type\": \"Int8\"}]}",
        "{\"id\": 1, \"parameters\": [{\"id\": 1, \"type\": \"Int8\", \"value\": 128}]}",
        "{\"id\": 1, \"parameters\": [{\"id\": 1, \"type\": \"Int\", \"value\": 1}]}",
        "{\"id\": 1, \"parameters\": [{\"id\": 1, \"type\": \"String\", \"value\": {\"bytes\": \"A\"}}]}"})
  {
    write("invalid.json", "{\"format\": \"kyinventory\", \"version\": 1, \"root\": " + std::string(root) + "}");
    EXPECT_NE(std::system(validation(schema, path("invalid.json")).c_str()), 0) << root;
    EXPECT_EQ(run("import " + path("invalid.json") + " -o " + path("x.kyinv") + " --force").exitCode, 3) << root;
  }
}

#ifdef KY_HAVE_HOST
TEST_F(ExportTool, topologyFilesOfRealMachinesComeBackFromEveryFormat)
{
  const fs::path folder = fs::path(KY_SOURCE_DIR) / ".." / "shared" / "data" / "topologies";
  if (!fs::is_directory(folder)) GTEST_SKIP() << "no topology files of real machines beside the sources";
  unsigned int files = 0;
  for (const auto& entry : fs::directory_iterator(folder))
  {
    if (entry.path().extension() != ".xml") continue;
    ++files;
    EXPECT_EQ(run("scan --force --topology " + entry.path().string() + " -o " + path("m.kyinv")).exitCode, 0);
    const std::string bytes = contentOf(path("m.kyinv"));
    for (const std::string format : {"json", "jsonl", "markup"})
    {
      EXPECT_EQ(run("export " + path("m.kyinv") + " --format " + format + " -o " + path("m.txt") + " --force").exitCode,
                0);
      const Outcome outcome = run("import " + path("m.txt") + " -o " + path("n.kyinv") + " --force");
      EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
      EXPECT_EQ(contentOf(path("n.kyinv")), bytes) << entry.path() << format;
    }
    EXPECT_EQ(run("export " + path("m.kyinv") + " --format markup").out,
              run("show --options 0x200100 " + path("m.kyinv")).out);
  }
  EXPECT_GT(files, 0u);
}
#endif
