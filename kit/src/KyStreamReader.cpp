// KyStreamReader.cpp: written from docs/stream-format.md alone, on purpose: where this reader and the library's own one
// differ, one of the two or the page is wrong.
#include "inventorykit/KyStreamReader.h"

#include <iterator>

#include "composite/KyCParam.h"

namespace KyNInventoryKit
{
namespace
{
constexpr unsigned int s_itemStart = 0x01;
constexpr unsigned int s_itemEnd = 0x02;
constexpr unsigned int s_plainParameter = 0x10;
constexpr unsigned int s_customParameter = 0x20;
constexpr unsigned int s_types[] = {KyCParam::TYPE_INT8,    KyCParam::TYPE_INT16,   KyCParam::TYPE_INT32,
                                    KyCParam::TYPE_LONG64,  KyCParam::TYPE_UINT8,   KyCParam::TYPE_UINT16,
                                    KyCParam::TYPE_UINT32,  KyCParam::TYPE_ULONG64, KyCParam::TYPE_FLOAT32,
                                    KyCParam::TYPE_FLOAT64, KyCParam::TYPE_STRING,  KyCParam::TYPE_VERSION};
constexpr unsigned int s_sizes[] = {1, 2, 4, 8, 1, 2, 4, 8, 4, 8};    // of the numbers among them
constexpr const char* s_typeNames[] = {"Int8",   "Int16",   "Int32",   "Long64",  "UInt8",  "UInt16",
                                       "UInt32", "ULong64", "Float32", "Float64", "String", "Version"};
constexpr std::size_t s_deepest = 4096;
constexpr unsigned int s_longestUnit = 100;
constexpr std::uint64_t s_mostRepeated = 64;    // times the bytes in front

bool isParameter(unsigned int kind)
{
  return ((kind & 0xF0) == s_plainParameter || (kind & 0xF0) == s_customParameter) &&
         (kind & 0x0F) < std::size(s_types);
}
}    // namespace

const char* storedTypeName(unsigned int type)
{
  for (std::size_t n = 0; n < std::size(s_types); ++n)
    if (s_types[n] == type) return s_typeNames[n];
  return "";
}

const StreamField* StreamRecord::find(StreamFieldKind fieldKind) const
{
  for (const StreamField& field : fields)
    if (field.kind == fieldKind) return &field;
  return nullptr;
}

StreamReader::StreamReader(const unsigned char* data, std::size_t size) : m_data(data), m_size(size) {}

bool StreamReader::fail(std::size_t offset, const char* reason)
{
  m_damage.offset = offset;
  m_damage.reason = reason;
  return false;
}

bool StreamReader::next(StreamRecord& record)
{
  record = {};
  record.offset = m_at;
  if (m_isOver || isDamaged()) return false;
  if (m_at == 0) return readVersion(record);
  if (m_at == m_size) return fail(m_at, "the stream ends too early");

  const unsigned int kind = m_data[m_at];
  if (kind != s_itemStart && kind != s_itemEnd && !isParameter(kind))
    return fail(m_at, "the record is of an unknown kind");
  if (m_path.empty() && kind != s_itemStart) return fail(m_at, "a composite is expected");
  if (isParameter(kind) && m_isBehindChild) return fail(m_at, "a parameter stands behind a child");
  if (isParameter(kind) && (kind & 0xF0) != s_customParameter) return fail(m_at, "a parameter is not a custom one");
  if (kind == s_itemStart && m_path.size() == s_deepest)
    return fail(m_at, "composites are nested deeper than 4096 levels");

  ++m_at;
  add(record, StreamFieldKind::RECORD_KIND, record.offset, kind);
  if (kind == s_itemStart) return readItemStart(record);
  return kind == s_itemEnd ? readItemEnd(record) : readParameter(record, kind);
}

bool StreamReader::readVersion(StreamRecord& record)
{
  record.kind = StreamRecord::Kind::STREAM_VERSION;
  if (m_size == 0) return fail(0, "there is nothing to read");
  m_damage.isVersion = m_data[0] != 1;
  if (m_damage.isVersion) return fail(0, "the stream is of another version");
  m_at = 1;
  add(record, StreamFieldKind::STREAM_VERSION, 0, 1);
  return true;
}

bool StreamReader::readItemStart(StreamRecord& record)
{
  record.kind = StreamRecord::Kind::ITEM_START;
  if (!readNumber(record, StreamFieldKind::ITEM_ID, record.id) ||
      !readNumber(record, StreamFieldKind::ITEM_INDEX, record.index) || !readDescription(record))
  {
    return false;
  }
  m_path.push_back({record.id, record.index});
  if (!m_parameterIDs.empty()) m_parameterIDs = {};    // clearing takes time for every bucket of a larger item before
  m_isBehindChild = false;
  return true;
}

bool StreamReader::readItemEnd(StreamRecord& record)
{
  record.kind = StreamRecord::Kind::ITEM_END;
  record.id = m_path.back().id;
  record.index = m_path.back().index;
  m_path.pop_back();
  m_isBehindChild = true;
  m_isOver = m_path.empty();
  return true;
}

bool StreamReader::readParameter(StreamRecord& record, unsigned int kind)
{
  record.kind = StreamRecord::Kind::PARAMETER;
  record.type = s_types[kind & 0x0F];
  if (!readNumber(record, StreamFieldKind::PARAMETER_ID, record.id) || !readDescription(record) || !readValue(record) ||
      !readCustomPart(record))
  {
    return false;
  }
  return m_parameterIDs.insert(record.id).second ||
         fail(record.fields[1].offset, "two parameters of one item have the same ID");
}

void StreamReader::add(StreamRecord& record, StreamFieldKind kind, std::size_t offset, std::uint64_t number)
{
  StreamField field;
  field.kind = kind;
  field.offset = offset;
  field.length = m_at - offset;
  field.number = number;
  if (field.length != 0) record.fields.push_back(field);
}

// Seven bits a byte, the lowest first, in the shortest form.
bool StreamReader::readNumber(StreamRecord& record, StreamFieldKind kind, unsigned int& number)
{
  const std::size_t start = m_at;
  std::uint64_t bits = 0;
  for (unsigned int n = 0;; ++n)
  {
    if (start + n == m_size) return fail(m_size, "the stream ends inside a number");
    const std::uint64_t byte = m_data[start + n];
    bits |= (byte & 0x7F) << (7 * n);
    if (n == 4 && byte > 0x0F) return fail(start, "a number exceeds 32 bits");
    if (byte >= 0x80) continue;
    if (byte == 0 && n > 0) return fail(start, "a number is longer than it needs to be");
    m_at = start + n + 1;
    number = static_cast<unsigned int>(bits);
    add(record, kind, start, bits);
    return true;
  }
}

bool StreamReader::readBytes(StreamRecord& record, StreamFieldKind kind, std::size_t length, std::string_view& bytes)
{
  if (length > m_size - m_at) return fail(m_size, "the stream ends inside a value");
  const std::size_t start = m_at;
  bytes = {reinterpret_cast<const char*>(m_data) + start, length};
  m_at += length;
  add(record, kind, start, 0);
  return true;
}

// The highest byte first.
bool StreamReader::readBig(StreamRecord& record, StreamFieldKind kind, unsigned int size, std::uint64_t& number)
{
  std::string_view bytes;
  if (!readBytes(record, kind, size, bytes)) return false;
  number = 0;
  for (const char byte : bytes)
    number = number << 8 | static_cast<unsigned char>(byte);
  record.fields.back().number = number;
  return true;
}

bool StreamReader::readString(StreamRecord& record, StreamFieldKind lengthKind, StreamFieldKind kind,
                              std::string_view& text)
{
  const std::size_t start = m_at;
  unsigned int length = 0;
  if (!readNumber(record, lengthKind, length)) return false;
  if (length > m_size - m_at) return fail(start, "a text is longer than what is left");
  return readBytes(record, kind, length, text);
}

bool StreamReader::readDescription(StreamRecord& record)
{
  const std::size_t start = m_at;
  unsigned int number = 0;
  if (!readNumber(record, StreamFieldKind::TEXT_NUMBER, number)) return false;
  if (number == 0) return readNewText(record);
  if (number == 1) return true;
  if (number - 2 >= m_texts.size()) return fail(start, "a text is named that was not there before");
  record.description = m_texts[number - 2];
  ++m_repeatedTexts;
  m_repeatedBytes += record.description.size();
  return m_repeatedBytes <= s_mostRepeated * record.offset || fail(start, "long texts are repeated too often");
}

bool StreamReader::readNewText(StreamRecord& record)
{
  std::string_view text;
  if (!readString(record, StreamFieldKind::TEXT_LENGTH, StreamFieldKind::TEXT, text)) return false;
  const std::size_t zero = text.find('\0');
  if (zero != text.npos) return fail(m_at - text.size() + zero, "a description holds a zero byte");
  record.description = text;
  if (!text.empty()) m_texts.push_back(text);
  return true;
}

bool StreamReader::readValue(StreamRecord& record)
{
  const std::size_t start = m_at;
  if (record.type == KyCParam::TYPE_STRING)
    return readString(record, StreamFieldKind::VALUE_LENGTH, StreamFieldKind::VALUE, record.value);
  if (record.type == KyCParam::TYPE_VERSION)
  {
    unsigned int part = 0;
    for (unsigned int n = 0; n < 4; ++n)
      if (!readNumber(record, StreamFieldKind::VERSION_PART, part)) return false;
  }
  else
  {
    std::uint64_t bits = 0;
    const unsigned int typeNumber = m_data[record.offset] & 0x0F;
    if (!readBig(record, StreamFieldKind::VALUE, s_sizes[typeNumber], bits)) return false;
  }
  record.value = {reinterpret_cast<const char*>(m_data) + start, m_at - start};
  return true;
}

bool StreamReader::readCustomPart(StreamRecord& record)
{
  std::uint64_t length = 0;
  std::uint64_t modifiable = 0;
  std::uint64_t relevance = 0;
  if (!readBig(record, StreamFieldKind::UNIT_LENGTH, 1, length)) return false;
  if (length > s_longestUnit) return fail(m_at - 1, "a unit is longer than 100 bytes");
  if (!readBytes(record, StreamFieldKind::UNIT, static_cast<std::size_t>(length), record.unit) ||
      !readBig(record, StreamFieldKind::MODIFIABLE, 1, modifiable) ||
      !readBig(record, StreamFieldKind::RELEVANCE, 4, relevance))
  {
    return false;
  }
  record.modifiable = static_cast<unsigned int>(modifiable);
  record.relevance = static_cast<unsigned int>(relevance);
  return true;
}
}    // namespace KyNInventoryKit
