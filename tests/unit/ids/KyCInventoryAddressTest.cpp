#include "inventory/KyCInventoryAddress.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/KyPrintAddress.h"

namespace
{
using TElements = std::vector<std::pair<unsigned int, unsigned int>>;

TElements elementsOf(const KyCInventoryAddress& address)
{
  TElements elements;
  for (unsigned int n = 0; n < address.getLength(); ++n)
    elements.emplace_back(address.getElements()[n].id, address.getElements()[n].index);
  return elements;
}

bool isInline(const KyCInventoryAddress& address)
{
  const char* const object = reinterpret_cast<const char*>(&address);
  const char* const elements = reinterpret_cast<const char*>(address.getElements());
  return elements >= object && elements < object + sizeof address;
}

const KyCInventoryAddress EMPTY;
const KyCInventoryAddress A(5);
const KyCInventoryAddress B(6, 2);
const KyCInventoryAddress C(7, 0xFFFFFFFF);
const KyCInventoryAddress X(99);

KyCInventoryAddress abc() { return A / B / C; }
}    // namespace

static_assert(sizeof(KyCInventoryAddress) == (sizeof(void*) == 4 ? 16 : 24), "length, inline element, elements");
static_assert(sizeof(KyCInventoryAddress::TElement) == 8, "a raw pair of 32-bit numbers");
static_assert(std::is_trivially_copyable_v<KyCInventoryAddress::TElement>, "copied as it is");
static_assert(std::is_nothrow_destructible_v<KyCInventoryAddress>, "the destructor must not throw");
static_assert(std::is_convertible_v<unsigned int, KyCInventoryAddress>, "a number stands for its ID");

TEST(KyCInventoryAddress, fieldsStandInTheOrderLengthInlineElementElements)
{
  const KyCInventoryAddress address(0x11111111, 0x22222222);
  unsigned int numbers[3];
  std::memcpy(numbers, &address, sizeof numbers);
  EXPECT_EQ(numbers[0], 1u);
  EXPECT_EQ(numbers[1], 0x11111111u);
  EXPECT_EQ(numbers[2], 0x22222222u);
  const void* elements;
  std::memcpy(&elements, reinterpret_cast<const char*>(&address) + sizeof address - sizeof elements, sizeof elements);
  EXPECT_EQ(elements, address.getElements());
}

TEST(KyCInventoryAddress, oneNumberIsAnIdWithTheIndexOne)
{
  const KyCInventoryAddress address(7);
  EXPECT_EQ(address.getLength(), 1u);
  EXPECT_EQ(address.getCategory(), 7u);
  EXPECT_EQ(address.getIndex(), 1u);
  EXPECT_TRUE(address.isSingleElement());
  EXPECT_FALSE(address.isEmpty());
}

TEST(KyCInventoryAddress, twoNumbersAreIdAndIndex)
{
  const KyCInventoryAddress address(7, 0);
  EXPECT_EQ(elementsOf(address), (TElements{{7, 0}}));
}

TEST(KyCInventoryAddress, squareBracketsGiveTheLastElementAnotherIndex)
{
  EXPECT_EQ(elementsOf(KyCInventoryAddress(7)[3]), (TElements{{7, 3}}));
  EXPECT_EQ(elementsOf((A / B)[9]), (TElements{{5, 1}, {6, 9}}));
  EXPECT_EQ(elementsOf(A), (TElements{{5, 1}})) << "the address itself stays";
}

TEST(KyCInventoryAddress, squareBracketsOnAnEmptyAddressGiveAnEmptyOne)
{
  EXPECT_TRUE(EMPTY[3].isEmpty());
  EXPECT_EQ(EMPTY[3].getIndex(), 0u);
}

TEST(KyCInventoryAddress, emptyAddressGivesZeroForIdAndIndex)
{
  EXPECT_TRUE(EMPTY.isEmpty());
  EXPECT_FALSE(EMPTY.isSingleElement());
  EXPECT_EQ(EMPTY.getLength(), 0u);
  EXPECT_EQ(EMPTY.getCategory(), 0u);
  EXPECT_EQ(EMPTY.getIndex(), 0u);
  EXPECT_NE(EMPTY.getElements(), nullptr);
}

TEST(KyCInventoryAddress, partsOfAnEmptyAddressAreEmpty)
{
  EXPECT_TRUE(EMPTY.getFirstElement().isEmpty());
  EXPECT_TRUE(EMPTY.getLastElement().isEmpty());
  EXPECT_TRUE(EMPTY.getSubAddress().isEmpty());
  EXPECT_TRUE(EMPTY.getHeadAddress().isEmpty());
}

TEST(KyCInventoryAddress, singleElementHasNoSubAndNoHeadAddress)
{
  EXPECT_TRUE(B.getSubAddress().isEmpty());
  EXPECT_TRUE(B.getHeadAddress().isEmpty());
  EXPECT_EQ(B.getFirstElement(), B.getLastElement());
  EXPECT_EQ(B.getFirstElement(), B);
}

TEST(KyCInventoryAddress, subAddressOfThreeElementsIsTheLastTwo)
{
  EXPECT_EQ(elementsOf(abc().getSubAddress()), (TElements{{6, 2}, {7, 0xFFFFFFFF}}));
}

TEST(KyCInventoryAddress, headAddressOfThreeElementsIsTheFirstTwo)
{
  EXPECT_EQ(elementsOf(abc().getHeadAddress()), (TElements{{5, 1}, {6, 2}}));
}

TEST(KyCInventoryAddress, subAndHeadAddressOfTwoElementsNeedNoHeap)
{
  EXPECT_EQ(elementsOf((A / B).getSubAddress()), (TElements{{6, 2}}));
  EXPECT_EQ(elementsOf((A / B).getHeadAddress()), (TElements{{5, 1}}));
  EXPECT_TRUE(isInline((A / B).getSubAddress()));
  EXPECT_TRUE(isInline((A / B).getHeadAddress()));
}

TEST(KyCInventoryAddress, firstAndLastElementKeepTheirIndex)
{
  EXPECT_EQ(elementsOf((B / A / C).getFirstElement()), (TElements{{6, 2}}));
  EXPECT_EQ(elementsOf(abc().getLastElement()), (TElements{{7, 0xFFFFFFFF}}));
}

TEST(KyCInventoryAddress, categoryAndIndexAreThoseOfTheLastElement)
{
  EXPECT_EQ(abc().getCategory(), 7u);
  EXPECT_EQ(abc().getIndex(), 0xFFFFFFFFu);
}

TEST(KyCInventoryAddress, isPrefixIsTrueForAShorterAddressWithTheSameElements)
{
  EXPECT_TRUE(abc().isPrefix(A / B));
  EXPECT_TRUE(abc().isPrefix(A));
}

TEST(KyCInventoryAddress, isPrefixIsFalseForTheAddressItself)
{
  EXPECT_FALSE(abc().isPrefix(abc()));
  EXPECT_FALSE(A.isPrefix(A));
  EXPECT_FALSE(EMPTY.isPrefix(EMPTY));
}

TEST(KyCInventoryAddress, isPrefixIsTrueForTheEmptyAddress)
{
  EXPECT_TRUE(abc().isPrefix(EMPTY));
  EXPECT_TRUE(A.isPrefix(EMPTY));
}

TEST(KyCInventoryAddress, isPrefixIsFalseForALongerAddressAndForOtherElements)
{
  EXPECT_FALSE(abc().isPrefix(abc() / X));
  EXPECT_FALSE(abc().isPrefix(A / X));
  EXPECT_FALSE(abc().isPrefix(A[2])) << "the index counts";
  EXPECT_FALSE(EMPTY.isPrefix(A));
}

TEST(KyCInventoryAddress, addressesWithDifferentIndicesDiffer)
{
  EXPECT_NE(A[1], A[2]);
  EXPECT_FALSE(A[1] == A[2]);
  EXPECT_NE(A, X);
}

TEST(KyCInventoryAddress, indexOneEqualsTheAddressMadeFromTheIdAlone)
{
  EXPECT_EQ(KyCInventoryAddress(5, 1), KyCInventoryAddress(5));
  EXPECT_FALSE(KyCInventoryAddress(5, 1) != KyCInventoryAddress(5));
}

TEST(KyCInventoryAddress, comparisonLooksAtTheLengthAndAtEveryPosition)
{
  EXPECT_EQ(EMPTY, KyCInventoryAddress());
  EXPECT_NE(EMPTY, KyCInventoryAddress(0, 0));
  EXPECT_NE(A / B, A);
  EXPECT_EQ(abc(), abc());
  EXPECT_NE(abc(), X / B / C);
  EXPECT_NE(abc(), A / X / C);
  EXPECT_NE(abc(), A / B / X);
}

TEST(KyCInventoryAddress, removePrefixStopsAtTheFirstDifference)
{
  KyCInventoryAddress address = abc();
  address.removePrefix(A / X);
  EXPECT_EQ(elementsOf(address), (TElements{{6, 2}, {7, 0xFFFFFFFF}}));
}

TEST(KyCInventoryAddress, removePrefixLeavesTheAddressWhenTheFirstElementDiffers)
{
  KyCInventoryAddress address = abc();
  address.removePrefix(X);
  EXPECT_EQ(address, abc());
  address.removePrefix(A[2]);
  EXPECT_EQ(address, abc()) << "the index counts";
  address.removePrefix(EMPTY);
  EXPECT_EQ(address, abc());
}

TEST(KyCInventoryAddress, removePrefixThatIsLongerEmptiesTheAddress)
{
  KyCInventoryAddress address = abc();
  address.removePrefix(A / B / C / X);
  EXPECT_TRUE(address.isEmpty());
}

TEST(KyCInventoryAddress, removePrefixOfTheAddressItselfEmptiesIt)
{
  KyCInventoryAddress address = abc();
  address.removePrefix(address);
  EXPECT_TRUE(address.isEmpty());
  address.removePrefix(A);
  EXPECT_TRUE(address.isEmpty());
}

TEST(KyCInventoryAddress, removeSuffixElementsShortensAndGivesTheNewLength)
{
  KyCInventoryAddress address = abc();
  EXPECT_EQ(address.removeSuffixElements(0), 3);
  EXPECT_EQ(address.removeSuffixElements(1), 2);
  EXPECT_EQ(elementsOf(address), (TElements{{5, 1}, {6, 2}}));
}

TEST(KyCInventoryAddress, removeSuffixElementsBeyondTheLengthEmptiesTheAddress)
{
  KyCInventoryAddress address = abc();
  EXPECT_EQ(address.removeSuffixElements(5), 0);
  EXPECT_EQ(address.getLength(), 0u);
  EXPECT_EQ(address.removeSuffixElements(0xFFFFFFFF), 0);
}

TEST(KyCInventoryAddress, assigningToItselfChangesNothing)
{
  for (const KyCInventoryAddress& original : {EMPTY, B, abc()})
  {
    KyCInventoryAddress address = original;
    KyCInventoryAddress& same = address;
    address = same;
    EXPECT_EQ(address, original);
    address = std::move(same);
    EXPECT_EQ(address, original);
  }
}

TEST(KyCInventoryAddress, appendingAnAddressToItselfDoublesIt)
{
  KyCInventoryAddress one = B;
  one.append(one);
  EXPECT_EQ(elementsOf(one), (TElements{{6, 2}, {6, 2}}));
  one.append(one);
  EXPECT_EQ(elementsOf(one), (TElements{{6, 2}, {6, 2}, {6, 2}, {6, 2}}));
  KyCInventoryAddress none;
  none.append(none);
  EXPECT_TRUE(none.isEmpty());
}

TEST(KyCInventoryAddress, appendingAnEmptyAddressChangesNothing)
{
  KyCInventoryAddress address = abc();
  const void* const elements = address.getElements();
  address.append(EMPTY);
  EXPECT_EQ(address, abc());
  EXPECT_EQ(address.getElements(), elements);
}

TEST(KyCInventoryAddress, slashJoinsAndLeavesBothSidesAlone)
{
  const KyCInventoryAddress head = A / B;
  const KyCInventoryAddress tail = C / X;
  EXPECT_EQ(elementsOf(head / tail), (TElements{{5, 1}, {6, 2}, {7, 0xFFFFFFFF}, {99, 1}}));
  EXPECT_EQ(elementsOf(head), (TElements{{5, 1}, {6, 2}}));
  EXPECT_EQ(elementsOf(head / EMPTY), (TElements{{5, 1}, {6, 2}}));
  EXPECT_EQ(elementsOf(EMPTY / head), (TElements{{5, 1}, {6, 2}}));
  EXPECT_TRUE((EMPTY / EMPTY).isEmpty());
  EXPECT_EQ(elementsOf(head / head), (TElements{{5, 1}, {6, 2}, {5, 1}, {6, 2}}));
}

TEST(KyCInventoryAddress, shortenedAddressKeepsItsHeapArrayUntilClear)
{
  KyCInventoryAddress address = abc();
  const void* const heapArray = address.getElements();
  EXPECT_FALSE(isInline(address));
  address.removeSuffixElements(2);
  EXPECT_EQ(elementsOf(address), (TElements{{5, 1}}));
  EXPECT_EQ(address.getElements(), heapArray);
  address.clear();
  EXPECT_TRUE(address.isEmpty());
  EXPECT_TRUE(isInline(address));
}

TEST(KyCInventoryAddress, shortenedAddressFreesItsHeapArrayWhenDestroyed)
{
  KyCInventoryAddress address = abc();
  address.removePrefix(A / B);
  EXPECT_EQ(elementsOf(address), (TElements{{7, 0xFFFFFFFF}}));
  EXPECT_FALSE(isInline(address));    // the leak check of the sanitized build sees the rest
}

TEST(KyCInventoryAddress, emptiedHeapAddressCanBeFilledAgain)
{
  KyCInventoryAddress address = abc();
  address.removeSuffixElements(3);
  address.append(B);
  EXPECT_EQ(elementsOf(address), (TElements{{6, 2}}));
  address.append(A / C);
  EXPECT_EQ(elementsOf(address), (TElements{{6, 2}, {5, 1}, {7, 0xFFFFFFFF}}));
}

TEST(KyCInventoryAddress, copyIsIndependentOfItsSource)
{
  KyCInventoryAddress source = abc();
  const KyCInventoryAddress copy(source);
  source.clear();
  source.append(X);
  EXPECT_EQ(copy, abc());
  EXPECT_EQ(source, X);
}

TEST(KyCInventoryAddress, assignmentReplacesShortByLongAndLongByShort)
{
  KyCInventoryAddress address = A;
  address = abc();
  EXPECT_EQ(address, abc());
  const KyCInventoryAddress& one = B;
  address = one;
  EXPECT_EQ(address, B);
  EXPECT_TRUE(isInline(address)) << "assignment begins with clear";
  address = EMPTY;
  EXPECT_TRUE(address.isEmpty());
}

TEST(KyCInventoryAddress, movingTakesTheElementsAndLeavesTheSourceEmpty)
{
  KyCInventoryAddress source = abc();
  const void* const heapArray = source.getElements();
  KyCInventoryAddress target(std::move(source));
  EXPECT_EQ(target, abc());
  EXPECT_EQ(target.getElements(), heapArray);
  EXPECT_TRUE(source.isEmpty());
  EXPECT_TRUE(isInline(source));
  source = std::move(target);
  EXPECT_EQ(source, abc());
  EXPECT_TRUE(target.isEmpty());
}

TEST(KyCInventoryAddress, movingOneElementStaysInline)
{
  KyCInventoryAddress source = B;
  const KyCInventoryAddress target(std::move(source));
  EXPECT_EQ(target, B);
  EXPECT_TRUE(isInline(target));
  EXPECT_TRUE(source.isEmpty());
}

TEST(KyCInventoryAddress, resizeMakesRoomAndChangesNoElement)
{
  KyCInventoryAddress address = B;
  address.resize(1);
  EXPECT_TRUE(isInline(address)) << "one element needs no heap";
  address.resize(3);
  EXPECT_FALSE(isInline(address));
  EXPECT_EQ(address, B);
  address.resize(100);
  EXPECT_EQ(address, B);
  address.resize(1);
  EXPECT_EQ(address, B);
}

TEST(KyCInventoryAddress, resizeBelowTheLengthKeepsEveryElement)
{
  KyCInventoryAddress address = abc();
  address.resize(1);
  EXPECT_EQ(address, abc());
  address.resize(0);
  EXPECT_EQ(address, abc());
  address.removeSuffixElements(3);
  address.resize(0);
  address.append(B);
  EXPECT_EQ(address, B);
}

TEST(KyCInventoryAddress, extremeNumbersAreKept)
{
  const KyCInventoryAddress address = KyCInventoryAddress(0xFFFFFFFF, 0xFFFFFFFF) / KyCInventoryAddress(0, 0);
  EXPECT_EQ(elementsOf(address), (TElements{{0xFFFFFFFF, 0xFFFFFFFF}, {0, 0}}));
}
