#include "KyMeasure.h"

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <map>
#include <random>

#include "KyBlockCount.h"

#ifdef KY_HAVE_BENCHMARK
#include <benchmark/benchmark.h>
#endif

namespace
{
// The processor's time, system calls included: what other programs take in between does not count.
double secondsOfThisThread()
{
  struct timespec time;
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::size_t bytesInUse()
{
  const struct mallinfo2 info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

using Times = std::map<std::string, std::vector<double>>;    // of each system, one for each repetition

struct Candidate
{
  const char* system;
  Measure measure;
};

#ifdef KY_HAVE_BENCHMARK
// Gathers the repetitions of each benchmark; prints nothing.
class Collector : public benchmark::BenchmarkReporter
{
public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override
  {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration)
        m_times[run.run_name.function_name].push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
  }
  const Times& times() const { return m_times; }

private:
  Times m_times;
};

// Random order needs the flag of the library's own command line.
void startBenchmarks()
{
  static bool isStarted = false;
  if (isStarted) return;
  isStarted = true;
  char program[] = "ky_bench";
  char order[] = "--benchmark_enable_random_interleaving=true";
  char* words[] = {program, order, nullptr};
  int count = 2;
  benchmark::Initialize(&count, words);
}

Times timesOf(const std::vector<Candidate>& candidates, unsigned int iterations, unsigned int repetitions)
{
  startBenchmarks();
  benchmark::ClearRegisteredBenchmarks();
  for (const Candidate& candidate : candidates)
  {
    benchmark::RegisterBenchmark(candidate.system,
                                 [&measure = candidate.measure](benchmark::State& state)
                                 {
                                   while (state.KeepRunning())
                                     state.SetIterationTime(timeOfUnit(measure));
                                 })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Repetitions(static_cast<int>(repetitions));
  }
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  return collector.times();
}
#else
// Where Google Benchmark is not to be had. Interleaved, too, in another order each time.
Times timesOf(std::vector<Candidate> candidates, unsigned int iterations, unsigned int repetitions)
{
  Times times;
  std::mt19937 random(1);
  for (unsigned int repetition = 0; repetition < repetitions; ++repetition)
  {
    std::shuffle(candidates.begin(), candidates.end(), random);
    for (const Candidate& candidate : candidates)
    {
      double sum = 0;
      for (unsigned int n = 0; n < iterations; ++n)
        sum += timeOfUnit(candidate.measure);
      times[candidate.system].push_back(sum / iterations);
    }
  }
  return times;
}
#endif
}    // namespace

double timeOf(const std::function<void()>& work)
{
  ::malloc_trim(0);    // what was freed before makes nobody's allocations cheap or dear
  const double start = secondsOfThisThread();
  work();
  return secondsOfThisThread() - start;
}

double timeOfUnit(const Measure& measure)
{
  if (measure.before) measure.before();
  double units = 1;
  const double time = timeOf([&] { units = measure.run(); });
  if (measure.after) measure.after();
  return time / units;
}

double median(std::vector<double> values)
{
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void measureOperation(const Systems& systems, const Rack& rack, const OperationName& operation,
                      unsigned int repetitions, std::vector<Row>& rows)
{
  std::vector<Candidate> candidates;
  for (const auto& system : systems)
    if (const std::optional<Measure> measure = system->measure(operation.operation, rack))
      candidates.push_back({system->name(), *measure});
  const unsigned int iterations = rack.parameterCount() < 2000 ? 20 : rack.parameterCount() < 100000 ? 3 : 1;
  const Times times = timesOf(candidates, iterations, repetitions);
  for (const Candidate& candidate : candidates)
  {
    const auto found = times.find(candidate.system);
    if (found == times.end()) continue;
    rows.push_back({operation.name, rack.name(), candidate.system, operation.unit, median(found->second) * 1e9});
  }
}

void measureHeap(const Systems& systems, const Rack& rack, std::vector<Row>& rows)
{
  const Rack withShortTexts(rack.name(), rack.boards(), rack.channels(), 6);
  for (const bool isRead : {false, true})
  {
    for (const auto& system : systems)
    {
      const std::size_t before = bytesInUse();
      if (!system->hold(withShortTexts, isRead)) continue;
      const double bytes = static_cast<double>(bytesInUse() - before);
      system->release();
      rows.push_back({"heap", rack.name() + (isRead ? "/read" : ""), system->name(), "bytes/param",
                      bytes / withShortTexts.parameterCount()});
    }
  }
}

void measureBlocksInUse(const Systems& systems, const Rack& rack, std::vector<Row>& rows)
{
  const Rack withShortTexts(rack.name(), rack.boards(), rack.channels(), 6);
  for (const bool isRead : {false, true})
  {
    for (const auto& system : systems)
    {
      const long before = kyBlocksInUse();
      if (!system->hold(withShortTexts, isRead)) continue;
      const double blocks = static_cast<double>(kyBlocksInUse() - before);
      system->release();
      rows.push_back({"allocations", rack.name() + (isRead ? "/read" : ""), system->name(), "blocks/param",
                      blocks / withShortTexts.parameterCount()});
    }
  }
}

void measureSection(const Systems& systems, const Rack& rack, std::vector<Row>& rows)
{
  for (const auto& system : systems)
  {
    const std::size_t bytes = system->storedSize(rack);
    if (bytes == 0) continue;
    rows.push_back({"section_bytes", rack.name(), system->name(), "bytes/param",
                    static_cast<double>(bytes) / rack.parameterCount()});
  }
}
