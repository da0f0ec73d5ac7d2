// Construction, description and place of a parameter.

#include "inventory/KyCInventoryParameter.h"

#include <type_traits>

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCodes.h"
#include "inventory/KyCInventoryAuxInfo.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyNInventoryIDs.h"
#include "tree/KyInventoryAccess.h"
#include "tree/KyStaticDescription.h"
#include "tree/KyTypeTraits.h"

KyCInventoryParameter::TIdentity KyCInventoryParameter::identityOf(const KyCInventoryAddress& address,
                                                                   const char* description) noexcept
{
  const char* const name = kyStaticDescription(address.getCategory(), description);
  if (name != nullptr) return {address.getCategory(), name, FLAG_CUSTOM | FLAG_STATIC_DESCRIPTION};
  return {address.getCategory(), description, FLAG_CUSTOM};
}

template <typename T>
KyCInventoryParameter::KyCInventoryParameter(KyCErrorListPool& pool, const TIdentity& identity, const T& value,
                                             T* location)
    : KyCParam(pool, identity.id, identity.description, identity.flags, value, location)
{
}

#define KY_TYPED_CONSTRUCTOR(T)                                                                                     \
  KyCInventoryParameter::KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address,          \
                                               const char* description, KyValueArgument<T> value, const char* unit, \
                                               bool modifiable, unsigned int relevance)                             \
      : KyCInventoryParameter(pool, identityOf(address, description), value, std::add_pointer_t<T>{})               \
  {                                                                                                                 \
    init(pool, address, description, unit, modifiable, relevance);                                                  \
  }
KY_FOR_EACH_VALUE_TYPE(KY_TYPED_CONSTRUCTOR)

KyCInventoryParameter::KyCInventoryParameter(KyCErrorListPool& pool, const TIdentity& identity,
                                             unsigned int typeAndFlags)
    : KyCParam(pool, identity.id, identity.description,
               (typeAndFlags & ~static_cast<unsigned int>(FLAG_STATIC_DESCRIPTION)) | identity.flags)
{
}

KyCInventoryParameter::KyCInventoryParameter(KyCErrorListPool& pool, const KyCInventoryAddress& address,
                                             const char* description, unsigned int typeAndFlags)
    : KyCInventoryParameter(pool, identityOf(address, description), typeAndFlags)
{
  init(pool, address, description, nullptr, false, 0);
}

KyCInventoryParameter::KyCInventoryParameter()
    : KyCInventoryParameter(kyErrorManager().getMasterErrorList(), KyCInventoryAddress(1), nullptr,
                            static_cast<unsigned char>(0), nullptr, false, 0)
{
}

KyCInventoryParameter::KyCInventoryParameter(const KyCInventoryParameter& other)
    : KyCParam(other), m_unit(other.m_unit), m_modifiable(other.m_modifiable), m_relevance(other.m_relevance)
{
}

KyCInventoryParameter& KyCInventoryParameter::operator=(const KyCInventoryParameter& other)
{
  if (this == &other) return *this;
  KyCParam::operator=(other);
  m_unit = other.m_unit;
  m_modifiable = other.m_modifiable;
  m_relevance = other.m_relevance;
  m_auxInfo = nullptr;    // dropped, not deleted: see the header
  return *this;
}

KyCInventoryParameter::~KyCInventoryParameter()
{
  delete m_auxInfo;
  m_auxInfo = nullptr;
}

void KyCInventoryParameter::init(KyCErrorListPool& pool, const KyCInventoryAddress& address, const char* description,
                                 const char* unit, bool modifiable, unsigned int relevance)
{
  if (!address.isSingleElement())
    pool.setError(KY_MSG_PARAMETER_INIT_ID_NOT_ONE_ELEMENT, __LINE__, "init", "%s",
                  description != nullptr ? description : "not specified");
  const char* const text = unit != nullptr ? unit : "";
  if (*text != '\0' || !m_unit.isEmpty()) m_unit.assign(pool, text, KyCString::strlen(text));
  m_modifiable = modifiable;
  m_auxInfo = nullptr;    // dropped, not deleted: see the header
  m_relevance = relevance;
}

const char* KyCInventoryParameter::getUnit() const { return m_unit.c_str(); }

void KyCInventoryParameter::setUnit(const char* unit) { m_unit = unit != nullptr ? unit : ""; }

bool KyCInventoryParameter::isModifiable() const { return m_modifiable; }

void KyCInventoryParameter::setModifiableFlag(bool modifiable) { m_modifiable = modifiable; }

unsigned int KyCInventoryParameter::getRelevance() const { return m_relevance; }

void KyCInventoryParameter::setRelevance(unsigned int relevance) { m_relevance = relevance; }

KyCInventoryAddress KyCInventoryParameter::getID() const { return KyCInventoryAddress(getId()); }

const char* KyCInventoryParameter::getIDString() const { return KyNInventoryIDs::Map.get(getId()); }

const char* KyCInventoryParameter::getDescription() const { return KyCParam::getDescription(); }

unsigned int KyCInventoryParameter::getType() const { return KyCParam::getType(); }

const char* KyCInventoryParameter::getTypeAsCString() const
{
  switch (getType())
  {
    case TYPE_INT8:
      return "Int8";
    case TYPE_INT16:
      return "Int16";
    case TYPE_INT32:
      return "Int32";
    case TYPE_LONG64:
      return "Long64";
    case TYPE_UINT8:
      return "UInt8";
    case TYPE_UINT16:
      return "UInt16";
    case TYPE_UINT32:
      return "UInt32";
    case TYPE_ULONG64:
      return "ULong64";
    case TYPE_FLOAT32:
      return "Float32";
    case TYPE_FLOAT64:
      return "Float64";
    case TYPE_STRING:
      return "String";
    case TYPE_VERSION:
      return "Version";
    default:
      return "";
  }
}

KyCString KyCInventoryParameter::getTypeAsString() const { return KyCString(getTypeAsCString()); }

KyCInventoryItem* KyCInventoryParameter::getParent() const { return KyInventoryAccess::toItem(getParentComposite()); }

KyCInventoryParameter* KyCInventoryParameter::getNext() { return KyInventoryAccess::toParameter(getNextParam()); }

const KyCInventoryParameter* KyCInventoryParameter::getNext() const
{
  return KyInventoryAccess::toParameter(getNextParam());
}

KyCInventoryAddress KyCInventoryParameter::getAddress() const
{
  const KyCInventoryItem* const parent = getParent();
  if (parent == nullptr) return KyCInventoryAddress();
  const KyCInventoryAddress::TElement id = {getId(), 1};
  return KyInventoryAccess::addressOf(parent, &id);
}

KyCInventoryAddress KyCInventoryParameter::getRelativeAddress() const
{
  if (m_auxInfo == nullptr || m_auxInfo->getType() != KyCInventoryAuxInfo::AUX_PARAM_WRITE)
    return KyCInventoryAddress();
  return static_cast<const KyNInventoryParameter::KyCAuxInfoWrite*>(m_auxInfo)->getRelativeAddress();
}

KyCInventoryParameter* KyCInventoryParameter::detach()
{
  KyCInventoryItem* const parent = getParent();
  return parent != nullptr ? parent->detachParameter(getId()) : nullptr;
}

KyCInventoryParameter* KyInventoryAccess::newParameter(KyCErrorListPool& pool, unsigned int id, const char* description,
                                                       unsigned int type)
{
  using KyStaticText = KyCInventoryParameter::TStaticText;
  const char* const name = kyStaticDescription(id, description);
  if (name == nullptr || type > 0xFFFF)    // a flag is there that is to be looked at
    return new (pool) KyCInventoryParameter(pool, KyCInventoryParameter::identityOf(id, description), type);
  if (type == KyCParam::TYPE_STRING)
    return new (pool) KyCInventoryParameter(pool, id, KyStaticText{name}, type, KyCString());
  if (type == KyCParam::TYPE_VERSION)
    return new (pool) KyCInventoryParameter(pool, id, KyStaticText{name}, type, KyCVersion());
  return new (pool) KyCInventoryParameter(pool, id, KyStaticText{name}, type, 0ull);
}
