// KyCParam.h: a typed parameter: an id, a description and one value of twelve types.
#pragma once

#include "composite/KyCString.h"
#include "composite/KyCVersion.h"
#include "composite/KyCompositeApi.h"
#include "errorhandling/KyCErrorListPool.h"

class KyCComposite;

class KY_COMPOSITE_API KyCParam
{
 public:
  // Type codes: the low 16 bits of the type-and-flags word.
  enum TType : unsigned int
  {
    TYPE_INT8 = 0x111, TYPE_INT16 = 0x112, TYPE_INT32 = 0x114, TYPE_LONG64 = 0x118,
    TYPE_UINT8 = 0x121, TYPE_UINT16 = 0x122, TYPE_UINT32 = 0x124, TYPE_ULONG64 = 0x128,
    TYPE_FLOAT32 = 0x214, TYPE_FLOAT64 = 0x218, TYPE_STRING = 0x2000, TYPE_VERSION = 0x4000
  };

  // Flags: the high 16 bits.
  enum TFlag : unsigned int
  {
    FLAG_CUSTOM = 0x10000,                // the serializers hand the parameter to their custom-parameter hooks
    FLAG_STATIC_DESCRIPTION = 0x20000     // the description outlives the parameter and all its copies: keep the pointer, copy nothing
  };

  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int typeAndFlags);
  // external: where the value lives instead of inside the parameter; null: inside. Not owned.
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, signed char value, signed char* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, short value, short* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, int value, int* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, long long value, long long* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned char value, unsigned char* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned short value, unsigned short* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned int value, unsigned int* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, unsigned long long value, unsigned long long* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, float value, float* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, double value, double* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, const KyCString& value, KyCString* external);
  KyCParam(KyCErrorListPool& pool, unsigned int id, const char* description, unsigned int flags, const KyCVersion& value, KyCVersion* external);

  // Deep copies of id, description, type, flags and value; a copy is free (no owner) and keeps its value inside. The
  // assignment leaves the target where it hangs; its owner finds it under the new id from then on.
  KyCParam(const KyCParam& other);
  KyCParam& operator=(const KyCParam& other);
  virtual ~KyCParam();

  signed char getValueInt8(KyCErrorListPool& pool) const;
  short getValueInt16(KyCErrorListPool& pool) const;
  int getValueInt32(KyCErrorListPool& pool) const;
  long long getValueLong64(KyCErrorListPool& pool) const;
  unsigned char getValueUInt8(KyCErrorListPool& pool) const;
  unsigned short getValueUInt16(KyCErrorListPool& pool) const;
  unsigned int getValueUInt32(KyCErrorListPool& pool) const;
  unsigned long long getValueULong64(KyCErrorListPool& pool) const;
  float getValueFloat32(KyCErrorListPool& pool) const;
  double getValueFloat64(KyCErrorListPool& pool) const;
  const char* getValueConstChar(KyCErrorListPool& pool) const;
  KyCString getValueKyCString(KyCErrorListPool& pool) const;
  KyCVersion getValueKyCVersion(KyCErrorListPool& pool) const;

  void setValueInt8(KyCErrorListPool& pool, signed char value);
  void setValueInt16(KyCErrorListPool& pool, short value);
  void setValueInt32(KyCErrorListPool& pool, int value);
  void setValueLong64(KyCErrorListPool& pool, long long value);
  void setValueUInt8(KyCErrorListPool& pool, unsigned char value);
  void setValueUInt16(KyCErrorListPool& pool, unsigned short value);
  void setValueUInt32(KyCErrorListPool& pool, unsigned int value);
  void setValueULong64(KyCErrorListPool& pool, unsigned long long value);
  void setValueFloat32(KyCErrorListPool& pool, float value);
  void setValueFloat64(KyCErrorListPool& pool, double value);
  void setValueConstChar(KyCErrorListPool& pool, const char* value);
  void setValueKyCVersion(KyCErrorListPool& pool, const KyCVersion& value);

  KyCString getValueAsString(KyCErrorListPool& pool) const;
  const char* getDescription() const noexcept { return m_description; }
  unsigned int getId() const noexcept { return m_id; }
  unsigned int getType() const noexcept { return m_typeAndFlags & 0xFFFFu; }
  bool isCustom() const noexcept { return (m_typeAndFlags & FLAG_CUSTOM) != 0; }

 protected:
  KyCComposite* getParentComposite() const noexcept { return m_parent; }
  KyCParam* getNextParam() const noexcept { return m_next; }

 private:
  friend class KyCComposite;          // keeps the list links
  friend class KyCBinSerializer;      // moves values as bytes
  friend class KyCBinDeserializer;

  union TValue
  {
    unsigned long long bits;
    signed char int8; short int16; int int32; long long long64;
    unsigned char uint8; unsigned short uint16; unsigned int uint32; unsigned long long ulong64;
    float float32; double float64;
    KyCString string;       // constructed and destroyed by hand
    KyCVersion* version;    // one pool block
    void* external;
    TValue() noexcept : bits(0) {}
    ~TValue() {}
  };

  unsigned int m_id;
  unsigned int m_typeAndFlags;
  const char* m_description;
  TValue m_value;
  KyCComposite* m_parent = nullptr;
  KyCParam* m_next = nullptr;
};
