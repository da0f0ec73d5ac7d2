// kyinventory watch: its numbers.
#include "integration/KyToolTest.h"

namespace
{
TEST_F(Tool, watchRefusesCountsThatAreNoDecimalNumbers)
{
  for (const char* const count : {"0", "00", "-1", "+1", "0x10", "1e1", "1_000", "10k", "''", "' 1'", "0b1"})
  {
    const Outcome outcome = run(std::string("watch --count=") + count);
    EXPECT_EQ(outcome.exitCode, 2) << count;
    EXPECT_EQ(outcome.out, "") << count;
  }
}

#ifdef KY_HAVE_HOST
// The lines that tell the time since the start, which changes from round to round.
unsigned int roundsIn(const std::string& text)
{
  unsigned int rounds = 0;
  for (std::size_t at = text.find("\tOS_INFO/TIMER\t"); at != text.npos; at = text.find("\tOS_INFO/TIMER\t", at + 1))
    ++rounds;
  return rounds;
}

TEST_F(Tool, watchTakesACountWithLeadingZerosAsDecimal)
{
  const Outcome ten = run("watch --interval 0.05 --count 010");
  EXPECT_EQ(ten.exitCode, 0) << ten.err;
  EXPECT_EQ(roundsIn(ten.out), 10u) << ten.out;
  const Outcome eight = run("watch --interval 0.05 --count 08");
  EXPECT_EQ(eight.exitCode, 0) << eight.err;
  EXPECT_EQ(roundsIn(eight.out), 8u) << eight.out;
}
#endif
}    // namespace
