// A program that is not position-independent holds the library's exported objects in its own data; the library must
// use them there.
#include <gtest/gtest.h>

#include "inventory/KyNInventoryIDs.h"

extern "C" char __executable_start;
extern "C" char end;

namespace
{
bool isInThisProgram(const void* object) { return object >= &__executable_start && object < &end; }
}    // namespace

TEST(PositionDependent, idsAreInTheProgramsOwnData)
{
  EXPECT_TRUE(isInThisProgram(&KyNInventoryIDs::BOARD));
  EXPECT_EQ(KyNInventoryIDs::BOARD.getCategory(), 585u);
  EXPECT_EQ(KyNInventoryIDs::BOARD.getIndex(), 1u);
  EXPECT_EQ(KyNInventoryIDs::BOARD.getElements()[0].id, 585u);
  EXPECT_EQ(KyCInventoryAddress(KyNInventoryIDs::BOARD), KyNInventoryIDs::BOARD);
  EXPECT_TRUE(KyNInventoryIDs::THIS_NODE.isEmpty());
}

TEST(PositionDependent, libraryUsesTheProgramsMap)
{
  EXPECT_TRUE(isInThisProgram(&KyNInventoryIDs::Map));
  EXPECT_STREQ(KyNInventoryIDs::Map.get(1063), "TOPOLOGY");
  EXPECT_STREQ((KyNInventoryIDs::DEVICE / KyNInventoryIDs::BOARD[2]).toString().c_str(), "DEVICE/BOARD[2]");
}
