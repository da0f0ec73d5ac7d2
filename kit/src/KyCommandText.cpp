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
  const bool isRead = text != "/" && readAddress(ignored, text, address);    // the front of "//" is no item
  return isRead ? item.getItem(address) : nullptr;
}
}    // namespace

void CommandSplitter::add(const std::string& text, std::vector<std::vector<std::string>>& commands)
{
  for (const char c : text)
  {
    if (m_isComment && c != '\n') continue;
    m_isComment = false;
    if (m_isBehindBackslash)
      addBehindBackslash(c);
    else if (m_quote != 0)
      addQuoted(c);
    else
      addPlain(c, commands);
  }
}

void CommandSplitter::addPlain(char c, std::vector<std::vector<std::string>>& commands)
{
  if (c == '\'' || c == '"')
  {
    m_quote = c;
    m_isInWord = true;
  }
  else if (c == '\\')
    m_isBehindBackslash = true;
  else if (c == '#' && !m_isInWord)
    m_isComment = true;
  else if (c == '\n' || c == ';')
    endCommand(commands);
  else if (c == ' ' || c == '\t' || c == '\r')
    endWord();
  else
    addToWord(c);
}

void CommandSplitter::addQuoted(char c)
{
  if (c == m_quote)
    m_quote = 0;
  else if (c == '\\' && m_quote == '"')
    m_isBehindBackslash = true;
  else
    addToWord(c);
}

void CommandSplitter::addBehindBackslash(char c)
{
  m_isBehindBackslash = false;
  if (m_quote != 0 && c != '"' && c != '\\') addToWord('\\');    // it stands for itself there
  addToWord(c);
}

void CommandSplitter::addToWord(char c)
{
  m_word += c;
  m_isInWord = true;
}

void CommandSplitter::endWord()
{
  if (m_isInWord) m_command.push_back(m_word);
  m_word.clear();
  m_isInWord = false;
}

void CommandSplitter::endCommand(std::vector<std::vector<std::string>>& commands)
{
  endWord();
  if (!m_command.empty()) commands.push_back(m_command);
  m_command.clear();
}

bool CommandSplitter::finish(KyCErrorListPool& pool, std::vector<std::vector<std::string>>& commands)
{
  if (m_quote != 0)
  {
    pool.setError(KY_SESSION_MSG_OPEN_QUOTE, __LINE__, "splitCommands", "%s", std::string(1, m_quote).c_str());
    return false;
  }
  if (m_isBehindBackslash) addToWord('\\');    // there is nothing to take the meaning from
  m_isBehindBackslash = false;
  endCommand(commands);
  return true;
}

bool splitCommands(KyCErrorListPool& pool, const std::string& text, std::vector<std::vector<std::string>>& commands)
{
  CommandSplitter splitter;
  splitter.add(text, commands);
  return splitter.finish(pool, commands);
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
  for (unsigned int id = 0; id < KyNInventoryIDs::Map.getCount(); ++id)
  {
    const std::string name = KyNInventoryIDs::Map.get(id);
    if (!name.empty() && beginsWith(name, begun)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}
}    // namespace KyNInventoryKit
