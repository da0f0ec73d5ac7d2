// KyInventoryAccess.h: what the library itself reaches of items and parameters beyond their public interface.
#pragma once

#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "tree/KyTypeTraits.h"

template <typename T>
KyCInventoryParameter::KyCInventoryParameter(KyCErrorListPool& pool, unsigned int id, TStaticText name,
                                             unsigned int type, const T& value)
    : KyCParam(pool, id, name, type | FLAG_CUSTOM | FLAG_STATIC_DESCRIPTION, value)
{
}

// The nodes of an inventory tree are composites and parameters of the base library, and every composite and parameter in
// such a tree is one of ours; so each conversion is a plain cast, null to null. None of these can fail.
struct KyInventoryAccess
{
  static KyCComposite* toComposite(KyCInventoryItem* item) noexcept { return item; }
  static const KyCComposite* toComposite(const KyCInventoryItem* item) noexcept { return item; }
  static KyCInventoryItem* toItem(KyCComposite* node) noexcept { return static_cast<KyCInventoryItem*>(node); }
  static const KyCInventoryItem* toItem(const KyCComposite* node) noexcept
  {
    return static_cast<const KyCInventoryItem*>(node);
  }

  static KyCParam* toParam(KyCInventoryParameter* parameter) noexcept { return parameter; }
  static const KyCParam* toParam(const KyCInventoryParameter* parameter) noexcept { return parameter; }
  static KyCInventoryParameter* toParameter(KyCParam* param) noexcept
  {
    return static_cast<KyCInventoryParameter*>(param);
  }
  static const KyCInventoryParameter* toParameter(const KyCParam* param) noexcept
  {
    return static_cast<const KyCInventoryParameter*>(param);
  }

  // The path from the root to this item and, when there is a tail, that one element more; in one allocation.
  static KyCInventoryAddress addressOf(const KyCInventoryItem* item, const KyCInventoryAddress::TElement* tail);

  // The shared data item that answers where the item itself has nothing; null: none. Not owned.
  static KyCInventoryItem* getFriend(const KyCInventoryItem& item) noexcept
  {
    return toItem(static_cast<const KyCComposite&>(item).getFriend());
  }
  static void setFriend(KyCInventoryItem& item, KyCInventoryItem* other) noexcept
  {
    static_cast<KyCComposite&>(item).setFriend(other);
  }

  // The item's own first sub-item of this ID and index, without its friend; null: none.
  static KyCInventoryItem* findSubItem(const KyCInventoryItem& item, const KyCInventoryAddress::TElement& element)
  {
    return toItem(item.findChild(element.id, element.index));
  }

  // False only when the item itself has neither a sub-item nor a parameter of this ID.
  static bool mayHave(const KyCInventoryItem& item, unsigned int id) noexcept { return item.mayHave(id); }

  // Adds a free parameter to the item, whose ID no sub-item has; reports what the base library refuses.
  static void addParameter(KyCErrorListPool& pool, KyCInventoryItem& item, KyCInventoryParameter* parameter) noexcept
  {
    static_cast<KyCComposite&>(item).addParameter(pool, parameter);
  }
  static unsigned int getId(const KyCInventoryParameter& parameter) noexcept
  {
    return static_cast<const KyCParam&>(parameter).getId();
  }

  // The short way of adding a free parameter; false, and nothing has changed, when the long one has to be gone.
  static bool addUnseenParameter(KyCInventoryItem& item, KyCInventoryParameter* parameter) noexcept
  {
    return getFriend(item) == nullptr && item.addUnseenParameter(parameter);
  }

  // Hangs a new item below another one that has no sub-item of its ID and index, nor a friend with one.
  static void attachUnseenItem(KyCInventoryItem& parent, KyCInventoryItem* item) noexcept
  {
    if (parent.attach(item) == 0) parent.expectChild(item);
  }

  // A free parameter described by the name of its ID, which is kept by pointer; null or reported when memory runs out.
  template <typename T>
  static KyCInventoryParameter* newNamedParameter(KyCErrorListPool& pool, unsigned int id, const char* name,
                                                  const T& value, const char* unit, bool modifiable,
                                                  unsigned int relevance)
  {
    constexpr unsigned int type = KyValueAccess<T>::type;
    auto* const parameter =
        new (pool) KyCInventoryParameter(pool, id, KyCInventoryParameter::TStaticText{name}, type, value);
    if (parameter == nullptr) return nullptr;
    setFlags(*parameter, modifiable, relevance);
    if (unit != nullptr && *unit != '\0') parameter->m_unit.assign(pool, unit, KyCString::strlen(unit));
    return parameter;
  }

  // A free parameter with any description and the zero value of a type.
  static KyCInventoryParameter* newParameter(KyCErrorListPool& pool, unsigned int id, const char* description,
                                             unsigned int type);

  static unsigned int getClassId(const KyCInventoryItem& item) noexcept
  {
    return static_cast<const KyCComposite&>(item).getClassId();
  }
  static unsigned int getUnitId(const KyCInventoryItem& item) noexcept
  {
    return static_cast<const KyCComposite&>(item).getUnitId();
  }

  // The auxiliary info of an item or a parameter: owned by it, null when there is none. The setters only store.
  static KyCInventoryAuxInfo* getAuxInfo(const KyCInventoryItem& item) noexcept { return item.m_auxInfo; }
  static void setAuxInfo(KyCInventoryItem& item, KyCInventoryAuxInfo* info) noexcept { item.m_auxInfo = info; }
  static KyCInventoryAuxInfo* getAuxInfo(const KyCInventoryParameter& parameter) noexcept
  {
    return parameter.m_auxInfo;
  }
  static void setAuxInfo(KyCInventoryParameter& parameter, KyCInventoryAuxInfo* info) noexcept
  {
    parameter.m_auxInfo = info;
  }

  static bool isModifiable(const KyCInventoryParameter& parameter) noexcept { return parameter.m_modifiable; }
  static unsigned int getRelevance(const KyCInventoryParameter& parameter) noexcept { return parameter.m_relevance; }
  static const KyCString& getUnit(const KyCInventoryParameter& parameter) noexcept { return parameter.m_unit; }
  static void setFlags(KyCInventoryParameter& parameter, bool modifiable, unsigned int relevance) noexcept
  {
    parameter.m_modifiable = modifiable;
    parameter.m_relevance = relevance;
  }

  // Assigns the unit without throwing: with no memory left, the base library's report is recorded and the unit stays.
  static bool setUnit(KyCErrorListPool& pool, KyCInventoryParameter& parameter, const char* unit, unsigned int length)
  {
    return parameter.m_unit.assign(pool, unit, length);
  }
};
