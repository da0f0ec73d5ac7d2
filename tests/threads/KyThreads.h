// KyThreads.h: runs code in several threads that begin together.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

// Lets nobody on before all have come.
class KyGate
{
public:
  explicit KyGate(unsigned int count) : m_missing(count) {}
  void pass()
  {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (--m_missing == 0) m_isOpen.notify_all();
    m_isOpen.wait(lock, [this] { return m_missing == 0; });
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_isOpen;
  unsigned int m_missing;
};

// Calls action(0) .. action(count - 1), each in a thread of its own, and waits for their ends.
template <typename TAction>
void inThreads(unsigned int count, TAction action)
{
  KyGate gate(count);
  std::vector<std::thread> threads;
  for (unsigned int n = 0; n < count; ++n)
    threads.emplace_back(
        [&gate, &action, n]
        {
          gate.pass();
          action(n);
        });
  for (std::thread& thread : threads)
    thread.join();
}
