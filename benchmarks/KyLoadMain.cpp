// Loads and unloads a library again and again, and prints the medians of both in microseconds. The C++ library is there
// all the time: it is this program's own.
#include <dlfcn.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{
// The processor's time, system calls included.
double microseconds()
{
  struct timespec time;
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) * 1e-3;
}

double median(std::vector<double> values)
{
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}
}    // namespace

int main(int argc, char** argv)
{
  if (argc != 3) return 2;
  const int rounds = std::max(1, std::atoi(argv[2]));
  std::vector<double> load;
  std::vector<double> unload;
  for (int round = 0; round < rounds; ++round)
  {
    const double start = microseconds();
    void* const library = dlopen(argv[1], RTLD_LAZY);
    const double loaded = microseconds();
    if (library == nullptr)
    {
      std::fprintf(stderr, "%s\n", dlerror());
      return 1;
    }
    dlclose(library);
    load.push_back(loaded - start);
    unload.push_back(microseconds() - loaded);
  }
  std::printf("%s %s\n", std::to_string(median(load)).c_str(), std::to_string(median(unload)).c_str());
  return 0;
}
