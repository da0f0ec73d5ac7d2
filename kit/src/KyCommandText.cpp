// The language of sessions: commands as words, and what a begun address may become.
#include <algorithm>
#include <unordered_set>

#include "KySessionMessages.h"
#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KySession.h"

namespace KyNInventoryKit
{
namespace
{
// Reads commands from a text, character by character.
class CommandReader
{
public:
  CommandReader(const std::string& text, std::vector<std::vector<std::string>>& commands)
      : m_text(text), m_commands(commands)
  {
  }

  // The quote that is not closed; 0 when all are.
  char read()
  {
    while (m_next < m_text.size())
    {
      const char c = m_text[m_next++];
      if (c == '\'' || c == '"')
      {
        if (!readQuoted(c)) return c;
      }
      else if (c == '\\' && m_next < m_text.size())
        add(m_text[m_next++]);
      else if (c == '#' && !m_isInWord)
        m_next = std::min(m_text.find('\n', m_next), m_text.size());
      else if (c == '\n' || c == ';')
        endCommand();
      else if (c == ' ' || c == '\t' || c == '\r')
        endWord();
      else
        add(c);
    }
    endCommand();
    return 0;
  }

private:
  bool readQuoted(char quote)
  {
    m_isInWord = true;
    for (; m_next < m_text.size(); ++m_next)
    {
      const char c = m_text[m_next];
      if (c == quote)
      {
        ++m_next;
        return true;
      }
      const char following = m_next + 1 < m_text.size() ? m_text[m_next + 1] : '\0';
      const bool isEscaped = quote == '"' && c == '\\' && (following == '"' || following == '\\');
      if (isEscaped) ++m_next;
      add(m_text[m_next]);
    }
    return false;
  }

  void add(char c)
  {
    m_word += c;
    m_isInWord = true;
  }

  void endWord()
  {
    if (m_isInWord) m_command.push_back(m_word);
    m_word.clear();
    m_isInWord = false;
  }

  void endCommand()
  {
    endWord();
    if (!m_command.empty()) m_commands.push_back(m_command);
    m_command.clear();
  }

  const std::string& m_text;
  std::vector<std::vector<std::string>>& m_commands;
  std::size_t m_next = 0;
  std::string m_word;
  bool m_isInWord = false;    // an empty word is one, too
  std::vector<std::string> m_command;
};

bool beginsWith(const std::string& text, const std::string& begin) { return text.compare(0, begin.size(), begin) == 0; }

// Adds what is in an item and begins so, with a text in front.
void addContent(const KyCInventoryItem& item, const std::string& front, const std::string& begin,
                std::unordered_set<std::string>& known, std::vector<std::string>& found)
{
  const auto add = [&](const KyCInventoryAddress& id)
  {
    const std::string text = addressText(id);
    if (beginsWith(text, begin) && known.insert(front + text).second) found.push_back(front + text);
  };
  for (const KyCInventoryItem* sub = item.getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    add(sub->getID());
  for (const KyCInventoryParameter* p = item.getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
    add(p->getID());
}

KyCInventoryItem* itemOf(KyCInventoryItem& item, const std::string& text)
{
  KyCErrorListPool ignored;
  KyCInventoryAddress address;
  return readAddress(ignored, text, address) ? item.getItem(address) : nullptr;
}
}    // namespace

bool splitCommands(KyCErrorListPool& pool, const std::string& text, std::vector<std::vector<std::string>>& commands)
{
  const char quote = CommandReader(text, commands).read();
  if (quote == 0) return true;
  pool.setError(KY_SESSION_MSG_OPEN_QUOTE, __LINE__, "splitCommands", "%s", std::string(1, quote).c_str());
  return false;
}

std::vector<std::string> completeAddress(KyCInventoryItem& item, const std::string& begun)
{
  std::unordered_set<std::string> known = {begun};    // what is there already is no completion
  std::vector<std::string> found;
  const std::size_t slash = begun.rfind('/');
  const std::string front = slash == begun.npos ? "" : begun.substr(0, slash + 1);
  const std::string begin = begun.substr(front.size());
  const KyCInventoryItem* const parent = slash == begun.npos ? &item : itemOf(item, begun.substr(0, slash));
  if (parent == nullptr) return found;
  addContent(*parent, front, begin, known, found);
  const KyCInventoryItem* const named = begin.empty() || begin == "." ? nullptr : itemOf(item, begun);
  if (named != nullptr) addContent(*named, begun + "/", "", known, found);
  return found;
}

std::vector<std::string> completeName(const std::string& begun)
{
  std::vector<std::string> names;
  for (unsigned int id = 1; id < KyNInventoryIDs::Map.getCount(); ++id)
  {
    const std::string name = KyNInventoryIDs::Map.get(id);
    if (!name.empty() && beginsWith(name, begun)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}
}    // namespace KyNInventoryKit
