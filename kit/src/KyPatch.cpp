#include "inventorykit/KyPatch.h"

#include <algorithm>
#include <map>
#include <vector>

#include "KyPatchMessages.h"
#include "KyPatchTree.h"
#include "KyShownText.h"
#include "inventorykit/KyValueText.h"

namespace KyNInventoryKit
{
namespace
{
// A patch in the direction in which it is applied.
class Directed
{
public:
  Directed(const Patch& patch, PatchDirection direction)
      : m_tree(patch.tree()), m_before(direction == PatchDirection::FORWARD ? 0 : 1)
  {
  }

  const PatchTree& tree() const { return m_tree; }
  const EditSide& before(const Edit& edit) const { return edit.sides[m_before]; }
  const EditSide& after(const Edit& edit) const { return edit.sides[1 - m_before]; }
  bool isAdded(const Edit& edit) const { return !before(edit).isPresent; }
  bool isRemoved(const Edit& edit) const { return !after(edit).isPresent; }
  bool isPlaced(const Edit& edit) const { return isAdded(edit) || edit.isMoved; }    // gets a place of its own

private:
  const PatchTree& m_tree;
  int m_before;
};

// ---- Checking ----

// Whether a parameter cannot become this side by setting what it has.
bool needsReplacing(const EditSide& side, const KyCInventoryParameter& parameter)
{
  return side.isPresent &&
         (side.has(EditSide::DESCRIPTION) || (side.has(EditSide::VALUE) && side.type != parameter.getType()));
}

// Finds what the patch is about in a tree, and what is otherwise than the patch has it.
class Checker
{
public:
  Checker(KyCErrorListPool& pool, const KyCInventoryItem& root, const Directed& patch) : m_pool(pool), m_patch(patch)
  {
    m_items.reserve(patch.tree().items.size());
    for (const ItemEdit& edit : patch.tree().items)
    {
      m_items.push_back(edit.parent == nullptr ? &root : findItem(edit));
      checkItem(edit);
    }
  }

  // The item of an edit; null when there is none.
  const KyCInventoryItem* itemOf(const ItemEdit& edit) const { return m_items[edit.number]; }

private:
  const KyCInventoryItem* findItem(const ItemEdit& edit)
  {
    const KyCInventoryItem* const parent = itemOf(*edit.parent);
    return parent != nullptr ? m_finder.findItem(*parent, edit.name) : nullptr;
  }

  void conflict(const std::string& address, const std::string& what)
  {
    m_pool.setError(KY_PATCH_MSG_CONFLICT, __LINE__, "checkPatch", "%s%s", address.c_str(), what.c_str());
  }

  // ---- Items ----

  void checkItem(const ItemEdit& edit)
  {
    const KyCInventoryItem* const item = itemOf(edit);
    const KyCInventoryItem* const parent = edit.parent != nullptr ? itemOf(*edit.parent) : item;
    if (m_patch.isAdded(edit))
    {
      if (item != nullptr)
        conflict(addressOf(edit), "there is such an item already");
      else if (parent != nullptr || m_patch.isAdded(*edit.parent))
        checkGap(edit, parent);
      checkTwins(edit);
      return;
    }
    if (item == nullptr)
    {
      if (parent != nullptr) conflict(addressOf(edit), "there is no such item");    // otherwise told of the parent
      return;
    }
    checkContent(edit, *item);
    for (const Edit* parameter : inOrder(edit.parameters))
      checkParameter(edit, *item, *parameter);
    checkTwins(edit);
    if (m_patch.isRemoved(edit)) checkRest(edit, *item);
  }

  static std::vector<const Edit*> inOrder(const std::map<Sibling, Edit>& edits)
  {
    std::vector<const Edit*> ordered;
    ordered.reserve(edits.size());
    for (const auto& [name, edit] : edits)
      ordered.push_back(&edit);
    std::sort(ordered.begin(), ordered.end(), [](const Edit* a, const Edit* b) { return a->order < b->order; });
    return ordered;
  }

  static Sibling inFront(Sibling name)
  {
    --name.number;
    return name;
  }

  // Of siblings of one name none may be left out.
  void checkGap(const ItemEdit& edit, const KyCInventoryItem* parent)
  {
    if (edit.name.number == 1) return;
    const Sibling front = inFront(edit.name);
    const bool isThere = parent != nullptr && m_finder.findItem(*parent, front) != nullptr;
    if (!isThere && edit.parent->items.count(front) == 0)
      conflict(addressOf(edit), "there is no " + siblingText(front) + " in front of it");
  }

  // An item takes no second parameter of an ID. One that has some all the same cannot be rearranged.
  void checkTwins(const ItemEdit& edit)
  {
    bool isArranged = edit.parent == nullptr && m_patch.after(edit).has(EditSide::ID);
    for (const auto& [name, parameter] : edit.parameters)
    {
      isArranged = isArranged || m_patch.isPlaced(parameter);
      if (m_patch.isAdded(parameter) && name.number != 1)
        conflict(addressOf(edit, parameter), "an item has one parameter of an ID");
    }
    if (!isArranged || itemOf(edit) == nullptr) return;
    for (const NamedNode<KyCInventoryParameter>& named : namedNodes<KyCInventoryParameter>(*itemOf(edit)))
      if (named.name.number == 2)
        conflict(addressOf(edit), "it has several parameters " + siblingText(unnumbered(*named.node)));
  }

  void checkContent(const ItemEdit& edit, const KyCInventoryItem& item)
  {
    const EditSide& side = m_patch.before(edit);
    if (side.has(EditSide::ID) && !(unnumbered(item) == side.id))
      conflict(addressOf(edit), "the ID is " + siblingText(unnumbered(item)) + ", not " + siblingText(side.id));
    if (side.has(EditSide::DESCRIPTION))
      checkText(addressOf(edit), "description", item.getDescription(), side.description);
  }

  // An item is removed with what the patch knows of it, and with nothing else.
  void checkRest(const ItemEdit& edit, const KyCInventoryItem& item)
  {
    for (const NamedNode<KyCInventoryParameter>& parameter : namedNodes<KyCInventoryParameter>(item))
      if (edit.parameters.count(parameter.name) == 0)
        conflict(addressOf(edit), "it would be removed with its parameter " + siblingText(parameter.name));
    for (const NamedNode<KyCInventoryItem>& sub : namedNodes<KyCInventoryItem>(item))
      if (edit.items.count(sub.name) == 0)
        conflict(addressOf(edit), "it would be removed with its item " + siblingText(sub.name));
  }

  // ---- Parameters ----

  void checkParameter(const ItemEdit& item, const KyCInventoryItem& owner, const Edit& edit)
  {
    const KyCInventoryParameter* const parameter = m_finder.findParameter(owner, edit.name);
    if (m_patch.isAdded(edit))
    {
      if (parameter != nullptr) conflict(addressOf(item, edit), "there is such a parameter already");
      return;
    }
    if (parameter == nullptr)
    {
      conflict(addressOf(item, edit), "there is no such parameter");
      return;
    }
    const EditSide& side = m_patch.before(edit);
    if (needsReplacing(m_patch.after(edit), *parameter) && *parameter->getTypeAsCString() == '\0')
      conflict(addressOf(item, edit), "its type has no values");
    if (side.has(EditSide::VALUE)) checkValue(item, edit, *parameter);
    if (side.has(EditSide::UNIT)) checkText(item, edit, "unit", parameter->getUnit(), side.unit);
    if (side.has(EditSide::MODIFIABLE) && parameter->isModifiable() != side.modifiable)
      conflict(addressOf(item, edit), side.modifiable ? "it is not modifiable" : "it is modifiable");
    if (side.has(EditSide::RELEVANCE) && parameter->getRelevance() != side.relevance)
      isOtherwise(item, edit, "relevance", std::to_string(parameter->getRelevance()), std::to_string(side.relevance));
    if (side.has(EditSide::DESCRIPTION))
      checkText(item, edit, "description", parameter->getDescription(), side.description);
  }

  void checkValue(const ItemEdit& item, const Edit& edit, const KyCInventoryParameter& parameter)
  {
    const EditSide& side = m_patch.before(edit);
    const std::string type = parameter.getTypeAsCString();
    if (parameter.getType() != side.type)
      isOtherwise(item, edit, "type", type, typeNameOf(side.type));
    else if (valueText(parameter) != side.value)
      isOtherwise(item, edit, "value", shownValue(valueText(parameter), side.type), shownValue(side.value, side.type));
  }

  void checkText(const ItemEdit& item, const Edit& edit, const char* what, const char* actual,
                 const std::string& wanted)
  {
    if (actual != wanted) checkText(addressOf(item, edit), what, actual, wanted);
  }

  void checkText(const std::string& address, const char* what, const char* actual, const std::string& wanted)
  {
    if (actual != wanted)
      conflict(address, std::string("the ") + what + " is " + quotedText(actual, s_longestText) + ", not " +
                            quotedText(wanted, s_longestText));
  }

  void isOtherwise(const ItemEdit& item, const Edit& edit, const char* what, const std::string& actual,
                   const std::string& wanted)
  {
    conflict(addressOf(item, edit), std::string("the ") + what + " is " + actual + ", not " + wanted);
  }

  static std::string typeNameOf(unsigned int type)
  {
    KyCErrorListPool ignored;
    return KyCInventoryParameter(ignored, 1, "", type).getTypeAsCString();
  }

  // As differences show it: strings in quotes.
  static std::string shownValue(const std::string& text, unsigned int type)
  {
    return type == KyCParam::TYPE_STRING ? quotedText(text, s_longestText) : shortenedText(text, s_longestText);
  }

  static constexpr std::size_t s_longestText = 100;    // bytes of a text that a report shows

  KyCErrorListPool& m_pool;
  const Directed& m_patch;
  SiblingFinder m_finder;
  std::vector<const KyCInventoryItem*> m_items;
};

// ---- Placing ----

// Puts nodes into the list of their siblings.
template <typename Node>
class Placement
{
public:
  // One that stays, in list order.
  void keep(const Sibling& name, Node* node) { m_kept.push_back({name, node}); }

  // One that gets its place behind another one. Where several want to stand there, the last one gets it.
  void place(const Sibling& name, Node* node, const EditSide& side)
  {
    m_placed.push_back({{name, node}, s_none, false});
    std::size_t& chain = side.isFirst ? m_first : m_behind.try_emplace(side.after, s_none).first->second;
    m_placed.back().next = chain;
    chain = m_placed.size() - 1;
  }

  // All of them in order. Those whose sibling is not there come last.
  std::vector<Node*> take()
  {
    takeChain(m_first);
    for (const Named& kept : m_kept)
    {
      m_result.push_back(kept.node);
      takeBehind(kept.name);
    }
    for (std::size_t n = 0; n < m_placed.size(); ++n)
    {
      if (m_placed[n].isTaken) continue;
      takeOne(n);
      takeOpen();
    }
    return std::move(m_result);
  }

private:
  static constexpr std::size_t s_none = static_cast<std::size_t>(-1);

  struct Named
  {
    Sibling name;
    Node* node;
  };
  struct Placed
  {
    Named named;
    std::size_t next;    // another one behind the same sibling
    bool isTaken;
  };

  void takeChain(std::size_t first)
  {
    m_open.push_back(first);
    takeOpen();
  }

  void takeBehind(const Sibling& name)
  {
    const auto chain = m_behind.find(name);
    if (chain != m_behind.end()) takeChain(chain->second);
  }

  // An own stack: each may have one behind it, which may have one behind it.
  void takeOpen()
  {
    while (!m_open.empty())
    {
      const std::size_t n = m_open.back();
      m_open.pop_back();
      if (n == s_none || m_placed[n].isTaken) continue;
      m_open.push_back(m_placed[n].next);
      takeOne(n);
    }
  }

  void takeOne(std::size_t n)
  {
    m_placed[n].isTaken = true;
    m_result.push_back(m_placed[n].named.node);
    const auto chain = m_behind.find(m_placed[n].named.name);
    if (chain != m_behind.end()) m_open.push_back(chain->second);
  }

  std::vector<Named> m_kept;
  std::vector<Placed> m_placed;
  std::size_t m_first = s_none;
  std::map<Sibling, std::size_t> m_behind;    // the chain of those that stand behind this one
  std::vector<Node*> m_result;
  std::vector<std::size_t> m_open;
};

// ---- Applying ----

class Applier
{
public:
  Applier(KyCErrorListPool& pool, const Checker& checker, const Directed& patch)
      : m_pool(pool), m_patch(patch), m_made(patch.tree().items.size())
  {
    // The tree is the caller's to change; the checker only looks at it.
    for (const ItemEdit& edit : patch.tree().items)
      m_items.push_back(const_cast<KyCInventoryItem*>(checker.itemOf(edit)));
  }

  bool run(TreePointer& root)
  {
    const unsigned int errorCount = m_pool.getErrorCount();
    for (const ItemEdit& edit : m_patch.tree().items)
      if (m_patch.isAdded(edit)) make(edit);
    for (const ItemEdit& edit : m_patch.tree().items)
    {
      if (m_pool.getErrorCount() != errorCount) return false;
      if (!m_patch.isRemoved(edit)) change(edit, *m_items[edit.number]);
    }
    const ItemEdit& rootEdit = m_patch.tree().items.front();
    if (m_patch.after(rootEdit).has(EditSide::ID)) changeID(root, m_patch.after(rootEdit).id);
    return m_pool.getErrorCount() == errorCount;
  }

private:
  void make(const ItemEdit& edit)
  {
    const KyCInventoryAddress id(edit.name.id, edit.name.index);
    const std::string& description = m_patch.after(edit).description;
    m_made[edit.number] = std::make_unique<KyCInventoryItem>(m_pool, id, description.c_str());
    m_items[edit.number] = m_made[edit.number].get();
  }

  void change(const ItemEdit& edit, KyCInventoryItem& item)
  {
    const EditSide& side = m_patch.after(edit);
    if (!m_patch.isAdded(edit) && side.has(EditSide::DESCRIPTION)) setDescription(m_pool, item, side.description);
    arrangeItems(edit, item);
    arrangeParameters(edit, item);
  }

  // The edits of those that get a place, in the order of the document.
  template <typename Edits>
  std::vector<const Edit*> placedEdits(const Edits& edits) const
  {
    std::vector<const Edit*> placed;
    for (const auto& [name, edit] : edits)
      if (m_patch.isPlaced(editOf(edit)) && !m_patch.isRemoved(editOf(edit))) placed.push_back(&editOf(edit));
    std::sort(placed.begin(), placed.end(), [](const Edit* a, const Edit* b) { return a->order < b->order; });
    return placed;
  }
  static const Edit& editOf(const ItemEdit* edit) { return *edit; }
  static const Edit& editOf(const Edit& edit) { return edit; }

  // ---- Sub-items ----

  void arrangeItems(const ItemEdit& edit, KyCInventoryItem& item)
  {
    const std::vector<const Edit*> placed = placedEdits(edit.items);
    Placement<KyCInventoryItem> placement;
    if (!placed.empty())
    {
      for (const NamedNode<KyCInventoryItem>& sub : namedNodes<KyCInventoryItem>(item))
        if (isKept(edit.items, sub.name)) placement.keep(sub.name, const_cast<KyCInventoryItem*>(sub.node));
      for (const Edit* sub : placed)
        placement.place(sub->name, m_items[static_cast<const ItemEdit*>(sub)->number], m_patch.after(*sub));
    }
    for (const auto& [name, sub] : edit.items)
      if (m_patch.isRemoved(*sub)) delete m_items[sub->number];
    if (!placed.empty()) setOrder(item, placement.take());
    for (const Edit* sub : placed)    // they hang in the tree now
      static_cast<void>(m_made[static_cast<const ItemEdit*>(sub)->number].release());
  }

  template <typename Edits>
  bool isKept(const Edits& edits, const Sibling& name) const
  {
    const auto found = edits.find(name);
    return found == edits.end() || (!m_patch.isRemoved(editOf(found->second)) && !editOf(found->second).isMoved);
  }

  // What stands where it should at the front stays there.
  static void setOrder(KyCInventoryItem& parent, const std::vector<KyCInventoryItem*>& order)
  {
    std::size_t n = 0;
    KyCInventoryItem* item = parent.getFirstSubItem();
    for (; item != nullptr && item == order[n]; ++n)
      item = item->getNext();
    while (item != nullptr)
    {
      KyCInventoryItem* const next = item->getNext();
      item->detach();
      item = next;
    }
    for (; n < order.size(); ++n)
      appendItem(parent, *order[n]);
  }

  // ---- Parameters ----

  void arrangeParameters(const ItemEdit& edit, KyCInventoryItem& item)
  {
    const std::vector<const Edit*> placed = placedEdits(edit.parameters);
    Placement<KyCInventoryParameter> placement;
    std::map<Sibling, KyCInventoryParameter*> known;
    std::vector<ParameterPointer> made;
    if (!edit.parameters.empty())
    {
      for (const NamedNode<KyCInventoryParameter>& named : namedNodes<KyCInventoryParameter>(item))
      {
        auto* const parameter = const_cast<KyCInventoryParameter*>(named.node);
        if (edit.parameters.count(named.name) != 0) known.emplace(named.name, parameter);
        if (isKept(edit.parameters, named.name)) placement.keep(named.name, parameter);
      }
    }
    for (const Edit* parameter : placed)
    {
      if (m_patch.isAdded(*parameter)) known[parameter->name] = make(*parameter, made);
      placement.place(parameter->name, known[parameter->name], m_patch.after(*parameter));
    }
    for (const auto& [name, parameter] : edit.parameters)
      if (!m_patch.isAdded(parameter)) change(parameter, known[name]);
    if (!placed.empty()) setOrder(item, placement.take());
    for (ParameterPointer& parameter : made)
      if (parameter != nullptr && parameter->getParent() != nullptr) static_cast<void>(parameter.release());
  }

  KyCInventoryParameter* make(const Edit& edit, std::vector<ParameterPointer>& made)
  {
    const EditSide& side = m_patch.after(edit);
    made.push_back(makeParameter(m_pool, edit.name.id, side.description, side.type, side.value, side.unit,
                                 side.modifiable, side.relevance));
    return made.back().get();
  }

  void change(const Edit& edit, KyCInventoryParameter* parameter)
  {
    const EditSide& side = m_patch.after(edit);
    if (!side.isPresent)
    {
      delete parameter;
      return;
    }
    if (needsReplacing(side, *parameter)) replace(*parameter, side);
    if (side.has(EditSide::VALUE)) setValueText(m_pool, *parameter, side.value);
    if (side.has(EditSide::UNIT)) parameter->setUnit(side.unit.c_str());
    if (side.has(EditSide::MODIFIABLE)) parameter->setModifiableFlag(side.modifiable);
    if (side.has(EditSide::RELEVANCE)) parameter->setRelevance(side.relevance);
  }

  // Type and description are for good; another parameter takes its place.
  void replace(KyCInventoryParameter& parameter, const EditSide& side)
  {
    const bool hasType = side.has(EditSide::VALUE);
    const ParameterPointer other = makeParameter(
        m_pool, idOf(parameter), side.has(EditSide::DESCRIPTION) ? side.description : parameter.getDescription(),
        hasType ? side.type : parameter.getType(), hasType ? side.value : valueText(parameter), parameter.getUnit(),
        parameter.isModifiable(), parameter.getRelevance());
    if (other != nullptr) parameter = *other;
  }

  void setOrder(KyCInventoryItem& item, const std::vector<KyCInventoryParameter*>& order)
  {
    std::size_t n = 0;
    KyCInventoryParameter* parameter = item.getParameterByOrdinalNumber(0);
    for (; parameter != nullptr && parameter == order[n]; ++n)
      parameter = parameter->getNext();
    while (parameter != nullptr)
    {
      KyCInventoryParameter* const next = parameter->getNext();
      parameter->detach();
      parameter = next;
    }
    for (; n < order.size(); ++n)
      if (order[n] != nullptr) appendParameter(m_pool, item, *order[n]);
  }

  // ---- The root ----

  void changeID(TreePointer& root, const Sibling& id)
  {
    auto changed =
        std::make_unique<KyCInventoryItem>(m_pool, KyCInventoryAddress(id.id, id.index), root->getDescription());
    while (KyCInventoryParameter* parameter = root->getParameterByOrdinalNumber(0))
      if (!appendParameter(m_pool, *changed, *parameter->detach())) return;
    while (KyCInventoryItem* sub = root->getFirstSubItem())
    {
      sub->detach();
      appendItem(*changed, *sub);
    }
    root = std::move(changed);
  }

  KyCErrorListPool& m_pool;
  const Directed& m_patch;
  std::vector<KyCInventoryItem*> m_items;    // by the numbers of their edits
  std::vector<TreePointer> m_made;           // those of them that hang nowhere yet
};
}    // namespace

bool checkPatch(KyCErrorListPool& pool, const KyCInventoryItem& root, const Patch& patch, PatchDirection direction)
{
  const unsigned int errorCount = pool.getErrorCount();
  const Directed directed(patch, direction);
  const Checker checker(pool, root, directed);
  return pool.getErrorCount() == errorCount;
}

bool applyPatch(KyCErrorListPool& pool, TreePointer& root, const Patch& patch, PatchDirection direction)
{
  const unsigned int errorCount = pool.getErrorCount();
  const Directed directed(patch, direction);
  const Checker checker(pool, *root, directed);
  return pool.getErrorCount() == errorCount && Applier(pool, checker, directed).run(root);
}
}    // namespace KyNInventoryKit
