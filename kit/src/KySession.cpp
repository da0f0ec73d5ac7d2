#include "inventorykit/KySession.h"

#include <utility>

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

// The item that an address starts from, and the part of the address that is relative to it.
KyCInventoryItem* Session::base(const std::string& address, std::string& rest) const
{
  KyCInventoryItem* item = m_current;
  rest = address;
  if (!rest.empty() && rest.front() == '/')
  {
    item = m_root.get();
    rest.erase(0, 1);
  }
  while (rest == ".." || rest.compare(0, 3, "../") == 0)
  {
    if (item->getParent() != nullptr) item = item->getParent();
    rest.erase(0, 3);
  }
  return item;
}

namespace
{
// The part of an address that is read by readAddress.
std::string withoutSlashAtEnd(const std::string& text)
{
  return text.size() > 1 && text.back() == '/' ? text.substr(0, text.size() - 1) : text;
}

void report(KyCErrorListPool& pool, KySessionMessage code, int line, const char* function, const std::string& address)
{
  pool.setError(code, static_cast<unsigned int>(line), function, "%s", address.c_str());
}
}    // namespace

KyCInventoryItem* Session::item(KyCErrorListPool& pool, const std::string& address)
{
  std::string rest;
  KyCInventoryItem* const from = base(address, rest);
  KyCInventoryAddress relative;
  if (!readAddress(pool, withoutSlashAtEnd(rest), relative)) return nullptr;
  KyCInventoryItem* const found = from->getItem(relative);
  if (found != nullptr) return found;
  const bool isParameter = from->getParameter(relative) != nullptr;
  report(pool, isParameter ? KY_SESSION_MSG_IS_PARAMETER : KY_SESSION_MSG_NO_ITEM, __LINE__, "item", address);
  return nullptr;
}

KyCInventoryParameter* Session::parameter(KyCErrorListPool& pool, const std::string& address)
{
  std::string rest;
  KyCInventoryItem* const from = base(address, rest);
  KyCInventoryAddress relative;
  if (!readAddress(pool, withoutSlashAtEnd(rest), relative)) return nullptr;
  KyCInventoryParameter* const found = from->getParameter(relative);
  if (found != nullptr) return found;
  const bool isItem = from->getItem(relative) != nullptr;
  report(pool, isItem ? KY_SESSION_MSG_IS_ITEM : KY_SESSION_MSG_NO_PARAMETER, __LINE__, "parameter", address);
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

bool Session::create(KyCErrorListPool& pool, const std::string& address, unsigned int type, const std::string& value,
                     const std::string& unit)
{
  std::string rest;
  KyCInventoryItem* const from = base(address, rest);
  KyCInventoryAddress relative;
  if (!readAddress(pool, rest, relative)) return false;
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
  KyCInventoryItem* const from = base(begun, rest);
  const std::string front = begun.substr(0, begun.size() - std::min(rest.size(), begun.size()));
  if (rest.empty() && begun.size() >= 2 && begun.compare(begun.size() - 2, 2, "..") == 0) return {begun + "/"};
  std::vector<std::string> addresses = completeAddress(*from, rest);
  for (std::string& address : addresses)
    address.insert(0, front);
  return addresses;
}
}    // namespace KyNInventoryKit
