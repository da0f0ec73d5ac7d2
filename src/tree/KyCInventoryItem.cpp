// Identity and navigation.

#include "inventory/KyCInventoryItem.h"

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "tree/KyInventoryAccess.h"
#include "tree/KyStaticDescription.h"

namespace
{
using TElement = KyCInventoryAddress::TElement;

// Tells when a chain of friends runs in a ring, in constant space: every now and then one item of the chain is
// remembered, at distances that double; in a ring it comes by again.
class KyCFriendChain
{
public:
  explicit KyCFriendChain(const KyCInventoryItem* start) noexcept : m_remembered(start) {}

  // The next item of the chain; null at its end and when it has been there before.
  KyCInventoryItem* next(const KyCInventoryItem& item) noexcept
  {
    KyCInventoryItem* const other = KyInventoryAccess::getFriend(item);
    if (other == m_remembered) return nullptr;
    if (++m_steps == m_limit)
    {
      m_remembered = other;
      m_steps = 0;
      m_limit *= 2;
    }
    return other;
  }

private:
  const KyCInventoryItem* m_remembered;
  unsigned int m_steps = 0;
  unsigned int m_limit = 2;
};

// The sub-item that answers to one element of a path where the item itself has none: its friend's, or that one's
// friend's, and so on along the chain; null: none. The rest of the path then goes on below it.
KyCInventoryItem* findBelowFriends(KyCInventoryItem* item, const TElement& element)
{
  if (KyInventoryAccess::getFriend(*item) == nullptr) return nullptr;
  KyCFriendChain friends(item);
  for (item = friends.next(*item); item != nullptr; item = friends.next(*item))
  {
    KyCInventoryItem* const found = KyInventoryAccess::findSubItem(*item, element);
    if (found != nullptr) return found;
  }
  return nullptr;
}

KyCInventoryItem* findItem(KyCInventoryItem* item, const TElement* path, unsigned int length)
{
  for (unsigned int n = 0; n < length; ++n)
  {
    KyCInventoryItem* const own = KyInventoryAccess::findSubItem(*item, path[n]);
    item = own != nullptr ? own : findBelowFriends(item, path[n]);
    if (item == nullptr) return nullptr;
  }
  return item;
}

// The item that a path leads to without the help of friends; null: none.
KyCInventoryItem* findOwnItem(KyCInventoryItem* item, const KyCInventoryAddress& path)
{
  const TElement* const elements = path.getElements();
  for (unsigned int n = 0; item != nullptr && n < path.getLength(); ++n)
    item = KyInventoryAccess::findSubItem(*item, elements[n]);
  return item;
}
}    // namespace

// An own description is set in the body: only there it is known that it needs a copy.
KyCInventoryItem::KyCInventoryItem(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description)
    : KyCComposite(pool, address.getCategory(), address.getIndex(), TStaticText{""})
{
  const char* const name = kyStaticDescription(address.getCategory(), description);
  if (name != nullptr)
    setStaticDescription(name);
  else if (description != nullptr && *description != '\0')
    setDescription(pool, description);
  if (!address.isSingleElement())
    pool.setError(KY_MSG_ITEM_INIT_ID_NOT_ONE_ELEMENT, __LINE__, "KyCInventoryItem", "%s",
                  description != nullptr ? description : "");
}

KyCInventoryItem::~KyCInventoryItem()
{
  setFriend(nullptr);
  delete m_auxInfo;
  m_auxInfo = nullptr;
}

KyCInventoryAddress KyCInventoryItem::getID() const { return KyCInventoryAddress(getClassId(), getUnitId()); }

KyCInventoryItem* KyCInventoryItem::getParent() const { return KyInventoryAccess::toItem(KyCComposite::getParent()); }

KyCInventoryItem* KyCInventoryItem::getNext() const { return KyInventoryAccess::toItem(getSibling()); }

KyCInventoryItem* KyCInventoryItem::getFirstSubItem() const { return KyInventoryAccess::toItem(getChild()); }

KyCInventoryParameter* KyCInventoryItem::getParameterByOrdinalNumber(unsigned int n) const
{
  return KyInventoryAccess::toParameter(getParameterByIndex(n));
}

KyCInventoryAddress KyCInventoryItem::getAddress() const { return KyInventoryAccess::addressOf(this, nullptr); }

KyCInventoryItem* KyCInventoryItem::getItem(const KyCInventoryAddress& address)
{
  return findItem(this, address.getElements(), address.getLength());
}

KyCInventoryParameter* KyCInventoryItem::getParameter(const KyCInventoryAddress& address) const
{
  if (address.isEmpty()) return nullptr;
  // Looking up changes nothing; getItem is not const only because what it finds may be changed.
  KyCInventoryItem* const item =
      findItem(const_cast<KyCInventoryItem*>(this), address.getElements(), address.getLength() - 1);
  if (item == nullptr) return nullptr;

  KyCParam* found = item->getParameterById(address.getCategory());
  if (found == nullptr && item->getFriend() != nullptr)
    found = item->getFriend()->getParameterById(address.getCategory());
  return KyInventoryAccess::toParameter(found);
}

KyCInventoryItem* KyCInventoryItem::addItem(const KyCInventoryAddress& where, KyCInventoryItem* item)
{
  KyCInventoryItem* const parent = findOwnItem(this, where);
  if (parent == nullptr || item == nullptr) return parent;

  const KyCInventoryAddress id = item->getID();
  if (parent->getItem(id) != nullptr || parent->getParameter(id) != nullptr) return nullptr;
  return parent->attach(item) == 0 ? parent : nullptr;
}

int KyCInventoryItem::detach()
{
  KyCComposite* const parent = KyCComposite::getParent();
  return parent != nullptr ? parent->detachChild(this) : 0;
}

KyCInventoryParameter* KyCInventoryItem::detachParameter(unsigned int id)
{
  return KyInventoryAccess::toParameter(removeParameter(kyErrorManager().getMasterErrorList(), id));
}
