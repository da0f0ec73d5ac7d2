#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "Terminal.h"

namespace
{
using Clock = std::chrono::steady_clock;

void show(const std::string& text)
{
  const ssize_t ignored = ::write(STDERR_FILENO, text.data(), text.size());
  static_cast<void>(ignored);    // a line that cannot be shown is not worth a word
}

unsigned int columns()
{
  struct winsize size = {};
  return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : 80;
}

// The thread, from its first second to the end of the work.
class Ticker
{
public:
  explicit Ticker(const std::string& work) : m_work(withoutControls(work, "")), m_thread([this]() { run(); }) {}
  ~Ticker()
  {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_isDone = true;
    }
    m_wake.notify_all();
    m_thread.join();
  }
  Ticker(const Ticker&) = delete;
  Ticker& operator=(const Ticker&) = delete;

private:
  void run()
  {
    const Clock::time_point start = Clock::now();
    std::unique_lock<std::mutex> lock(m_mutex);
    for (unsigned int seconds = 1;; ++seconds)
    {
      if (m_wake.wait_until(lock, start + std::chrono::seconds(seconds), [this]() { return m_isDone; })) break;
      draw(seconds);
    }
    if (m_width != 0) show("\r" + std::string(m_width, ' ') + "\r");
  }

  // Blanks take the line away on every terminal, whatever it understands; the last column is left free so that none
  // breaks the line.
  void draw(unsigned int seconds)
  {
    const std::string time = " ... " + std::to_string(seconds) + " s";
    const std::size_t room = columns() > time.size() + 1 ? columns() - time.size() - 1 : 0;
    std::string line = m_work.substr(0, room);
    while (line.size() < m_work.size() && !line.empty() &&
           (static_cast<unsigned char>(m_work[line.size()]) & 0xC0) == 0x80)
      line.pop_back();
    line += time;
    m_width = line.size();
    show("\r" + line);
  }

  std::string m_work;
  std::size_t m_width = 0;    // columns to take away again; 0: nothing is shown
  bool m_isDone = false;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::thread m_thread;    // last: it uses the others
};

std::unique_ptr<Ticker> s_ticker;
bool s_isBusy = false;
}    // namespace

Progress::Progress(const std::string& work) : m_isOurs(!s_isBusy)
{
  if (!m_isOurs || ::isatty(STDERR_FILENO) == 0) return;
  s_isBusy = true;
  // The thread takes no signals: where the work holds them back, they wait.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  try
  {
    s_ticker = std::make_unique<Ticker>(work);
  }
  catch (const std::system_error&)    // no thread to be had: the work is what counts
  {
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Progress::~Progress()
{
  if (!m_isOurs) return;
  hide();
  s_isBusy = false;
}

void Progress::hide() { s_ticker.reset(); }
