#include "inventorykit/KyInspect.h"

#include <charconv>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "KyCheckMessages.h"
#include "KyJsonValue.h"
#include "KyKitMessages.h"
#include "KyPathText.h"
#include "KySectionLayout.h"
#include "KySha256.h"
#include "inventorykit/KyStreamReader.h"

namespace KyNInventoryKit
{
namespace
{
std::string nameOfID(unsigned int id) { return KyCInventoryAddress(id).toString().c_str(); }

bool findLayout(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                KySectionLayout& layout)
{
  if (bytes.size() > 0xFFFFFFFFu)
  {
    pool.setError(KY_CHECK_MSG_TOO_LARGE, __LINE__, "inspectBytes", "%s", name.c_str());
    return false;
  }
  layout = at == SectionEnd::START ? kyLayoutAtStart(bytes)
           : at == SectionEnd::END ? kyLayoutAtEnd(bytes)
                                   : kyLayoutOf(bytes);
  if (layout.isThere) return true;
  if (at == SectionEnd::READ)
    pool.setError(KY_KIT_MSG_NO_SECTION, __LINE__, "inspectBytes", "%s", name.c_str());
  else
    pool.setError(KY_CHECK_MSG_NO_SECTION_THERE, __LINE__, "inspectBytes", "%s%s", name.c_str(),
                  at == SectionEnd::START ? "start" : "end");
  return false;
}

const unsigned char* dataOf(const std::string& bytes, const KySectionLayout& layout)
{
  return reinterpret_cast<const unsigned char*>(bytes.data()) + layout.dataBegin;
}

SectionRecordFields fieldsOf(const KySectionRecord& record)
{
  if (!record.isThere) return {};
  return {true, record.begin, record.version, record.headerSize, record.dataSize, record.trailerSize};
}

// --- Counts -------------------------------------------------------------------------------------------------------------

class Counter
{
public:
  explicit Counter(Inspection& inspection) : m_inspection(inspection) {}

  void count(const std::string& bytes, const KySectionLayout& layout)
  {
    const std::size_t size = layout.dataEnd - layout.dataBegin;
    if (size == 0) return;
    StreamReader reader(dataOf(bytes, layout), size);
    StreamRecord record;
    while (reader.next(record))
      count(record, reader);
    m_inspection.streamVersion = *dataOf(bytes, layout);
    m_inspection.treeSize = reader.position();
    m_inspection.behindTree = size - reader.position();
    m_inspection.storedTexts = reader.countOfNewTexts();
    m_inspection.repeatedTexts = reader.countOfRepeatedTexts();
    m_inspection.distinctTexts = m_texts.size();
    if (reader.isDamaged())
    {
      m_inspection.damage = reader.damage().reason;
      m_inspection.damageOffset = layout.dataBegin + reader.damage().offset;
    }
    nameCounts();
  }

private:
  void count(const StreamRecord& record, const StreamReader& reader)
  {
    if (record.kind == StreamRecord::Kind::ITEM_START)
    {
      ++m_inspection.items;
      ++m_ids[record.id].items;
      if (reader.path().size() > m_inspection.depth) m_inspection.depth = reader.path().size();
    }
    else if (record.kind == StreamRecord::Kind::PARAMETER)
    {
      ++m_inspection.parameters;
      ++m_ids[record.id].parameters;
      ++m_types[record.type];
    }
    if (record.find(StreamFieldKind::TEXT) != nullptr) m_texts.insert(record.description);
  }

  void nameCounts()
  {
    for (const auto& [id, idCount] : m_ids)
    {
      Inspection::Count& named = m_inspection.countOfID[nameOfID(id)];
      named.items += idCount.items;
      named.parameters += idCount.parameters;
    }
    for (const auto& [type, typeCount] : m_types)
      m_inspection.countOfType[storedTypeName(type)] = typeCount;
  }

  Inspection& m_inspection;
  std::unordered_map<unsigned int, Inspection::Count> m_ids;
  std::unordered_map<unsigned int, std::uint64_t> m_types;
  std::unordered_set<std::string_view> m_texts;
};

// --- The meaning of bytes -----------------------------------------------------------------------------------------------

constexpr std::size_t s_longestText = 60;
constexpr std::size_t s_longestAddress = 120;

// In quotes, printable, in one line.
std::string quoted(std::string_view text)
{
  std::size_t length = text.size() < s_longestText ? text.size() : s_longestText;
  while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    --length;
  const std::string_view shown = text.substr(0, length);
  const bool isText = isUtf8(shown);
  std::string result = "\"";
  for (std::size_t n = 0; n < shown.size(); ++n)
  {
    const unsigned int byte = static_cast<unsigned char>(shown[n]);
    const bool isC1 = byte == 0xC2 && n + 1 < shown.size() && (static_cast<unsigned char>(shown[n + 1]) & 0xE0) == 0x80;
    const bool isBehindC1 = n > 0 && shown[n - 1] == '\xC2' && (byte & 0xE0) == 0x80;
    if (byte == '"' || byte == '\\') result += '\\';
    if (byte >= 0x20 && byte != 0x7F && !isC1 && !isBehindC1 && (byte < 0x80 || isText))
    {
      result += shown[n];
      continue;
    }
    result += "\\x";
    result += "0123456789ABCDEF"[byte >> 4];
    result += "0123456789ABCDEF"[byte & 0xF];
  }
  return result + "\"" + (length < text.size() ? "..." : "");
}

// The bits go through memory: a floating-point register may change a signalling NaN.
template <typename T, typename Bits>
std::string floatText(Bits bits)
{
  T value;
  static_assert(sizeof(value) == sizeof(bits), "the same bits");
  std::memcpy(&value, &bits, sizeof(value));
  if (value != value) return "nan";
  char text[64];
  const auto result = std::to_chars(text, text + sizeof(text), value);
  return std::string(text, result.ptr);
}

// The value of a number, as its type has it.
std::string numberText(unsigned int type, std::uint64_t bits)
{
  switch (type)
  {
    case KyCParam::TYPE_INT8:
      return std::to_string(static_cast<int>(static_cast<std::int8_t>(bits)));
    case KyCParam::TYPE_INT16:
      return std::to_string(static_cast<std::int16_t>(bits));
    case KyCParam::TYPE_INT32:
      return std::to_string(static_cast<std::int32_t>(bits));
    case KyCParam::TYPE_LONG64:
      return std::to_string(static_cast<std::int64_t>(bits));
    case KyCParam::TYPE_FLOAT32:
      return floatText<float>(static_cast<std::uint32_t>(bits));
    case KyCParam::TYPE_FLOAT64:
      return floatText<double>(bits);
    default:
      return std::to_string(bits);
  }
}

class Annotator
{
public:
  Annotator(const std::string& bytes, const KySectionLayout& layout, const std::function<bool(const ByteNote&)>& sink)
      : m_bytes(bytes), m_layout(layout), m_sink(sink), m_at(layout.begin)
  {
  }

  void run()
  {
    annotateHeader();
    annotateStream();
    annotateTrailer();
  }

private:
  // Notes the bytes from the last note to `end`; nothing when there are none.
  void note(std::size_t end, std::string meaning, std::string address)
  {
    if (m_isStopped || end <= m_at) return;
    ByteNote note;
    note.offset = m_at;
    note.bytes = std::string_view(m_bytes).substr(m_at, end - m_at);
    note.meaning = std::move(meaning);
    note.address = std::move(address);
    m_at = end;
    m_isStopped = !m_sink(note);
  }
  void noteNext(std::size_t length, std::string meaning) { note(m_at + length, std::move(meaning), ""); }

  void annotateHeader()
  {
    const KySectionRecord& header = m_layout.header;
    if (!header.isThere || header.begin != m_layout.begin || m_layout.dataBegin - m_layout.begin < s_recordSize) return;
    noteMarks("header");
    noteNext(4, "header: version " + std::to_string(header.version));
    noteSizes("header", header);
    noteNext(4, "header: trailer size " + std::to_string(header.trailerSize));
    note(m_layout.dataBegin, "header: not read", "");
  }

  void annotateTrailer()
  {
    const KySectionRecord& trailer = m_layout.trailer;
    if (!trailer.isThere || m_layout.end - m_layout.dataEnd < s_recordSize) return;
    note(trailer.begin, "trailer: not read", "");
    noteSizes("trailer", trailer);
    noteNext(4, "trailer: trailer size " + std::to_string(trailer.trailerSize));
    noteNext(4, "trailer: version " + std::to_string(trailer.version));
    noteMarks("trailer");
  }

  void noteMarks(const std::string& record)
  {
    noteNext(4, record + ": mark INVE");
    noteNext(4, record + ": mark 0x554B59AA");
  }
  void noteSizes(const std::string& record, const KySectionRecord& fields)
  {
    noteNext(4, record + ": header size " + std::to_string(fields.headerSize));
    noteNext(4, record + ": data size " + std::to_string(fields.dataSize));
  }

  void annotateStream()
  {
    const std::size_t size = m_layout.dataEnd - m_layout.dataBegin;
    if (size == 0) return;
    StreamReader reader(dataOf(m_bytes, m_layout), size);
    StreamRecord record;
    while (!m_isStopped && reader.next(record))
      annotate(record);
    if (reader.isDamaged()) annotateDamage(record, reader.damage());
    note(m_layout.dataEnd, "not read: behind the stored tree", "");
  }

  void annotateDamage(const StreamRecord& record, const StreamDamage& damage)
  {
    if (!record.fields.empty()) annotateFields(record, placeOf(record));
    note(m_layout.dataEnd, std::string("not read: damaged, ") + damage.reason, "");
  }

  void annotate(const StreamRecord& record)
  {
    if (record.kind == StreamRecord::Kind::ITEM_START) m_path.enter(record.id, record.index);
    annotateFields(record, placeOf(record));
    if (record.kind == StreamRecord::Kind::ITEM_END) m_path.leave();
  }

  std::string placeOf(const StreamRecord& record) const
  {
    if (record.kind == StreamRecord::Kind::STREAM_VERSION || m_path.level() == 0) return {};
    if (record.kind != StreamRecord::Kind::PARAMETER) return m_path.item(s_longestAddress);
    const bool hasID = record.find(StreamFieldKind::PARAMETER_ID) != nullptr;
    return hasID ? m_path.parameter(record.id, s_longestAddress) : m_path.item(s_longestAddress);
  }

  void annotateFields(const StreamRecord& record, const std::string& address)
  {
    m_part = 0;
    for (const StreamField& field : record.fields)
      note(m_layout.dataBegin + field.offset + field.length, meaningOf(record, field), address);
  }

  std::string meaningOf(const StreamRecord& record, const StreamField& field)
  {
    static const char* const versionParts[] = {"major", "minor", "maintenance", "build"};
    const std::string number = std::to_string(field.number);
    switch (field.kind)
    {
      case StreamFieldKind::STREAM_VERSION:
        return "stream: version " + number;
      case StreamFieldKind::RECORD_KIND:
        return kindText(record);
      case StreamFieldKind::ITEM_ID:
      case StreamFieldKind::PARAMETER_ID:
        return "ID " + nameOfID(static_cast<unsigned int>(field.number));
      case StreamFieldKind::ITEM_INDEX:
        return "index " + number;
      case StreamFieldKind::TEXT_NUMBER:
        if (field.number == 0) return "description: a new text";
        return field.number == 1 ? "description: empty"
                                 : "description: text " + number + ", " + quoted(record.description);
      case StreamFieldKind::TEXT_LENGTH:
        return "description: length " + number;
      case StreamFieldKind::TEXT:
        return "description: " + quoted(textAt(field));
      case StreamFieldKind::VALUE_LENGTH:
        return "value: length " + number;
      case StreamFieldKind::VALUE:
        return "value: " +
               (record.type == KyCParam::TYPE_STRING ? quoted(textAt(field)) : numberText(record.type, field.number));
      case StreamFieldKind::VERSION_PART:
        return std::string("value: ") + versionParts[m_part++ & 3] + " " + number;
      case StreamFieldKind::UNIT_LENGTH:
        return "unit: length " + number;
      case StreamFieldKind::UNIT:
        return "unit: " + quoted(textAt(field));
      case StreamFieldKind::MODIFIABLE:
        return field.number != 0 ? "modifiable" : "not modifiable";
      case StreamFieldKind::RELEVANCE:
        return "relevance " + number;
    }
    return {};
  }

  static std::string kindText(const StreamRecord& record)
  {
    if (record.kind == StreamRecord::Kind::ITEM_START) return "an item starts";
    if (record.kind == StreamRecord::Kind::ITEM_END) return "the item ends";
    return std::string("a parameter of type ") + storedTypeName(record.type);
  }

  std::string_view textAt(const StreamField& field) const
  {
    return std::string_view(m_bytes).substr(m_layout.dataBegin + field.offset, field.length);
  }

  const std::string& m_bytes;
  const KySectionLayout& m_layout;
  const std::function<bool(const ByteNote&)>& m_sink;
  std::size_t m_at;    // behind the last note
  KyPathText m_path;
  unsigned int m_part = 0;    // of a version
  bool m_isStopped = false;
};

Json recordAsJson(const SectionRecordFields& record)
{
  if (!record.isThere) return nullptr;
  Json json = Json::object();
  json["offset"] = record.offset;
  json["version"] = record.version;
  json["headerSize"] = record.headerSize;
  json["dataSize"] = record.dataSize;
  json["trailerSize"] = record.trailerSize;
  return json;
}

Json sectionAsJson(const Inspection& inspection)
{
  Json json = Json::object();
  json["begin"] = inspection.begin;
  json["end"] = inspection.end;
  json["dataBegin"] = inspection.dataBegin;
  json["dataEnd"] = inspection.dataEnd;
  json["isAtEnd"] = inspection.isAtEnd;
  json["sha256"] = inspection.sha256;
  return json;
}

Json treeAsJson(const Inspection& inspection)
{
  Json json = Json::object();
  json["version"] = inspection.streamVersion;
  json["size"] = inspection.treeSize;
  json["behind"] = inspection.behindTree;
  json["items"] = inspection.items;
  json["parameters"] = inspection.parameters;
  json["depth"] = inspection.depth;
  json["storedTexts"] = inspection.storedTexts;
  json["repeatedTexts"] = inspection.repeatedTexts;
  json["distinctTexts"] = inspection.distinctTexts;
  json["countOfType"] = Json::object();
  for (const auto& [type, count] : inspection.countOfType)
    json["countOfType"][type] = count;
  json["countOfID"] = Json::object();
  for (const auto& [id, count] : inspection.countOfID)
  {
    Json& counts = json["countOfID"][id];
    counts["items"] = count.items;
    counts["parameters"] = count.parameters;
  }
  return json;
}
}    // namespace

bool inspectBytes(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                  Inspection& inspection)
{
  inspection = {};
  KySectionLayout layout;
  if (!findLayout(pool, bytes, name, at, layout)) return false;
  inspection.name = name;
  inspection.fileSize = bytes.size();
  inspection.begin = layout.begin;
  inspection.end = layout.end;
  inspection.dataBegin = layout.dataBegin;
  inspection.dataEnd = layout.dataEnd;
  inspection.isAtEnd = layout.isAtEnd;
  inspection.header = fieldsOf(layout.header);
  inspection.trailer = fieldsOf(layout.trailer);
  inspection.sha256 = kySha256(std::string_view(bytes).substr(layout.begin, layout.end - layout.begin));
  Counter(inspection).count(bytes, layout);
  if (inspection.damage.empty() && !layout.isReadable)
  {
    inspection.damage = std::string("the ") + (layout.isAtEnd ? "trailer" : "header") + " cannot be used";
    inspection.damageOffset = layout.leading().begin;
  }
  return true;
}

bool inspectFile(KyCErrorListPool& pool, const std::string& path, SectionEnd at, Inspection& inspection)
{
  inspection = {};
  std::string bytes;
  return kyReadSmallFile(pool, path, bytes) &&
         inspectBytes(pool, bytes, path == "-" ? "standard input" : path, at, inspection);
}

bool annotateBytes(KyCErrorListPool& pool, const std::string& bytes, const std::string& name, SectionEnd at,
                   const std::function<bool(const ByteNote&)>& sink)
{
  KySectionLayout layout;
  if (!findLayout(pool, bytes, name, at, layout)) return false;
  Annotator(bytes, layout, sink).run();
  return true;
}

std::string inspectionAsJson(const Inspection& inspection)
{
  Json json = Json::object();
  json["file"] = jsonOfText(inspection.name);
  json["fileSize"] = inspection.fileSize;
  json["section"] = sectionAsJson(inspection);
  json["header"] = recordAsJson(inspection.header);
  json["trailer"] = recordAsJson(inspection.trailer);
  json["tree"] = treeAsJson(inspection);
  json["damage"] = nullptr;
  if (!inspection.damage.empty())
  {
    Json& damage = json["damage"];
    damage["offset"] = inspection.damageOffset;
    damage["reason"] = inspection.damage;
  }
  return dumped(json, 2) + "\n";
}

std::string noteAsJson(const ByteNote& note)
{
  std::string hex;
  hex.reserve(2 * note.bytes.size());
  for (const char c : note.bytes)
  {
    const unsigned int byte = static_cast<unsigned char>(c);
    hex += "0123456789ABCDEF"[byte >> 4];
    hex += "0123456789ABCDEF"[byte & 0xF];
  }
  Json json = Json::object();
  json["offset"] = note.offset;
  json["length"] = note.bytes.size();
  json["bytes"] = std::move(hex);
  json["meaning"] = note.meaning;
  json["address"] = note.address;
  return dumped(json) + "\n";
}
}    // namespace KyNInventoryKit
