// KyCInventoryParameter.h: the leaf of an inventory tree: one typed value with a unit, a modifiable flag and a
// relevance.
//
//   #include "inventory/KyCInventoryItem.h"
//   #include "inventory/KyNInventoryIDs.h"
//   KyCInventoryParameter* voltage = root.createParameter<int>(pool, KyNInventoryIDs::VOLTAGE_UPPER_MAX, 5000, "mV", true, 0);
//   voltage->setValue<int>(pool, 3300);
//   const int millivolts = voltage->getValue<int>(pool);
#pragma once

#include <type_traits>

#include "composite/KyCParam.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "inventory/KyCInventoryAddress.h"
#include "inventory/KyInventoryTreeApi.h"

class KyCInventoryAuxInfo;
class KyCInventoryItem;

// True for exactly the twelve value types of a parameter.
template <typename T>
struct is_kyrel_type
    : std::disjunction<std::is_same<T, signed char>, std::is_same<T, short>, std::is_same<T, int>,
                       std::is_same<T, long long>, std::is_same<T, unsigned char>, std::is_same<T, unsigned short>,
                       std::is_same<T, unsigned int>, std::is_same<T, unsigned long long>, std::is_same<T, float>,
                       std::is_same<T, double>, std::is_same<T, KyCString>, std::is_same<T, KyCVersion>>
{
};

// True for what a value can be read as: the twelve value types and const char*, which reads a string in place.
template <typename T>
struct is_kyrel_readable_type : std::disjunction<is_kyrel_type<T>, std::is_same<T, const char*>>
{
};

// One typed value, named by one inventory ID below its item.
//
// Ownership: a new parameter is the caller's. An item that adopts it (KyCInventoryItem::addParameter, createParameter)
//            owns it until it is detached, and deletes it with itself. A parameter owns its auxiliary info.
// Memory:    a parameter from `new (pool)` whose description is its ID's registered name and whose unit has up to 6
//            characters is one heap block; a version or a longer string adds one, a longer unit one, another
//            description one.
// Threads:   used by one thread at a time, together with the tree that it hangs in.
class KY_INVENTORY_API KyCInventoryParameter : private KyCParam
{
public:
  // A check, write or update method of the user's.
  //
  //   pool       the pool of the walk that calls it; failures go there
  //   context    the item that was given to the walk, handed through unchanged; may be null
  //   parameter  the parameter whose method it is
  //
  // Result:  only a check method's counts: false rejects the pending value.
  // Called:  by KyCInventoryItem's walks check, apply and updateParameters, on the thread that runs the walk, once for
  //          each parameter concerned. It may change values, add items and parameters, and detach or delete others. Not
  //          so its own parameter and the items above it, of which only the lowest, its own item, may be detached: the
  //          walk then goes on at that one's parent. Among the parameters of one item, the walk goes on with the next
  //          ordinal number, whatever stands there then.
  typedef bool (*TMethod)(KyCErrorListPool& pool, KyCInventoryItem* context, KyCInventoryParameter* parameter);

  // Construction, one constructor for each value type.
  //
  //   address      one element, whose ID becomes the parameter's; its index is dropped. Of a longer address the last
  //                element counts (and the error below is reported), of an empty one the ID is 0
  //   description  null is taken as empty. Copied, unless it equals the ID's registered name, which is kept by pointer
  //   value        the initial value; its type is the parameter's for good
  //   unit         text such as "mV", copied; null is taken as empty. See KyCInventoryBinSerializer.h for what is stored
  //   modifiable   tells users whether the value may be changed; stored and shown, never enforced
  //   relevance    0 .. 2^32-1, stored and never interpreted
  //
  // Errors:  0x1301000  the address has not exactly one element (function "init"); the parameter is built all the same
  //          base codes when memory runs out: the text or value concerned is then empty
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        signed char value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        short value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description, int value,
                        const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        long long value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        unsigned char value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        unsigned short value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        unsigned int value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        unsigned long long value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        float value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        double value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        const KyCString& value, const char* unit, bool modifiable, unsigned int relevance);
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        const KyCVersion& value, const char* unit, bool modifiable, unsigned int relevance);

  // As above, of the type whose code stands in the low 16 bits of typeAndFlags, with its zero value, no unit, not
  // modifiable, relevance 0. A code that is none of the twelve is kept: such a parameter has no value to get or set.
  // The flag for the serializers' custom-parameter hooks is added; whether the description is kept by pointer is
  // decided as above, whatever typeAndFlags says.
  KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                        unsigned int typeAndFlags);

  // An unsigned char parameter of ID 1, value 0, without description and unit, not modifiable, relevance 0. Errors go
  // to the error manager's master list.
  KyCInventoryParameter();

  // A free parameter with a copy of everything but the place in a tree and the auxiliary info.
  // On failure: with no memory left, std::bad_alloc is thrown.
  KyCInventoryParameter(const KyCInventoryParameter& other);

  // Takes over ID, description, type, value, unit, modifiable flag and relevance; the parameter stays where it hangs and
  // is found there under its new ID from then on. On itself it does nothing. A tree with two parameters of one ID in an
  // item cannot be stored (0x110180A).
  // Kept on purpose: the parameter's auxiliary info is dropped, not deleted, and the other's is not taken over. Whoever
  // assigns over a parameter with auxiliary info loses that memory.
  // On failure: with no memory left, std::bad_alloc is thrown and nothing changes, the auxiliary info included.
  KyCInventoryParameter& operator=(const KyCInventoryParameter& other);

  ~KyCInventoryParameter() override;

  // What every constructor but the copy ends with: checks the address and sets what a parameter has beside ID,
  // description and value. It may be called again later; ID and description stay then, whatever is given here.
  //
  //   address      is only checked
  //   description  names the parameter in the report; null is told as "not specified"
  //   unit, modifiable, relevance   as with the constructors
  //
  // Errors:  0x1301000  the address has not exactly one element; what follows is done all the same
  //          base codes when memory runs out: the unit is then as it was
  // Kept on purpose: auxiliary info that the parameter has is dropped, not deleted.
  void init(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description, const char* unit,
            bool modifiable, unsigned int relevance);

  // What the parameter says of itself. None of these can fail, but setUnit and getTypeAsString, which throw
  // std::bad_alloc with no memory left; the unit stays then. Texts are borrowed from the parameter (the ID's name: from
  // KyNInventoryIDs::Map) and never null, but for getIDString of an ID that is not predefined.
  const char* getUnit() const;
  void setUnit(const char* unit);    // copied; null is taken as empty
  bool isModifiable() const;
  void setModifiableFlag(bool modifiable);
  unsigned int getRelevance() const;
  void setRelevance(unsigned int relevance);
  KyCInventoryAddress getID() const;    // one element of index 1: a parameter has no index of its own
  const char* getIDString() const;      // the ID's registered name; null when there is none
  const char* getDescription() const;
  unsigned int getType() const;    // a code of KyCParam::TType, 0x111 .. 0x4000
  const char* getTypeAsCString()
      const;    // "Int8", "Int16", "Int32", "Long64", "UInt8", "UInt16", "UInt32", "ULong64",
                // "Float32", "Float64", "String", "Version"; "" for any other code
  KyCString getTypeAsString() const;

  // The place in the tree. Nothing is reported; getAddress throws std::bad_alloc with no memory left.
  KyCInventoryItem* getParent() const;    // null for a free parameter
  KyCInventoryParameter* getNext();       // the next parameter of the same item; null at the end and for a free one
  const KyCInventoryParameter* getNext() const;
  KyCInventoryAddress getAddress() const;    // from the root's child down to this parameter; empty for a free one

  // Takes the parameter out of its item.
  //
  // Result:     the parameter, now the caller's; null when it hangs nowhere.
  // Kept on purpose: it goes by the ID. Among parameters of the same ID (which an assignment can bring about) the first
  //             in the item's order is taken out and returned, whichever was asked.
  KyCInventoryParameter* detach();

  // Reads the value.
  //
  //   T   the parameter's own value type; const char* or KyCString for a string. Another type does not compile, or, when
  //       it is a value type but not this parameter's, is an error
  //
  // Result:     the value; 0, "" or a default version on failure. A const char* holds until the value is changed or the
  //             parameter deleted.
  // Errors:     0x1301008  the value cannot be read as T (behind the base library's own report)
  template <typename T, typename = std::enable_if_t<is_kyrel_readable_type<T>::value>>
  T getValue(KyCErrorListPool& pool) const;

  // Writes the value; the modifiable flag is not looked at.
  //
  //   T   the parameter's own value type
  //
  // Errors:     0x1301007  the value cannot be set (behind the base library's own report); it keeps its old value
  template <typename T, typename = std::enable_if_t<is_kyrel_type<T>::value>>
  void setValue(KyCErrorListPool& pool, const T& value);

  // Gives the parameter a write method and, perhaps, a check method for pending values. At most once, and never beside
  // an update method.
  //
  //   checkMethod      may veto a pending value; null: no check
  //   writeMethod      brings a pending value to the outside world; not null
  //   relativeAddress  for the user's own use, copied: getRelativeAddress
  //   customPointer    for the user's own use, never followed or freed: getCustomPointer
  //
  // Errors:     0x1301009  the parameter already has auxiliary info of any kind, or writeMethod is null; nothing changes
  // On failure: with no memory left, std::bad_alloc is thrown and nothing changes.
  void setCheckAndWriteMethod(KyCErrorListPool& pool, TMethod checkMethod, TMethod writeMethod,
                              KyCInventoryAddress relativeAddress, void* customPointer);

  // Gives the parameter an update method, which refreshes its value from the outside. At most once, and never beside a
  // write method.
  //
  // Errors:     0x1301009  the parameter already has auxiliary info of any kind, or updateMethod is null; nothing changes
  // On failure: with no memory left, std::bad_alloc is thrown and nothing changes.
  void setUpdateMethod(KyCErrorListPool& pool, TMethod updateMethod);

  // What was given to the two above; null or empty when it was not. Nothing is reported;
  // getRelativeAddress throws std::bad_alloc with no memory left.
  TMethod getCheckMethod() const;
  TMethod getWriteMethod() const;
  TMethod getUpdateMethod() const;
  KyCInventoryAddress getRelativeAddress() const;
  void* getCustomPointer() const;

  // ---- The designated value: what the parameter is to become, pending until it is adopted or deleted.
  //
  // Only a parameter with a write method can have one. The value itself stays as it is meanwhile. KyCInventoryItem's
  // walks do the usual round: check may veto the pending value, apply writes it out and adopts it.

  // Makes value the pending one, in place of what was pending before.
  //
  //   T   the parameter's own value type; nothing is converted
  //
  // Errors:     0x130100A  the parameter has no write method
  //             0x1301002  the value cannot be stored (behind the cause): no memory
  //             0x1301003  T is not the parameter's type and nothing was pending
  //             0x1301007  T is not the parameter's type and something was pending, or that could not be changed
  //                        (function "setValue", behind the base library's own report); it stays pending
  // On failure: nothing is pending that was not before.
  // Cost:       for the first value one block, as for a parameter of its own; none for a number in place of another.
  template <typename T, typename = std::enable_if_t<is_kyrel_type<T>::value>>
  void setDesignatedValue(KyCErrorListPool& pool, T value);

  // Reads the pending value.
  //
  //   T   the parameter's own value type
  //
  // Result:     the pending value; 0, "" or a default version on failure.
  // Errors:     0x1301001  nothing is pending (function "getDesignatedValue"; "getDesignatedValue<KyCString>" and
  //                        "getDesignatedValue<KyCVersion>" for these two types)
  //             0x1301008  T is not the parameter's type (function "getValue", behind the base library's own report)
  template <typename T, typename = std::enable_if_t<is_kyrel_type<T>::value>>
  T getDesignatedValue(KyCErrorListPool& pool) const;

  bool isDesignatedValueValid() const;    // whether a value is pending
  void deleteDesignatedValue();           // ends that; does nothing when none is

  // Makes the pending value the parameter's own. The modifiable flag is not looked at, and no method is called.
  //
  // Errors:     0x1301004  nothing is pending
  //             0x1301005  the parameter's type is none of the twelve
  //             0x1301006  the pending value cannot be read (behind the cause)
  //             0x1301007  the parameter's value cannot be set (behind setValue's reports): no memory
  // On failure: the value stays pending and the parameter keeps its own.
  void adoptDesignatedValue(KyCErrorListPool& pool);

private:
  friend struct KyInventoryAccess;    // the library's own way to the base class and the fields

  // The ID, description and flags that the base class is built with.
  struct TIdentity
  {
    unsigned int id;
    const char* description;
    unsigned int flags;
  };
  static TIdentity identityOf(const KyCInventoryAddress& address, const char* description) noexcept;
  template <typename T>
  KyCInventoryParameter(KyCErrorListPool& pool, const TIdentity& identity, const T& value, T* location);
  KyCInventoryParameter(KyCErrorListPool& pool, const TIdentity& identity, unsigned int typeAndFlags);
  // Described by the registered name of its ID.
  template <typename T>
  KyCInventoryParameter(KyCErrorListPool& pool, unsigned int id, TStaticText name, unsigned int type, const T& value);

  template <typename T>
  void adoptDesignatedValueAs(KyCErrorListPool& pool);

  KyCString m_unit;
  bool m_modifiable = false;
  unsigned int m_relevance = 0;
  KyCInventoryAuxInfo* m_auxInfo = nullptr;    // owned
};
