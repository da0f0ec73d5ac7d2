// Construction, description and place of a parameter.

#include "inventory/KyCInventoryParameter.h"

#include <memory>
#include <type_traits>

#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"
#include "tree/KyInventoryAccess.h"
#include "unit/tree/KyMasterReports.h"
#include "unit/tree/KyValueTypes.h"

using namespace KyNInventoryIDs;

namespace
{
bool succeed(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

bool isCustom(const KyCInventoryParameter& parameter) { return KyInventoryAccess::toParam(&parameter)->isCustom(); }
}    // namespace

TEST(KyCInventoryParameter, isNoPublicKindOfParam)
{
  EXPECT_FALSE((std::is_convertible_v<KyCInventoryParameter*, KyCParam*>));
  EXPECT_TRUE((std::is_base_of_v<KyCParam, KyCInventoryParameter>));
}

TEST(KyCInventoryParameter, eachTypedConstructorFixesTypeValueAndTheRest)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        KyTestPool pool;
        const KyCInventoryParameter parameter(pool, SIZE, "how large", KyValueCase<T>::first(), "mV", true,
                                              0xFFFFFFFFu);
        EXPECT_EQ(parameter.getType(), KyValueCase<T>::code);
        EXPECT_STREQ(parameter.getTypeAsCString(), KyValueCase<T>::name);
        EXPECT_STREQ(parameter.getTypeAsString().c_str(), KyValueCase<T>::name);
        EXPECT_TRUE(parameter.getValue<T>(pool) == KyValueCase<T>::first()) << KyValueCase<T>::name;
        EXPECT_EQ(parameter.getID(), KyCInventoryAddress(98, 1));
        EXPECT_STREQ(parameter.getDescription(), "how large");
        EXPECT_STREQ(parameter.getUnit(), "mV");
        EXPECT_TRUE(parameter.isModifiable());
        EXPECT_EQ(parameter.getRelevance(), 0xFFFFFFFFu);
        EXPECT_TRUE(isCustom(parameter));
        EXPECT_EQ(parameter.getParent(), nullptr);
        EXPECT_EQ(parameter.getNext(), nullptr);
        EXPECT_EQ(KyInventoryAccess::getAuxInfo(parameter), nullptr);
      });
}

TEST(KyCInventoryParameter, theUntypedConstructorTakesTheTypeFromItsCodeWithTheRestEmpty)
{
  KyValueTypes::forEach(
      [](auto* typed)
      {
        using T = std::remove_pointer_t<decltype(typed)>;
        KyTestPool pool;
        const KyCInventoryParameter parameter(pool, SIZE, "how large", KyValueCase<T>::code);
        EXPECT_EQ(parameter.getType(), KyValueCase<T>::code);
        EXPECT_TRUE(parameter.getValue<T>(pool) == T()) << KyValueCase<T>::name;
        EXPECT_STREQ(parameter.getDescription(), "how large");
        EXPECT_STREQ(parameter.getUnit(), "");
        EXPECT_FALSE(parameter.isModifiable());
        EXPECT_EQ(parameter.getRelevance(), 0u);
        EXPECT_TRUE(isCustom(parameter));
      });
}

TEST(KyCInventoryParameter, anUnknownTypeCodeHasAnEmptyName)
{
  KyTestPool pool;
  const unsigned int codes[] = {0u, 1u, 0x110u, 0x113u, 0x212u, 0x2001u, 0xFFFFu};
  for (const unsigned int code : codes)
  {
    const KyCInventoryParameter parameter(pool, SIZE, "SIZE", code);
    EXPECT_EQ(parameter.getType(), code);
    EXPECT_STREQ(parameter.getTypeAsCString(), "") << code;
    EXPECT_TRUE(parameter.getTypeAsString().isEmpty()) << code;
  }
}

TEST(KyCInventoryParameter, theDefaultConstructorMakesAnUnsignedCharOfIDOne)
{
  KyMasterReports master;
  KyTestPool pool;
  const KyCInventoryParameter parameter;
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(1, 1));
  EXPECT_STREQ(parameter.getIDString(), "ROOT");
  EXPECT_EQ(parameter.getType(), 0x121u);
  EXPECT_EQ(parameter.getValue<unsigned char>(pool), 0);
  EXPECT_STREQ(parameter.getDescription(), "");
  EXPECT_STREQ(parameter.getUnit(), "");
  EXPECT_FALSE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 0u);
  EXPECT_TRUE(isCustom(parameter));
}

TEST(KyCInventoryParameter, constructionWithAPathReportsTheDescriptionAndTakesTheLastElement)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, BOARD / SIZE, "how large", 5, "", false, 0);
  EXPECT_REPORTS(pool,
                 {0x1301000, "init",
                  "Internal error. Kyrel Support information: Initializing parameter how large: ID has not exactly one "
                  "element."});
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(98, 1));
  EXPECT_EQ(parameter.getValue<int>(pool), 5);
}

TEST(KyCInventoryParameter, constructionWithAPathAndNoMemoryForTheUnitReportsThePathFirst)
{
  KyTestPool pool;
  KyNPoolAllocator::failAfter(0);
  const KyCInventoryParameter parameter(pool, BOARD / SIZE, "SIZE", 5, "a unit of more than six characters", true, 7);
  KyNPoolAllocator::reset();
  EXPECT_REPORTS(pool,
                 {0x1301000, "init",
                  "Internal error. Kyrel Support information: Initializing parameter SIZE: ID has not exactly one "
                  "element."},
                 {0x1000000, "operator new", "Out of memory."});
  EXPECT_STREQ(parameter.getUnit(), "");
  EXPECT_TRUE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 7u);
}

TEST(KyCInventoryParameter, initSetsAgainWhatStandsBesideIDDescriptionAndValue)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 5, "a unit of more than six characters", true, 7);
  parameter.init(pool, OFFSET, "OFFSET", "mV", false, 8);
  EXPECT_STREQ(parameter.getUnit(), "mV");
  EXPECT_FALSE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 8u);
  EXPECT_EQ(parameter.getID(), SIZE);
  EXPECT_STREQ(parameter.getDescription(), "SIZE");
  EXPECT_EQ(parameter.getValue<int>(pool), 5);
  parameter.init(pool, SIZE, nullptr, nullptr, true, 0);
  EXPECT_STREQ(parameter.getUnit(), "");
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCInventoryParameter, initWithAPathReportsAndSetsAllTheSame)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 5, "mV", true, 7);
  parameter.init(pool, THIS_NODE, nullptr, "A", false, 8);
  EXPECT_REPORTS(pool,
                 {0x1301000, "init",
                  "Internal error. Kyrel Support information: Initializing parameter not specified: ID has not exactly "
                  "one element."});
  EXPECT_STREQ(parameter.getUnit(), "A");
  EXPECT_FALSE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 8u);
}

TEST(KyCInventoryParameter, initDropsTheAuxiliaryInfoWithoutDeletingIt)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 5, "", true, 0);
  parameter.setCheckAndWriteMethod(pool, succeed, succeed, BOARD[2], nullptr);
  const std::unique_ptr<KyCInventoryAuxInfo> dropped(KyInventoryAccess::getAuxInfo(parameter));
  parameter.init(pool, SIZE, "SIZE", "", true, 0);
  EXPECT_EQ(parameter.getWriteMethod(), nullptr);
  EXPECT_STREQ(static_cast<KyNInventoryParameter::KyCAuxInfoWrite&>(*dropped).getRelativeAddress().toString().c_str(),
               "BOARD[2]");
  EXPECT_NO_REPORTS(pool);
}

TEST(KyCInventoryParameter, constructionWithAPathAndNoDescriptionReportsNotSpecified)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, BOARD / SIZE, nullptr, 5, "", false, 0);
  EXPECT_REPORTS(pool,
                 {0x1301000, "init",
                  "Internal error. Kyrel Support information: Initializing parameter not specified: ID has not exactly "
                  "one element."});
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(98, 1));
}

TEST(KyCInventoryParameter, constructionWithTheEmptyAddressReportsAndHasIDZero)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, THIS_NODE, "", 0x114u);
  EXPECT_REPORTS(
      pool, {0x1301000, "init",
             "Internal error. Kyrel Support information: Initializing parameter : ID has not exactly one element."});
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(0, 1));
}

TEST(KyCInventoryParameter, aDescriptionThatIsTheRegisteredNameIsKeptByPointerAnyOtherIsCopied)
{
  KyTestPool pool;
  char name[] = "SIZE";
  const KyCInventoryParameter named(pool, SIZE, name, 1, "", false, 0);
  const KyCInventoryParameter untyped(pool, SIZE, name, 0x114u);
  EXPECT_EQ(named.getDescription(), Map.get(98));
  EXPECT_EQ(untyped.getDescription(), Map.get(98));
  char other[] = "size";
  const KyCInventoryParameter described(pool, SIZE, other, 1, "", false, 0);
  other[0] = 'x';
  EXPECT_STREQ(described.getDescription(), "size");
}

TEST(KyCInventoryParameter, aCallersFlagCannotKeepADescriptionByPointer)
{
  KyTestPool pool;
  char description[] = "mine";
  const KyCInventoryParameter parameter(pool, SIZE, description, 0x114u | KyCParam::FLAG_STATIC_DESCRIPTION);
  description[0] = 'x';
  EXPECT_STREQ(parameter.getDescription(), "mine");
}

TEST(KyCInventoryParameter, unitFlagAndRelevanceCanBeChanged)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, nullptr, false, 0);
  EXPECT_STREQ(parameter.getUnit(), "");
  parameter.setUnit("a unit of more than six characters");
  parameter.setModifiableFlag(true);
  parameter.setRelevance(9);
  EXPECT_STREQ(parameter.getUnit(), "a unit of more than six characters");
  EXPECT_TRUE(parameter.isModifiable());
  EXPECT_EQ(parameter.getRelevance(), 9u);
  parameter.setUnit(nullptr);
  parameter.setModifiableFlag(false);
  EXPECT_STREQ(parameter.getUnit(), "");
  EXPECT_FALSE(parameter.isModifiable());
}

TEST(KyCInventoryParameter, theIDHasTheIndexOneWhateverWasGiven)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, SIZE[7], "SIZE", 1, "", false, 0);
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(98, 1));
  EXPECT_EQ(parameter.getIDString(), Map.get(98));
}

TEST(KyCInventoryParameter, anIDThatIsNotPredefinedHasNoName)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, KyCInventoryAddress(5000), "unknown", 1, "", false, 0);
  EXPECT_EQ(parameter.getID(), KyCInventoryAddress(5000));
  EXPECT_EQ(parameter.getIDString(), nullptr);
}

TEST(KyCInventoryParameter, aCopyIsFreeAndHasEverythingButTheAuxiliaryInfo)
{
  KyTestPool pool;
  KySampleTree sample(
      "ROOT NAME String \"a text of more than six characters\" unit=\"long unit\" modifiable relevance=3 "
      "description=\"how it is called\"; ROOT SIZE=1");
  KyCInventoryParameter* const original = sample.parameter("NAME");
  original->setCheckAndWriteMethod(pool, succeed, succeed, BOARD, nullptr);
  const KyCInventoryParameter copy(*original);
  EXPECT_EQ(copy.getID(), KyCInventoryAddress(3));
  EXPECT_STREQ(copy.getDescription(), "how it is called");
  EXPECT_STREQ(copy.getValue<const char*>(pool), "a text of more than six characters");
  EXPECT_STREQ(copy.getUnit(), "long unit");
  EXPECT_TRUE(copy.isModifiable());
  EXPECT_EQ(copy.getRelevance(), 3u);
  EXPECT_TRUE(isCustom(copy));
  EXPECT_EQ(copy.getParent(), nullptr);
  EXPECT_EQ(copy.getNext(), nullptr);
  EXPECT_EQ(copy.getWriteMethod(), nullptr);
  EXPECT_EQ(KyInventoryAccess::getAuxInfo(copy), nullptr);
  EXPECT_NE(original->getWriteMethod(), nullptr);
}

TEST(KyCInventoryParameter, aCopyOutlivesItsOriginal)
{
  KyTestPool pool;
  std::unique_ptr<KyCInventoryParameter> original(
      new KyCInventoryParameter(pool, VERSION, "which one", KyCVersion(1, 2, 3, 4), "a long unit", false, 0));
  const KyCInventoryParameter copy(*original);
  original.reset();
  EXPECT_EQ(copy.getValue<KyCVersion>(pool), KyCVersion(1, 2, 3, 4));
  EXPECT_STREQ(copy.getDescription(), "which one");
  EXPECT_STREQ(copy.getUnit(), "a long unit");
}

TEST(KyCInventoryParameter, assignmentTakesOverEverythingAndChangesTheType)
{
  KyTestPool pool;
  KyCInventoryParameter target(pool, SIZE, "SIZE", 1, "kB", false, 0);
  const KyCInventoryParameter source(pool, NAME, "its name", KyCString("a long enough text"), "unit", true, 5);
  target = source;
  EXPECT_EQ(target.getID(), KyCInventoryAddress(3));
  EXPECT_STREQ(target.getDescription(), "its name");
  EXPECT_EQ(target.getType(), 0x2000u);
  EXPECT_STREQ(target.getValue<const char*>(pool), "a long enough text");
  EXPECT_STREQ(target.getUnit(), "unit");
  EXPECT_TRUE(target.isModifiable());
  EXPECT_EQ(target.getRelevance(), 5u);
}

TEST(KyCInventoryParameter, assignmentDropsTheAuxiliaryInfoWithoutDeletingIt)
{
  KyTestPool pool;
  KyCInventoryParameter target(pool, SIZE, "SIZE", 1, "", false, 0);
  KyCInventoryParameter source(pool, SIZE, "SIZE", 2, "", false, 0);
  target.setCheckAndWriteMethod(pool, nullptr, succeed, BOARD[2], nullptr);
  source.setUpdateMethod(pool, succeed);
  const std::unique_ptr<KyCInventoryAuxInfo> dropped(KyInventoryAccess::getAuxInfo(target));
  target = source;
  EXPECT_EQ(KyInventoryAccess::getAuxInfo(target), nullptr);
  EXPECT_EQ(target.getUpdateMethod(), nullptr);
  EXPECT_NE(source.getUpdateMethod(), nullptr);
  EXPECT_STREQ(static_cast<KyNInventoryParameter::KyCAuxInfoWrite&>(*dropped).getRelativeAddress().toString().c_str(),
               "BOARD[2]");
}

TEST(KyCInventoryParameter, assignmentToItselfChangesNothing)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, NAME, "its name", KyCString("a long enough text"), "unit", true, 5);
  parameter.setUpdateMethod(pool, succeed);
  const KyCInventoryParameter& same = parameter;
  parameter = same;
  EXPECT_STREQ(parameter.getValue<const char*>(pool), "a long enough text");
  EXPECT_NE(parameter.getUpdateMethod(), nullptr);
}

TEST(KyCInventoryParameter, assignmentLeavesTheParameterWhereItHangsAndLookUpsFollowItsNewID)
{
  KyTestPool pool;
  KySampleTree sample("ROOT SIZE=1 OFFSET=2");
  KyCInventoryParameter* const parameter = sample.parameter("SIZE");
  *parameter = KyCInventoryParameter(pool, NAME, "NAME", 5, "", false, 0);
  EXPECT_EQ(parameter->getParent(), &sample.root());
  EXPECT_EQ(sample.root().getParameter(NAME), parameter);
  EXPECT_EQ(sample.root().getParameter(SIZE), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT NAME=5 OFFSET=2").root()), "");
}

TEST(KyCInventoryParameter, assignmentAmongManyParametersIsFollowedByLookUps)
{
  KyTestPool pool;
  KySampleTree sample("ROOT");
  for (unsigned int id = 100; id < 200; ++id)
    sample.root().createParameter<int>(pool, KyCInventoryAddress(id), 1, "", false, 0);
  KyCInventoryParameter* const early = sample.root().getParameter(120);
  KyCInventoryParameter* const late = sample.root().getParameter(180);
  *late = *early;
  EXPECT_EQ(sample.root().getParameter(120), early);
  EXPECT_EQ(sample.root().getParameter(180), nullptr);
  *early = KyCInventoryParameter(pool, NAME, "NAME", 5, "", false, 0);
  EXPECT_EQ(sample.root().getParameter(120), late);
  EXPECT_EQ(sample.root().getParameter(NAME), early);
}

TEST(KyCInventoryParameter, ofTwoParametersOfOneIDTheFirstIsDetachedWhicheverIsAsked)
{
  KyMasterReports master;
  KySampleTree sample("ROOT SIZE=1 OFFSET=2");
  KyCInventoryParameter* const first = sample.parameter("SIZE");
  KyCInventoryParameter* const second = sample.parameter("OFFSET");
  *second = *first;
  const std::unique_ptr<KyCInventoryParameter> detached(second->detach());
  EXPECT_EQ(detached.get(), first);
  EXPECT_EQ(second->getParent(), &sample.root());
}

TEST(KyCInventoryParameter, theAddressOfAFreeParameterIsEmpty)
{
  KyTestPool pool;
  const KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  EXPECT_TRUE(parameter.getAddress().isEmpty());
}

TEST(KyCInventoryParameter, theAddressIsTheItemsWithTheIDBehind)
{
  KySampleTree sample("ROOT SIZE=1; BOARD[2]/IOCHANNEL[3] SIZE=1");
  EXPECT_STREQ(sample.parameter("SIZE")->getAddress().toString().c_str(), "SIZE");
  EXPECT_STREQ(sample.parameter("BOARD[2]/IOCHANNEL[3]/SIZE")->getAddress().toString().c_str(),
               "BOARD[2]/IOCHANNEL[3]/SIZE");
}

TEST(KyCInventoryParameter, detachOfAFreeParameterIsNull)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  EXPECT_EQ(parameter.detach(), nullptr);
}

TEST(KyCInventoryParameter, detachHandsTheParameterToTheCaller)
{
  KyMasterReports master;
  KySampleTree sample("ROOT/BOARD SIZE=1 OFFSET=2");
  KyCInventoryParameter* const size = sample.parameter("BOARD/SIZE");
  const std::unique_ptr<KyCInventoryParameter> detached(size->detach());
  EXPECT_EQ(detached.get(), size);
  EXPECT_EQ(size->getParent(), nullptr);
  EXPECT_EQ(size->getNext(), nullptr);
  EXPECT_EQ(KyTreeDifference(sample.root(), KySampleTree("ROOT/BOARD OFFSET=2").root()), "");
}

TEST(KyCInventoryParameter, getNextWalksTheParametersOfItsItem)
{
  KySampleTree sample("ROOT SIZE=1 OFFSET=2; BOARD NAME=3");
  KyCInventoryParameter* const size = sample.parameter("SIZE");
  const KyCInventoryParameter* const constSize = size;
  EXPECT_EQ(size->getNext(), sample.parameter("OFFSET"));
  EXPECT_EQ(constSize->getNext(), sample.parameter("OFFSET"));
  EXPECT_EQ(sample.parameter("OFFSET")->getNext(), nullptr);
  EXPECT_EQ(size->getParent(), &sample.root());
}

TEST(KyCInventoryParameter, theRelativeAddressIsTheWriteInfos)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  parameter.setCheckAndWriteMethod(pool, nullptr, succeed, BOARD[2] / IOCHANNEL, nullptr);
  EXPECT_STREQ(parameter.getRelativeAddress().toString().c_str(), "BOARD[2]/IOCHANNEL");
}

TEST(KyCInventoryParameter, theRelativeAddressIsEmptyWithoutInfoAndWithInfoOfAnotherKind)
{
  KyTestPool pool;
  KyCInventoryParameter parameter(pool, SIZE, "SIZE", 1, "", false, 0);
  EXPECT_TRUE(parameter.getRelativeAddress().isEmpty());
  parameter.setUpdateMethod(pool, succeed);
  EXPECT_TRUE(parameter.getRelativeAddress().isEmpty());
}
