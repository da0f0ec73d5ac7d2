// Reading patches, and applying them wholly or not at all.
#include "inventorykit/KyPatch.h"

#include "inventorykit/KyDiff.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

using namespace KyNInventoryKit;

namespace
{
Patch patchBetween(const KyCInventoryItem& before, const KyCInventoryItem& after)
{
  KyTestPool pool;
  Patch patch;
  EXPECT_TRUE(readPatch(pool, differenceToJson(compareTrees(before, after)), "patch", patch));
  return patch;
}

// Applies what leads from one tree to the other, and takes it back.
void expectRoundTrip(const std::string& before, const std::string& after)
{
  KySampleTree old(before);
  const KySampleTree oldCopy(before);
  const KySampleTree fresh(after);
  const Patch patch = patchBetween(old.root(), fresh.root());
  KyTestPool pool;
  TreePointer tree(old.release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, fresh.root()), "");
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::REVERSE));
  EXPECT_EQ(KyTreeDifference(*tree, oldCopy.root()), "");
}

// What a patch from one tree to the other finds in a third one; that one must not change.
void expectConflicts(const std::string& before, const std::string& after, const std::string& target,
                     const std::vector<std::string>& conflicts)
{
  const KySampleTree old(before);
  const KySampleTree fresh(after);
  KySampleTree third(target);
  const KySampleTree thirdCopy(target);
  const Patch patch = patchBetween(old.root(), fresh.root());
  KyTestPool pool;
  EXPECT_FALSE(checkPatch(pool, third.root(), patch, PatchDirection::FORWARD));
  const std::vector<KyReport> checked = pool.takeReports();
  TreePointer tree(third.release());
  EXPECT_FALSE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  const std::vector<KyReport> reports = pool.takeReports();
  EXPECT_TRUE(sameReports(reports, checked));
  EXPECT_EQ(KyTreeDifference(*tree, thirdCopy.root()), "");
  ASSERT_EQ(reports.size(), conflicts.size());
  for (std::size_t n = 0; n < reports.size(); ++n)
  {
    EXPECT_EQ(reports[n].code, 0x1501800u);
    EXPECT_EQ(reports[n].function, "checkPatch");
    EXPECT_EQ(reports[n].text, "The patch does not apply at " + conflicts[n] + ".");
  }
}

std::string documentOf(const std::string& changes)
{
  return "{\"format\":\"kyinventory-diff\",\"version\":1,\"changes\":[" + changes + "]}";
}

// What is wrong with a document: "line 1: ...".
std::string problemOf(const std::string& json)
{
  KyTestPool pool;
  Patch patch;
  EXPECT_FALSE(readPatch(pool, json, "patch", patch)) << json;
  EXPECT_EQ(patch.changeCount(), 0u);
  const std::vector<KyReport> reports = pool.takeReports();
  if (reports.size() != 1) return std::to_string(reports.size()) + " reports";
  EXPECT_EQ(reports[0].code, 0x1501000u);
  EXPECT_EQ(reports[0].function, "readPatch");
  const std::string start = "patch is not a patch: ";
  EXPECT_EQ(reports[0].text.rfind(start, 0), 0u) << reports[0].text;
  return reports[0].text.substr(start.size());
}

std::string problemOfChange(const std::string& change) { return problemOf(documentOf(change)); }
}    // namespace

TEST(KyPatch, eachKindOfChangeGoesThereAndBack)
{
  expectRoundTrip("ROOT", "ROOT");
  expectRoundTrip("ROOT SIZE=1", "ROOT SIZE=2");
  expectRoundTrip("ROOT SIZE:Int32=1", "ROOT SIZE:String=\"one\"");
  expectRoundTrip("ROOT SIZE Int32 1 unit=\"V\"", "ROOT SIZE Int32 1 unit=\"a unit of some length\"");
  expectRoundTrip("ROOT SIZE Int32 1 modifiable", "ROOT SIZE Int32 1 relevance=4294967295");
  expectRoundTrip("ROOT SIZE Int32 1", "ROOT SIZE Int32 1 description=\"s\"");
  expectRoundTrip("ROOT SIZE Version 1.2.3.4 description=\"s\"", "ROOT SIZE Int8 1");
  expectRoundTrip("ROOT/BOARD", "ROOT/BOARD description=\"spare\"");
  expectRoundTrip("ROOT", "ROOT/BOARD SIZE=1; BOARD/CPU[2]/L1_CACHE NAME=\"x\"");
  expectRoundTrip("ROOT/NAME", "ROOT NAME=1");
}

TEST(KyPatch, theRootMayGetAnotherIdAndDescription)
{
  expectRoundTrip("ROOT NAME=\"x\"; BOARD SIZE=1; CPU", "DEVICE[7] NAME=\"y\"; CPU; BOARD SIZE=2");
  expectRoundTrip("ROOT NAME=\"x\"", "5000[4294967295] NAME=\"x\"");
}

TEST(KyPatch, whatIsAddedRemovedAndMovedKeepsTheOrderBothWays)
{
  expectRoundTrip("ROOT ID=1", "ROOT ID=1");
  expectRoundTrip("ROOT/BOARD; CPU; DEVICE", "ROOT/DEVICE; CPU; BOARD");
  expectRoundTrip("ROOT/BOARD; CPU; DEVICE", "ROOT/BOARD[2]; DEVICE; BOARD[3]; BOARD; BOARD[4]");
  expectRoundTrip("ROOT/BOARD SIZE=1; CPU NAME=\"c\"; DEVICE", "ROOT/CPU NAME=\"d\"; BOARD; BOARD/CPU");
  expectRoundTrip("ROOT NAME=1 SIZE=2 OFFSET=3", "ROOT OFFSET=3 ID=4 NAME=1");
}

TEST(KyPatch, severalItemsOfOneNameStayApart)
{
  const auto make = [](const char* text, unsigned int last)
  {
    auto sample = std::make_unique<KySampleTree>(text);
    for (unsigned int n = 2; n <= last; ++n)
      sample->item("BOARD[" + std::to_string(n) + "]")->setID(kyAddress("BOARD"));
    return sample;
  };
  const auto old = make("ROOT/BOARD SIZE=1; CPU; BOARD[2] SIZE=2; BOARD[3] SIZE=3", 3);
  const auto oldCopy = make("ROOT/BOARD SIZE=1; CPU; BOARD[2] SIZE=2; BOARD[3] SIZE=3", 3);
  const auto fresh = make("ROOT/BOARD SIZE=1; BOARD[2] SIZE=5; CPU", 2);
  const Patch patch = patchBetween(old->root(), fresh->root());
  KyTestPool pool;
  TreePointer tree(old->release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, fresh->root()), "");
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::REVERSE));
  EXPECT_EQ(KyTreeDifference(*tree, oldCopy->root()), "");
}

TEST(KyPatch, appliesToATreeThatDiffersElsewhere)
{
  const KySampleTree before("ROOT/BOARD SIZE=1; CPU");
  const KySampleTree after("ROOT/BOARD SIZE=2; DEVICE; CPU");
  const Patch patch = patchBetween(before.root(), after.root());
  KySampleTree target("ROOT NAME=\"mine\"; CPU; BOARD SIZE=1 OFFSET=7");
  KyTestPool pool;
  TreePointer tree(target.release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, KySampleTree("ROOT NAME=\"mine\"; CPU; BOARD SIZE=2 OFFSET=7; DEVICE").root()), "");
}

TEST(KyPatch, whatStandsBehindAMissingSiblingGoesToTheEnd)
{
  const KySampleTree before("ROOT/BOARD; CPU");
  const KySampleTree after("ROOT/BOARD; DEVICE; BOARD[2]; CPU");
  const Patch patch = patchBetween(before.root(), after.root());
  KySampleTree target("ROOT/CPU; CPU[2]");
  KyTestPool pool;
  TreePointer tree(target.release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, KySampleTree("ROOT/CPU; CPU[2]; DEVICE; BOARD[2]").root()), "");
}

TEST(KyPatch, zeroBytesInConflictsAreShown)
{
  expectConflicts("ROOT NAME=\"a\\x00b\"", "ROOT NAME=\"c\"", "ROOT NAME=\"\\x00\\x00d\"",
                  {"NAME: the value is \"\\x00\\x00d\", not \"a\\x00b\""});
}

TEST(KyPatch, textsInConflictsAreQuotedAndEscapedAsInDifferences)
{
  expectConflicts("ROOT NAME=\"Bench 7\"", "ROOT NAME=\"c\"", "ROOT NAME=\"\"",
                  {"NAME: the value is \"\", not \"Bench 7\""});
  expectConflicts("ROOT NAME=\"a\\x1B\\n\"", "ROOT NAME=\"c\"", "ROOT NAME=\"\\xFF\\x22\"",
                  {"NAME: the value is \"\\xFF\\\"\", not \"a\\x1B\\n\""});
  const std::string longText = std::string(99, 'x') + "\xC3\xA4y";
  expectConflicts(("ROOT NAME=\"" + longText + "\"").c_str(), "ROOT NAME=\"c\"", "ROOT NAME=\"d\"",
                  {"NAME: the value is \"d\", not \"" + std::string(99, 'x') + "...\""});
}

TEST(KyPatch, everyConflictIsToldAndNothingChanges)
{
  expectConflicts("ROOT/BOARD SIZE Int32 1 unit=\"V\"; BOARD NAME=\"a\"; BOARD ID=1; CPU",
                  "ROOT/BOARD SIZE Int32 2 unit=\"mV\" modifiable relevance=3 description=\"s\"; BOARD NAME=\"b\"; "
                  "BOARD/DEVICE; CPU description=\"c\"; BOARD OFFSET=1",
                  "ROOT/BOARD SIZE Int32 3 unit=\"A\" modifiable relevance=4 description=\"d\"; BOARD NAME=1; "
                  "BOARD OFFSET=1; BOARD/DEVICE; CPU description=\"e\"",
                  {"BOARD/SIZE: the value is 3, not 1", "BOARD/SIZE: the unit is \"A\", not \"V\"",
                   "BOARD/SIZE: it is modifiable", "BOARD/SIZE: the relevance is 4, not 0",
                   "BOARD/SIZE: the description is \"d\", not \"SIZE\"", "BOARD/NAME: the type is Int32, not String",
                   "BOARD/ID: there is no such parameter", "BOARD/OFFSET: there is such a parameter already",
                   "BOARD/DEVICE: there is such an item already", "CPU: the description is \"e\", not \"CPU\""});
}

TEST(KyPatch, aMissingItemIsToldOnceAndNotForAllBelowIt)
{
  expectConflicts("ROOT/BOARD/CPU SIZE=1", "ROOT/BOARD/CPU SIZE=2; BOARD/CPU/L1_CACHE NAME=1", "ROOT",
                  {"BOARD: there is no such item"});
}

TEST(KyPatch, anItemThatHoldsMoreIsNotRemoved)
{
  expectConflicts(
      "ROOT/BOARD SIZE=1", "ROOT", "ROOT/BOARD SIZE=1 NAME=\"x\"; BOARD/CPU",
      {"BOARD: it would be removed with its parameter NAME", "BOARD: it would be removed with its item CPU"});
}

TEST(KyPatch, aPatchThatIsAppliedDoesNotApplyAgain)
{
  expectConflicts("ROOT SIZE=1", "ROOT SIZE=2; BOARD", "ROOT SIZE=2; BOARD",
                  {"SIZE: the value is 2, not 1", "BOARD: there is such an item already"});
}

TEST(KyPatch, anotherRootIsAConflict)
{
  expectConflicts("ROOT", "DEVICE", "BOARD",
                  {".: the ID is BOARD, not ROOT", ".: the description is \"BOARD\", not \"ROOT\""});
}

TEST(KyPatch, aSecondItemOfANameNeedsTheFirst)
{
  KyTestPool pool;
  Patch patch;
  ASSERT_TRUE(readPatch(pool, documentOf(R"({"change":"added","item":"BOARD#2","after":null,"description":""})"),
                        "patch", patch));
  const KySampleTree sample("ROOT");
  EXPECT_FALSE(checkPatch(pool, sample.root(), patch, PatchDirection::FORWARD));
  EXPECT_REPORTS(pool,
                 {0x1501800, "checkPatch", "The patch does not apply at BOARD#2: there is no BOARD in front of it."});
}

TEST(KyPatch, aSecondParameterOfAnIdIsAConflict)
{
  KyTestPool pool;
  Patch patch;
  ASSERT_TRUE(readPatch(pool,
                        documentOf(R"({"change":"added","parameter":"SIZE#2","after":null,"type":"Int8","value":1,)"
                                   R"("unit":"","modifiable":false,"relevance":0,"description":""})"),
                        "patch", patch));
  const KySampleTree sample("ROOT SIZE=1");
  EXPECT_FALSE(checkPatch(pool, sample.root(), patch, PatchDirection::FORWARD));
  EXPECT_REPORTS(pool,
                 {0x1501800, "checkPatch", "The patch does not apply at SIZE#2: an item has one parameter of an ID."});
}

TEST(KyPatch, placesInACircleDoNoHarm)
{
  KyTestPool pool;
  Patch patch;
  ASSERT_TRUE(readPatch(pool,
                        documentOf(R"({"change":"added","item":"BOARD","after":"CPU","description":"BOARD"},)"
                                   R"({"change":"added","item":"CPU","after":"BOARD","description":"CPU"},)"
                                   R"({"change":"added","item":"DEVICE","after":"DEVICE","description":"DEVICE"})"),
                        "patch", patch));
  EXPECT_EQ(patch.changeCount(), 3u);
  TreePointer tree(KySampleTree("ROOT").release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, KySampleTree("ROOT/BOARD; CPU; DEVICE").root()), "");
}

TEST(KyPatch, whatIsNoJsonIsToldWithLineAndColumn)
{
  EXPECT_EQ(problemOf(""),
            "line 1: no JSON: column 1: syntax error while parsing value - unexpected end of input; expected '[', '{', "
            "or a literal.");
  EXPECT_EQ(problemOf("{\n  \"format\": \"kyinventory-diff\",\n  \"version\" 1}"),
            "line 3: no JSON: column 13: syntax error while parsing object separator - unexpected number literal; "
            "expected ':'.");
  EXPECT_EQ(problemOf(documentOf("") + "x").rfind("line 1: no JSON: ", 0), 0u);
  EXPECT_EQ(problemOf(documentOf("{\"change\":\"\xFF\"}")).rfind("line 1: no JSON: ", 0), 0u);
  EXPECT_EQ(problemOf(documentOf("1e999")).rfind("line 1: ", 0), 0u);
}

TEST(KyPatch, theDocumentHasItsThreeFieldsAndNoOthers)
{
  EXPECT_EQ(problemOf("[]"), "line 1: the document must be an object.");
  EXPECT_EQ(problemOf("5"), "line 1: the document must be an object.");
  EXPECT_EQ(problemOf("{}"), "line 1: \"format\" is missing.");
  EXPECT_EQ(problemOf("{\"format\":\"kyinventory-diff\",\"changes\":[]}"), "line 1: \"version\" is missing.");
  EXPECT_EQ(problemOf("{\"format\":\"kyinventory-diff\",\"version\":1}"), "line 1: \"changes\" is missing.");
  EXPECT_EQ(problemOf("{\"format\":\"diff\"}"), "line 1: \"format\" must be \"kyinventory-diff\".");
  EXPECT_EQ(problemOf("{\"version\":2}"), "line 1: \"version\" must be 1.");
  EXPECT_EQ(problemOf("{\"version\":1.0}"), "line 1: \"version\" must be 1.");
  EXPECT_EQ(problemOf("{\"version\":{}}"), "line 1: \"version\" must be 1.");
  EXPECT_EQ(problemOf("{\"changes\":{}}"), "line 1: \"changes\" must be an array.");
  EXPECT_EQ(problemOf("{\"version\":1,\n\"version\":1}"), "line 2: \"version\" stands twice in one object.");
  EXPECT_EQ(problemOf("{\"author\":1}"), "line 1: \"author\" is no field that is known here.");
}

TEST(KyPatch, deepNestingAndManyFieldsAreRefusedAtOnce)
{
  EXPECT_EQ(problemOf(std::string(1000000, '[')), "line 1: the document must be an object.");
  EXPECT_EQ(problemOf("{\"changes\":" + std::string(1000000, '[')), "line 1: an array stands where none belongs.");
  std::string deep;
  for (int n = 0; n < 100000; ++n)
    deep += "{\"a\":";
  EXPECT_EQ(problemOf("{\"changes\":[" + deep), "line 1: values are nested too deeply.");
  std::string wide = "{";
  for (int n = 0; n < 100000; ++n)
    wide += "\"" + std::to_string(n) + "\":1,";
  EXPECT_EQ(problemOf("{\"changes\":[" + wide), "line 1: an object has too many fields.");
}

TEST(KyPatch, fiveLevelsAndSixteenFieldsAreTakenAndNoMore)
{
  const std::string five = R"({"changes":[{"old":{"value":{"bytes":)";
  EXPECT_NE(problemOf(five + "1}}}]}"), "line 1: values are nested too deeply.");
  EXPECT_EQ(problemOf(five + "[1]}}}]}"), "line 1: values are nested too deeply.");

  std::string sixteen = "{\"changes\":[{\"0\":1";
  for (int n = 1; n < 16; ++n)
    sixteen += ",\"" + std::to_string(n) + "\":1";
  EXPECT_NE(problemOf(sixteen + "}]}"), "line 1: an object has too many fields.");
  EXPECT_EQ(problemOf(sixteen + ",\"16\":1}]}"), "line 1: an object has too many fields.");
}

TEST(KyPatch, aChangeNamesWhatItIsAboutAndHow)
{
  EXPECT_EQ(problemOfChange("5"), "line 1: a change is an object.");
  EXPECT_EQ(problemOfChange("[]"), "line 1: an array stands where none belongs.");
  EXPECT_EQ(problemOfChange("{}"), "line 1: \"change\" is missing.");
  EXPECT_EQ(problemOfChange(R"({"change":1})"), "line 1: \"change\" must be a string.");
  EXPECT_EQ(problemOfChange(R"({"change":"added"})"), "line 1: \"item\" is missing.");
  EXPECT_EQ(problemOfChange(R"({"change":"gone","item":"BOARD"})"), "line 1: \"gone\" is no kind of change.");
  EXPECT_EQ(problemOfChange(R"({"change":"added","change":"added","item":"BOARD"})"),
            "line 1: \"change\" stands twice in one object.");
  EXPECT_EQ(problemOfChange(R"({"change":"added","item":"BOARD","parameter":"SIZE","after":null,"description":""})"),
            "line 1: \"item\" and \"parameter\" exclude each other.");
}

TEST(KyPatch, addressesAreReadStrictly)
{
  const auto of = [](const std::string& address)
  { return problemOfChange("\n{\"change\":\"added\",\"item\":\"" + address + "\"}"); };
  EXPECT_EQ(of(""), "line 2: \"\" is no address: an ID is expected at character 1 of the address.");
  EXPECT_EQ(of("BOARD/"), "line 2: \"BOARD/\" is no address: an ID is expected at character 7 of the address.");
  EXPECT_EQ(of("/BOARD"), "line 2: \"/BOARD\" is no address: an ID is expected at character 1 of the address.");
  EXPECT_EQ(of("BORD"), "line 2: \"BORD\" is no address: BORD is not an inventory ID.");
  EXPECT_EQ(of("BOARD[x]"),
            "line 2: \"BOARD[x]\" is no address: an index and \"]\" is expected at character 7 of the address.");
  EXPECT_EQ(of("BOARD[2"),
            "line 2: \"BOARD[2\" is no address: an index and \"]\" is expected at character 8 of the address.");
  EXPECT_EQ(of("BOARD#1"),
            "line 2: \"BOARD#1\" is no address: a number from 2 on is expected at character 8 of the address.");
  EXPECT_EQ(of("BOARD#"),
            "line 2: \"BOARD#\" is no address: a number from 2 on is expected at character 7 of the address.");
  EXPECT_EQ(of("BOARD x"),
            "line 2: \"BOARD x\" is no address: \"/\", \"[\" or \"#\" is expected at character 6 of the address.");
  EXPECT_EQ(of("4294967296"), "line 2: \"4294967296\" is no address: an ID is expected at character 1 of the address.");
  EXPECT_EQ(of("."), "line 2: the root cannot be added or removed.");
  EXPECT_EQ(problemOfChange(R"({"change":"added","parameter":"."})"), "line 1: \".\" cannot be a parameter.");
  EXPECT_EQ(problemOfChange(R"({"change":"added","parameter":"SIZE[2]"})"),
            "line 1: \"SIZE[2]\" cannot be a parameter.");
}

TEST(KyPatch, anAddressIsNoLongerThanATreeIsDeep)
{
  std::string address = "1";
  for (int n = 1; n < 4096; ++n)
    address += "/1";
  KyTestPool pool;
  Patch patch;
  EXPECT_TRUE(readPatch(
      pool, documentOf("{\"change\":\"added\",\"item\":\"" + address + "\",\"after\":null,\"description\":\"\"}"),
      "patch", patch));
  const std::string problem = problemOfChange("{\"change\":\"added\",\"item\":\"" + address + "/1\"}");
  EXPECT_EQ(problem.rfind("line 1: \"1/1/1/1", 0), 0u);
}

TEST(KyPatch, fieldsThatAreMissingUnknownOrOfAnotherKindAreRefused)
{
  const auto of = [](const std::string& fields)
  { return problemOfChange("{\"change\":\"added\",\"parameter\":\"SIZE\"," + fields + "}"); };
  EXPECT_EQ(of(R"("after":null)"), "line 1: \"description\" is missing.");
  EXPECT_EQ(of(R"("after":null,"description":"","type":"Int32","value":1,"unit":"","relevance":0)"),
            "line 1: \"modifiable\" is missing.");
  EXPECT_EQ(of(R"("after":1)"), "line 1: \"after\" must be a string.");
  EXPECT_EQ(of(R"("after":"A/B")"), "line 1: \"after\": A is not an inventory ID.");
  EXPECT_EQ(of(R"("after":"BOARD/CPU")"), "line 1: \"after\" must be one element of an address.");
  EXPECT_EQ(of(R"("unit":1)"), "line 1: \"unit\" must be a text.");
  EXPECT_EQ(of(R"("unit":"a\u0000")"), "line 1: \"unit\" holds a zero byte.");
  EXPECT_EQ(of(R"("description":{"bytes":"?"})"), "line 1: \"description\" must be a text.");
  EXPECT_EQ(of(R"("modifiable":0)"), "line 1: \"modifiable\" must be true or false.");
  EXPECT_EQ(of(R"("relevance":-1)"), "line 1: \"relevance\" must be a number from 0 to 4294967295.");
  EXPECT_EQ(of(R"("relevance":4294967296)"), "line 1: \"relevance\" must be a number from 0 to 4294967295.");
  EXPECT_EQ(of(R"("type":"Int32")"), "line 1: \"type\" needs a \"value\".");
  EXPECT_EQ(of(R"("value":1)"), "line 1: \"type\" is missing.");
  EXPECT_EQ(of(R"("type":"Int32","value":{})"), "line 1: \"value\" is of a kind that no Int32 has.");
  EXPECT_EQ(of(R"("type":"Int8","value":128)"),
            "line 1: \"128\" is not a value of type Int8, which takes whole numbers from -128 to 127.");
  EXPECT_EQ(of(R"("type":"Float64","value":"one")").rfind("line 1: \"one\" is not a value of type Float64", 0), 0u);
  EXPECT_EQ(of(R"("type":"0x777","value":null)").rfind("line 1: \"0x777\" is no type; types are Int8, ", 0), 0u);
  EXPECT_EQ(of(R"("colour":"red")"), "line 1: \"colour\" is no field that is known here.");
  EXPECT_EQ(of(R"("id":"BOARD")"), "line 1: \"after\" is missing.") << "and does not belong either";
  EXPECT_EQ(problemOfChange(R"({"change":"added","item":"BOARD","after":null,"description":"","unit":""})"),
            "line 1: a field stands where it does not belong.");
}

TEST(KyPatch, oldAndNewTellOfTheSame)
{
  const auto of = [](const std::string& fields)
  { return problemOfChange("{\"change\":\"changed\",\"parameter\":\"SIZE\"," + fields + "}"); };
  EXPECT_EQ(of(R"("old":{"unit":""})"), "line 1: \"new\" is missing.");
  EXPECT_EQ(of(R"("old":{"unit":""},"new":1)"), "line 1: \"new\" must be an object.");
  EXPECT_EQ(of(R"("old":{"unit":""},"new":{"relevance":1})"),
            "line 1: \"old\" and \"new\" must tell of the same, and of something.");
  EXPECT_EQ(of(R"("old":{},"new":{})"), "line 1: \"old\" and \"new\" must tell of the same, and of something.");
  EXPECT_EQ(of(R"("old":{"after":null},"new":{"after":null})"), "line 1: a field stands where it does not belong.");
  EXPECT_EQ(of(R"("old":{"id":"ROOT"},"new":{"id":"BOARD"})"), "line 1: a field stands where it does not belong.");
  EXPECT_EQ(of(R"("old":{"unit":""},"new":{"unit":"V"},"unit":"V")"),
            "line 1: nothing is expected beside what is changed, how, \"old\" and \"new\".");
  EXPECT_EQ(problemOfChange(R"({"change":"changed","item":".","old":{"id":"ROOT"},"new":{"id":"BOARD#2"}})"),
            "line 1: \"id\" must be an ID and an index.");
  EXPECT_EQ(problemOfChange(R"({"change":"moved","item":".","old":{"after":null},"new":{"after":null}})"),
            "line 1: the root cannot be moved.");
  EXPECT_EQ(problemOfChange(R"({"change":"moved","item":"CPU","old":{"after":null},"new":{"description":""}})"),
            "line 1: \"after\" is missing.");
}

TEST(KyPatch, oneThingIsChangedOnce)
{
  const std::string added = R"({"change":"added","item":"BOARD","after":null,"description":""})";
  const std::string removed = R"({"change":"removed","item":"BOARD","after":null,"description":""})";
  const std::string changed =
      R"({"change":"changed","item":"BOARD","old":{"description":"a"},"new":{"description":"b"}})";
  const std::string moved = R"({"change":"moved","item":"BOARD","old":{"after":"CPU"},"new":{"after":null}})";
  for (const std::string& first : {added, removed, changed, moved})
  {
    for (const std::string& second : {added, removed, changed, moved})
    {
      const bool mayBe =
          (&first != &second) && ((first == changed && second == moved) || (first == moved && second == changed));
      if (mayBe) continue;
      EXPECT_EQ(problemOfChange(first + ",\n" + second), "line 2: BOARD is changed twice.") << first << second;
    }
  }
  KyTestPool pool;
  Patch patch;
  EXPECT_TRUE(readPatch(pool, documentOf(changed + "," + moved), "patch", patch));
  EXPECT_TRUE(readPatch(pool, documentOf(moved + "," + changed), "patch", patch));
  const KySampleTree target("ROOT/CPU; BOARD description=\"a\"");
  TreePointer tree(KySampleTree("ROOT/CPU; BOARD description=\"a\"").release());
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::FORWARD));
  EXPECT_EQ(KyTreeDifference(*tree, KySampleTree("ROOT/BOARD description=\"b\"; CPU").root()), "");
  EXPECT_TRUE(applyPatch(pool, tree, patch, PatchDirection::REVERSE));
  EXPECT_EQ(KyTreeDifference(*tree, target.root()), "");
}

TEST(KyPatch, belowWhatIsAddedOrRemovedEverythingIs)
{
  const std::string added = R"({"change":"added","item":"BOARD","after":null,"description":""})";
  const std::string removed = R"({"change":"removed","item":"BOARD","after":null,"description":""})";
  const std::string below = R"(,
    {"change":"changed","item":"BOARD/CPU","old":{"description":"a"},"new":{"description":"b"}})";
  EXPECT_EQ(problemOfChange(added + below),
            "line 2: BOARD/CPU stands below an item that is added, and is not added itself.");
  EXPECT_EQ(problemOfChange(removed + below),
            "line 2: BOARD/CPU stands below an item that is removed, and is not removed itself.");
  EXPECT_EQ(problemOfChange(removed + R"(,{"change":"added","item":"BOARD/CPU","after":null,"description":""})"),
            "line 1: BOARD/CPU stands below an item that is removed, and is not removed itself.");
  EXPECT_EQ(problemOfChange(added + R"(,{"change":"added","item":"BOARD/CPU/L1_CACHE","after":null,"description":""})")
                .substr(8),
            "BOARD/CPU stands below an item that is added, and is not added itself.");
}

TEST(KyPatch, aReportQuotesOnlyTheStartOfALongText)
{
  const std::string problem = problemOfChange("{\"change\":\"" + std::string(100000, 'x') + "\",\"item\":\"BOARD\"}");
  EXPECT_LT(problem.size(), 400u);
}
