#include "KySiblings.h"

#include <charconv>

#include "inventory/KyNInventoryIDs.h"
#include "inventorykit/KyAddressText.h"

namespace KyNInventoryKit
{
namespace
{
// Elements of an address: no stored tree is deeper. The edits of a patch cost memory for each.
constexpr std::size_t s_longestPath = 4096;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isNamePart(char c) { return c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || isDigit(c); }

// The name of an ID where that is exact, otherwise its number.
std::string idText(unsigned int id)
{
  const char* const name = KyNInventoryIDs::Map.get(id);
  if (name == nullptr || isDigit(*name) || idOfName(name) != id) return std::to_string(id);
  for (const char* c = name; *c != '\0'; ++c)
    if (!isNamePart(*c)) return std::to_string(id);
  return name;
}

class PathReader
{
public:
  PathReader(const std::string& text, std::string& problem)
      : m_at(text.data()), m_first(text.data()), m_last(text.data() + text.size()), m_problem(problem)
  {
  }

  bool read(std::vector<Sibling>& path)
  {
    for (;;)
    {
      Sibling sibling;
      if (!readID(sibling.id)) return false;
      if (isAt('[') && !(readNumber(sibling.index) && closes())) return expected("an index and \"]\"");
      if (isAt('#') && !(readNumber(sibling.number) && sibling.number > 1)) return expected("a number from 2 on");
      path.push_back(sibling);
      if (m_at == m_last) return true;
      if (path.size() == s_longestPath) return tooLong();
      if (!isAt('/')) return expected("\"/\", \"[\" or \"#\"");
    }
  }

private:
  // Steps over the character when it is there.
  bool isAt(char c)
  {
    if (m_at == m_last || *m_at != c) return false;
    ++m_at;
    return true;
  }
  bool closes() { return isAt(']'); }

  bool readID(unsigned int& id)
  {
    const char* end = m_at;
    while (end != m_last && isNamePart(*end))
      ++end;
    if (end == m_at) return expected("an ID");
    if (isDigit(*m_at)) return readNumber(id) || expected("an ID");
    if (!findID(std::string(m_at, end), id))
    {
      m_problem = std::string(m_at, end) + " is not an inventory ID";
      return false;
    }
    m_at = end;
    return true;
  }

  bool readNumber(unsigned int& number)
  {
    const auto [end, error] = std::from_chars(m_at, m_last, number);
    if (error != std::errc()) return false;
    m_at = end;
    return true;
  }

  bool tooLong()
  {
    m_problem = "it has more than " + std::to_string(s_longestPath) + " elements";
    return false;
  }

  bool expected(const char* what)
  {
    m_problem =
        std::string(what) + " is expected at character " + std::to_string(m_at - m_first + 1) + " of the address";
    return false;
  }

  const char* m_at;
  const char* m_first;
  const char* m_last;
  std::string& m_problem;
};
}    // namespace

std::string siblingText(const Sibling& sibling)
{
  std::string text = idText(sibling.id);
  if (sibling.index != 1) text += "[" + std::to_string(sibling.index) + "]";
  if (sibling.number != 1) text += "#" + std::to_string(sibling.number);
  return text;
}

bool readSiblings(const std::string& text, std::vector<Sibling>& path, std::string& problem)
{
  path.clear();
  return text == "." || PathReader(text, problem).read(path);
}

// ---- Numbers ----

template <typename Node>
Sibling SiblingNumbers::numbered(const Node& node, const KyCInventoryItem* parent,
                                 std::unordered_set<const void*>& known)
{
  Sibling name = unnumbered(node);
  if (parent == nullptr) return name;
  if (known.insert(parent).second)
  {
    for (const NamedNode<Node>& sibling : namedNodes<Node>(*parent))
      if (sibling.name.number != 1) m_numbers.emplace(sibling.node, sibling.name.number);
  }
  const auto number = m_numbers.find(&node);
  if (number != m_numbers.end()) name.number = number->second;
  return name;
}

Sibling SiblingNumbers::nameOf(const KyCInventoryItem& item) { return numbered(item, item.getParent(), m_knownItems); }

Sibling SiblingNumbers::nameOf(const KyCInventoryParameter& parameter)
{
  return numbered(parameter, parameter.getParent(), m_knownParameters);
}

std::string SiblingNumbers::addressOf(const KyCInventoryItem& item)
{
  if (&item == m_lastItem) return m_lastAddress;
  std::vector<const KyCInventoryItem*> path;
  const KyCInventoryItem* at = &item;
  for (; at != m_lastItem && at->getParent() != nullptr; at = at->getParent())
    path.push_back(at);
  std::string address = at == m_lastItem && m_lastAddress != "." ? m_lastAddress : "";
  for (auto element = path.rbegin(); element != path.rend(); ++element)
    address += (address.empty() ? "" : "/") + siblingText(nameOf(**element));
  m_lastItem = &item;
  m_lastAddress = address.empty() ? "." : address;
  return m_lastAddress;
}

std::string SiblingNumbers::addressOf(const KyCInventoryParameter& parameter)
{
  const std::string item = addressOf(*parameter.getParent());
  return (item == "." ? "" : item + "/") + siblingText(nameOf(parameter));
}

// ---- Names ----

template <typename Node>
const Node* SiblingFinder::find(Lists<Node>& lists, const KyCInventoryItem& parent, const Sibling& name)
{
  const auto isBefore = [](const NamedNode<Node>& a, const NamedNode<Node>& b) { return a.name < b.name; };
  const auto [list, isNew] = lists.try_emplace(&parent);
  std::vector<NamedNode<Node>>& nodes = list->second;
  if (isNew)
  {
    nodes = namedNodes<Node>(parent);
    std::sort(nodes.begin(), nodes.end(), isBefore);
  }
  const auto found = std::lower_bound(nodes.begin(), nodes.end(), NamedNode<Node>{name, nullptr}, isBefore);
  return found != nodes.end() && found->name == name ? found->node : nullptr;
}

const KyCInventoryItem* SiblingFinder::findItem(const KyCInventoryItem& parent, const Sibling& name)
{
  return find(m_items, parent, name);
}

const KyCInventoryParameter* SiblingFinder::findParameter(const KyCInventoryItem& parent, const Sibling& name)
{
  return find(m_parameters, parent, name);
}
}    // namespace KyNInventoryKit
