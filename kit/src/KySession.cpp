#include "inventorykit/KySession.h"

#include <algorithm>
#include <utility>

#include "KyNearest.h"
#include "KyNewItems.h"
#include "KySessionMessages.h"
#include "inventorykit/KyAddressText.h"
#include "inventorykit/KySectionFile.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// The section of a file's bytes; all of them when there is none.
std::string sectionIn(const std::string& bytes)
{
  KyCErrorListPool ignored;
  SectionPlace place;
  return findSection(ignored, bytes, place) ? bytes.substr(place.begin, place.end - place.begin) : bytes;
}
}    // namespace

std::unique_ptr<Session> Session::open(KyCErrorListPool& pool, const std::string& path)
{
  std::string bytes;
  if (!readBytes(pool, path, bytes)) return nullptr;
  TreePointer root = readTreeFromBytes(pool, bytes, path);
  if (!root) return nullptr;
  return std::unique_ptr<Session>(new Session(path, sectionIn(bytes), std::move(root)));
}

Session::Session(const std::string& path, std::string bytes, TreePointer root)
    : m_path(path), m_bytes(std::move(bytes)), m_root(std::move(root)), m_current(m_root.get())
{
}

Session::~Session() = default;

std::string Session::place() const
{
  const KyCInventoryAddress address = m_current->getAddress();
  return address.isEmpty() ? "/" : "/" + addressText(address);
}

namespace
{
constexpr std::size_t s_most = 3;    // addresses that may be meant

void report(KyCErrorListPool& pool, KySessionMessage code, int line, const char* function, const std::string& address)
{
  pool.setError(code, static_cast<unsigned int>(line), function, "%s", address.c_str());
}

// The part of an address that is read by readAddress.
std::string withoutSlashAtEnd(const std::string& text)
{
  return text.size() > 1 && text.back() == '/' && text != "//" ? text.substr(0, text.size() - 1) : text;
}

// The first element ".." of an address, from one of its elements on.
std::size_t findUpward(const std::string& address, std::size_t from)
{
  std::size_t at = address.find("..", from);
  for (; at != address.npos; at = address.find("..", at + 1))
  {
    const bool isStart = at == from || address[at - 1] == '/';
    if (isStart && (at + 2 == address.size() || address[at + 2] == '/')) break;
  }
  return at;
}

// Reports what does not exist with what is near. `front` is the part of the address that leads to the item.
void reportMissing(KyCErrorListPool& pool, KySessionMessage code, int line, const char* function,
                   KyCInventoryItem& from, const KyCInventoryAddress& relative, const std::string& address,
                   const std::string& front)
{
  const bool isItemMeant = code == KY_SESSION_MSG_NO_ITEM;
  std::vector<std::string> nearest;
  for (const std::string& text : nearestExisting(from, relative, isItemMeant ? 8 * s_most : s_most))
  {
    KyCErrorListPool ignored;
    KyCInventoryAddress candidate;
    const bool isItem = readAddress(ignored, text, candidate) && from.getItem(candidate) != nullptr;
    if (nearest.size() < s_most && (isItem || !isItemMeant)) nearest.push_back(front + text);
  }
  pool.setError(code, static_cast<unsigned int>(line), function, "%s%s", address.c_str(), didYouMean(nearest).c_str());
}

// The part of an address from `begin` on. A "/" there stands behind another one: with it, no address is read of the two.
std::string partOf(const std::string& address, std::size_t begin, std::size_t end)
{
  const bool isEmptyElement = begin != 0 && begin < address.size() && address[begin] == '/';
  return address.substr(isEmptyElement ? begin - 1 : begin, isEmptyElement ? end - begin + 1 : end - begin);
}

// The item that an address up to `end` names: what is in front of `begin` leads to an item, and no ".." is behind it.
KyCInventoryItem* itemAt(KyCErrorListPool& pool, KyCInventoryItem& from, const std::string& address, std::size_t begin,
                         std::size_t end)
{
  KyCInventoryAddress relative;
  if (!readAddress(pool, partOf(address, begin, end), relative)) return nullptr;
  KyCInventoryItem* const found = from.getItem(relative);
  if (found != nullptr) return found;
  const std::string asked = address.substr(0, end);
  if (from.getParameter(relative) != nullptr)
    report(pool, KY_SESSION_MSG_IS_PARAMETER, __LINE__, "item", asked);
  else
    reportMissing(pool, KY_SESSION_MSG_NO_ITEM, __LINE__, "item", from, relative, asked, address.substr(0, begin));
  return nullptr;
}

// The part of an address in front of what is relative to an item.
std::string frontOf(const std::string& address, const std::string& rest)
{
  return address.substr(0, address.size() - rest.size());
}
}    // namespace

// The item behind the last ".." of an address, and the part of the address that is relative to it.
KyCInventoryItem* Session::base(KyCErrorListPool& pool, const std::string& address, std::string& rest) const
{
  const bool isFromRoot = !address.empty() && address.front() == '/';
  KyCInventoryItem* item = isFromRoot ? m_root.get() : m_current;
  std::size_t begin = isFromRoot ? 1 : 0;
  for (std::size_t up = findUpward(address, begin); up != address.npos; up = findUpward(address, begin))
  {
    const std::size_t end = up > begin + 1 ? up - 1 : up;    // without the "/", unless there is nothing in front of it
    if (up != begin) item = itemAt(pool, *item, address, begin, end);
    if (item == nullptr) return nullptr;
    if (item->getParent() != nullptr) item = item->getParent();
    begin = std::min(up + 3, address.size());
  }
  rest = partOf(address, begin, address.size());
  return item;
}

KyCInventoryItem* Session::item(KyCErrorListPool& pool, const std::string& address)
{
  std::string rest;
  KyCInventoryItem* const from = base(pool, address, rest);
  if (from == nullptr) return nullptr;
  const std::size_t begin = address.size() - rest.size();
  return itemAt(pool, *from, address, begin, begin + withoutSlashAtEnd(rest).size());
}

Node Session::node(KyCErrorListPool& pool, const std::string& address)
{
  std::string rest;
  KyCInventoryItem* const from = base(pool, address, rest);
  KyCInventoryAddress relative;
  if (from == nullptr || !readAddress(pool, withoutSlashAtEnd(rest), relative)) return {};
  const Node found = lookUp(*from, relative);
  if (found.item != nullptr) return found;
  const KySessionMessage code = relative.getIndex() == 1 ? KY_SESSION_MSG_NO_PARAMETER : KY_SESSION_MSG_NO_ITEM;
  reportMissing(pool, code, __LINE__, "node", *from, relative, address, frontOf(address, rest));
  return {};
}

KyCInventoryParameter* Session::parameter(KyCErrorListPool& pool, const std::string& address)
{
  std::string rest;
  KyCInventoryItem* const from = base(pool, address, rest);
  KyCInventoryAddress relative;
  if (from == nullptr || !readAddress(pool, withoutSlashAtEnd(rest), relative)) return nullptr;
  const Node found = lookUp(*from, relative);
  if (found.parameter != nullptr) return found.parameter;
  if (found.item != nullptr)
    report(pool, KY_SESSION_MSG_IS_ITEM, __LINE__, "parameter", address);
  else
    reportMissing(pool, KY_SESSION_MSG_NO_PARAMETER, __LINE__, "parameter", *from, relative, address,
                  frontOf(address, rest));
  return nullptr;
}

bool Session::enter(KyCErrorListPool& pool, const std::string& address)
{
  KyCInventoryItem* const target = item(pool, address);
  if (target != nullptr) m_current = target;
  return target != nullptr;
}

bool Session::set(KyCErrorListPool& pool, const std::string& address, const std::string& value)
{
  KyCInventoryParameter* const target = parameter(pool, address);
  if (target == nullptr) return false;
  const KyCInventoryParameter old(*target);
  if (!setValueText(pool, *target, value)) return false;
  m_isChanged = m_isChanged || !sameValue(old, *target);
  return true;
}

namespace
{
bool isSame(const KyCInventoryParameter& a, const KyCInventoryParameter& b)
{
  return sameValue(a, b) && std::string(a.getUnit()) == b.getUnit() && a.isModifiable() == b.isModifiable() &&
         a.getRelevance() == b.getRelevance();
}

// One of several changes, and the way back.
class Step
{
public:
  Step(KyCInventoryItem& top, const KyCInventoryAddress& address)
      : m_top(&top), m_address(address), m_known(countKnownItems(top, address))
  {
    const KyCInventoryParameter* const old = lookUp(top, address).parameter;
    if (old != nullptr) m_old = std::make_unique<KyCInventoryParameter>(*old);
  }

  // Done wholly or, with a report, not at all.
  bool carryOut(KyCErrorListPool& pool, const ParameterChange& change)
  {
    m_parameter = changeParameter(pool, *m_top, m_address, change);
    return m_parameter != nullptr;
  }

  bool hasChanged() const { return m_old == nullptr || !isSame(*m_old, *m_parameter); }

  void takeBack()
  {
    if (m_old != nullptr)
      *m_parameter = *m_old;
    else if (m_known + 1 < m_address.getLength())
      removeNewItems(*m_top, m_address, m_known);
    else
      delete m_top->getItem(m_address.getHeadAddress())->detachParameter(m_address.getCategory());
  }

private:
  KyCInventoryItem* m_top;
  KyCInventoryAddress m_address;
  unsigned int m_known;                            // elements
  std::unique_ptr<KyCInventoryParameter> m_old;    // null: it was not there
  KyCInventoryParameter* m_parameter = nullptr;
};
}    // namespace

bool Session::change(KyCErrorListPool& pool, const std::string& address, const ParameterChange& change)
{
  std::size_t ignored = 0;
  return changeAll(pool, {{address, change}}, ignored);
}

bool Session::changeAll(KyCErrorListPool& pool, const std::vector<Assignment>& assignments, std::size_t& failed)
{
  std::vector<Step> steps;
  for (failed = 0; failed < assignments.size(); ++failed)
  {
    const std::string& address = assignments[failed].address;
    const ParameterChange& change = assignments[failed].change;
    std::string rest;
    KyCInventoryItem* const from = base(pool, address, rest);
    KyCInventoryAddress relative;
    bool isDone = from != nullptr && readAddress(pool, withoutSlashAtEnd(rest), relative);
    isDone = isDone && (change.createType != 0 || parameter(pool, address) != nullptr);
    if (isDone) steps.emplace_back(*from, relative);
    if (isDone && steps.back().carryOut(pool, change)) continue;
    if (isDone) steps.pop_back();
    for (auto step = steps.rbegin(); step != steps.rend(); ++step)
      step->takeBack();
    return false;
  }
  for (const Step& step : steps)
    m_isChanged = m_isChanged || step.hasChanged();
  return true;
}

bool Session::create(KyCErrorListPool& pool, const std::string& address, unsigned int type, const std::string& value,
                     const std::string& unit)
{
  std::string rest;
  KyCInventoryItem* const from = base(pool, address, rest);
  KyCInventoryAddress relative;
  if (from == nullptr || !readAddress(pool, rest, relative)) return false;
  const bool isParentThere = from->getItem(relative.getHeadAddress()) != nullptr;
  const bool isCreated = createParameter(pool, *from, relative, type, value, unit.c_str(), true, 0) != nullptr;
  const bool isParentNew = !isParentThere && from->getItem(relative.getHeadAddress()) != nullptr;
  m_isChanged = m_isChanged || isCreated || isParentNew;
  return isCreated;
}

TreePointer Session::stored(KyCErrorListPool& pool) const { return readTreeFromBytes(pool, m_bytes, m_path); }

bool Session::isStoredElsewhere(KyCErrorListPool& pool) const
{
  std::string bytes;
  if (!readBytes(pool, m_path, bytes)) return true;
  if (sectionIn(bytes) == m_bytes) return false;
  report(pool, KY_SESSION_MSG_STORED_ELSEWHERE, __LINE__, "save", m_path);
  return true;
}

bool Session::save(KyCErrorListPool& pool, Others others)
{
  if (others == Others::KEEP && isStoredElsewhere(pool)) return false;
  if (!replaceTree(pool, m_path, *m_root)) return false;
  m_bytes = sectionOf(pool, *m_root);
  m_isChanged = false;
  return true;
}

std::vector<std::string> Session::complete(const std::string& begun)
{
  std::string rest;
  KyCErrorListPool ignored;
  KyCInventoryItem* const from = base(ignored, begun, rest);
  if (from == nullptr) return {};
  const std::string front = begun.substr(0, begun.size() - std::min(rest.size(), begun.size()));
  if (rest.empty() && begun.size() >= 2 && begun.compare(begun.size() - 2, 2, "..") == 0) return {begun + "/"};
  std::vector<std::string> addresses = completeAddress(*from, rest);
  for (std::string& address : addresses)
    address.insert(0, front);
  return addresses;
}
}    // namespace KyNInventoryKit
