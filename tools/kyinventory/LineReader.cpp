#include "LineReader.h"

#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "Terminal.h"

#ifdef KY_HAVE_EDITLINE
#include <histedit.h>
#endif

class LineReader::Source
{
public:
  virtual ~Source() = default;
  virtual bool read(const std::string& prompt, std::string& line) = 0;
};

namespace
{
volatile std::sig_atomic_t s_isLineGivenUp = 0;

void giveLineUp(int) { s_isLineGivenUp = 1; }

// Lets the interrupt key end a waitForKeys and nothing else, as long as it lives.
class InterruptibleWait
{
public:
  InterruptibleWait()
  {
    s_isLineGivenUp = 0;
    sigset_t interrupt;
    ::sigemptyset(&interrupt);
    ::sigaddset(&interrupt, SIGINT);
    ::sigprocmask(SIG_BLOCK, &interrupt, &m_oldMask);
    struct sigaction action = {};
    action.sa_handler = &giveLineUp;
    ::sigaction(SIGINT, &action, &m_oldAction);
  }
  ~InterruptibleWait()
  {
    ::sigaction(SIGINT, &m_oldAction, nullptr);
    ::sigprocmask(SIG_SETMASK, &m_oldMask, nullptr);
  }
  InterruptibleWait(const InterruptibleWait&) = delete;
  InterruptibleWait& operator=(const InterruptibleWait&) = delete;

  // False when the key was pressed.
  bool waitForKeys() const
  {
    sigset_t mask = m_oldMask;
    ::sigdelset(&mask, SIGINT);
    for (int ready = 0; ready <= 0 && s_isLineGivenUp == 0;)
    {
      fd_set input;
      FD_ZERO(&input);
      FD_SET(STDIN_FILENO, &input);
      ready = ::pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &mask);
      if (ready < 0 && errno != EINTR) break;    // reading tells of it
    }
    return s_isLineGivenUp == 0;
  }

private:
  sigset_t m_oldMask = {};
  struct sigaction m_oldAction = {};
};
}    // namespace

// Reads what the terminal itself lets people edit.
class LineReader::Plain : public Source
{
public:
  bool read(const std::string& prompt, std::string& line) override
  {
    const InterruptibleWait wait;    // before the prompt invites to type: otherwise a key pressed in between is lost
    std::fwrite(prompt.data(), 1, prompt.size(), stdout);
    std::fflush(stdout);
    line.clear();
    while (m_ahead.find('\n') == m_ahead.npos)
    {
      if (!wait.waitForKeys())
      {
        m_ahead.clear();
        std::fputs("\n", stdout);
        return true;
      }
      char block[4096];
      const ssize_t count = ::read(STDIN_FILENO, block, sizeof(block));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0)
      {
        line.swap(m_ahead);
        return !line.empty();
      }
      m_ahead.append(block, static_cast<std::size_t>(count));
    }
    line = m_ahead.substr(0, m_ahead.find('\n'));
    m_ahead.erase(0, line.size() + 1);
    return true;
  }

private:
  std::string m_ahead;    // typed already
};

#ifdef KY_HAVE_EDITLINE
class LineReader::Editor : public Source
{
public:
  explicit Editor(Complete complete) : m_complete(std::move(complete))
  {
    std::setlocale(LC_CTYPE, "");    // else it takes typed letters beyond ASCII apart
    m_history = ::history_init();
    HistEvent event;
    ::history(m_history, &event, H_SETSIZE, 1000);
    ::history(m_history, &event, H_SETUNIQUE, 1);
    m_edit = ::el_init("kyinventory", stdin, stdout, stderr);
    if (m_edit == nullptr) return;
    ::el_set(m_edit, EL_CLIENTDATA, this);
    ::el_set(m_edit, EL_PROMPT, &Editor::promptOf);
    ::el_set(m_edit, EL_EDITOR, "emacs");
    ::el_set(m_edit, EL_HIST, ::history, m_history);
    // The narrow form would make copies of the texts that nobody frees.
    ::el_wset(m_edit, EL_ADDFN, L"ky-complete", L"Complete the word", &Editor::completeWord);
    ::el_wset(m_edit, EL_ADDFN, L"ky-cancel", L"Give the line up", &Editor::cancelLine);
    ::el_source(m_edit, nullptr);    // the user's own settings
    ::el_set(m_edit, EL_BIND, "^I", "ky-complete", nullptr);
    ::el_set(m_edit, EL_SETTY, "-d", "-isig", nullptr);    // the key gives the line up; a signal would give up all
    ::el_set(m_edit, EL_BIND, "^C", "ky-cancel", nullptr);
  }
  ~Editor() override
  {
    if (m_edit != nullptr) ::el_end(m_edit);
    ::history_end(m_history);
  }
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  // Whether it can be used at this terminal.
  bool isThere() const { return m_edit != nullptr; }

  bool read(const std::string& prompt, std::string& line) override
  {
    m_prompt = prompt;
    m_isCancelled = false;
    int count = 0;
    ::el_set(m_edit, EL_PREP_TERM, 1);    // before the prompt invites to type: otherwise keys in between are lost
    const char* const typed = ::el_gets(m_edit, &count);
    line.clear();
    if (m_isCancelled) return true;    // also where nothing was typed: that is no end of input
    if (typed == nullptr || count <= 0) return false;
    line.assign(typed, static_cast<std::size_t>(count));
    if (line.back() == '\n') line.pop_back();
    HistEvent event;
    if (line.find_first_not_of(" \t") != line.npos) ::history(m_history, &event, H_ENTER, line.c_str());
    return true;
  }

private:
  static Editor& of(EditLine* edit)
  {
    void* editor = nullptr;
    ::el_get(edit, EL_CLIENTDATA, &editor);
    return *static_cast<Editor*>(editor);
  }

  static const char* promptOf(EditLine* edit) { return of(edit).m_prompt.c_str(); }

  static unsigned char cancelLine(EditLine* edit, int)
  {
    of(edit).m_isCancelled = true;
    std::fputs("^C\n", stdout);
    std::fflush(stdout);
    return CC_NEWLINE;
  }

  static unsigned char completeWord(EditLine* edit, int)
  {
    const LineInfo* const info = ::el_line(edit);
    const std::string line(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
    std::size_t begin = line.size();
    const std::vector<std::string> words = of(edit).m_complete(line, begin);
    if (words.empty()) return CC_REFRESH_BEEP;

    const std::size_t typed = line.size() - begin;
    const std::string common = commonBegin(words);
    const bool isSettled = words.size() == 1;
    const std::string rest = common.size() > typed ? common.substr(typed) : "";
    if (!rest.empty()) ::el_insertstr(edit, rest.c_str());
    if (isSettled || !rest.empty()) return CC_REFRESH;
    list(words);
    return CC_REDISPLAY;
  }

  static std::string commonBegin(const std::vector<std::string>& words)
  {
    std::string common = words.front();
    for (const std::string& word : words)
    {
      std::size_t length = 0;
      while (length < common.size() && length < word.size() && common[length] == word[length])
        ++length;
      common.resize(length);
    }
    return common;
  }

  static void list(const std::vector<std::string>& words)
  {
    constexpr std::size_t most = 100;
    std::string text = "\n";
    for (std::size_t n = 0; n < words.size() && n < most; ++n)
      text += withoutControls(words[n], "") + "\n";
    if (words.size() > most) text += "... " + std::to_string(words.size() - most) + " more\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
  }

  Complete m_complete;
  History* m_history = nullptr;
  EditLine* m_edit = nullptr;
  std::string m_prompt;
  bool m_isCancelled = false;
};
#endif

std::unique_ptr<LineReader::Source> LineReader::makeSource([[maybe_unused]] Complete complete)
{
#ifdef KY_HAVE_EDITLINE
  const char* const terminal = std::getenv("TERM");
  const std::string name = terminal == nullptr ? "" : terminal;
  auto editor = name.empty() || name == "dumb" ? nullptr : std::make_unique<Editor>(std::move(complete));
  if (editor != nullptr && editor->isThere()) return editor;
#endif
  return std::make_unique<Plain>();
}

LineReader::LineReader(Complete complete) : m_source(makeSource(std::move(complete))) {}

LineReader::~LineReader() = default;

bool LineReader::read(const std::string& prompt, std::string& line) { return m_source->read(prompt, line); }
