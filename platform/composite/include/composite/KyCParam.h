// KyCParam.h: a typed parameter: an id, a description and one value of twelve types.
//
//   KyCParam width(pool, 7, "bit width", KyCParam::FLAG_STATIC_DESCRIPTION, 16u, nullptr);
//   width.setValueUInt32(pool, 32);
//   width.getValueInt32(pool);    // 0, and a report: the type is unsigned int
#pragma once

#include <cstring>
#include <new>

#include "composite/KyCString.h"
#include "composite/KyCVersion.h"
#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

class KyCComposite;

// Belongs to whoever made it until a composite takes it (KyCComposite::addParameter); the composite then deletes it with
// itself. A parameter that is deleted while it hangs in a composite is unlinked from there first.
//
// A numeric parameter with a static description is one heap block. An own copy of a description, a version value and a
// string value of more than 6 characters take one block each.
//
// Programs may derive parameters of their own from it.
//
// Threads: a parameter, and the composite it hangs in, are used by one thread at a time.
class KY_COMPOSITE_API KyCParam
{
public:
  // Type codes: the low 16 bits of the type-and-flags word.
  enum TType : unsigned int
  {
    TYPE_INT8 = 0x111,
    TYPE_INT16 = 0x112,
    TYPE_INT32 = 0x114,
    TYPE_LONG64 = 0x118,
    TYPE_UINT8 = 0x121,
    TYPE_UINT16 = 0x122,
    TYPE_UINT32 = 0x124,
    TYPE_ULONG64 = 0x128,
    TYPE_FLOAT32 = 0x214,
    TYPE_FLOAT64 = 0x218,
    TYPE_STRING = 0x2000,
    TYPE_VERSION = 0x4000
  };

  // Flags: the high 16 bits. The highest, 0x80000000, is the parameter's own; a caller's is ignored. The others are kept
  // as given.
  enum TFlag : unsigned int
  {
    // The serializers hand the parameter to their custom-parameter hooks.
    FLAG_CUSTOM = 0x10000,
    // The description outlives the parameter and all its copies: keep the pointer, copy nothing.
    FLAG_STATIC_DESCRIPTION = 0x20000
  };

  // A parameter of any type code, its value 0, empty or 0.0.0.0. One of an unknown type code has an id, a description and
  // no value: every access to its value reports 0x01100802.
  //
  //   id            any number; a composite takes one parameter of each
  //   description   copied, unless FLAG_STATIC_DESCRIPTION is set; null reads back as ""
  //   typeAndFlags  type code in the low 16 bits, flags in the high ones
  //
  // Errors:     "Out of memory." of the pool allocator, once for each block that could not be had.
  // On failure: the parameter is there all the same, with the description "" or the value 0.0.0.0.
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int typeAndFlags) noexcept;

  // As above, for a parameter of the value's type.
  //
  //   flags     high 16 bits; the low ones are ignored
  //   external  where the value lives from now on instead of inside the parameter: the constructor writes the value
  //             there, getters read it there and setters write it there. Not owned; outlives the parameter. Null: inside
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, signed char value,
           signed char* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, short value,
           short* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, int value,
           int* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, long long value,
           long long* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned char value,
           unsigned char* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned short value,
           unsigned short* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned int value,
           unsigned int* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags,
           unsigned long long value, unsigned long long* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, float value,
           float* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, double value,
           double* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, const KyCString& value,
           KyCString* external) noexcept;
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags,
           const KyCVersion& value, KyCVersion* external) noexcept;

  // Deep copies of id, description, type, flags and value. A copy is free (no owner) and keeps its value inside, wherever
  // the other one keeps its own. The assignment leaves the target where it hangs: its owner finds it under the new id
  // from then on (the first in list order, should there be two of that id now; a composite that has two is not stored:
  // KyCBinSerializer::CompositeStart). A target with an external location keeps
  // its value inside afterwards; what stands at the location stays there.
  //
  // They have no pool: with memory exhausted they throw std::bad_alloc, and the target is as it was.
  KyCParam(const KyCParam& other);
  KyCParam& operator=(const KyCParam& other);

  // Unlinks the parameter from its composite, if it hangs in one.
  virtual ~KyCParam();

  // The value, of exactly the parameter's own type: nothing is converted.
  //
  // Result:  the value; on failure 0, "" or 0.0.0.0.
  // Errors:  0x01100800  the parameter is of another type
  //          0x01100802  the parameter is of an unknown type
  signed char getValueInt8(KyCErrorListPool& pool) const noexcept;
  short getValueInt16(KyCErrorListPool& pool) const noexcept;
  int getValueInt32(KyCErrorListPool& pool) const noexcept;
  long long getValueLong64(KyCErrorListPool& pool) const noexcept;
  unsigned char getValueUInt8(KyCErrorListPool& pool) const noexcept;
  unsigned short getValueUInt16(KyCErrorListPool& pool) const noexcept;
  unsigned int getValueUInt32(KyCErrorListPool& pool) const noexcept;
  unsigned long long getValueULong64(KyCErrorListPool& pool) const noexcept;
  float getValueFloat32(KyCErrorListPool& pool) const noexcept;
  double getValueFloat64(KyCErrorListPool& pool) const noexcept;
  const char* getValueConstChar(KyCErrorListPool& pool) const noexcept;    // string type; holds until the value changes
  KyCString getValueKyCString(KyCErrorListPool& pool) const noexcept;      // string type; shares the text
  KyCVersion getValueKyCVersion(KyCErrorListPool& pool) const noexcept;

  // Sets the value, which must be of exactly the parameter's own type.
  //
  // Errors:     0x01100801  the parameter is of another type
  //             0x01100802  the parameter is of an unknown type
  //             "Out of memory." of the pool allocator (texts of more than 6 characters; versions whose block could not
  //             be had before)
  // On failure: the value is as it was.
  void setValueInt8(KyCErrorListPool& pool, signed char value) noexcept;
  void setValueInt16(KyCErrorListPool& pool, short value) noexcept;
  void setValueInt32(KyCErrorListPool& pool, int value) noexcept;
  void setValueLong64(KyCErrorListPool& pool, long long value) noexcept;
  void setValueUInt8(KyCErrorListPool& pool, unsigned char value) noexcept;
  void setValueUInt16(KyCErrorListPool& pool, unsigned short value) noexcept;
  void setValueUInt32(KyCErrorListPool& pool, unsigned int value) noexcept;
  void setValueULong64(KyCErrorListPool& pool, unsigned long long value) noexcept;
  void setValueFloat32(KyCErrorListPool& pool, float value) noexcept;
  void setValueFloat64(KyCErrorListPool& pool, double value) noexcept;
  void setValueConstChar(KyCErrorListPool& pool, const char* value) noexcept;    // null: empty; may be a part of it
  void setValueKyCVersion(KyCErrorListPool& pool, const KyCVersion& value) noexcept;

  // The value of any type as text: integers in decimal, floating-point numbers as the shortest text that reads back to
  // the same value ("0.1", "1e+22", "inf", "nan"), strings as they are, versions dotted.
  //
  // Result:  the text; empty on failure.
  // Errors:  0x01100802  the parameter is of an unknown type
  //          "Out of memory." of the pool allocator
  KyCString getValueAsString(KyCErrorListPool& pool) const noexcept;

  // Never null; holds until the next assignment.
  const char* getDescription() const noexcept { return m_description; }
  unsigned int getId() const noexcept { return m_id; }
  unsigned int getType() const noexcept { return m_typeAndFlags & TYPE_MASK; }
  bool isCustom() const noexcept { return (m_typeAndFlags & FLAG_CUSTOM) != 0; }

protected:
  // As the constructors above, for a description that outlives the parameter: the pointer is kept, not null. The flags
  // have FLAG_STATIC_DESCRIPTION; the type code is the value's. Nothing can fail but the version's block.
  struct TStaticText
  {
    const char* text;
  };
  template <typename T>
  KyCParam(KyCErrorListPool&, unsigned int id, TStaticText description, unsigned int typeAndFlags,
           const T& number) noexcept
      : m_id(id), m_typeAndFlags(typeAndFlags), m_description(description.text)
  {
    std::memcpy(&m_value.bits, &number, sizeof(number));
  }
  KyCParam(KyCErrorListPool&, unsigned int id, TStaticText description, unsigned int typeAndFlags,
           const KyCString& value) noexcept
      : m_id(id), m_typeAndFlags(typeAndFlags), m_description(description.text)
  {
    new (&m_value.string) KyCString(value);
  }
  KyCParam(KyCErrorListPool& pool, unsigned int id, TStaticText description, unsigned int typeAndFlags,
           const KyCVersion& value) noexcept
      : m_id(id), m_typeAndFlags(typeAndFlags), m_description(description.text)
  {
    startVersion(pool, value);
  }

  // Takes over the value of another parameter, T being the type of both, byte by byte: a getter's result passes through a
  // register of the x87 on x86, which makes a signalling NaN a quiet one.
  template <typename T>
  void copyNumber(KyCParam& other) noexcept
  {
    std::memcpy(getLocation(), other.getLocation(), sizeof(T));
  }

  KyCComposite* getParentComposite() const noexcept { return m_parent; }    // null when free
  KyCParam* getNextParam() const noexcept { return m_next; }                // in the composite's list; null at its end

private:
  friend class KyCComposite;        // keeps the list links
  friend class KyCBinSerializer;    // moves values as bytes, through getLocation
  friend class KyCBinDeserializer;

  static constexpr unsigned int TYPE_MASK = 0xFFFF;
  static constexpr unsigned int FLAG_EXTERNAL = 0x80000000;    // m_value.external says where the value lives

  union TValue
  {
    unsigned long long bits;    // the value's bytes stand first, the others are 0
    KyCString string;           // constructed and destroyed by hand
    KyCVersion* version;        // an own block; null when it could not be had: 0.0.0.0
    void* external;
    TValue() noexcept : bits(0) {}
    ~TValue() {}
  };

  // Where the value lives: a number of the type, a KyCString or a KyCVersion; never null for reading. For writing it is
  // null for a version without its block, which happens only when the constructor reported "Out of memory.".
  const void* getLocation() const noexcept;
  void* getLocation() noexcept
  {
    if (isExternal()) return m_value.external;
    return getType() != TYPE_VERSION ? static_cast<void*>(&m_value) : m_value.version;
  }
  bool isExternal() const noexcept { return (m_typeAndFlags & FLAG_EXTERNAL) != 0; }
  bool ownsDescription() const noexcept { return (m_typeAndFlags & FLAG_STATIC_DESCRIPTION) == 0; }
  void takeDescription(KyCErrorListPool& pool, const char* description) noexcept;
  void startNumber(const void* value, unsigned int size, void* external) noexcept;
  void startVersion(KyCErrorListPool& pool, const KyCVersion& value) noexcept;
  void copyValue(const KyCParam& other, KyCVersion* versionBlock) noexcept;
  void destroyValue() noexcept;

  bool checkType(KyCErrorListPool& pool, unsigned int type, unsigned int message, const char* function) const noexcept;
  void reportUnknownType(KyCErrorListPool& pool, const char* function) const noexcept;
  template <typename T>
  T readNumber(KyCErrorListPool& pool, unsigned int type, const char* function) const noexcept;
  template <typename T>
  void writeNumber(KyCErrorListPool& pool, unsigned int type, const T& value, const char* function) noexcept;

  unsigned int m_id;    // what look-ups read stands first
  unsigned int m_typeAndFlags;
  KyCParam* m_next = nullptr;
  TValue m_value;
  KyCComposite* m_parent = nullptr;
  const char* m_description;
};

static_assert(sizeof(KyCParam) == (sizeof(void*) == 8 ? 48 : 32), "a parameter stays this small");
