// Sessions: the words of commands, what a begun address may become, and a tree that is looked at, changed and saved.
#include "inventorykit/KySession.h"

#include <gtest/gtest.h>

#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyValueText.h"
#include "support/KyFiles.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/tree/KyMasterReports.h"

namespace
{
using KyNInventoryKit::Session;
using Words = std::vector<std::string>;
using Commands = std::vector<Words>;

Commands commandsIn(const std::string& text)
{
  KyTestPool pool;
  Commands commands;
  EXPECT_TRUE(KyNInventoryKit::splitCommands(pool, text, commands)) << text;
  return commands;
}

TEST(splitCommands, separatesWordsByBlanksAndCommandsByLineEndsAndSemicolons)
{
  EXPECT_EQ(commandsIn("cd BOARD;ls\t-x\n\n ; pwd"), (Commands{{"cd", "BOARD"}, {"ls", "-x"}, {"pwd"}}));
  EXPECT_EQ(commandsIn(""), Commands());
  EXPECT_EQ(commandsIn(" \n;;\r\n"), Commands());
}

TEST(splitCommands, quotesKeepBlanksSemicolonsAndLineEndsInAWord)
{
  EXPECT_EQ(commandsIn("set NAME=\"a b\" B='c;d\ne'"), (Commands{{"set", "NAME=a b", "B=c;d\ne"}}));
  EXPECT_EQ(commandsIn("a \"\" ''"), (Commands{{"a", "", ""}}));
  EXPECT_EQ(commandsIn("'a'\"b\"c"), (Commands{{"abc"}}));
}

TEST(splitCommands, aBackslashTakesTheMeaningOfACharacter)
{
  EXPECT_EQ(commandsIn("a\\ b \\\"c \\;"), (Commands{{"a b", "\"c", ";"}}));
  EXPECT_EQ(commandsIn("\"a\\\"b\\\\c\\d\""), (Commands{{"a\"b\\c\\d"}}));
  EXPECT_EQ(commandsIn("'a\\'"), (Commands{{"a\\"}}));
  EXPECT_EQ(commandsIn("a\\"), (Commands{{"a\\"}})) << "at the end there is nothing to take it from";
}

TEST(splitCommands, aCommentReachesToTheEndOfTheLine)
{
  EXPECT_EQ(commandsIn("ls # all; of \"it\npwd\n#"), (Commands{{"ls"}, {"pwd"}}));
  EXPECT_EQ(commandsIn("a#b"), (Commands{{"a#b"}}));
}

TEST(splitCommands, anOpenQuoteIsReportedAndLeavesTheCommandsInFront)
{
  for (const char* const quote : {"\"", "'"})
  {
    KyTestPool pool;
    Commands commands;
    EXPECT_FALSE(KyNInventoryKit::splitCommands(pool, std::string("ls; set A=") + quote + "b\n", commands));
    EXPECT_REPORTS(pool, {0x1503000, "splitCommands", std::string("The quote ") + quote + " is not closed."});
    EXPECT_EQ(commands, (Commands{{"ls"}}));
  }
}

TEST(CommandSplitter, givesEachCommandWhenItsEndHasComeWhereverTheTextIsCut)
{
  const std::string text = "a 'b;\nc' \"d\\\"\\e\"; f\\ g # h 'i\n\\;j\nk\\";
  const Commands expected = {{"a", "b;\nc", "d\"\\e"}, {"f g"}, {";j"}, {"k\\"}};
  EXPECT_EQ(commandsIn(text), expected);
  for (std::size_t cut = 0; cut <= text.size(); ++cut)
  {
    KyTestPool pool;
    Commands commands;
    KyNInventoryKit::CommandSplitter splitter;
    splitter.add(text.substr(0, cut), commands);
    splitter.add(text.substr(cut), commands);
    EXPECT_EQ(commands.size(), 3u) << cut;
    EXPECT_TRUE(splitter.finish(pool, commands)) << cut;
    EXPECT_EQ(commands, expected) << cut;
  }
}

Words completed(const std::string& tree, const std::string& begun)
{
  KySampleTree sample(tree);
  return KyNInventoryKit::completeAddress(sample.root(), begun);
}

TEST(completeAddress, offersItemsAndParametersThatBeginSoInListOrder)
{
  const std::string tree = "ROOT NAME=\"a\" BOARD_TYPE=1; BOARD[2]; BIOS; BOARD[3]";
  EXPECT_EQ(completed(tree, ""), (Words{"BOARD[2]", "BIOS", "BOARD[3]", "NAME", "BOARD_TYPE"}));
  EXPECT_EQ(completed(tree, "BO"), (Words{"BOARD[2]", "BOARD[3]", "BOARD_TYPE"}));
  EXPECT_EQ(completed(tree, "BOARD[3"), (Words{"BOARD[3]"}));
  EXPECT_EQ(completed(tree, "X"), Words());
}

TEST(completeAddress, offersWhatIsInAnItemWhoseAddressIsComplete)
{
  const std::string tree = "ROOT/BOARD SIZE=1; BOARD/CPU; BOARD[2]";
  EXPECT_EQ(completed(tree, "BOARD"), (Words{"BOARD[2]", "BOARD/CPU", "BOARD/SIZE"}));
  EXPECT_EQ(completed(tree, "BOARD/"), (Words{"BOARD/CPU", "BOARD/SIZE"}));
  EXPECT_EQ(completed(tree, "BOARD/S"), (Words{"BOARD/SIZE"}));
  EXPECT_EQ(completed(tree, "BOARD/SIZE"), Words());
}

TEST(completeAddress, offersNothingBehindWhatIsNotThereOrNoAddress)
{
  for (const char* const begun : {"CPU/", "BOARD/SIZE/", "//", "BOARD[/", "\x1B/", "BOARD/../"})
    EXPECT_EQ(completed("ROOT/BOARD SIZE=1", begun), Words()) << begun;
}

TEST(completeAddress, offersDuplicateSiblingsOnce)
{
  KySampleTree sample("ROOT/BOARD[2]; BOARD[3]");
  KyMasterReports reports;
  sample.item("BOARD[3]")->setID(kyAddress("BOARD[2]"));
  EXPECT_EQ(reports.takeReports().size(), 1u) << "the ID is taken";
  EXPECT_EQ(KyNInventoryKit::completeAddress(sample.root(), "B"), (Words{"BOARD[2]"}));
}

TEST(completeName, offersPredefinedIDsInAlphabeticalOrder)
{
  EXPECT_EQ(KyNInventoryKit::completeName("VOLTAGE_UPPER_"), (Words{"VOLTAGE_UPPER_MAX", "VOLTAGE_UPPER_MIN"}));
  EXPECT_EQ(KyNInventoryKit::completeName("NO_SUCH"), Words());
}

class KySessionTest : public ::testing::Test
{
protected:
  std::unique_ptr<Session> open(const std::string& tree)
  {
    KySampleTree sample(tree);
    KyTestPool pool;
    EXPECT_TRUE(KyNInventoryKit::writeTree(pool, path(), sample.root(), KyNInventoryKit::Overwrite::YES));
    std::unique_ptr<Session> session = Session::open(pool, path());
    EXPECT_NE(session, nullptr);
    return session;
  }

  std::string path() const { return m_folder.path("a.kyinv"); }

  std::string valueInFile(const std::string& address)
  {
    KyTestPool pool;
    const std::unique_ptr<Session> session = Session::open(pool, path());
    const KyCInventoryParameter* const parameter = session->parameter(pool, address);
    return parameter == nullptr ? "none" : KyNInventoryKit::valueText(*parameter);
  }

  KyTemporaryFolder m_folder;
  KyTestPool m_pool;
};

TEST_F(KySessionTest, beginsAtTheRootWithoutChanges)
{
  const auto session = open("ROOT/BOARD[2]/CPU");
  EXPECT_EQ(session->place(), "/");
  EXPECT_EQ(&session->current(), &session->root());
  EXPECT_FALSE(session->isChanged());
  EXPECT_EQ(session->path(), path());
}

TEST_F(KySessionTest, openOfAMissingFileGivesNullWithItsReport)
{
  EXPECT_EQ(Session::open(m_pool, m_folder.path("missing")), nullptr);
  EXPECT_REPORTS(m_pool, {0x1500000, "readBytes", ""});
}

TEST_F(KySessionTest, enterTakesRelativeAbsoluteAndUpwardAddresses)
{
  const auto session = open("ROOT/BOARD[2]/CPU/DEVICE; BIOS");
  const struct
  {
    const char* address;
    const char* place;
  } steps[] = {{"BOARD[2]", "/BOARD[2]"},
               {"CPU/DEVICE", "/BOARD[2]/CPU/DEVICE"},
               {"..", "/BOARD[2]/CPU"},
               {".", "/BOARD[2]/CPU"},
               {"", "/BOARD[2]/CPU"},
               {"../../BIOS", "/BIOS"},
               {"/BOARD[2]/CPU/", "/BOARD[2]/CPU"},
               {"../", "/BOARD[2]"},
               {"/", "/"},
               {"../..", "/"}};
  for (const auto& step : steps)
  {
    EXPECT_TRUE(session->enter(m_pool, step.address)) << step.address;
    EXPECT_EQ(session->place(), step.place) << step.address;
  }
  EXPECT_NO_REPORTS(m_pool);
}

TEST_F(KySessionTest, upwardElementsMayStandAnywhereBehindItems)
{
  const auto session = open("ROOT/BOARD[2]/CPU SIZE=1; BIOS");
  const struct
  {
    const char* address;
    const char* place;
  } steps[] = {{"/BOARD[2]/..", "/"},
               {"BOARD[2]/CPU/../../BIOS", "/BIOS"},
               {"../BOARD[2]/../BOARD[2]/CPU/../", "/BOARD[2]"},
               {"../../..", "/"},
               {"/../BOARD[2]/./..", nullptr},
               {"BOARD/..", nullptr},
               {"BOARD[2]/CPU/SIZE/..", nullptr},
               {"BOARD[2]//..", nullptr},
               {"//..", nullptr},
               {"BOARD[2]/...", nullptr}};
  for (const auto& step : steps)
  {
    EXPECT_EQ(session->enter(m_pool, step.address), step.place != nullptr) << step.address;
    EXPECT_EQ(session->place(), step.place == nullptr ? "/" : step.place) << step.address;
    EXPECT_EQ(m_pool.takeReports().size(), step.place == nullptr ? 1u : 0u) << step.address;
  }
  EXPECT_EQ(session->complete("BOARD[2]/../BI"), (Words{"BOARD[2]/../BIOS"}));
  EXPECT_EQ(session->complete("BOARD[2]/.."), (Words{"BOARD[2]/../"}));
  EXPECT_EQ(session->complete("CPU/../"), Words());
}

TEST_F(KySessionTest, missingAddressesAreReportedWithTheNearestOnes)
{
  const auto session = open("ROOT/BOARD[2] SIZE=1; BOARD[2]/CPU; BOARD[4]; BOARD_TYPE");
  session->enter(m_pool, "BOARD[2]");
  EXPECT_FALSE(session->enter(m_pool, "../BOARD[3]/"));
  EXPECT_REPORTS(m_pool, {0x1503001, "item", "There is no item ../BOARD[3]. Did you mean ../BOARD[2] or ../BOARD[4]?"});
  EXPECT_EQ(session->parameter(m_pool, "/BOARD[2]/SIZES"), nullptr);
  EXPECT_REPORTS(m_pool, {0x1500800, "readAddress", ""});
  EXPECT_FALSE(session->enter(m_pool, "SIZE[2]"));
  EXPECT_EQ(m_pool.takeReports().size(), 1u);
  EXPECT_EQ(session->node(m_pool, "CPU[2]").item, nullptr);
  EXPECT_REPORTS(m_pool, {0x1503001, "node", "There is no item CPU[2]. Did you mean CPU?"});
  EXPECT_EQ(session->node(m_pool, "/CPU").item, nullptr);
  EXPECT_REPORTS(m_pool, {0x1503003, "node", "There is no parameter /CPU."});
  EXPECT_NE(session->node(m_pool, "SIZE").parameter, nullptr);
  EXPECT_EQ(session->node(m_pool, "CPU").parameter, nullptr);
  EXPECT_EQ(session->node(m_pool, ".").item, &session->current());
  EXPECT_NO_REPORTS(m_pool);
}

TEST_F(KySessionTest, severalChangesAreMadeWhollyOrNotAtAll)
{
  const std::string before = "ROOT NAME=\"a\"\nROOT/BOARD SIZE Int32 1 unit=\"mm\" modifiable relevance=3";
  const std::unique_ptr<Session> session = open(before);
  const auto assignment = [](const char* address, const char* value, const char* type)
  {
    KyNInventoryKit::ParameterChange change;
    change.value = value;
    change.unit = "kB";
    change.isModifiable = false;
    change.relevance = 9;
    change.createType = KyNInventoryKit::typeOfName(type);
    return Session::Assignment{address, change};
  };
  std::vector<Session::Assignment> assignments = {assignment("NAME", "b", "String"),
                                                  assignment("BOARD/SIZE", "2", ""),
                                                  assignment("BOARD/SIZE", "3", ""),
                                                  assignment("BOARD/COUNT", "4", "Int8"),
                                                  assignment("BOARD[2]/CPU/NAME", "c", "String"),
                                                  assignment("BOARD[2]/CPU/../SIZE", "5", "Int32"),
                                                  assignment("BOARD[2]/CPU/SIZE", "many", "Int32")};
  std::size_t failed = 0;
  EXPECT_FALSE(session->changeAll(m_pool, assignments, failed));
  EXPECT_REPORTS(m_pool, {0x1500803, "createParameter", ""});
  EXPECT_EQ(failed, 6u);
  EXPECT_EQ(KyTreeDifference(session->root(), KySampleTree(before).root()), "");
  EXPECT_FALSE(session->isChanged());

  assignments.pop_back();
  EXPECT_TRUE(session->changeAll(m_pool, assignments, failed));
  EXPECT_EQ(
      KyTreeDifference(session->root(), KySampleTree("ROOT NAME String \"b\" unit=\"kB\" relevance=9\n"
                                                     "ROOT/BOARD SIZE Int32 3 unit=\"kB\" relevance=9\n"
                                                     "ROOT/BOARD COUNT Int8 4 unit=\"kB\" relevance=9\n"
                                                     "ROOT/BOARD[2]/CPU NAME String \"c\" unit=\"kB\" relevance=9\n"
                                                     "ROOT/BOARD[2] SIZE Int32 5 unit=\"kB\" relevance=9")
                                            .root()),
      "");
  EXPECT_TRUE(session->isChanged());
}

TEST_F(KySessionTest, changeTakesEverythingOfAParameterAndTellsWhetherThereIsAChange)
{
  const auto session = open("ROOT/BOARD SIZE=1; CPU");
  session->enter(m_pool, "CPU");
  KyNInventoryKit::ParameterChange change;
  change.value = "1";
  EXPECT_TRUE(session->change(m_pool, "../BOARD/SIZE", change));
  EXPECT_FALSE(session->isChanged()) << "it was so before";
  change.value.reset();
  change.relevance = 3;
  EXPECT_TRUE(session->change(m_pool, "../BOARD/SIZE", change));
  EXPECT_TRUE(session->isChanged());
  EXPECT_EQ(session->parameter(m_pool, "/BOARD/SIZE")->getRelevance(), 3u);
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_FALSE(session->change(m_pool, "NAME", change));
  EXPECT_REPORTS(m_pool, {0x1503003, "parameter", "There is no parameter NAME."});
  EXPECT_FALSE(session->change(m_pool, "/BOARD", change));
  EXPECT_REPORTS(m_pool, {0x1503004, "parameter", "/BOARD is an item, not a parameter."});
  change.createType = KyCParam::TYPE_STRING;
  EXPECT_FALSE(session->change(m_pool, "/BOARD/SIZE", change));
  EXPECT_REPORTS(m_pool, {0x1504004, "changeParameter", ""});
  EXPECT_FALSE(session->isChanged());
  EXPECT_TRUE(session->change(m_pool, "NAME", change));
  EXPECT_TRUE(session->isChanged());
  EXPECT_FALSE(session->parameter(m_pool, "NAME")->isModifiable());
}

TEST_F(KySessionTest, enterOfWhatIsNoItemIsReportedAndGoesNowhere)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  session->enter(m_pool, "BOARD");
  EXPECT_FALSE(session->enter(m_pool, "CPU"));
  EXPECT_REPORTS(m_pool, {0x1503001, "item", "There is no item CPU."});
  EXPECT_FALSE(session->enter(m_pool, "/BOARD/SIZE"));
  EXPECT_REPORTS(m_pool, {0x1503002, "item", "/BOARD/SIZE is a parameter, not an item."});
  EXPECT_FALSE(session->enter(m_pool, "BORD"));
  EXPECT_REPORTS(m_pool, {0x1500800, "readAddress", ""});
  EXPECT_FALSE(session->enter(m_pool, "//"));
  EXPECT_REPORTS(m_pool, {0x1500801, "readAddress", ""});
  EXPECT_EQ(session->place(), "/BOARD");
}

TEST_F(KySessionTest, parameterOfWhatIsNoneIsReported)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  EXPECT_EQ(session->parameter(m_pool, "BOARD"), nullptr);
  EXPECT_REPORTS(m_pool, {0x1503004, "parameter", "BOARD is an item, not a parameter."});
  EXPECT_EQ(session->parameter(m_pool, "BOARD/NAME"), nullptr);
  EXPECT_REPORTS(m_pool, {0x1503003, "parameter", "There is no parameter BOARD/NAME."});
  EXPECT_NE(session->parameter(m_pool, "BOARD/SIZE"), nullptr);
}

TEST_F(KySessionTest, setChangesTheTreeAndSaveStoresIt)
{
  const auto session = open("ROOT/BOARD SIZE=1 NAME=\"a\"");
  EXPECT_TRUE(session->set(m_pool, "BOARD/NAME", "a"));
  EXPECT_FALSE(session->isChanged()) << "it was so before";
  EXPECT_TRUE(session->set(m_pool, "BOARD/NAME", "b c"));
  EXPECT_TRUE(session->isChanged());
  EXPECT_EQ(valueInFile("BOARD/NAME"), "a");
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_FALSE(session->isChanged());
  EXPECT_EQ(valueInFile("BOARD/NAME"), "b c");
  EXPECT_TRUE(session->set(m_pool, "BOARD/SIZE", "2"));
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP)) << "what it has stored itself is nobody else's change";
  EXPECT_EQ(valueInFile("BOARD/SIZE"), "2");
}

TEST_F(KySessionTest, setOfAWrongValueChangesNothing)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  EXPECT_FALSE(session->set(m_pool, "BOARD/SIZE", "many"));
  EXPECT_REPORTS(m_pool, {0x1500803, "setValueText", ""});
  EXPECT_FALSE(session->isChanged());
}

TEST_F(KySessionTest, createMakesAParameterRelativeToTheCurrentItem)
{
  const auto session = open("ROOT/BOARD");
  session->enter(m_pool, "BOARD");
  EXPECT_TRUE(session->create(m_pool, "CPU[2]/FREQUENCY", KyCParam::TYPE_UINT32, "66", "MHz"));
  EXPECT_TRUE(session->isChanged());
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_EQ(valueInFile("BOARD/CPU[2]/FREQUENCY"), "66");
  EXPECT_STREQ(session->parameter(m_pool, "CPU[2]/FREQUENCY")->getUnit(), "MHz");
}

TEST_F(KySessionTest, createOfAnExistingParameterFailsAndIsNoChange)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  EXPECT_FALSE(session->create(m_pool, "BOARD/SIZE", KyCParam::TYPE_INT32, "2", ""));
  EXPECT_NE(m_pool.takeReports().size(), 0u);
  EXPECT_FALSE(session->isChanged());
  EXPECT_EQ(KyNInventoryKit::valueText(*session->parameter(m_pool, "BOARD/SIZE")), "1");
}

TEST_F(KySessionTest, storedIsTheTreeAsItWasReadOrSavedLast)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  session->set(m_pool, "BOARD/SIZE", "2");
  EXPECT_EQ(KyTreeDifference(*session->stored(m_pool), KySampleTree("ROOT/BOARD SIZE=1").root()), "");
  session->save(m_pool, Session::Others::KEEP);
  EXPECT_EQ(KyTreeDifference(*session->stored(m_pool), KySampleTree("ROOT/BOARD SIZE=2").root()), "");
}

TEST_F(KySessionTest, saveDoesNotWriteOverWhatSomeoneElseHasStored)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  open("ROOT/BOARD SIZE=7");
  session->set(m_pool, "BOARD/SIZE", "2");
  EXPECT_FALSE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_REPORTS(m_pool, {0x1503005, "save", path() + " has been changed by someone else since it was read."});
  EXPECT_TRUE(session->isChanged());
  EXPECT_EQ(valueInFile("BOARD/SIZE"), "7");
  EXPECT_TRUE(session->save(m_pool, Session::Others::REPLACE));
  EXPECT_EQ(valueInFile("BOARD/SIZE"), "2");
}

TEST_F(KySessionTest, saveKeepsTheImageAroundTheSection)
{
  open("ROOT/BOARD SIZE=1");
  m_folder.write("a.kyinv", std::string(1000, 'x') + contentOf(path()));
  const auto session = Session::open(m_pool, path());
  session->set(m_pool, "BOARD/SIZE", "2");
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_EQ(contentOf(path()).substr(0, 1004), std::string(1000, 'x') + "INVE");
  EXPECT_TRUE(session->set(m_pool, "BOARD/SIZE", "3"));
  EXPECT_TRUE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_EQ(valueInFile("BOARD/SIZE"), "3");
}

TEST_F(KySessionTest, saveIntoAMissingFileFailsAndTheChangeStays)
{
  const auto session = open("ROOT/BOARD SIZE=1");
  session->set(m_pool, "BOARD/SIZE", "2");
  std::filesystem::remove(path());
  EXPECT_FALSE(session->save(m_pool, Session::Others::KEEP));
  EXPECT_REPORTS(m_pool, {0x1500000, "readBytes", ""});
  EXPECT_TRUE(session->isChanged());
}

TEST_F(KySessionTest, theCurrentOneOfDuplicateSiblingsIsTheOneThatWasEntered)
{
  const auto session = open("ROOT/BOARD[2] SIZE=1; BOARD[3] SIZE=2");
  session->enter(m_pool, "BOARD[3]");
  KyMasterReports reports;
  session->current().setID(kyAddress("BOARD[2]"));
  EXPECT_EQ(reports.takeReports().size(), 1u) << "the ID is taken";
  EXPECT_EQ(KyNInventoryKit::valueText(*session->parameter(m_pool, "SIZE")), "2");
  EXPECT_EQ(KyNInventoryKit::valueText(*session->parameter(m_pool, "/BOARD[2]/SIZE")), "1");
}

TEST_F(KySessionTest, completeTakesAddressesAsTheOtherMethodsDo)
{
  const auto session = open("ROOT/BOARD[2]/CPU SIZE=1; BIOS");
  session->enter(m_pool, "BOARD[2]");
  EXPECT_EQ(session->complete("C"), (Words{"CPU"}));
  EXPECT_EQ(session->complete("/B"), (Words{"/BOARD[2]", "/BIOS"}));
  EXPECT_EQ(session->complete("../BI"), (Words{"../BIOS"}));
  EXPECT_EQ(session->complete(".."), (Words{"../"}));
  EXPECT_EQ(session->complete("../"), (Words{"../BOARD[2]", "../BIOS"}));
  EXPECT_EQ(session->complete("CPU/"), (Words{"CPU/SIZE"}));
}
}    // namespace
