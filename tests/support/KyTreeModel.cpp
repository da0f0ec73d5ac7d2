#include "support/KyTreeModel.h"

#include "inventory/KyNInventoryIDs.h"
#include "tree/KyInventoryAccess.h"

namespace
{
// Stands for "on and on in a ring"; no tree of a test has as many items.
constexpr unsigned int TOO_MANY_FRIENDS = 200;

const char s_internal[] = "Internal error. Kyrel Support information: ";

std::string textOf(KyModelElement element)
{
  const std::string name = KyNInventoryIDs::Map.get(element.first);
  return element.second == 1 ? name : name + "[" + std::to_string(element.second) + "]";
}

KyModelItem* findItem(KyModelItem* item, const KyModelPath& path, std::size_t at, unsigned int friends)
{
  if (at == path.size()) return item;
  for (const KyModelPtr& sub : item->subItems)
  {
    if (sub->element == path[at]) return findItem(sub.get(), path, at + 1, 0);
  }
  if (item->other == nullptr || friends == TOO_MANY_FRIENDS) return nullptr;
  return findItem(item->other, path, at, friends + 1);
}

const KyModelItem::TParameter* ownParameter(const KyModelItem& item, unsigned int id)
{
  for (const KyModelItem::TParameter& parameter : item.parameters)
  {
    if (parameter.id == id) return &parameter;
  }
  return nullptr;
}

KyReport cannotMerge() { return {0x1300803, "mergeTree", std::string(s_internal) + "Cannot merge inventory tree."}; }

KyReport alreadyExists(const char* function, KyModelElement id, const KyModelItem& place)
{
  const std::string address = place.address();
  return {0x130081A, function,
          s_internal + ("Cannot create or add item or parameter with ID " + textOf(id)) + " at " +
              (address.empty() ? "root item" : address) + ". The ID already exists."};
}

void moveParameters(KyModelOutcome& outcome, KyModelItem& target, KyModelItem& source)
{
  std::vector<KyModelItem::TParameter> staying;
  for (const KyModelItem::TParameter& parameter : source.parameters)
  {
    if (target.getParameter({{parameter.id, 1}}) != nullptr)
      staying.push_back(parameter);
    else if (target.getItem({{parameter.id, 1}}) == nullptr)
      target.parameters.push_back(parameter);
    else
    {
      outcome.reports.push_back(alreadyExists("addParameter", {parameter.id, 1}, target));
      outcome.reports.push_back(cannotMerge());
    }
  }
  source.parameters = staying;
}

void attachAll(const KyModelItem& model, KyModelMap& items)
{
  KyTestPool pool;
  KyCInventoryItem& item = *items.at(&model);
  for (const KyModelItem::TParameter& parameter : model.parameters)
  {
    const KyCInventoryAddress id(parameter.id);
    auto* const made = new (pool)
        KyCInventoryParameter(pool, id, id.getCategoryNameCStr(), parameter.value, "mV", parameter.value % 2 == 0, 7);
    KyInventoryAccess::toComposite(&item)->addParameter(pool, KyInventoryAccess::toParam(made));
  }
  for (const KyModelPtr& sub : model.subItems)
  {
    const KyCInventoryAddress id(sub->element.first, sub->element.second);
    items[sub.get()] = new (pool) KyCInventoryItem(pool, id, id.getCategoryNameCStr());
    KyInventoryAccess::toComposite(&item)->attach(KyInventoryAccess::toComposite(items[sub.get()]));
    attachAll(*sub, items);
  }
}
}    // namespace

KyModelItem* KyModelItem::append(KyModelPtr item)
{
  item->parent = this;
  subItems.push_back(std::move(item));
  return subItems.back().get();
}

KyModelPtr KyModelItem::takeFirst()
{
  KyModelPtr first = std::move(subItems.front());
  subItems.erase(subItems.begin());
  first->parent = nullptr;
  return first;
}

KyModelItem* KyModelItem::getItem(const KyModelPath& path) { return findItem(this, path, 0, 0); }

const KyModelItem::TParameter* KyModelItem::getParameter(const KyModelPath& path)
{
  if (path.empty()) return nullptr;
  const KyModelItem* const item = getItem(KyModelPath(path.begin(), path.end() - 1));
  if (item == nullptr) return nullptr;
  const TParameter* const own = ownParameter(*item, path.back().first);
  return own != nullptr || item->other == nullptr ? own : ownParameter(*item->other, path.back().first);
}

std::string KyModelItem::address() const
{
  if (parent == nullptr) return "";
  const std::string above = parent->address();
  return above.empty() ? textOf(element) : above + "/" + textOf(element);
}

void modelMerge(KyModelOutcome& outcome, KyModelItem& target, KyModelPtr source, unsigned int flags)
{
  if ((flags & 1) != 0) moveParameters(outcome, target, *source);
  while (!source->subItems.empty())
  {
    KyModelPtr sub = source->takeFirst();
    KyModelItem* const counterpart = target.getItem({sub->element});
    if (counterpart != nullptr)
    {
      const std::size_t reports = outcome.reports.size();
      modelMerge(outcome, *counterpart, std::move(sub), flags);
      if (outcome.reports.size() == reports) continue;
      outcome.reports.push_back(cannotMerge());
      return;
    }
    if (target.getParameter({sub->element}) == nullptr)
    {
      target.append(std::move(sub));
      continue;
    }
    outcome.reports.push_back(alreadyExists("mergeTree", sub->element, target));
    outcome.givenUp.push_back(std::move(sub));
  }
}

KyModelPtr modelCopy(KyModelOutcome& outcome, const KyModelItem& original)
{
  KyModelPtr copy = std::make_unique<KyModelItem>(original.element);
  copy->parameters = original.parameters;
  for (const KyModelPtr& sub : original.subItems)
  {
    const std::size_t reports = outcome.reports.size();
    KyModelPtr subCopy = modelCopy(outcome, *sub);
    if (outcome.reports.size() != reports)
      outcome.reports.push_back({0x130080F, "copyTree", std::string(s_internal) + "Cannot copy subtree."});
    if (copy->getItem({sub->element}) == nullptr && copy->getParameter({sub->element}) == nullptr)
      copy->append(std::move(subCopy));
    else
      outcome.reports.push_back({0x1300816, "copyTree",
                                 s_internal + ("Cannot add item " + textOf(sub->element)) +
                                     " to inventory tree below item " + textOf(copy->element) + "."});
  }
  return copy;
}

KyCInventoryItem* buildModel(const KyModelItem& model, KyModelMap& items)
{
  KyTestPool pool;
  const KyCInventoryAddress id(model.element.first, model.element.second);
  KyCInventoryItem* const root = new (pool) KyCInventoryItem(pool, id, id.getCategoryNameCStr());
  items[&model] = root;
  attachAll(model, items);
  for (const auto& pair : items)
  {
    const KyModelItem* const other = pair.first->other;
    if (other != nullptr) KyInventoryAccess::setFriend(*pair.second, items.at(other));
  }
  return root;
}

KyCInventoryItem* buildModel(const KyModelItem& model)
{
  KyModelMap items;
  KyTestPool pool;
  const KyCInventoryAddress id(model.element.first, model.element.second);
  items[&model] = new (pool) KyCInventoryItem(pool, id, id.getCategoryNameCStr());
  attachAll(model, items);    // friends may lie elsewhere; comparing does not look at them
  return items[&model];
}
