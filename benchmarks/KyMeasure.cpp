#include "KyMeasure.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <map>

namespace
{
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
  const std::map<std::string, std::vector<double>>& times() const { return m_times; }

private:
  std::map<std::string, std::vector<double>> m_times;
};

// The processor's time, system calls included: what other programs take in between does not count.
double secondsOfThisThread()
{
  struct timespec time;
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void run(benchmark::State& state, const Measure& measure)
{
  while (state.KeepRunning())
  {
    if (measure.before) measure.before();
    ::malloc_trim(0);    // what was freed before makes nobody's allocations cheap or dear
    const double start = secondsOfThisThread();
    const double units = measure.run();
    const double elapsed = secondsOfThisThread() - start;
    if (measure.after) measure.after();
    state.SetIterationTime(elapsed / units);
  }
}

std::size_t bytesInUse()
{
  const struct mallinfo2 info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

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
}    // namespace

double median(std::vector<double> values)
{
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void measureOperation(const Systems& systems, const Rack& rack, const OperationName& operation,
                      unsigned int repetitions, std::vector<Row>& rows)
{
  startBenchmarks();
  benchmark::ClearRegisteredBenchmarks();
  const unsigned int iterations = rack.parameterCount() < 2000 ? 20 : rack.parameterCount() < 100000 ? 3 : 1;
  for (const auto& system : systems)
  {
    const std::optional<Measure> measure = system->measure(operation.operation, rack);
    if (!measure) continue;
    benchmark::RegisterBenchmark(system->name(), [m = *measure](benchmark::State& state) { run(state, m); })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Repetitions(static_cast<int>(repetitions));
  }
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  for (const auto& system : systems)
  {
    const auto found = collector.times().find(system->name());
    if (found == collector.times().end()) continue;
    rows.push_back({operation.name, rack.name(), system->name(), operation.unit, median(found->second) * 1e9});
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
