// Texts that do not fit: of 4 GiB where there are addresses for them, of a length that there are none for otherwise.
#include "KyLargeText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "composite/KyCParam.h"
#include "composite/KyCString.h"
#include "support/KyTestPool.h"

#if UINTPTR_MAX == 0xFFFFFFFFu

TEST(KyTextOf4GiB, assignBeyondTheAddressSpaceReportsAndChangesNothing)
{
  KyTestPool pool;
  KyCString text("as it was");
  EXPECT_FALSE(text.assign(pool, "x", 0xFFFFFFFFu));
  EXPECT_REPORTS(pool, {0x01100000, "assign", "A text of 4294967295 characters does not fit into the address space."});
  EXPECT_STREQ(text.c_str(), "as it was");
}

#else

TEST(KyTextOf4GiB, setValueReportsATextOf4GiBAndKeepsTheOldOne)
{
  const KyLargeText large;
  KyTestPool pool;
  KyCParam parameter(pool, 1, "text", 0, KyCString("as it was"), static_cast<KyCString*>(nullptr));
  parameter.setValueConstChar(pool, large.text());
  EXPECT_REPORTS(pool, {0x01100000, "setValueConstChar",
                        "A text of 4294967296 or more characters does not fit into the address space."});
  EXPECT_EQ(parameter.getValueKyCString(pool), KyCString("as it was"));
}

TEST(KyTextOf4GiB, aStringOf4GiBCannotBeMade)
{
  const KyLargeText large;
  EXPECT_THROW(KyCString{large.text()}, std::bad_alloc);
  KyCString text("as it was");
  EXPECT_THROW(text = large.text(), std::bad_alloc);
  EXPECT_THROW(text += large.text(), std::bad_alloc);
  EXPECT_STREQ(text.c_str(), "as it was");
}

#endif
