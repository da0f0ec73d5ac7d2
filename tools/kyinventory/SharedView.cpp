#include "SharedView.h"

#include <vector>

#include "Terminal.h"
#include "errorhandling/KyCErrorManager.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyNInventoryIDs.h"

namespace
{
using KyNInventoryIDs::SHARED_DATA;
using KyNInventoryIDs::SHARED_DATA_INDEX;

class WarningPrinter : public KyIErrorListener
{
public:
  explicit WarningPrinter(const std::string& path)
      : m_path(path), m_before(KyCErrorManager::getSingleton()->setListener(this))
  {
  }
  ~WarningPrinter() override { KyCErrorManager::getSingleton()->setListener(m_before); }
  WarningPrinter(const WarningPrinter&) = delete;
  WarningPrinter& operator=(const WarningPrinter&) = delete;

  void onError(const KyErrorEntry& entry) override { complainAbout(m_path, entry); }
  void onWarning(const KyErrorEntry& entry) override { complainAbout(m_path, entry); }

private:
  const std::string& m_path;
  KyIErrorListener* m_before;
};

std::string markFor(const KyCInventoryAddress& origin) { return std::string("shared: ") + origin.toString().c_str(); }

template <typename T>
KyCInventoryParameter* markedCopy(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  return new KyCInventoryParameter(pool, parameter.getID(), markFor(parameter.getAddress()).c_str(),
                                   parameter.getValue<T>(pool), parameter.getUnit(), parameter.isModifiable(),
                                   parameter.getRelevance());
}

KyCInventoryParameter* markedCopyOfAnyType(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  switch (parameter.getType())
  {
    case 0x111:
      return markedCopy<signed char>(pool, parameter);
    case 0x112:
      return markedCopy<short>(pool, parameter);
    case 0x114:
      return markedCopy<int>(pool, parameter);
    case 0x118:
      return markedCopy<long long>(pool, parameter);
    case 0x121:
      return markedCopy<unsigned char>(pool, parameter);
    case 0x122:
      return markedCopy<unsigned short>(pool, parameter);
    case 0x124:
      return markedCopy<unsigned int>(pool, parameter);
    case 0x128:
      return markedCopy<unsigned long long>(pool, parameter);
    case 0x214:
      return markedCopy<float>(pool, parameter);
    case 0x218:
      return markedCopy<double>(pool, parameter);
    case 0x2000:
      return markedCopy<KyCString>(pool, parameter);
    case 0x4000:
      return markedCopy<KyCVersion>(pool, parameter);
    default:
      return new KyCInventoryParameter(parameter);    // has no value, and so no typed constructor
  }
}

void addParameter(KyCErrorListPool& pool, KyCInventoryItem& item, const KyCInventoryParameter& shared)
{
  KyCInventoryParameter* const copy = markedCopyOfAnyType(pool, shared);
  if (item.addParameter(pool, KyNInventoryIDs::THIS_NODE, copy) == nullptr) delete copy;
}

void addSubItem(KyCErrorListPool& pool, KyCInventoryItem& item, const KyCInventoryItem& shared)
{
  auto* marked = new KyCInventoryItem(pool, shared.getID(), markFor(shared.getAddress()).c_str());
  KyCInventoryItem* content = nullptr;
  shared.copyTree(pool, content);
  KyCInventoryItem::mergeTree(pool, marked, content, 1);
  if (item.addItem(KyNInventoryIDs::THIS_NODE, marked) == nullptr) delete marked;
}

// An item of the linked tree, the shared data item that it is linked to, and the item of the copy that shows both.
struct Place
{
  KyCInventoryItem* item;
  KyCInventoryItem* shared;    // null: not linked
  KyCInventoryItem* shown;
};

// Adds what a look-up through the item finds in its shared data.
void addSharedContent(KyCErrorListPool& pool, const Place& place)
{
  for (const KyCInventoryParameter* p = place.shared->getParameterByOrdinalNumber(0); p != nullptr; p = p->getNext())
  {
    if (place.item->getParameter(p->getID()) == p) addParameter(pool, *place.shown, *p);
  }
  for (KyCInventoryItem* sub = place.shared->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
  {
    if (place.item->getItem(sub->getID()) == sub) addSubItem(pool, *place.shown, *sub);
  }
}

bool isSharedData(const KyCInventoryItem& item) { return item.getID()[1] == SHARED_DATA; }

// The shared data item that linking has given a sub-item; null: none. `isWalked`: there may be one further down.
KyCInventoryItem* sharedItemOf(const Place& parent, KyCInventoryItem& sub, bool& isWalked)
{
  const bool isUser = parent.shared == nullptr && sub.getParameter(SHARED_DATA_INDEX) != nullptr;
  isWalked = !isSharedData(sub);
  if (!isWalked || (parent.shared == nullptr && !isUser)) return nullptr;
  KyCErrorListPool pool;    // linking has reported it
  KyCInventoryItem* const shared =
      isUser ? parent.item->getItem(SHARED_DATA[sub.getValue<unsigned int>(pool, SHARED_DATA_INDEX)])
             : parent.shared->getItem(sub.getID());
  isWalked = shared != nullptr;
  return shared;
}

void addSharedContentBelow(KyCErrorListPool& pool, KyCInventoryItem& root, KyCInventoryItem& shownRoot)
{
  std::vector<Place> open = {{&root, nullptr, &shownRoot}};
  while (!open.empty())
  {
    const Place place = open.back();
    open.pop_back();
    for (KyCInventoryItem* sub = place.item->getFirstSubItem(); sub != nullptr; sub = sub->getNext())
    {
      bool isWalked = false;
      KyCInventoryItem* const shared = sharedItemOf(place, *sub, isWalked);
      KyCInventoryItem* const shown = place.shown->getItem(sub->getID());
      if (isWalked && shown != nullptr) open.push_back({sub, shared, shown});
    }
    if (place.shared != nullptr) addSharedContent(pool, place);
  }
}
}    // namespace

TreePointer withSharedData(KyCInventoryItem& root, const std::string& path)
{
  {
    KyCErrorListPool pool;
    const WarningPrinter printer(path);
    root.linkSharedData(pool, nullptr);
    complainAbout(path, pool);
  }
  KyCErrorListPool pool;
  KyCInventoryItem* copy = nullptr;
  root.copyTree(pool, copy);
  TreePointer shown(copy);
  if (shown != nullptr && !isSharedData(root)) addSharedContentBelow(pool, root, *shown);
  complainAbout(path, pool);
  if (pool.getErrorCount() != 0) shown.reset();    // half a tree is no answer
  return shown;
}
