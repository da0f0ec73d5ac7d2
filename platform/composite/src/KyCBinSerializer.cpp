#include "composite/KyCBinSerializer.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "KyCTextTable.h"
#include "KyCompositeMessages.h"
#include "KyStreamFormat.h"
#include "errorhandling/KyNPoolAllocator.h"

using namespace KyStreamFormat;

// A description on its way into the stream: either its number, or the text itself when the stream does not hold it yet.
struct KyCBinSerializer::TTextOut
{
  const char* text;
  std::uint32_t number;
  std::size_t length;    // bytes to write; 0 unless number is TEXT_NEW
};

namespace
{
constexpr std::uint64_t TEXT_OVERHEAD = std::uint64_t{2} * MAX_VARINT_SIZE;    // number and length of a text

unsigned char* putText(unsigned char* to, std::uint32_t number, const char* text, std::size_t length) noexcept
{
  to = putVarint(to, number);
  if (number != TEXT_NEW) return to;
  to = putVarint(to, static_cast<std::uint32_t>(length));
  return putBytes(to, text, length);
}
}    // namespace

KyCBinSerializer::KyCBinSerializer(KyCErrorListPool& pool)
{
  const unsigned int errors = pool.getErrorCount();
  m_texts = new (pool) KyCTextTable(pool);
  if (pool.getErrorCount() == errors) return;
  delete m_texts;
  m_texts = nullptr;
}

KyCBinSerializer::~KyCBinSerializer() { delete m_texts; }

bool KyCBinSerializer::begin(KyCErrorListPool& pool, KyCBuffer* buffer)
{
  if (m_texts == nullptr || m_buffer != nullptr)
  {
    pool.setError(KY_MSG_SERIALIZER_NOT_READY, __LINE__, "begin", nullptr);
    return false;
  }
  m_buffer = buffer;
  m_depth = 0;
  m_streamStart = buffer->getWritePosition();
  m_repeatedBytes = 0;
  m_texts->clear();
  unsigned char* const to = reserve(pool, 1);
  if (to == nullptr)
  {
    end();
    return false;
  }
  *to = VERSION;
  commit(to + 1);
  return true;
}

void KyCBinSerializer::end() noexcept { m_buffer = nullptr; }

void KyCBinSerializer::CompositeStart(KyCErrorListPool& pool, const KyCComposite* composite)
{
  if (m_depth == MAX_DEPTH)
  {
    pool.setError(KY_MSG_NESTED_TOO_DEEP, __LINE__, "CompositeStart", "%u", MAX_DEPTH);
    return;
  }
  if (composite->mayRepeatIds() && !checkIds(pool, composite)) return;
  const TTextOut description = lookUp(composite->getDescription(), false);
  unsigned char* to = reserve(pool, 1 + 2 * MAX_VARINT_SIZE + TEXT_OVERHEAD + description.length);
  if (to == nullptr) return;
  *to++ = RECORD_START;
  to = putVarint(to, composite->getClassId());
  to = putVarint(to, composite->getUnitId());
  to = putText(to, description.number, description.text, description.length);
  if (!remember(pool, description, to)) return;
  commit(to);
  ++m_depth;
}

// For the rare node whose ids may be repeated. Does not look them up: that might make an index, and other threads may be
// storing the same tree.
bool KyCBinSerializer::checkIds(KyCErrorListPool& pool, const KyCComposite* composite) noexcept
{
  std::size_t count = 0;
  for (const KyCParam* parameter = composite->m_firstParameter; parameter != nullptr; parameter = parameter->m_next)
    ++count;
  unsigned int* const ids = static_cast<unsigned int*>(KyNPoolAllocator::allocate(pool, count * sizeof(unsigned int)));
  if (ids == nullptr) return false;
  unsigned int* end = ids;
  for (const KyCParam* parameter = composite->m_firstParameter; parameter != nullptr; parameter = parameter->m_next)
    *end++ = parameter->m_id;
  std::sort(ids, end);
  const unsigned int* const repeated = std::adjacent_find(ids, end);
  const bool isRepeated = repeated != end;
  if (isRepeated)
    pool.setError(KY_MSG_REPEATED_ID, __LINE__, "CompositeStart", "%u%u%u", composite->getClassId(),
                  composite->getUnitId(), *repeated);
  KyNPoolAllocator::release(ids);
  return !isRepeated;
}

void KyCBinSerializer::CompositeEnd(KyCErrorListPool& pool, const KyCComposite*)
{
  unsigned char* const to = reserve(pool, 1);
  if (to == nullptr) return;
  *to = RECORD_END;
  commit(to + 1);
  --m_depth;
}

void KyCBinSerializer::CompositeParameter(KyCErrorListPool& pool, const KyCParam* parameter)
{
  const unsigned int type = typeNumber(parameter->getType());
  if (type == TYPE_COUNT)
  {
    pool.setError(KY_MSG_UNKNOWN_VALUE_TYPE, __LINE__, "CompositeParameter", "%u%s%u", parameter->getId(),
                  parameter->getDescription(), parameter->getType());
    return;
  }
  const bool custom = parameter->isCustom();
  const bool isLasting = (parameter->m_typeAndFlags & KyCParam::FLAG_STATIC_DESCRIPTION) != 0;
  const TTextOut description = lookUp(parameter->getDescription(), isLasting);
  const unsigned int kind = (custom ? RECORD_CUSTOM_PARAMETER : RECORD_PARAMETER) + type;
  unsigned char* to = reserve(pool, 1 + MAX_VARINT_SIZE + TEXT_OVERHEAD + description.length + valueRoom(*parameter));
  if (to == nullptr) return;
  *to++ = static_cast<unsigned char>(kind);
  to = putVarint(to, parameter->getId());
  to = putText(to, description.number, description.text, description.length);
  if (!remember(pool, description, to)) return;
  to = putValue(to, *parameter);
  commit(to);
  if (custom) handleCustomParameter(pool, parameter);
}

void KyCBinSerializer::handleCustomParameter(KyCErrorListPool&, const KyCParam*) {}

inline KyCBinSerializer::TTextOut KyCBinSerializer::lookUp(const char* text, bool isLasting) noexcept
{
  if (*text == '\0') return {text, TEXT_EMPTY, 0};
  const std::uint32_t size = m_buffer->getWritePosition();
  const unsigned char* const storage = m_buffer->getStorage();
  const std::uint32_t known =
      isLasting ? m_texts->findLasting(storage, size, text) : m_texts->find(storage, size, text);
  if (known != KyCTextTable::NOT_FOUND)
  {
    const std::uint64_t repeated = m_repeatedBytes + m_texts->lengthOf(known);
    if (repeated <= MAX_TEXT_EXPANSION * (size - m_streamStart))
    {
      m_repeatedBytes = repeated;
      return {text, TEXT_FIRST + known, 0};
    }
  }
  return {text, TEXT_NEW, std::strlen(text)};
}

// The description was written as a new text that ends at end: it has a number from now on. False when there is no memory
// to keep that in mind.
inline bool KyCBinSerializer::remember(KyCErrorListPool& pool, const TTextOut& description,
                                       const unsigned char* end) noexcept
{
  if (description.number != TEXT_NEW) return true;
  const std::size_t offset = static_cast<std::size_t>(end - m_buffer->getStorage()) - description.length;
  return m_texts->add(pool, description.text, static_cast<std::uint32_t>(offset),
                      static_cast<std::uint32_t>(description.length));
}

// At least as many bytes as the value takes in the stream.
inline std::uint64_t KyCBinSerializer::valueRoom(const KyCParam& parameter) noexcept
{
  switch (parameter.getType())
  {
    case KyCParam::TYPE_STRING:
      return std::uint64_t{MAX_VARINT_SIZE} + static_cast<const KyCString*>(parameter.getLocation())->length();
    case KyCParam::TYPE_VERSION:
      return std::uint64_t{4} * MAX_VARINT_SIZE;
    default:
      return numberSize(parameter.getType());
  }
}

inline unsigned char* KyCBinSerializer::putValue(unsigned char* to, const KyCParam& parameter) noexcept
{
  const unsigned int type = parameter.getType();
  if (type != KyCParam::TYPE_STRING && type != KyCParam::TYPE_VERSION)
  {
    const unsigned int size = numberSize(type);
    const void* const location = parameter.isExternal() ? parameter.m_value.external : &parameter.m_value;
    moveBig(to, location, size);
    return to + size;
  }
  if (type == KyCParam::TYPE_STRING)
  {
    const KyCString& value = *static_cast<const KyCString*>(parameter.getLocation());
    return putBytes(putVarint(to, value.length()), value.c_str(), value.length());
  }
  const KyCVersion* const location = static_cast<const KyCVersion*>(parameter.getLocation());
  const KyCVersion value = location != nullptr ? *location : KyCVersion();
  to = putVarint(to, value.getMajor());
  to = putVarint(to, value.getMinor());
  to = putVarint(to, value.getMaintenance());
  return putVarint(to, value.getBuild());
}

// Room for one record at the end of the stream; null, with a report, when there is none.
inline unsigned char* KyCBinSerializer::reserve(KyCErrorListPool& pool, std::uint64_t size) noexcept
{
  assert(m_buffer != nullptr);    // called outside a serialization
  if (size > 0xFFFFFFFFu)
  {
    pool.setError(KY_MSG_STREAM_TOO_LARGE, __LINE__, "reserve", nullptr);
    return nullptr;
  }
  if (m_buffer->m_capacity - m_buffer->m_writePosition < size)
  {
    const unsigned int errors = pool.getErrorCount();
    m_buffer->allocateBuffer(pool, static_cast<unsigned int>(size));
    if (pool.getErrorCount() != errors) return nullptr;
  }
  return m_buffer->m_storage + m_buffer->m_writePosition;
}

// The record ends here; it was written into the room that reserve() gave.
inline void KyCBinSerializer::commit(const unsigned char* end) noexcept
{
  m_buffer->m_writePosition = static_cast<unsigned int>(end - m_buffer->m_storage);
}
