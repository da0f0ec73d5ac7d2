#include "composite/KyCBinDeserializer.h"

#include <cassert>

#include "KyCTextList.h"
#include "KyCompositeMessages.h"
#include "KyStreamFormat.h"
#include "errorhandling/KyNPoolAllocator.h"

using namespace KyStreamFormat;

// Walks over the bytes of one record. Every read checks what is left before it believes anything; the first thing found
// wrong is kept for the report.
struct KyCBinDeserializer::TCursor
{
  const unsigned char* at;
  const unsigned char* end;
  const char* damage = nullptr;                // what is wrong; null: nothing so far
  const unsigned char* damagedAt = nullptr;    // where

  bool fail(const unsigned char* where, const char* what) noexcept
  {
    damage = what;
    damagedAt = where;
    return false;
  }

  bool readBytes(std::uint32_t length, const unsigned char*& bytes) noexcept
  {
    if (length > static_cast<std::size_t>(end - at)) return fail(end, "the stream ends inside a value");
    bytes = at;
    at += length;
    return true;
  }

  // Unsigned LEB128 of at most 32 bits in its shortest form, so that every number has one spelling.
  bool readVarint(std::uint32_t& value) noexcept
  {
    // Nearly all have one byte or two.
    if (end - at >= 2)
    {
      const std::uint32_t low = at[0];
      const std::uint32_t high = at[1];
      if (low < 0x80)
      {
        value = low;
        ++at;
        return true;
      }
      if (high - 1 < 0x7F)
      {
        value = (low & 0x7F) | high << 7;
        at += 2;
        return true;
      }
    }
    return readVarintSlow(value);
  }

  __attribute__((noinline)) bool readVarintSlow(std::uint32_t& value) noexcept
  {
    const unsigned char* const start = at;
    value = 0;
    for (unsigned int shift = 0;; shift += 7)
    {
      if (at == end) return fail(end, "the stream ends inside a number");
      const std::uint32_t byte = *at++;
      if (shift == 28 && byte > 0x0F) return fail(start, "a number exceeds 32 bits");
      value |= (byte & 0x7F) << shift;
      if (byte >= 0x80) continue;
      return byte != 0 || shift == 0 || fail(start, "a number is longer than it needs to be");
    }
  }

  // A length and as many bytes.
  bool readString(const unsigned char*& text, std::uint32_t& length) noexcept
  {
    const unsigned char* const start = at;
    if (!readVarint(length)) return false;
    if (length > static_cast<std::size_t>(end - at)) return fail(start, "a text is longer than what is left");
    text = at;
    at += length;
    return true;
  }
};

// A value as it stands in the stream: which members count, and are set, follows from the type.
struct KyCBinDeserializer::TValueIn
{
  const unsigned char* bytes;    // of a number or a text
  std::uint32_t length;
  std::uint32_t version[4];
};

KyCBinDeserializer::KyCBinDeserializer(KyCErrorListPool& pool)
{
  const unsigned int errors = pool.getErrorCount();
  m_texts = new (pool) KyCTextList(pool);
  if (pool.getErrorCount() == errors) return;
  delete m_texts;
  m_texts = nullptr;
}

KyCBinDeserializer::~KyCBinDeserializer()
{
  delete m_parameter;
  delete m_texts;
}

bool KyCBinDeserializer::begin(KyCErrorListPool& pool, KyCBuffer* buffer, TRecord first)
{
  if (m_texts == nullptr || m_buffer != nullptr)
  {
    pool.setError(KY_MSG_DESERIALIZER_NOT_READY, __LINE__, "begin", nullptr);
    return false;
  }
  const unsigned int start = buffer->getReadPosition();
  if (start >= buffer->getWritePosition())
  {
    pool.setError(KY_MSG_STREAM_EMPTY, __LINE__, "begin", nullptr);
    return false;
  }
  const unsigned int version = buffer->getStorage()[start];
  if (version != VERSION)
  {
    pool.setError(KY_MSG_STREAM_VERSION, __LINE__, "begin", "%u%u", version, unsigned{VERSION});
    return false;
  }
  m_buffer = buffer;
  m_streamStart = start;
  m_repeatedBytes = 0;
  m_first = first;
  m_depth = 0;
  m_childrenBegun = false;
  m_texts->clear();
  advance(1);
  return true;
}

void KyCBinDeserializer::end() noexcept
{
  delete m_parameter;
  m_parameter = nullptr;
  m_description = "";
  m_buffer = nullptr;
}

KyCBinDeserializer::TRecord KyCBinDeserializer::nextRecord(KyCErrorListPool& pool)
{
  TCursor cursor = openRecord();
  // Most records are custom parameters that stand where they may.
  const bool isParameterNext = m_depth != 0 && !m_childrenBegun && cursor.at != cursor.end;
  if (isParameterNext && static_cast<unsigned int>(*cursor.at - RECORD_CUSTOM_PARAMETER) < TYPE_COUNT)
    return TRecord::PARAMETER;
  const TRecord kind = classify(cursor);
  if (kind == TRecord::DAMAGED) reportDamage(pool, cursor, "nextRecord");
  return kind;
}

// What the next record is, if it may stand where it stands.
KyCBinDeserializer::TRecord KyCBinDeserializer::classify(TCursor& cursor) const noexcept
{
  TRecord kind = TRecord::DAMAGED;
  const unsigned char* const start = cursor.at;
  const unsigned int byte = start == cursor.end ? 0u : *start;
  if (start == cursor.end)
    cursor.fail(start, "the stream ends too early");
  else if (byte == RECORD_START)
    kind = TRecord::START;
  else if (byte == RECORD_END)
    kind = TRecord::END;
  else if (((byte & 0xF0u) == RECORD_PARAMETER || (byte & 0xF0u) == RECORD_CUSTOM_PARAMETER) &&
           (byte & 0x0Fu) < TYPE_COUNT)
    kind = TRecord::PARAMETER;
  else
    cursor.fail(start, "the record is of an unknown kind");

  if (kind == TRecord::DAMAGED) return kind;
  if (m_depth == 0 && kind != m_first)
    cursor.fail(start, m_first == TRecord::START ? "a composite is expected" : "a parameter is expected");
  else if (kind == TRecord::PARAMETER && m_childrenBegun)
    cursor.fail(start, "a parameter stands behind a child");
  else if (kind == TRecord::PARAMETER && m_customParametersOnly && (byte & 0xF0u) != RECORD_CUSTOM_PARAMETER)
    cursor.fail(start, "a parameter is not a custom one");
  return cursor.damage == nullptr ? kind : TRecord::DAMAGED;
}

void KyCBinDeserializer::CompositeStart(KyCErrorListPool& pool)
{
  TCursor cursor = openRecord();
  const unsigned char* const start = cursor.at++;
  m_description = "";
  if (m_depth == MAX_DEPTH)
    cursor.fail(start, "composites are nested deeper than 4096 levels");
  else if (cursor.readVarint(m_classId) && cursor.readVarint(m_unitId) && readText(pool, cursor, m_description))
  {
    closeRecord(cursor);
    ++m_depth;
    m_childrenBegun = false;
    return;
  }
  reportDamage(pool, cursor, "CompositeStart");
}

void KyCBinDeserializer::CompositeEnd(KyCErrorListPool&)
{
  advance(1);
  --m_depth;
  m_childrenBegun = true;    // of the composite around the one that ends here
}

void KyCBinDeserializer::CompositeParameter(KyCErrorListPool& pool)
{
  TCursor cursor = openRecord();
  const unsigned int kind = *cursor.at++;
  const unsigned int type = TYPES[kind & 0x0Fu];
  const bool custom = (kind & 0xF0u) == RECORD_CUSTOM_PARAMETER;
  std::uint32_t id;
  const char* description;
  TValueIn value;
  if (!cursor.readVarint(id) || !readText(pool, cursor, description) || !readValue(cursor, type, value))
  {
    reportDamage(pool, cursor, "CompositeParameter");
    return;
  }
  KyCParam* const parameter = makeParameter(pool, id, type, custom, description);
  if (parameter == nullptr) return;
  if (!setValue(pool, *parameter, value))
  {
    delete parameter;
    return;
  }
  closeRecord(cursor);
  m_parameter = parameter;
  if (custom) handleCustomParameter(pool, parameter);
}

KyCParam* KyCBinDeserializer::createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                                    const char* description)
{
  return new (pool) KyCParam(pool, id, description, type | KyCParam::FLAG_CUSTOM);
}

void KyCBinDeserializer::handleCustomParameter(KyCErrorListPool&, KyCParam*) {}

// A parameter that is ready to take its value; null, with a report, when there is none.
inline KyCParam* KyCBinDeserializer::makeParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                                   bool custom, const char* description)
{
  const unsigned int errors = pool.getErrorCount();
  KyCParam* const parameter =
      custom ? createCustomParameter(pool, id, type, description) : new (pool) KyCParam(pool, id, description, type);
  if (pool.getErrorCount() == errors)
  {
    if (parameter == nullptr)
      pool.setError(KY_MSG_CUSTOM_PARAM_NULL, __LINE__, "CompositeParameter", "%u", id);
    else if (parameter->getType() != type)
      pool.setError(KY_MSG_CUSTOM_PARAM_TYPE, __LINE__, "CompositeParameter", "%u%u%u", id, parameter->getType(), type);
    else
      return parameter;
  }
  delete parameter;
  return nullptr;
}

inline bool KyCBinDeserializer::readText(KyCErrorListPool& pool, TCursor& cursor, const char*& text)
{
  const unsigned char* const start = cursor.at;
  std::uint32_t number;
  if (!cursor.readVarint(number)) return false;
  if (number == TEXT_NEW) return readNewText(pool, cursor, text);
  if (number == TEXT_EMPTY)
  {
    text = "";
    return true;
  }
  const std::uint32_t position = number - TEXT_FIRST;
  if (position >= m_texts->getCount()) return cursor.fail(start, "a text is named that was not there before");
  m_repeatedBytes += m_texts->getLength(position);
  const std::uint64_t streamed = m_buffer->getReadPosition() - m_streamStart;
  if (m_repeatedBytes > MAX_TEXT_EXPANSION * streamed) return cursor.fail(start, "long texts are repeated too often");
  text = m_texts->getText(position);
  return true;
}

bool KyCBinDeserializer::readNewText(KyCErrorListPool& pool, TCursor& cursor, const char*& text)
{
  const unsigned char* bytes;
  std::uint32_t length;
  if (!cursor.readString(bytes, length)) return false;
  text = "";
  if (length == 0) return true;
  const void* const zero = std::memchr(bytes, 0, length);
  if (zero != nullptr) return cursor.fail(static_cast<const unsigned char*>(zero), "a description holds a zero byte");
  text = m_texts->add(pool, bytes, length);
  return text != nullptr;
}

inline bool KyCBinDeserializer::readValue(TCursor& cursor, unsigned int type, TValueIn& value) noexcept
{
  if (type == KyCParam::TYPE_STRING) return cursor.readString(value.bytes, value.length);
  if (type != KyCParam::TYPE_VERSION) return cursor.readBytes(numberSize(type), value.bytes);
  for (std::uint32_t& part : value.version)
  {
    if (!cursor.readVarint(part)) return false;
  }
  return true;
}

inline bool KyCBinDeserializer::setValue(KyCErrorListPool& pool, KyCParam& parameter, const TValueIn& value)
{
  const unsigned int errors = pool.getErrorCount();
  const unsigned int type = parameter.getType();
  const std::uint32_t* const version = value.version;
  if (type != KyCParam::TYPE_STRING && type != KyCParam::TYPE_VERSION)
  {
    moveBig(parameter.getLocation(), value.bytes, numberSize(type));
    return true;
  }
  if (type == KyCParam::TYPE_STRING)
    static_cast<KyCString*>(parameter.getLocation())
        ->assign(pool, reinterpret_cast<const char*>(value.bytes), value.length);
  else
    parameter.setValueKyCVersion(pool, KyCVersion(version[0], version[1], version[2], version[3]));
  return pool.getErrorCount() == errors;
}

inline KyCBinDeserializer::TCursor KyCBinDeserializer::openRecord() const noexcept
{
  assert(m_buffer != nullptr);    // called outside a deserialization
  const unsigned char* const storage = m_buffer->getStorage();
  return {storage + m_buffer->getReadPosition(), storage + m_buffer->getWritePosition()};
}

inline void KyCBinDeserializer::closeRecord(const TCursor& cursor) noexcept
{
  const unsigned char* const start = m_buffer->getStorage() + m_buffer->getReadPosition();
  advance(static_cast<unsigned int>(cursor.at - start));
}

// Nothing to report when the cursor found no damage: memory ran out then, and that is in the pool already.
void KyCBinDeserializer::reportDamage(KyCErrorListPool& pool, const TCursor& cursor, const char* function) const
{
  if (cursor.damage == nullptr) return;
  const unsigned char* const start = m_buffer->getStorage() + m_streamStart;
  pool.setError(KY_MSG_STREAM_DAMAGED, __LINE__, function, "%u%s", static_cast<unsigned int>(cursor.damagedAt - start),
                cursor.damage);
}
