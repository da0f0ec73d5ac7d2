// KyCBinDeserializer.h: reads a composite tree from a buffer.
//
//   #include "compositefactory/KyCCompositeFactory.h"
//   KyCBinDeserializer deserializer(pool);
//   KyCCompositeFactory factory(pool);
//   factory.setBinaryDeserializer(pool, &deserializer);
//   KyCComposite* root = factory.deserialize(pool, nullptr, &buffer);    // the caller owns the tree
//
// docs/stream-format.md describes the bytes.
#pragma once

#include <cstdint>

#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"

class KyCTextList;

// The counterpart of KyCBinSerializer: KyCCompositeFactory asks it for one record after the other and builds the tree.
// A derived class creates custom parameters in createCustomParameter and reads what its serializer added to them in
// handleCustomParameter. One that overrides one of the first three operations calls the base.
//
// No byte of a stream is trusted. What cannot be right is reported as 0x01101807 with the offset from the start of the
// stream and ends the reading; memory and time stay in proportion to the bytes that were read.
//
// The caller owns it and may use it for any number of streams, one after the other. Threads: one deserializer is used by
// one thread at a time.
class KY_COMPOSITE_API KyCBinDeserializer
{
public:
  // Errors: "Out of memory." of the pool allocator; the deserializer then refuses every stream (0x01101801).
  explicit KyCBinDeserializer(KyCErrorListPool& pool);
  KyCBinDeserializer(const KyCBinDeserializer&) = delete;
  KyCBinDeserializer& operator=(const KyCBinDeserializer&) = delete;

  // Virtual operations, in slot order. Each of the first three reads one record at the buffer's read position and leaves
  // the position behind it; when it reports, the position stays in front.
  //
  // Requires: called by the factory, when the record of that kind is next.
  // Errors:   0x01101807  the record is damaged
  //           "Out of memory." of the pool allocator
  virtual ~KyCBinDeserializer();
  virtual void CompositeStart(KyCErrorListPool& pool);
  virtual void CompositeEnd(KyCErrorListPool& pool);

  // Creates the parameter too, through createCustomParameter if it is a custom one, sets its value and calls
  // handleCustomParameter for a custom one. A report of that hook does not undo the parameter.
  // Errors: 0x01101808  createCustomParameter gave null and no report
  //         0x01101809  createCustomParameter gave a parameter of another type
  virtual void CompositeParameter(KyCErrorListPool& pool);

  // A new parameter with this id, type code (one of the twelve KyCParam::TYPE_...) and description; the base makes a
  // KyCParam with FLAG_CUSTOM.
  //
  //   description  never null; holds until the call ends
  //
  // Result:    from the heap, without an owner; null on failure.
  // Called:    once for each custom parameter, when its standard part was found to be sound and before its value is set.
  //            It may not use the buffer. A report in the pool ends the reading, and the result is deleted.
  // Ownership: the deserializer takes the result.
  virtual KyCParam* createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                          const char* description);

  // Reads from m_buffer what the serializer's hook wrote; the base reads nothing.
  // Called: once for each custom parameter, with its value set and the read position right behind its standard part. It
  // has to read all that was written. A report in the pool ends the reading; the parameter keeps what it has then.
  virtual void handleCustomParameter(KyCErrorListPool& pool, KyCParam* parameter);

protected:
  KyCBuffer* m_buffer = nullptr;    // being read; null outside a deserialization

  // For hooks that read many small fields at once: the bytes of m_buffer from its read position on, how many there are,
  // and the step behind those that were used; not more than there are.
  const unsigned char* getUnread() const noexcept { return m_buffer->getStorage() + m_buffer->getReadPosition(); }
  unsigned int getUnreadCount() const noexcept { return m_buffer->getWritePosition() - m_buffer->getReadPosition(); }
  void advance(unsigned int size) noexcept { m_buffer->m_readPosition += size; }

  // Set by a derived class whose parameters are of a class of its own: a parameter that is no custom one is damage then,
  // since only custom ones come from createCustomParameter.
  bool m_customParametersOnly = false;

private:
  friend class KyCCompositeFactory;
  struct TCursor;
  struct TValueIn;

  // What the factory needs while it drives: the kind of the next record, and what the last record said.
  enum class TRecord
  {
    START,
    PARAMETER,
    END,
    DAMAGED
  };

  // Opens the stream at the buffer's read position, whose first record has to be of the given kind; false, with a report,
  // when that is not possible.
  bool begin(KyCErrorListPool& pool, KyCBuffer* buffer, TRecord first);
  TRecord nextRecord(KyCErrorListPool& pool);
  void end() noexcept;
  KyCParam* takeParameter() noexcept
  {
    KyCParam* const parameter = m_parameter;
    m_parameter = nullptr;
    return parameter;
  }
  static bool hasOwner(const KyCParam& parameter) noexcept { return parameter.m_parent != nullptr; }

  TRecord classify(TCursor& cursor) const noexcept;
  TCursor openRecord() const noexcept;
  void closeRecord(const TCursor& cursor) noexcept;
  void reportDamage(KyCErrorListPool& pool, const TCursor& cursor, const char* function) const;

  bool readText(KyCErrorListPool& pool, TCursor& cursor, const char*& text);
  bool readNewText(KyCErrorListPool& pool, TCursor& cursor, const char*& text);
  static bool readValue(TCursor& cursor, unsigned int type, TValueIn& value) noexcept;
  KyCParam* makeParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type, bool custom,
                          const char* description);
  static bool setValue(KyCErrorListPool& pool, KyCParam& parameter, const TValueIn& value);

  KyCTextList* m_texts = nullptr;       // texts read so far, by number; null: not constructed
  std::uint64_t m_repeatedBytes = 0;    // length of all texts named by number
  unsigned int m_streamStart = 0;       // position of the stream in the buffer
  unsigned int m_depth = 0;             // levels that are open
  TRecord m_first = TRecord::START;     // what the stream has to begin with
  bool m_childrenBegun = false;         // the open node has children: no parameter may follow
  unsigned int m_classId = 0;           // of the last CompositeStart
  unsigned int m_unitId = 0;
  const char* m_description = "";     // the same; holds until the next record is read
  KyCParam* m_parameter = nullptr;    // of the last CompositeParameter, until the factory takes it
};
