// The check, apply and update walks.

#include <memory>
#include <string>
#include <vector>

#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KyPendingValue.h"
#include "support/KyRecordingListener.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "unit/writeback/KyScriptedMethods.h"
#include "unit/writeback/KyWriteBackReports.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr KyMethodKind CHECK = KyMethodKind::CHECK;
constexpr KyMethodKind WRITE = KyMethodKind::WRITE;
constexpr KyMethodKind UPDATE = KyMethodKind::UPDATE;

using TCalls = std::vector<std::string>;

KyReport checkReport(const std::string& address) { return KyScriptedMethods::report(CHECK, address); }
KyReport writeReport(const std::string& address) { return KyScriptedMethods::report(WRITE, address); }
KyReport updateReport(const std::string& address) { return KyScriptedMethods::report(UPDATE, address); }

// ROOT with the sub-items BOARD[1], which has a CPU, and BOARD[2]; an Int32 of value 1 in each item, and two in ROOT.
class KyCInventoryItemCycle : public testing::Test
{
protected:
  // Gives it check and write methods and a pending 5.
  KyCInventoryParameter& designate(const std::string& address)
  {
    KyCInventoryParameter& parameter = *m_sample.parameter(address);
    m_methods.hangCheckAndWrite(parameter);
    parameter.setDesignatedValue(m_pool, 5);
    return parameter;
  }
  KyCInventoryParameter& hangUpdate(const std::string& address)
  {
    KyCInventoryParameter& parameter = *m_sample.parameter(address);
    m_methods.hangUpdate(parameter);
    return parameter;
  }
  void designateAll()
  {
    for (const char* const address : {"SIZE", "BOARD[2]/SIZE", "BOARD/SIZE", "OFFSET", "BOARD/CPU/SIZE"})
      designate(address);
  }
  KyMethodScript& check(const std::string& address) { return m_methods.of(CHECK, *m_sample.parameter(address)); }
  KyMethodScript& write(const std::string& address) { return m_methods.of(WRITE, *m_sample.parameter(address)); }
  KyMethodScript& update(const std::string& address) { return m_methods.of(UPDATE, *m_sample.parameter(address)); }
  // The value of a parameter and, when one is pending, that: "1" or "1->5".
  std::string state(const std::string& address)
  {
    const KyCInventoryParameter& parameter = *m_sample.parameter(address);
    const std::string value = std::to_string(parameter.getValue<int>(m_pool));
    if (!parameter.isDesignatedValueValid()) return value;
    return value + "->" + std::to_string(parameter.getDesignatedValue<int>(m_pool));
  }
  // A new parameter with a write method and a pending 5, for methods to add to the tree.
  KyCInventoryParameter* makeDesignated(const KyCInventoryAddress& id)
  {
    auto* const parameter = new KyCInventoryParameter(m_pool, id, "", 1, "", false, 0);
    m_methods.hangWrite(*parameter);
    parameter->setDesignatedValue(m_pool, 5);
    return parameter;
  }

  KyTestPool m_pool;
  KyScriptedMethods m_methods;
  TCalls m_ended;    // pending values, in the order in which they were destroyed
  KySampleTree m_sample{"ROOT SIZE=1 OFFSET=1; BOARD[1] SIZE=1; BOARD[1]/CPU SIZE=1; BOARD[2] SIZE=1"};
  KyCInventoryItem& m_root = m_sample.root();
};
}    // namespace

// ---- Order and reach, the same for the three ----

TEST_F(KyCInventoryItemCycle, checkGoesDeepestFirstAndByOrdinalNumber)
{
  designateAll();
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(),
            (TCalls{"check BOARD/CPU/SIZE", "check BOARD/SIZE", "check BOARD[2]/SIZE", "check SIZE", "check OFFSET"}));
}

TEST_F(KyCInventoryItemCycle, applyGoesDeepestFirstAndByOrdinalNumber)
{
  designateAll();
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(),
            (TCalls{"write BOARD/CPU/SIZE", "write BOARD/SIZE", "write BOARD[2]/SIZE", "write SIZE", "write OFFSET"}));
}

TEST_F(KyCInventoryItemCycle, updateParametersGoesDeepestFirstAndByOrdinalNumber)
{
  for (const char* const address : {"OFFSET", "SIZE", "BOARD[2]/SIZE", "BOARD/CPU/SIZE", "BOARD/SIZE"})
    hangUpdate(address);
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"update BOARD/CPU/SIZE", "update BOARD/SIZE", "update BOARD[2]/SIZE",
                                           "update SIZE", "update OFFSET"}));
}

namespace
{
// A pending value that tells when it ends.
class KyCTellingParameter : public KyCInventoryParameter
{
public:
  KyCTellingParameter(KyCErrorListPool& pool, TCalls& ended, const std::string& name)
      : KyCInventoryParameter(pool, KyCInventoryAddress(0u), nullptr, 5, nullptr, true, 0), m_ended(ended), m_name(name)
  {
  }
  ~KyCTellingParameter() override { m_ended.push_back(m_name); }

private:
  TCalls& m_ended;
  std::string m_name;
};
}    // namespace

TEST_F(KyCInventoryItemCycle, deleteDesignatedValuesGoesDeepestFirstAndByOrdinalNumber)
{
  for (const char* const address : {"OFFSET", "SIZE", "BOARD[2]/SIZE", "BOARD/CPU/SIZE", "BOARD/SIZE"})
  {
    m_methods.hangWrite(*m_sample.parameter(address));
    writeInfoOf(*m_sample.parameter(address))->setDesignatedValue(new KyCTellingParameter(m_pool, m_ended, address));
  }
  m_root.deleteDesignatedValues();
  EXPECT_EQ(m_ended, (TCalls{"BOARD/CPU/SIZE", "BOARD/SIZE", "BOARD[2]/SIZE", "SIZE", "OFFSET"}));
}

TEST_F(KyCInventoryItemCycle, eachStaysInTheSubtreeItIsCalledOn)
{
  designateAll();
  m_sample.item("BOARD")->check(m_pool, nullptr);
  m_sample.item("BOARD")->apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(),
            (TCalls{"check BOARD/CPU/SIZE", "check BOARD/SIZE", "write BOARD/CPU/SIZE", "write BOARD/SIZE"}));
  EXPECT_EQ(state("SIZE"), "1->5");
  EXPECT_EQ(state("BOARD[2]/SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, updateParametersStaysInTheSubtreeItIsCalledOn)
{
  for (const char* const address : {"OFFSET", "BOARD[2]/SIZE", "BOARD/CPU/SIZE", "BOARD/SIZE"})
    hangUpdate(address);
  m_sample.item("BOARD")->updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"update BOARD/CPU/SIZE", "update BOARD/SIZE"}));
}

TEST_F(KyCInventoryItemCycle, noneVisitsFriends)
{
  KySampleTree shared("SHARED_DATA SIZE=1 OFFSET=1; CPU SIZE=1");
  KyInventoryAccess::setFriend(m_root, &shared.root());
  KyInventoryAccess::setFriend(*m_sample.item("BOARD"), &shared.root());
  m_methods.hangCheckAndWrite(*shared.parameter("SIZE"));
  shared.parameter("SIZE")->setDesignatedValue(m_pool, 5);
  m_methods.hangCheckAndWrite(*shared.parameter("CPU/SIZE"));
  shared.parameter("CPU/SIZE")->setDesignatedValue(m_pool, 5);
  m_methods.hangUpdate(*shared.parameter("OFFSET"));
  m_root.check(m_pool, nullptr);
  m_root.apply(m_pool, nullptr);
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls());
  EXPECT_TRUE(shared.parameter("SIZE")->isDesignatedValueValid());
}

TEST_F(KyCInventoryItemCycle, aTreeWithoutMethodsIsWalkedInSilence)
{
  m_root.check(m_pool, &m_root);
  m_root.apply(m_pool, &m_root);
  m_root.updateParameters(m_pool, &m_root);
  m_root.deleteDesignatedValues();
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(state("SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, aLeafWithoutParametersIsWalkedInSilence)
{
  KyCInventoryItem leaf(m_pool, BOARD, "BOARD");
  leaf.check(m_pool, nullptr);
  leaf.apply(m_pool, nullptr);
  leaf.updateParameters(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
}

TEST_F(KyCInventoryItemCycle, contextAndPoolAreHandedThrough)
{
  KySampleTree other("BOARD");
  hangUpdate("OFFSET");
  KyCInventoryParameter& size = designate("BOARD/CPU/SIZE");
  for (KyCInventoryItem* const context : {static_cast<KyCInventoryItem*>(nullptr), &m_root, m_sample.item("BOARD/CPU"),
                                          m_sample.item("BOARD[2]"), &other.root()})
  {
    size.setDesignatedValue(m_pool, 5);
    m_root.check(m_pool, context);
    EXPECT_EQ(m_methods.lastContext(), context);
    EXPECT_EQ(m_methods.lastPool(), &m_pool);
    m_root.apply(m_pool, context);
    EXPECT_EQ(m_methods.lastContext(), context);
    EXPECT_EQ(m_methods.lastPool(), &m_pool);
    m_root.updateParameters(m_pool, context);
    EXPECT_EQ(m_methods.lastContext(), context);
    EXPECT_EQ(m_methods.lastPool(), &m_pool);
    EXPECT_EQ(m_methods.takeCalls(), (TCalls{"check BOARD/CPU/SIZE", "write BOARD/CPU/SIZE", "update OFFSET"}));
  }
}

TEST_F(KyCInventoryItemCycle, theModifiableFlagPlaysNoPart)
{
  for (const bool modifiable : {false, true})
  {
    KyCInventoryParameter& size = *m_sample.parameter("SIZE");
    if (!modifiable) m_methods.hangCheckAndWrite(size);
    if (!modifiable) hangUpdate("OFFSET");
    size.setModifiableFlag(modifiable);
    m_sample.parameter("OFFSET")->setModifiableFlag(modifiable);
    size.setDesignatedValue(m_pool, modifiable ? 7 : 6);
    m_root.check(m_pool, nullptr);
    m_root.apply(m_pool, nullptr);
    m_root.updateParameters(m_pool, nullptr);
    EXPECT_EQ(m_methods.takeCalls(), (TCalls{"check SIZE", "write SIZE", "update OFFSET"}));
    EXPECT_EQ(state("SIZE"), modifiable ? "7" : "6");
  }
}

// ---- check ----

TEST_F(KyCInventoryItemCycle, checkLeavesAnAcceptedValuePending)
{
  designate("BOARD/SIZE");
  m_root.check(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(state("BOARD/SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, checkEndsAValueThatIsRejectedWithoutAReport)
{
  designate("BOARD/SIZE");
  check("BOARD/SIZE").result = false;
  m_root.check(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, checkFailed("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, checkReportsARejectionBehindTheMethodsReports)
{
  designate("BOARD/SIZE");
  check("BOARD/SIZE") = {nullptr, 2, false};
  m_root.check(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, checkReport("BOARD/SIZE"), checkReport("BOARD/SIZE"), checkFailed("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, checkGoesByTheResultAloneWhateverTheMethodReports)
{
  designate("BOARD/SIZE");
  check("BOARD/SIZE").reports = 1;
  m_root.check(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, checkReport("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, checkSkipsWhatIsNotPendingAndWhatHasNoCheckMethod)
{
  m_methods.hangCheckAndWrite(*m_sample.parameter("SIZE"));
  m_methods.hangWrite(*m_sample.parameter("OFFSET"));
  m_sample.parameter("OFFSET")->setDesignatedValue(m_pool, 5);
  hangUpdate("BOARD/SIZE");
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls());
  EXPECT_EQ(state("OFFSET"), "1->5") << "no check method: nobody says no";
}

TEST_F(KyCInventoryItemCycle, checkGoesOnBehindAFailure)
{
  designateAll();
  for (const char* const address : {"BOARD/CPU/SIZE", "BOARD[2]/SIZE", "OFFSET"})
    check(address).result = false;
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls().size(), 5u);
  EXPECT_REPORTS(m_pool, checkFailed("BOARD/CPU/SIZE"), checkFailed("BOARD[2]/SIZE"), checkFailed("OFFSET"));
  EXPECT_EQ(state("BOARD/SIZE"), "1->5");
  EXPECT_EQ(state("SIZE"), "1->5");
  EXPECT_EQ(state("OFFSET"), "1");
}

TEST_F(KyCInventoryItemCycle, checkCallsNoWriteMethodAndChangesNoValue)
{
  designateAll();
  m_root.check(m_pool, nullptr);
  m_root.check(m_pool, nullptr);
  for (const std::string& call : m_methods.takeCalls())
    EXPECT_EQ(call.compare(0, 5, "check"), 0) << call;
  EXPECT_EQ(state("SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, checkReportsARejectionOfAValueThatItsMethodHasEndedItself)
{
  KyCInventoryParameter& size = designate("SIZE");
  check("SIZE").action = [&](KyCErrorListPool&) { size.deleteDesignatedValue(); };
  check("SIZE").result = false;
  m_root.check(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, checkFailed("SIZE"));
  EXPECT_EQ(state("SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, checkMethodMayChangeThePendingValue)
{
  KyCInventoryParameter& size = designate("SIZE");
  check("SIZE").action = [&](KyCErrorListPool& pool) { size.setDesignatedValue(pool, 6); };
  m_root.check(m_pool, nullptr);
  EXPECT_EQ(state("SIZE"), "1->6");
}

// ---- apply ----

TEST_F(KyCInventoryItemCycle, applyWritesAndAdopts)
{
  KyCInventoryParameter& size = designate("BOARD/SIZE");
  std::string during;
  write("BOARD/SIZE").action = [&](KyCErrorListPool&) { during = state("BOARD/SIZE"); };
  m_root.apply(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(during, "1->5") << "what the write method sees";
  EXPECT_EQ(state("BOARD/SIZE"), "5");
  EXPECT_NE(size.getWriteMethod(), nullptr);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls{"write BOARD/SIZE"}) << "once";
}

TEST_F(KyCInventoryItemCycle, applyTakesAWriteMethodThatReturnsFalseInSilenceForASuccess)
{
  designate("BOARD/SIZE");
  write("BOARD/SIZE").result = false;
  m_root.apply(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(state("BOARD/SIZE"), "5");
}

TEST_F(KyCInventoryItemCycle, applyEndsAValueWhoseWriteMethodReportsAndReturnsTrue)
{
  designate("BOARD/SIZE");
  write("BOARD/SIZE").reports = 1;
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, writeReport("BOARD/SIZE"), cannotWriteNewValue("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, applyEndsAValueWhoseWriteMethodReportsAndReturnsFalse)
{
  designate("BOARD/SIZE");
  write("BOARD/SIZE") = {nullptr, 3, false};
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, writeReport("BOARD/SIZE"), writeReport("BOARD/SIZE"), writeReport("BOARD/SIZE"),
                 cannotWriteNewValue("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, applyCountsOnlyTheErrorsOfEachCall)
{
  m_pool.setError(0x5000002, 1, "before", nullptr);
  designateAll();
  write("BOARD/CPU/SIZE").reports = 1;
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, {0x5000002, "before", ""}, writeReport("BOARD/CPU/SIZE"),
                 cannotWriteNewValue("BOARD/CPU/SIZE"));
  EXPECT_EQ(state("BOARD/CPU/SIZE"), "1");
  for (const char* const address : {"BOARD/SIZE", "BOARD[2]/SIZE", "SIZE", "OFFSET"})
    EXPECT_EQ(state(address), "5") << address;
}

TEST_F(KyCInventoryItemCycle, applyGoesOnBehindAFailure)
{
  designateAll();
  write("BOARD/SIZE").reports = 1;
  write("SIZE") = {nullptr, 1, false};
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls().size(), 5u);
  EXPECT_REPORTS(m_pool, writeReport("BOARD/SIZE"), cannotWriteNewValue("BOARD/SIZE"), writeReport("SIZE"),
                 cannotWriteNewValue("SIZE"));
  EXPECT_EQ(state("BOARD/CPU/SIZE"), "5");
  EXPECT_EQ(state("BOARD/SIZE"), "1");
  EXPECT_EQ(state("BOARD[2]/SIZE"), "5");
  EXPECT_EQ(state("SIZE"), "1");
  EXPECT_EQ(state("OFFSET"), "5");
}

TEST_F(KyCInventoryItemCycle, applyNeedsNoCheckBefore)
{
  designate("SIZE");
  check("SIZE").result = false;
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls{"write SIZE"});
  EXPECT_EQ(state("SIZE"), "5");
}

TEST_F(KyCInventoryItemCycle, applyWritesWhatHasNoCheckMethodAndSkipsWhatIsNotPending)
{
  m_methods.hangWrite(*m_sample.parameter("OFFSET"));
  m_sample.parameter("OFFSET")->setDesignatedValue(m_pool, 5);
  m_methods.hangCheckAndWrite(*m_sample.parameter("SIZE"));
  hangUpdate("BOARD/SIZE");
  m_root.check(m_pool, nullptr);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls{"write OFFSET"});
  EXPECT_EQ(state("OFFSET"), "5");
}

TEST_F(KyCInventoryItemCycle, applyDoesNotWriteWhatCheckHasRejected)
{
  designate("SIZE");
  designate("OFFSET");
  check("SIZE").result = false;
  m_root.check(m_pool, nullptr);
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"check SIZE", "check OFFSET", "write OFFSET"}));
  EXPECT_REPORTS(m_pool, checkFailed("SIZE"));
  EXPECT_EQ(state("SIZE"), "1");
  EXPECT_EQ(state("OFFSET"), "5");
}

TEST_F(KyCInventoryItemCycle, applyEndsAValueWithoutAWriteMethodAndGoesOn)
{
  KyCInventoryParameter& size = *m_sample.parameter("BOARD/SIZE");
  KyInventoryAccess::setAuxInfo(
      size, new KyNInventoryParameter::KyCAuxInfoWrite(nullptr, nullptr, KyCInventoryAddress(), nullptr));
  size.setDesignatedValue(m_pool, 5);
  designate("SIZE");
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, changeNotImplemented("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "1");
  EXPECT_EQ(state("SIZE"), "5");
}

TEST_F(KyCInventoryItemCycle, applyKeepsAValueThatCannotBeAdoptedAndALaterOneSucceeds)
{
  KySampleTree sample("ROOT/BOARD NAME=\"own\" SIZE=1");
  KyCInventoryParameter* const name = sample.parameter("BOARD/NAME");
  m_methods.hangWrite(*name);
  name->setDesignatedValue<KyCString>(m_pool, "a text of more than six characters");
  m_methods.hangWrite(*sample.parameter("BOARD/SIZE"));
  sample.parameter("BOARD/SIZE")->setDesignatedValue(m_pool, 5);
  m_methods.of(WRITE, *name).action = [](KyCErrorListPool&) { KyNPoolAllocator::failAfter(0); };
  sample.root().apply(m_pool, nullptr);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(m_pool, outOfMemory(), cannotSetValue("setValue", "BOARD/NAME"),
                 cannotSetValue("adoptDesignatedValue", "BOARD/NAME"), cannotAdoptNewValue("BOARD/NAME"));
  EXPECT_TRUE(name->isDesignatedValueValid());
  EXPECT_STREQ(name->getValue<const char*>(m_pool), "own");
  EXPECT_EQ(sample.parameter("BOARD/SIZE")->getValue<int>(m_pool), 5) << "the walk goes on";

  m_methods.of(WRITE, *name).action = nullptr;
  sample.root().apply(m_pool, nullptr);
  EXPECT_FALSE(name->isDesignatedValueValid());
  EXPECT_STREQ(name->getValue<const char*>(m_pool), "a text of more than six characters");
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/NAME", "write BOARD/SIZE", "write BOARD/NAME"}));
}

TEST_F(KyCInventoryItemCycle, applyReportsAValueOfAnotherTypeBehindItsAdoption)
{
  KyCInventoryParameter& size = designate("SIZE");
  auto* const pending = new KyCInventoryParameter(m_pool, KyCInventoryAddress(0u), nullptr, 7.5, nullptr, true, 0);
  writeInfoOf(size)->setDesignatedValue(pending);
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, cannotBeRead("getValueInt32", "0", "Float64", "Int32"), cannotGetValueOfHolder(),
                 cannotRetrieveDesignatedValue("SIZE"), cannotAdoptNewValue("SIZE"));
  EXPECT_EQ(writeInfoOf(size)->getDesignatedValue(), pending);
}

TEST_F(KyCInventoryItemCycle, applyReportsAValueForAnUnknownTypeBehindItsAdoption)
{
  auto* const odd = new KyCInventoryParameter(m_pool, NAME, "NAME", 0x777u);
  m_root.addParameter(m_pool, BOARD, odd);
  m_methods.hangWrite(*odd);
  auto* const pending = new KyCInventoryParameter(m_pool, KyCInventoryAddress(0u), nullptr, 7, nullptr, true, 0);
  writeInfoOf(*odd)->setDesignatedValue(pending);
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, unknownType("BOARD/NAME"), cannotAdoptNewValue("BOARD/NAME"));
  EXPECT_EQ(writeInfoOf(*odd)->getDesignatedValue(), pending);
}

TEST_F(KyCInventoryItemCycle, applyReportsAValueThatTheWriteMethodHasEnded)
{
  KyCInventoryParameter& size = designate("SIZE");
  write("SIZE").action = [&](KyCErrorListPool&) { size.deleteDesignatedValue(); };
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, noDesignatedValueDefined("SIZE"), cannotAdoptNewValue("SIZE"));
  EXPECT_EQ(state("SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, applyAdoptsWhatTheWriteMethodHasMadeOfTheValue)
{
  KyCInventoryParameter& size = designate("SIZE");
  write("SIZE").action = [&](KyCErrorListPool& pool)
  {
    size.setValue(pool, 8);
    size.setDesignatedValue(pool, 6);
  };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(state("SIZE"), "6");
}

TEST_F(KyCInventoryItemCycle, applyTakesAnyReportIntoThePoolForAFailedWrite)
{
  designate("SIZE");
  write("SIZE").action = [&](KyCErrorListPool& pool) { m_root.getValue<int>(pool, NAME); };
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, {0x1300801, "getValue", "Parameter NAME does not exist at item ."},
                 cannotWriteNewValue("SIZE"));
  EXPECT_EQ(state("SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, applyTakesAReportThatWasSentOnAtOnceForAFailedWriteToo)
{
  KyRecordingListener listener;
  designate("SIZE");
  write("SIZE").action = [](KyCErrorListPool& pool)
  {
    pool.setError(0x5000002, 1, "sentOn", nullptr);
    KyCErrorManager::getSingleton()->sendErrorList(pool, 0);
  };
  m_root.apply(m_pool, nullptr);
  EXPECT_REPORTS(listener, {0x5000002, "sentOn", ""});
  EXPECT_REPORTS(m_pool, cannotWriteNewValue("SIZE"));    // the count has grown, although the entry is gone
  EXPECT_EQ(state("SIZE"), "1");
}

TEST_F(KyCInventoryItemCycle, reportsIntoAnotherPoolDoNotCount)
{
  KyTestPool other;
  designate("SIZE");
  hangUpdate("OFFSET");
  for (KyMethodScript* const script : {&write("SIZE"), &update("OFFSET")})
    script->action = [&](KyCErrorListPool&) { other.setError(0x5000002, 1, "elsewhere", nullptr); };
  m_root.apply(m_pool, nullptr);
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_REPORTS(other, {0x5000002, "elsewhere", ""}, {0x5000002, "elsewhere", ""});
  EXPECT_EQ(state("SIZE"), "5");
}

// ---- updateParameters ----

TEST_F(KyCInventoryItemCycle, updateParametersLetsTheMethodSetTheValue)
{
  KyCInventoryParameter& size = hangUpdate("BOARD/SIZE");
  update("BOARD/SIZE").action = [&](KyCErrorListPool& pool) { size.setValue(pool, 9); };
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(state("BOARD/SIZE"), "9");
}

TEST_F(KyCInventoryItemCycle, updateParametersIgnoresWhatTheMethodReturns)
{
  KyCInventoryParameter& size = hangUpdate("BOARD/SIZE");
  update("BOARD/SIZE") = {[&](KyCErrorListPool& pool) { size.setValue(pool, 9); }, 0, false};
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_NO_REPORTS(m_pool);
  EXPECT_EQ(state("BOARD/SIZE"), "9");
}

TEST_F(KyCInventoryItemCycle, updateParametersReportsAFailureBehindTheMethodAndGoesOn)
{
  for (const char* const address : {"BOARD/CPU/SIZE", "BOARD/SIZE", "SIZE"})
    hangUpdate(address);
  KyCInventoryParameter& size = *m_sample.parameter("BOARD/SIZE");
  update("BOARD/CPU/SIZE").reports = 1;
  update("BOARD/SIZE") = {[&](KyCErrorListPool& pool) { size.setValue(pool, 9); }, 2, false};
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"update BOARD/CPU/SIZE", "update BOARD/SIZE", "update SIZE"}));
  EXPECT_REPORTS(m_pool, updateReport("BOARD/CPU/SIZE"), cannotUpdateValue("BOARD/CPU/SIZE"),
                 updateReport("BOARD/SIZE"), updateReport("BOARD/SIZE"), cannotUpdateValue("BOARD/SIZE"));
  EXPECT_EQ(state("BOARD/SIZE"), "9") << "nothing is taken back";
}

TEST_F(KyCInventoryItemCycle, updateParametersCountsOnlyTheErrorsOfEachCall)
{
  m_pool.setError(0x5000002, 1, "before", nullptr);
  hangUpdate("SIZE");
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_REPORTS(m_pool, {0x5000002, "before", ""});
}

TEST_F(KyCInventoryItemCycle, updateParametersLeavesPendingValuesAlone)
{
  designate("SIZE");
  hangUpdate("OFFSET");
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), TCalls{"update OFFSET"}) << "although nothing is pending there";
  EXPECT_EQ(state("SIZE"), "1->5");
}

// ---- Methods that change the tree ----

TEST_F(KyCInventoryItemCycle, aMethodMayChangeOtherParametersValues)
{
  designateAll();
  write("BOARD/CPU/SIZE").action = [&](KyCErrorListPool& pool)
  {
    m_root.setValue(pool, BOARD / SIZE, 20);
    m_root.getParameter(SIZE)->setDesignatedValue(pool, 30);
    m_root.getParameter(OFFSET)->deleteDesignatedValue();
  };
  write("OFFSET").action = [](KyCErrorListPool&) { ADD_FAILURE() << "nothing is pending there any more"; };
  write("BOARD[2]/SIZE").action = [&](KyCErrorListPool& pool)
  { m_root.getParameter(BOARD / SIZE)->setDesignatedValue(pool, 40); };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(state("BOARD/SIZE"), "5->40") << "treated before";
  EXPECT_EQ(state("SIZE"), "30");
  EXPECT_EQ(state("OFFSET"), "1");
}

TEST_F(KyCInventoryItemCycle, aParameterAddedToTheSameItemHasItsTurn)
{
  designate("BOARD/SIZE");
  write("BOARD/SIZE").action = [&](KyCErrorListPool& pool)
  { m_root.addParameter(pool, BOARD, makeDesignated(OFFSET)); };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/SIZE", "write BOARD/OFFSET"}));
  EXPECT_EQ(state("BOARD/OFFSET"), "5");
}

TEST_F(KyCInventoryItemCycle, anItemAddedBehindHasItsTurnAndOneAddedBelowHasNot)
{
  designate("BOARD/SIZE");
  write("BOARD/SIZE").action = [&](KyCErrorListPool& pool)
  {
    m_root.addPath(pool, BOARD[3])->addParameter(pool, THIS_NODE, makeDesignated(SIZE));
    m_root.addPath(pool, BOARD[2] / CPU)->addParameter(pool, THIS_NODE, makeDesignated(SIZE));
    m_root.addPath(pool, BOARD / CPU[2])->addParameter(pool, THIS_NODE, makeDesignated(SIZE));
  };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/SIZE", "write BOARD[2]/CPU/SIZE", "write BOARD[3]/SIZE"}));
  EXPECT_EQ(state("BOARD/CPU[2]/SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, aParameterRemovedBehindHasNoTurn)
{
  designateAll();
  write("BOARD/SIZE").action = [&](KyCErrorListPool&)
  {
    delete m_root.getParameter(OFFSET)->detach();
    delete m_root.getParameter(BOARD[2] / SIZE)->detach();
  };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/CPU/SIZE", "write BOARD/SIZE", "write SIZE"}));
}

TEST_F(KyCInventoryItemCycle, aParameterRemovedInFrontMovesTheNextOneOutOfTurn)
{
  KySampleTree sample("ROOT SIZE=1 OFFSET=1 ID=1 VALID=1");
  for (KyCInventoryParameter* parameter = sample.parameter("SIZE"); parameter != nullptr;
       parameter = parameter->getNext())
    m_methods.hangUpdate(*parameter);
  m_methods.of(UPDATE, *sample.parameter("OFFSET")).action = [&](KyCErrorListPool&)
  { delete sample.root().getParameter(SIZE)->detach(); };
  sample.root().updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"update SIZE", "update OFFSET", "update VALID"}))
      << "2 is VALID's number now";
}

TEST_F(KyCInventoryItemCycle, itemsRemovedBesideAndBelowDisturbNothing)
{
  designateAll();
  write("BOARD/SIZE").action = [&](KyCErrorListPool&)
  {
    delete m_root.getItem(BOARD / CPU);
    delete m_root.getItem(BOARD[2]);
  };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/CPU/SIZE", "write BOARD/SIZE", "write SIZE", "write OFFSET"}));
  EXPECT_EQ(state("OFFSET"), "5");
}

TEST_F(KyCInventoryItemCycle, anItemRemovedInFrontDisturbsNothing)
{
  designateAll();
  write("BOARD[2]/SIZE").action = [&](KyCErrorListPool&) { delete m_root.getItem(BOARD); };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(),
            (TCalls{"write BOARD/CPU/SIZE", "write BOARD/SIZE", "write BOARD[2]/SIZE", "write SIZE", "write OFFSET"}));
}

TEST_F(KyCInventoryItemCycle, anItemDetachedByItsOwnMethodEndsTheWalkOverItsSiblings)
{
  designateAll();
  KyCInventoryItem* const board = m_root.getItem(BOARD);
  write("BOARD/SIZE").action = [&](KyCErrorListPool&) { board->detach(); };
  m_root.apply(m_pool, nullptr);
  // Its next sibling is not to be found from it any more; the root still has its turn.
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"write BOARD/CPU/SIZE", "write BOARD/SIZE", "write SIZE", "write OFFSET"}));
  EXPECT_TRUE(m_root.getItem(BOARD[2])->getParameter(SIZE)->isDesignatedValueValid());
  delete board;
}

TEST_F(KyCInventoryItemCycle, aMethodMayChangeTheTreeInCheckAndUpdateToo)
{
  designate("BOARD/SIZE");
  hangUpdate("BOARD[2]/SIZE");
  check("BOARD/SIZE").action = [&](KyCErrorListPool& pool)
  {
    KyCInventoryParameter* const added = makeDesignated(SIZE);
    m_root.addPath(pool, BOARD[3])->addParameter(pool, THIS_NODE, added);
    delete m_root.getParameter(OFFSET)->detach();
  };
  update("BOARD[2]/SIZE").action = [&](KyCErrorListPool&) { delete m_root.getItem(BOARD); };
  m_root.check(m_pool, nullptr);
  m_root.updateParameters(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(), (TCalls{"check BOARD/SIZE", "update BOARD[2]/SIZE"}));
  EXPECT_EQ(state("BOARD[3]/SIZE"), "1->5");
}

TEST_F(KyCInventoryItemCycle, aMethodMayRunAWalkOfItsOwn)
{
  designateAll();
  write("BOARD/CPU/SIZE").action = [&](KyCErrorListPool& pool) { m_root.getItem(BOARD[2])->apply(pool, nullptr); };
  m_root.apply(m_pool, nullptr);
  EXPECT_EQ(m_methods.takeCalls(),
            (TCalls{"write BOARD/CPU/SIZE", "write BOARD[2]/SIZE", "write BOARD/SIZE", "write SIZE", "write OFFSET"}));
  EXPECT_EQ(state("BOARD[2]/SIZE"), "5");
}
