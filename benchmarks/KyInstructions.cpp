// Runs every operation on the small rack, for scripts/instructions to count. Prints one line an operation, in the order
// in which countedRun is called: its name, its unit, how many of these it worked on, and how often it asked for memory.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "KySystem.h"

namespace
{
unsigned int s_allocations = 0;

// The unit of "ns/param" is "param".
const char* unitOf(const OperationName& operation) { return std::strchr(operation.unit, '/') + 1; }
}    // namespace

// In place of the C library's, for everything in this process.
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_calloc(std::size_t count, std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);

  void* malloc(std::size_t size)
  {
    ++s_allocations;
    return __libc_malloc(size);
  }
  void* calloc(std::size_t count, std::size_t size)
  {
    ++s_allocations;
    return __libc_calloc(count, size);
  }
  void* realloc(void* block, std::size_t size)
  {
    ++s_allocations;
    return __libc_realloc(block, size);
  }
}

// Looked for by its name: instructions are counted inside it alone.
extern "C" __attribute__((noinline)) double countedRun(const Measure& measure) { return measure.run(); }

int main()
{
  const Rack rack("S", 4, 16);
  const std::unique_ptr<System> ours = makeOurs();
  for (const OperationName& operation : OPERATIONS)
  {
    const std::optional<Measure> measure = ours->measure(operation.operation, rack);
    if (!measure) std::abort();
    // Once without counting: what happens the first time only is not what an operation costs.
    if (measure->before) measure->before();
    measure->run();
    if (measure->after) measure->after();

    if (measure->before) measure->before();
    const unsigned int allocations = s_allocations;
    const double units = countedRun(*measure);
    std::printf("%s %s %.0f %u\n", operation.name, unitOf(operation), units, s_allocations - allocations);
    if (measure->after) measure->after();
  }
  return 0;
}
