#include "LineReader.h"

#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <utility>

#include "Terminal.h"

#ifdef KY_HAVE_EDITLINE
#include <histedit.h>

class LineReader::Editor
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
  ~Editor()
  {
    if (m_edit != nullptr) ::el_end(m_edit);
    ::history_end(m_history);
  }
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  bool read(const std::string& prompt, std::string& line)
  {
    if (m_edit == nullptr) return false;
    m_prompt = prompt;
    m_isCancelled = false;
    int count = 0;
    ::el_set(m_edit, EL_PREP_TERM, 1);    // before the prompt invites to type: otherwise keys in between are lost
    const char* const typed = ::el_gets(m_edit, &count);
    if (typed == nullptr || count <= 0) return false;
    line.assign(typed, static_cast<std::size_t>(count));
    if (line.back() == '\n') line.pop_back();
    if (m_isCancelled) line.clear();
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
    std::fputs("^C", stdout);
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
#else
class LineReader::Editor
{
public:
  explicit Editor(const Complete&) {}

  bool read(const std::string& prompt, std::string& line)
  {
    std::fwrite(prompt.data(), 1, prompt.size(), stdout);
    std::fflush(stdout);
    line.clear();
    for (int c = std::getchar(); c != '\n'; c = std::getchar())
    {
      if (c == EOF) return !line.empty();
      line += static_cast<char>(c);
    }
    return true;
  }
};
#endif

LineReader::LineReader(Complete complete) : m_editor(std::make_unique<Editor>(std::move(complete))) {}

LineReader::~LineReader() = default;

bool LineReader::read(const std::string& prompt, std::string& line) { return m_editor->read(prompt, line); }
