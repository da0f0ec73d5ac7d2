// kyinventory inspect: places, counts and bytes.
#include "integration/KyToolTest.h"

namespace
{
class Inspect : public Tool
{
};

TEST_F(Inspect, printsPlacesSizesAndCounts)
{
  write("image", "image" + contentOf(store("a", "ROOT/CPU[2] SIZE=7; CPU[3] SIZE=8 NAME=\"x\"")));
  const Outcome outcome = run("inspect " + path("image"));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  const std::size_t digest = outcome.out.find("SHA-256");
  ASSERT_NE(digest, std::string::npos);
  EXPECT_EQ(outcome.out.substr(0, digest),
            "File        " + path("image") +
                ", 125 bytes\n"
                "Section     bytes 5 to 125, 120 bytes, found by its trailer; 5 bytes in front, 0 behind\n"
                "Header      at byte 5: version 1, header 24, data 72, trailer 24 bytes\n"
                "Trailer     at byte 101: version 1, header 24, data 72, trailer 24 bytes\n");
  EXPECT_EQ(outcome.out.substr(outcome.out.find("Tree")),
            "Tree        at byte 29: version 1, 72 bytes read, 0 behind\n"
            "Damage      none\n"
            "Items       3, 2 levels\n"
            "Parameters  3\n"
            "Texts       4 stored, 2 repeated, 4 different\n"
            "\n"
            "Type       Parameters\n"
            "Int32               2\n"
            "String              1\n"
            "\n"
            "ID         Items  Parameters\n"
            "CPU            2           0\n"
            "NAME           0           1\n"
            "ROOT           1           0\n"
            "SIZE           0           2\n");
}

TEST_F(Inspect, digestIsThatOfTheExtractedSection)
{
  write("image", "image" + contentOf(store("a", "ROOT")));
  EXPECT_EQ(run("extract " + path("image") + " -o " + path("section")).exitCode, 0);
  const Outcome outcome =
      run("inspect " + path("image") + " >" + path("report") + "; sha256sum <" + path("section") + " | cut -c 1-64 >" +
          path("digest") + "; grep -qF -f " + path("digest") + " " + path("report"));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.err;
}

TEST_F(Inspect, bytesArePrintedWithTheirMeaning)
{
  const Outcome outcome = run("inspect --bytes " + store("a", "ROOT NAME=\"a text of more than 16 bytes\""));
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(
      outcome.out,
      "00000000  49 4E 56 45                                      header: mark INVE\n"
      "00000004  55 4B 59 AA                                      header: mark 0x554B59AA\n"
      "00000008  00 00 00 01                                      header: version 1\n"
      "0000000C  00 00 00 18                                      header: header size 24\n"
      "00000010  00 00 00 36                                      header: data size 54\n"
      "00000014  00 00 00 18                                      header: trailer size 24\n"
      "00000018  01                                               stream: version 1\n"
      "00000019  01                                               an item starts  [.]\n"
      "0000001A  01                                               ID ROOT  [.]\n"
      "0000001B  01                                               index 1  [.]\n"
      "0000001C  00                                               description: a new text  [.]\n"
      "0000001D  04                                               description: length 4  [.]\n"
      "0000001E  52 4F 4F 54                                      description: \"ROOT\"  [.]\n"
      "00000022  2A                                               a parameter of type String  [NAME]\n"
      "00000023  03                                               ID NAME  [NAME]\n"
      "00000024  00                                               description: a new text  [NAME]\n"
      "00000025  04                                               description: length 4  [NAME]\n"
      "00000026  4E 41 4D 45                                      description: \"NAME\"  [NAME]\n"
      "0000002A  1C                                               value: length 28  [NAME]\n"
      "0000002B  61 20 74 65 78 74 20 6F 66 20 6D 6F 72 65 20 74  value: \"a text of more than 16 bytes\"  [NAME]\n"
      "0000003B  68 61 6E 20 31 36 20 62 79 74 65 73\n"
      "00000047  00                                               unit: length 0  [NAME]\n"
      "00000048  00                                               not modifiable  [NAME]\n"
      "00000049  00 00 00 00                                      relevance 0  [NAME]\n"
      "0000004D  02                                               the item ends  [.]\n"
      "0000004E  00 00 00 18                                      trailer: header size 24\n"
      "00000052  00 00 00 36                                      trailer: data size 54\n"
      "00000056  00 00 00 18                                      trailer: trailer size 24\n"
      "0000005A  00 00 00 01                                      trailer: version 1\n"
      "0000005E  49 4E 56 45                                      trailer: mark INVE\n"
      "00000062  55 4B 59 AA                                      trailer: mark 0x554B59AA\n");
}

TEST_F(Inspect, bytesAsJsonAreOneObjectALine)
{
  const Outcome outcome = run("inspect --bytes --json " + store("a", "ROOT"));
  const std::size_t stream = outcome.out.find("{\"offset\":24,");
  ASSERT_NE(stream, std::string::npos);
  EXPECT_EQ(outcome.out.substr(stream, outcome.out.find("{\"offset\":27,") - stream),
            "{\"offset\":24,\"length\":1,\"bytes\":\"01\",\"meaning\":\"stream: version 1\",\"address\":\"\"}\n"
            "{\"offset\":25,\"length\":1,\"bytes\":\"01\",\"meaning\":\"an item starts\",\"address\":\".\"}\n"
            "{\"offset\":26,\"length\":1,\"bytes\":\"01\",\"meaning\":\"ID ROOT\",\"address\":\".\"}\n");
}

TEST_F(Inspect, damagedSectionIsShownUpToTheDamageWithExitCode3)
{
  std::string bytes = contentOf(store("a", "ROOT"));
  bytes[34] = '\x07';    // the end of the root
  write("a", bytes);
  const Outcome counts = run("inspect " + path("a"));
  EXPECT_EQ(counts.exitCode, 3);
  EXPECT_NE(counts.out.find("Damage      at byte 34: the record is of an unknown kind\nItems       1, 1 levels\n"),
            std::string::npos)
      << counts.out;
  const Outcome outcome = run("inspect --bytes " + path("a"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.err, "kyinventory: " + path("a") + ": damaged at byte 34: the record is of an unknown kind\n");
  EXPECT_NE(outcome.out.find("00000022  07                                               not read: damaged, the record "
                             "is of an unknown kind\n"
                             "00000023  00 00 00 18                                      trailer: header size 24\n"),
            std::string::npos)
      << outcome.out;
}

TEST_F(Inspect, controlCharactersOfFileNamesAreShownAsBytes)
{
  store("a\x1B[1m", "ROOT");
  const std::string out = run("inspect '" + path("a\x1B[1m") + "'").out;
  EXPECT_EQ(out.substr(0, out.find('\n')), "File        " + path("a\\x1B[1m") + ", 59 bytes");
}

TEST_F(Inspect, jsonHasTheSameFields)
{
  const Outcome outcome = run("inspect --json " + store("a", "ROOT SIZE=7"));
  EXPECT_EQ(outcome.exitCode, 0);
  const std::size_t tree = outcome.out.find("  \"header\"");
  ASSERT_NE(tree, std::string::npos);
  EXPECT_EQ(outcome.out.substr(tree),
            "  \"header\": {\n"
            "    \"offset\": 0,\n"
            "    \"version\": 1,\n"
            "    \"headerSize\": 24,\n"
            "    \"dataSize\": 29,\n"
            "    \"trailerSize\": 24\n"
            "  },\n"
            "  \"trailer\": {\n"
            "    \"offset\": 53,\n"
            "    \"version\": 1,\n"
            "    \"headerSize\": 24,\n"
            "    \"dataSize\": 29,\n"
            "    \"trailerSize\": 24\n"
            "  },\n"
            "  \"tree\": {\n"
            "    \"version\": 1,\n"
            "    \"size\": 29,\n"
            "    \"behind\": 0,\n"
            "    \"items\": 1,\n"
            "    \"parameters\": 1,\n"
            "    \"depth\": 1,\n"
            "    \"storedTexts\": 2,\n"
            "    \"repeatedTexts\": 0,\n"
            "    \"distinctTexts\": 2,\n"
            "    \"countOfType\": {\n"
            "      \"Int32\": 1\n"
            "    },\n"
            "    \"countOfID\": {\n"
            "      \"ROOT\": {\n"
            "        \"items\": 1,\n"
            "        \"parameters\": 0\n"
            "      },\n"
            "      \"SIZE\": {\n"
            "        \"items\": 0,\n"
            "        \"parameters\": 1\n"
            "      }\n"
            "    }\n"
            "  },\n"
            "  \"damage\": null\n"
            "}\n");
}

TEST_F(Inspect, oneOfTwoSectionsIsChosen)
{
  const std::string both = contentOf(store("a", "ROOT")) + "image" + contentOf(store("b", "ROOT/CPU"));
  write("both", both);
  EXPECT_NE(run("inspect " + path("both")).out.find("Items       2"), std::string::npos);
  EXPECT_NE(run("inspect --at start " + path("both")).out.find("Items       1"), std::string::npos);
  EXPECT_EQ(run("inspect --at middle " + path("both")).exitCode, 2);
}

TEST_F(Inspect, fileWithoutASectionIsExitCode3)
{
  write("plain", "plain");
  const Outcome outcome = run("inspect " + path("plain"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "kyinventory: " + path("plain") +
                " holds no inventory section, neither at its end nor at its start. (0x1500002, "
                "inspectBytes)\n"
                "kyinventory: what to do: Check that it is the right file; get it from its source again.\n");
  EXPECT_EQ(run("inspect " + path("missing")).exitCode, 3);
  EXPECT_EQ(run("inspect").exitCode, 2);
}

TEST_F(Inspect, fullOutputDeviceIsExitCode4)
{
  const Outcome outcome = run("inspect --bytes " + store("a", "ROOT") + " >/dev/full 2>/dev/null #");
  EXPECT_EQ(outcome.exitCode, 4);
}
}    // namespace
