// KyCInventoryAuxInfo.h: the one piece of auxiliary information that an item or a parameter can carry, of three kinds.
#pragma once

#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyIUpdater.h"
#include "inventory/KyInventoryTreeApi.h"

// The base: says of which kind it is. Whoever holds one looks at the kind before taking it for a subclass.
//
// Ownership: the item or parameter that carries it deletes it with itself. Made by KyCInventoryItem::setUpdater,
//            KyCInventoryParameter::setCheckAndWriteMethod and setUpdateMethod.
// Errors:    none. What is taken over is kept without a block of its own; only the address that KyCAuxInfoWrite's
//            constructor takes is copied.
// Threads:   this class and the three below: used by one thread at a time, together with the tree that it hangs in.
class KY_INVENTORY_API KyCInventoryAuxInfo
{
public:
  enum TType : unsigned int
  {
    AUX_ITEM_UPDATE = 1,    // KyNInventoryItem::KyCAuxInfoUpdate, on an item
    AUX_PARAM_WRITE = 2,    // KyNInventoryParameter::KyCAuxInfoWrite, on a parameter
    AUX_PARAM_UPDATE = 3    // KyNInventoryParameter::KyCAuxInfoParamUpdate, on a parameter
  };

  explicit KyCInventoryAuxInfo(TType type) noexcept;    // the kind is fixed from here on
  KyCInventoryAuxInfo(const KyCInventoryAuxInfo&) = delete;
  KyCInventoryAuxInfo& operator=(const KyCInventoryAuxInfo&) = delete;
  virtual ~KyCInventoryAuxInfo();    // does nothing of its own

  TType getType() const noexcept { return m_type; }

private:
  TType m_type;
};

namespace KyNInventoryItem
{
// An item's updater, owned.
class KY_INVENTORY_API KyCAuxInfoUpdate : public KyCInventoryAuxInfo
{
public:
  explicit KyCAuxInfoUpdate(KyIUpdater* updater) noexcept;    // takes the updater over; may be null
  ~KyCAuxInfoUpdate() override;                               // destroys the updater

  KyIUpdater* getUpdater() const noexcept { return m_updater; }

private:
  KyIUpdater* m_updater;
};
}    // namespace KyNInventoryItem

namespace KyNInventoryParameter
{
// A parameter's check and write methods, what the user keeps beside them, and the pending value.
class KY_INVENTORY_API KyCAuxInfoWrite : public KyCInventoryAuxInfo
{
public:
  // Nothing is pending at first.
  //
  //   checkMethod      null: no check
  //   writeMethod      not null
  //   relativeAddress  the user's, copied; with no memory left for a long one, std::bad_alloc is thrown
  //   customPointer    the user's, never followed or freed
  KyCAuxInfoWrite(KyCInventoryParameter::TMethod checkMethod, KyCInventoryParameter::TMethod writeMethod,
                  KyCInventoryAddress relativeAddress, void* customPointer);
  ~KyCAuxInfoWrite() override;    // deletes the pending value

  KyCInventoryParameter::TMethod getCheckMethod() const noexcept { return m_checkMethod; }    // null: none
  KyCInventoryParameter::TMethod getWriteMethod() const noexcept { return m_writeMethod; }
  KyCInventoryParameter* getDesignatedValue() const noexcept { return m_designatedValue; }    // null: nothing pending
  // Takes the value over and deletes the one before, if it is another; null: nothing is pending any more.
  void setDesignatedValue(KyCInventoryParameter* value) noexcept;
  const KyCInventoryAddress& getRelativeAddress() const noexcept { return m_relativeAddress; }
  void* getCustomPointer() const noexcept { return m_customPointer; }

private:
  KyCInventoryParameter::TMethod m_checkMethod;
  KyCInventoryParameter::TMethod m_writeMethod;
  KyCInventoryParameter* m_designatedValue = nullptr;    // owned
  KyCInventoryAddress m_relativeAddress;
  void* m_customPointer;    // the user's
};

// A parameter's update method.
class KY_INVENTORY_API KyCAuxInfoParamUpdate : public KyCInventoryAuxInfo
{
public:
  explicit KyCAuxInfoParamUpdate(KyCInventoryParameter::TMethod updateMethod) noexcept;    // not null
  ~KyCAuxInfoParamUpdate() override;

  KyCInventoryParameter::TMethod getUpdateMethod() const noexcept { return m_updateMethod; }

private:
  KyCInventoryParameter::TMethod m_updateMethod;
};
}    // namespace KyNInventoryParameter
