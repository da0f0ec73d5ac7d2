// KyCParam.cpp: a parameter's description and value, and typed access to it.
#include "composite/KyCParam.h"

#include <charconv>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "KyCompositeMessages.h"
#include "KyVersionText.h"
#include "composite/KyCComposite.h"
#include "errorhandling/KyNPoolAllocator.h"

namespace
{

// Stands for every empty description, which needs no block.
const char s_noText[] = "";

constexpr KyCVersion s_noVersion;

const char* nameOfType(unsigned int type) noexcept
{
  switch (type)
  {
    case KyCParam::TYPE_INT8:
      return "Int8";
    case KyCParam::TYPE_INT16:
      return "Int16";
    case KyCParam::TYPE_INT32:
      return "Int32";
    case KyCParam::TYPE_LONG64:
      return "Long64";
    case KyCParam::TYPE_UINT8:
      return "UInt8";
    case KyCParam::TYPE_UINT16:
      return "UInt16";
    case KyCParam::TYPE_UINT32:
      return "UInt32";
    case KyCParam::TYPE_ULONG64:
      return "ULong64";
    case KyCParam::TYPE_FLOAT32:
      return "Float32";
    case KyCParam::TYPE_FLOAT64:
      return "Float64";
    case KyCParam::TYPE_STRING:
      return "String";
    case KyCParam::TYPE_VERSION:
      return "Version";
    default:
      return nullptr;
  }
}

// In bytes; 0 when the type is no number.
unsigned int sizeOfNumber(unsigned int type) noexcept
{
  const bool isNumber = nameOfType(type) != nullptr && type != KyCParam::TYPE_STRING && type != KyCParam::TYPE_VERSION;
  return isNumber ? type & 0xFu : 0;
}

using KyOwnText = std::unique_ptr<char[]>;

KyOwnText copyText(const char* text)
{
  const std::size_t size = std::strlen(text) + 1;
  KyOwnText copy(new char[size]);
  std::memcpy(copy.get(), text, size);
  return copy;
}

}    // namespace

// ---- Construction ----

KyCParam::KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int typeAndFlags) noexcept
    : m_id(id), m_typeAndFlags(typeAndFlags & ~FLAG_EXTERNAL)
{
  takeDescription(pool, description);
  if (getType() == TYPE_STRING)
    new (&m_value.string) KyCString();
  else if (getType() == TYPE_VERSION)
    startVersion(pool, s_noVersion);
}

// Twelve constructors that differ in the value alone: KY_NUMBER_CONSTRUCTOR(type of the value, type code).
// NOLINTBEGIN(bugprone-macro-parentheses): a type takes none
#define KY_NUMBER_CONSTRUCTOR(T, TYPE)                                                                              \
  KyCParam::KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, T value, \
                     T* external) noexcept                                                                          \
      : m_id(id), m_typeAndFlags((flags & ~(FLAG_EXTERNAL | TYPE_MASK)) | (TYPE))                                   \
  {                                                                                                                 \
    takeDescription(pool, description);                                                                             \
    startNumber(&value, sizeof(value), external);                                                                   \
  }
// NOLINTEND(bugprone-macro-parentheses)

KY_NUMBER_CONSTRUCTOR(signed char, TYPE_INT8)
KY_NUMBER_CONSTRUCTOR(short, TYPE_INT16)
KY_NUMBER_CONSTRUCTOR(int, TYPE_INT32)
KY_NUMBER_CONSTRUCTOR(long long, TYPE_LONG64)
KY_NUMBER_CONSTRUCTOR(unsigned char, TYPE_UINT8)
KY_NUMBER_CONSTRUCTOR(unsigned short, TYPE_UINT16)
KY_NUMBER_CONSTRUCTOR(unsigned int, TYPE_UINT32)
KY_NUMBER_CONSTRUCTOR(unsigned long long, TYPE_ULONG64)
KY_NUMBER_CONSTRUCTOR(float, TYPE_FLOAT32)
KY_NUMBER_CONSTRUCTOR(double, TYPE_FLOAT64)
#undef KY_NUMBER_CONSTRUCTOR

KyCParam::KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags,
                   const KyCString& value, KyCString* external) noexcept
    : m_id(id), m_typeAndFlags((flags & ~(FLAG_EXTERNAL | TYPE_MASK)) | TYPE_STRING)
{
  takeDescription(pool, description);
  if (external == nullptr)
  {
    new (&m_value.string) KyCString(value);
    return;
  }
  *external = value;
  m_typeAndFlags |= FLAG_EXTERNAL;
  m_value.external = external;
}

KyCParam::KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags,
                   const KyCVersion& value, KyCVersion* external) noexcept
    : m_id(id), m_typeAndFlags((flags & ~(FLAG_EXTERNAL | TYPE_MASK)) | TYPE_VERSION)
{
  takeDescription(pool, description);
  if (external == nullptr)
  {
    startVersion(pool, value);
    return;
  }
  *external = value;
  m_typeAndFlags |= FLAG_EXTERNAL;
  m_value.external = external;
}

// An empty description is a static one, whatever was asked for: nothing has to be freed then.
void KyCParam::takeDescription(KyCErrorListPool& pool, const char* description) noexcept
{
  const bool isStatic = (m_typeAndFlags & FLAG_STATIC_DESCRIPTION) != 0;
  m_typeAndFlags |= FLAG_STATIC_DESCRIPTION;
  m_description = isStatic && description != nullptr ? description : s_noText;
  if (isStatic || description == nullptr || *description == '\0') return;
  const std::size_t size = std::strlen(description) + 1;
  char* const copy = new (pool) char[size];
  if (copy == nullptr) return;
  m_description = static_cast<const char*>(std::memcpy(copy, description, size));
  m_typeAndFlags &= ~FLAG_STATIC_DESCRIPTION;
}

// The value moves as bytes: a float that passes through an x87 register may come out with other bits.
void KyCParam::startNumber(const void* value, unsigned int size, void* external) noexcept
{
  if (external == nullptr)
  {
    std::memcpy(&m_value.bits, value, size);
    return;
  }
  std::memcpy(external, value, size);
  m_typeAndFlags |= FLAG_EXTERNAL;
  m_value.external = external;
}

void KyCParam::startVersion(KyCErrorListPool& pool, const KyCVersion& value) noexcept
{
  m_value.version = new (pool) KyCVersion(value);
}

// ---- Copies and destruction ----

KyCParam::KyCParam(const KyCParam& other)
    : m_id(other.m_id), m_typeAndFlags(other.m_typeAndFlags & ~FLAG_EXTERNAL), m_description(other.m_description)
{
  constexpr unsigned int ELSEWHERE = TYPE_STRING | TYPE_VERSION | FLAG_EXTERNAL;
  if ((other.m_typeAndFlags & (FLAG_STATIC_DESCRIPTION | ELSEWHERE)) == FLAG_STATIC_DESCRIPTION)
  {
    m_value.bits = other.m_value.bits;    // a number with a static description, as nearly all
    return;
  }
  KyOwnText description;
  if (other.ownsDescription()) description = copyText(other.m_description);
  KyCVersion* version = nullptr;
  if (getType() == TYPE_VERSION) version = new KyCVersion(*static_cast<const KyCVersion*>(other.getLocation()));
  if (description != nullptr) m_description = description.release();
  copyValue(other, version);
}

KyCParam& KyCParam::operator=(const KyCParam& other)
{
  if (this == &other) return *this;

  // Everything that can fail comes first; then the target changes.
  KyOwnText description;
  if (other.ownsDescription()) description = copyText(other.m_description);
  KyCVersion* version = nullptr;
  if (other.getType() == TYPE_VERSION) version = new KyCVersion(*static_cast<const KyCVersion*>(other.getLocation()));

  const unsigned int oldId = m_id;
  destroyValue();
  m_id = other.m_id;
  m_typeAndFlags = other.m_typeAndFlags & ~FLAG_EXTERNAL;
  m_description = description != nullptr ? description.release() : other.m_description;
  copyValue(other, version);
  if (m_parent != nullptr && m_id != oldId) m_parent->parameterIdChanged(this, oldId);
  return *this;
}

KyCParam::~KyCParam()
{
  if (m_parent != nullptr) m_parent->unlinkParameter(this);
  // Most are numbers with a static description.
  constexpr unsigned int SEPARATE_VALUE = TYPE_STRING | TYPE_VERSION;
  if ((m_typeAndFlags & (FLAG_STATIC_DESCRIPTION | SEPARATE_VALUE)) != FLAG_STATIC_DESCRIPTION) destroyValue();
}

// Gives this parameter, which has the other one's type by now and no value, the other one's value; a version comes in
// the block given.
void KyCParam::copyValue(const KyCParam& other, KyCVersion* versionBlock) noexcept
{
  const unsigned int type = getType();
  m_value.bits = 0;
  if (type == TYPE_STRING)
    new (&m_value.string) KyCString(*static_cast<const KyCString*>(other.getLocation()));
  else if (type == TYPE_VERSION)
    m_value.version = versionBlock;
  else
    std::memcpy(&m_value.bits, other.getLocation(), sizeOfNumber(type));
}

// Frees the description and the value; both are given anew before anyone looks.
void KyCParam::destroyValue() noexcept
{
  if (ownsDescription()) delete[] m_description;
  if (isExternal()) return;
  if (getType() == TYPE_STRING)
    m_value.string.~KyCString();
  else if (getType() == TYPE_VERSION)
    delete m_value.version;
}

// ---- Typed access ----

const void* KyCParam::getLocation() const noexcept
{
  if (isExternal()) return m_value.external;
  if (getType() != TYPE_VERSION) return &m_value;
  return m_value.version != nullptr ? m_value.version : &s_noVersion;
}

bool KyCParam::checkType(KyCErrorListPool& pool, unsigned int type, unsigned int message,
                         const char* function) const noexcept
{
  if (getType() == type) return true;
  const char* const name = nameOfType(getType());
  if (name != nullptr)
    pool.setError(message, __LINE__, function, "%u%s%s", m_id, name, nameOfType(type));
  else
    reportUnknownType(pool, function);
  return false;
}

void KyCParam::reportUnknownType(KyCErrorListPool& pool, const char* function) const noexcept
{
  char code[2 + 4 + 1] = "0x";
  *std::to_chars(code + 2, code + 6, getType(), 16).ptr = '\0';
  pool.setError(KY_MSG_PARAM_UNKNOWN_TYPE, __LINE__, function, "%u%s", m_id, code);
}

template <typename T>
T KyCParam::readNumber(KyCErrorListPool& pool, unsigned int type, const char* function) const noexcept
{
  T value = 0;
  if (checkType(pool, type, KY_MSG_PARAM_READ_TYPE, function)) std::memcpy(&value, getLocation(), sizeof(value));
  return value;
}

template <typename T>
void KyCParam::writeNumber(KyCErrorListPool& pool, unsigned int type, const T& value, const char* function) noexcept
{
  if (checkType(pool, type, KY_MSG_PARAM_WRITE_TYPE, function)) std::memcpy(getLocation(), &value, sizeof(value));
}

// The getter and the setter of one type of number: KY_NUMBER_ACCESS(type of the value, end of the names, type code).
#define KY_NUMBER_ACCESS(T, NAME, TYPE)                                   \
  T KyCParam::getValue##NAME(KyCErrorListPool& pool) const noexcept       \
  {                                                                       \
    return readNumber<T>(pool, TYPE, "getValue" #NAME);                   \
  }                                                                       \
                                                                          \
  void KyCParam::setValue##NAME(KyCErrorListPool& pool, T value) noexcept \
  {                                                                       \
    writeNumber<T>(pool, TYPE, value, "setValue" #NAME);                  \
  }

KY_NUMBER_ACCESS(signed char, Int8, TYPE_INT8)
KY_NUMBER_ACCESS(short, Int16, TYPE_INT16)
KY_NUMBER_ACCESS(int, Int32, TYPE_INT32)
KY_NUMBER_ACCESS(long long, Long64, TYPE_LONG64)
KY_NUMBER_ACCESS(unsigned char, UInt8, TYPE_UINT8)
KY_NUMBER_ACCESS(unsigned short, UInt16, TYPE_UINT16)
KY_NUMBER_ACCESS(unsigned int, UInt32, TYPE_UINT32)
KY_NUMBER_ACCESS(unsigned long long, ULong64, TYPE_ULONG64)
KY_NUMBER_ACCESS(float, Float32, TYPE_FLOAT32)
KY_NUMBER_ACCESS(double, Float64, TYPE_FLOAT64)
#undef KY_NUMBER_ACCESS

const char* KyCParam::getValueConstChar(KyCErrorListPool& pool) const noexcept
{
  if (!checkType(pool, TYPE_STRING, KY_MSG_PARAM_READ_TYPE, "getValueConstChar")) return s_noText;
  return static_cast<const KyCString*>(getLocation())->c_str();
}

KyCString KyCParam::getValueKyCString(KyCErrorListPool& pool) const noexcept
{
  if (!checkType(pool, TYPE_STRING, KY_MSG_PARAM_READ_TYPE, "getValueKyCString")) return KyCString();
  return *static_cast<const KyCString*>(getLocation());
}

KyCVersion KyCParam::getValueKyCVersion(KyCErrorListPool& pool) const noexcept
{
  if (!checkType(pool, TYPE_VERSION, KY_MSG_PARAM_READ_TYPE, "getValueKyCVersion")) return KyCVersion();
  return *static_cast<const KyCVersion*>(getLocation());
}

void KyCParam::setValueConstChar(KyCErrorListPool& pool, const char* value) noexcept
{
  if (!checkType(pool, TYPE_STRING, KY_MSG_PARAM_WRITE_TYPE, "setValueConstChar")) return;
  const std::size_t length = value != nullptr ? std::strlen(value) : 0;
  if (length > 0xFFFFFFFFu)
    pool.setError(KY_MSG_TEXT_TOO_LONG, __LINE__, "setValueConstChar", "%s", "4294967296 or more");
  else
    static_cast<KyCString*>(getLocation())->assign(pool, value, static_cast<unsigned int>(length));
}

void KyCParam::setValueKyCVersion(KyCErrorListPool& pool, const KyCVersion& value) noexcept
{
  if (!checkType(pool, TYPE_VERSION, KY_MSG_PARAM_WRITE_TYPE, "setValueKyCVersion")) return;
  KyCVersion* const location = static_cast<KyCVersion*>(getLocation());
  if (location != nullptr)
    *location = value;
  else
    startVersion(pool, value);
}

// ---- The value as text ----

namespace
{

// Room for every number and version. The longest is a version; a double takes at most 24 characters.
struct KyValueText
{
  char characters[KY_VERSION_TEXT_SIZE];
  unsigned int length = 0;

  template <typename T>
  void format(const void* location) noexcept
  {
    T value;
    std::memcpy(&value, location, sizeof(value));
    const std::to_chars_result end = std::to_chars(characters, characters + sizeof(characters), value);
    length = static_cast<unsigned int>(end.ptr - characters);
  }

  bool formatNumber(unsigned int type, const void* location) noexcept
  {
    switch (type)
    {
      case KyCParam::TYPE_INT8:
        format<signed char>(location);
        return true;
      case KyCParam::TYPE_INT16:
        format<short>(location);
        return true;
      case KyCParam::TYPE_INT32:
        format<int>(location);
        return true;
      case KyCParam::TYPE_LONG64:
        format<long long>(location);
        return true;
      case KyCParam::TYPE_UINT8:
        format<unsigned char>(location);
        return true;
      case KyCParam::TYPE_UINT16:
        format<unsigned short>(location);
        return true;
      case KyCParam::TYPE_UINT32:
        format<unsigned int>(location);
        return true;
      case KyCParam::TYPE_ULONG64:
        format<unsigned long long>(location);
        return true;
      case KyCParam::TYPE_FLOAT32:
        format<float>(location);
        return true;
      case KyCParam::TYPE_FLOAT64:
        format<double>(location);
        return true;
      default:
        return false;
    }
  }
};

}    // namespace

KyCString KyCParam::getValueAsString(KyCErrorListPool& pool) const noexcept
{
  if (getType() == TYPE_STRING) return *static_cast<const KyCString*>(getLocation());
  KyValueText text;
  if (getType() == TYPE_VERSION)
  {
    text.length = formatVersion(*static_cast<const KyCVersion*>(getLocation()), text.characters);
  }
  else if (!text.formatNumber(getType(), getLocation()))
  {
    reportUnknownType(pool, "getValueAsString");
    return KyCString();
  }
  KyCString result;
  result.assign(pool, text.characters, text.length);
  return result;
}
