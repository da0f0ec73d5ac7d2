// Programs define macros that are named like predefined IDs. This one brings many of them along, and includes the
// public headers only then.
#include <endian.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/param.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <syslog.h>
#include <termios.h>

#include <climits>
#include <cmath>
#include <csignal>
#include <string>

// GoogleTest's TEST gives way to a macro with an odd value, which this file keeps until its end.
#undef TEST
#define TEST(a) a + 1000
#undef MIN
#define MIN(a, b) ((a) < (b) ? (a) : (b))
#undef MAX
#define MAX
#define OPEN {
#define CLOSE )
#define INFO(text, ...) \
  text;                 \
  __VA_ARGS__
#define VALID VALID
#define STATUS STATUS_OF_ANOTHER_LIBRARY
#define NAME "a name"
#define DEFAULT default
#define ACTIVE 0x1p3
#define BOARD() 7
#define ROOT "/"
#define TOPOLOGY #

#include "inventory/KyNInventoryIDs.h"

#define KY_TEXT_OF(...) #__VA_ARGS__
#define KY_EXPANSION_OF(...) KY_TEXT_OF(__VA_ARGS__)

static_assert(BYTE_ORDER == 1234 || BYTE_ORDER == 4321, "the macro of <endian.h>, not the ID");
static_assert(LITTLE_ENDIAN == 1234, "untouched");
static_assert(MIN(3, 4) == 3, "the macro of this file");

GTEST_TEST(MacroCollision, macrosExpandAsBefore)
{
  EXPECT_STREQ(KY_EXPANSION_OF(TEST(1)), "1 + 1000");
  EXPECT_STREQ(KY_EXPANSION_OF(MIN(1, 2)), "((1) < (2) ? (1) : (2))");
  EXPECT_STREQ(KY_EXPANSION_OF(MAX), "");
  EXPECT_STREQ(KY_EXPANSION_OF(INFO(1, 2, 3)), "1; 2, 3");
  EXPECT_STREQ(KY_EXPANSION_OF(VALID), "VALID");
  EXPECT_STREQ(KY_EXPANSION_OF(STATUS), "STATUS_OF_ANOTHER_LIBRARY");
  EXPECT_STREQ(KY_EXPANSION_OF(NAME), "\"a name\"");
  EXPECT_STREQ(KY_EXPANSION_OF(DEFAULT), "default");
  EXPECT_STREQ(KY_EXPANSION_OF(ACTIVE), "0x1p3");
  EXPECT_STREQ(KY_EXPANSION_OF(BOARD()), "7");
  EXPECT_STREQ(KY_EXPANSION_OF(ROOT), "\"/\"");
  EXPECT_STREQ(KY_EXPANSION_OF(TOPOLOGY), "#");
  EXPECT_STREQ(KY_EXPANSION_OF(LOG_INFO), "6");
}

// What no header defined before is still undefined.
#if defined(DUMMY) || defined(DEVICE) || defined(SERIAL_NUMBER) || defined(KY_PREDEFINED_ID)
#error "the header leaves macros behind"
#endif
#ifndef OPEN
#error "the header takes macros away"
#endif
#ifndef CLOSE
#error "the header takes macros away"
#endif

GTEST_TEST(MacroCollision, idsWithoutAMacroAreReachedByTheirNames)
{
  EXPECT_STREQ((KyNInventoryIDs::DEVICE / KyNInventoryIDs::SERIAL_NUMBER).toString().c_str(), "DEVICE/SERIAL_NUMBER");
}

GTEST_TEST(MacroCollision, idsBehindAMacroAreReachedByNumberAndByText)
{
  const KyCInventoryAddress byNumber(92);
  KyCInventoryAddress byText;
  byText.readFromString("BYTE_ORDER");
  EXPECT_EQ(byNumber, byText);
}

GTEST_TEST(MacroCollision, functionLikeMacroDoesNotHideTheIdWhereNoParenthesisFollows)
{
  EXPECT_EQ(KyNInventoryIDs::BOARD.getCategory(), 585u);
}

#undef BYTE_ORDER
#undef TEST
GTEST_TEST(MacroCollision, idsAreReachedByNameOnceTheMacroIsGone)
{
  EXPECT_EQ(KyNInventoryIDs::BYTE_ORDER.getCategory(), 92u);
  EXPECT_STREQ(KyNInventoryIDs::TEST.toString().c_str(), "TEST");
}

// Included a second time, with yet other macros in place, the header does nothing.
#define DEVICE ?
#include "inventory/KyNInventoryIDs.h"
GTEST_TEST(MacroCollision, secondInclusionDoesNothing) { EXPECT_STREQ(KY_EXPANSION_OF(DEVICE), "?"); }
