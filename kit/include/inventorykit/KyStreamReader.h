// KyStreamReader.h: a second reader of stored trees, record by record and byte by byte.
//
//   KyNInventoryKit::StreamReader reader(data, size);
//   KyNInventoryKit::StreamRecord record;
//   while (reader.next(record))
//     for (const KyNInventoryKit::StreamField& field : record.fields) ...    // offset, length, meaning
//   if (reader.isDamaged()) ...                                              // where and why
//
// It is written from docs/stream-format.md and shares nothing with the library's own reader, so that one can tell on the
// other. It makes no tree: it says which bytes mean what. Both take and refuse the same streams.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
enum class StreamFieldKind
{
  STREAM_VERSION,
  RECORD_KIND,
  ITEM_ID,
  ITEM_INDEX,
  PARAMETER_ID,
  TEXT_NUMBER,    // of a description: 0 new, 1 empty, or one that was there before
  TEXT_LENGTH,
  TEXT,            // the bytes of a new description
  VALUE,           // of a number; the bytes of a string
  VALUE_LENGTH,    // of a string
  VERSION_PART,    // one of four
  UNIT_LENGTH,
  UNIT,
  MODIFIABLE,
  RELEVANCE
};

// The name of a value type ("Int8" ... "Version"); "" for a code that is none of the twelve.
KY_INVENTORYKIT_API const char* storedTypeName(unsigned int type);

// Some bytes of the stream that belong together; never none.
struct StreamField
{
  StreamFieldKind kind = StreamFieldKind::RECORD_KIND;
  std::size_t offset = 0;    // from the first byte of the stream
  std::size_t length = 0;
  std::uint64_t number = 0;    // as stored: two's complement and floating-point bits stay bits; 0 for texts
};

// One record, with the fields that it was read as.
struct KY_INVENTORYKIT_API StreamRecord
{
  enum class Kind
  {
    STREAM_VERSION,
    ITEM_START,
    PARAMETER,
    ITEM_END
  };

  Kind kind = Kind::STREAM_VERSION;
  std::size_t offset = 0;
  std::vector<StreamField> fields;    // from `offset` on, without gaps

  // Of an item or a parameter; the texts are parts of the stream.
  unsigned int id = 0;
  unsigned int index = 0;    // of an item
  std::string_view description;
  unsigned int type = 0;     // of a parameter, a code such as KyCParam::TYPE_INT32
  std::string_view value;    // as stored; of a string without its length
  std::string_view unit;
  unsigned int modifiable = 0;    // the byte as stored
  unsigned int relevance = 0;

  // What was read of a record may end before one of these.
  const StreamField* find(StreamFieldKind fieldKind) const;
};

// What is wrong with a stream, and where.
struct StreamDamage
{
  std::size_t offset = 0;          // from the first byte of the stream
  const char* reason = nullptr;    // "the stream ends inside a value"; null: none
  bool isVersion = false;          // the stream is of another version
};

// Reads one stream from its start. The bytes are borrowed and have to stay; one thread at a time.
//
// Cost:       linear in the bytes read; memory in proportion to the nesting, the texts and the largest item.
class KY_INVENTORYKIT_API StreamReader
{
public:
  struct Element
  {
    unsigned int id;
    unsigned int index;
  };

  // data is borrowed, for as long as the reader and what it gives are used; size in bytes, 0 is a damaged stream.
  StreamReader(const unsigned char* data, std::size_t size);

  // Reads the next record: the version first, the end of the root item last.
  //
  // Result:     false when the tree is over, or is damaged; in the latter case the record holds the fields that could
  //             be read of it.
  bool next(StreamRecord& record);

  bool isOver() const { return m_isOver; }    // the root item has ended
  bool isDamaged() const { return m_damage.reason != nullptr; }
  const StreamDamage& damage() const { return m_damage; }

  std::size_t position() const { return m_at; }                  // bytes that are read, those of a damaged record too
  const std::vector<Element>& path() const { return m_path; }    // items that have started and not ended, root first
  // Descriptions so far that were written out, and that were named by their number.
  std::size_t countOfNewTexts() const { return m_texts.size(); }
  std::size_t countOfRepeatedTexts() const { return m_repeatedTexts; }

private:
  bool fail(std::size_t offset, const char* reason);
  bool readVersion(StreamRecord& record);
  bool readItemStart(StreamRecord& record);
  bool readItemEnd(StreamRecord& record);
  bool readParameter(StreamRecord& record, unsigned int kind);
  bool readNumber(StreamRecord& record, StreamFieldKind kind, unsigned int& number);
  bool readBytes(StreamRecord& record, StreamFieldKind kind, std::size_t length, std::string_view& bytes);
  bool readBig(StreamRecord& record, StreamFieldKind kind, unsigned int size, std::uint64_t& number);
  bool readString(StreamRecord& record, StreamFieldKind lengthKind, StreamFieldKind kind, std::string_view& text);
  bool readDescription(StreamRecord& record);
  bool readNewText(StreamRecord& record);
  bool readValue(StreamRecord& record);
  bool readCustomPart(StreamRecord& record);
  void add(StreamRecord& record, StreamFieldKind kind, std::size_t offset, std::uint64_t number);

  const unsigned char* m_data;
  std::size_t m_size;
  std::size_t m_at = 0;
  std::vector<Element> m_path;
  std::vector<std::string_view> m_texts;
  std::uint64_t m_repeatedBytes = 0;
  std::size_t m_repeatedTexts = 0;
  std::unordered_set<unsigned int> m_parameterIDs;    // of the item that started last
  bool m_isBehindChild = false;
  bool m_isOver = false;
  StreamDamage m_damage;
};
}    // namespace KyNInventoryKit
