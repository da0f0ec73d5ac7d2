// KyCBinSerializer.h: writes a composite tree into a buffer.
//
//   #include "compositefactory/KyCCompositeFactory.h"
//   KyCBinSerializer serializer(pool);
//   KyCCompositeFactory factory(pool);
//   factory.setBinarySerializer(pool, &serializer);
//   factory.serialize(pool, root, 0, &buffer);    // the stream stands at the end of buffer
//
// docs/stream-format.md describes the bytes.
#pragma once

#include <cstdint>

#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "composite/KyCParam.h"

class KyCTextTable;

// The visitor that KyCCompositeFactory calls for every node and parameter of a tree, in this order for each node:
// CompositeStart, CompositeParameter for each parameter, all of that for each child, CompositeEnd. A derived class adds a
// part of its own to custom parameters (KyCParam::FLAG_CUSTOM) in handleCustomParameter. One that overrides one of the
// first three calls the base.
//
// The caller owns it and may use it for any number of streams, one after the other. The trees and parameters given are
// only read. Threads: one serializer is used by one thread at a time.
//
// Errors of every operation that writes, besides those named with it: "Out of memory." of the pool allocator; 0x01101804
// or 0x01100001 when the stream or the buffer would exceed 4294967295 bytes. The operation that reports has written
// nothing.
class KY_COMPOSITE_API KyCBinSerializer
{
public:
  // Errors: "Out of memory." of the pool allocator; the serializer then refuses every stream (0x01101800).
  explicit KyCBinSerializer(KyCErrorListPool& pool);
  KyCBinSerializer(const KyCBinSerializer&) = delete;
  KyCBinSerializer& operator=(const KyCBinSerializer&) = delete;

  // Virtual operations, in slot order. Each writes one record at the end of the buffer.
  //
  // Requires: a serialization is going on; the argument is not null.
  virtual ~KyCBinSerializer();

  // Class id, unit id and description of a node.
  // Errors: 0x01101802  this would be level 4097 of the tree
  //         0x0110180A  the node has two parameters of one id, by an assignment of KyCParam: it could not be read back
  virtual void CompositeStart(KyCErrorListPool& pool, const KyCComposite* composite);

  // The end of the node that was started last and has not ended yet.
  virtual void CompositeEnd(KyCErrorListPool& pool, const KyCComposite* composite);

  // Id, type, description and value of a parameter; then handleCustomParameter, if it is a custom one.
  // Errors: 0x01101803  the type code is none of the twelve
  virtual void CompositeParameter(KyCErrorListPool& pool, const KyCParam* parameter);

  // Appends to getBuffer() what a custom parameter has besides its standard part; the base appends nothing.
  // Called: once for each custom parameter, right behind its standard part. It may not take bytes away from the buffer
  // nor store anything else with this serializer. A report in the pool ends the serialization.
  virtual void handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter);

  // The buffer being written; null outside a serialization.
  KyCBuffer* getBuffer() const noexcept { return m_buffer; }

protected:
  // The short way of a hook that appends a few bytes: the place for them, when the buffer has that much room already; null
  // when it has to grow, which is for the buffer's own operations. What was written there counts once the write position
  // is advanced.
  unsigned char* roomFor(unsigned int size) const noexcept
  {
    return m_buffer->m_capacity - m_buffer->m_writePosition >= size ? m_buffer->m_storage + m_buffer->m_writePosition
                                                                    : nullptr;
  }
  void advanceBy(unsigned int size) noexcept { m_buffer->m_writePosition += size; }

private:
  friend class KyCCompositeFactory;
  struct TTextOut;

  // Opens a stream at the end of the buffer and writes its version; false, with a report, when that is not possible.
  bool begin(KyCErrorListPool& pool, KyCBuffer* buffer);
  void end() noexcept;
  static const KyCParam* nextParameter(const KyCParam* parameter) noexcept { return parameter->m_next; }

  static bool checkIds(KyCErrorListPool& pool, const KyCComposite* composite) noexcept;
  TTextOut lookUp(const char* text, bool isLasting) noexcept;
  bool remember(KyCErrorListPool& pool, const TTextOut& description, const unsigned char* end) noexcept;
  static std::uint64_t valueRoom(const KyCParam& parameter) noexcept;
  static unsigned char* putValue(unsigned char* to, const KyCParam& parameter) noexcept;
  unsigned char* reserve(KyCErrorListPool& pool, std::uint64_t size) noexcept;
  void commit(const unsigned char* end) noexcept;

  KyCBuffer* m_buffer = nullptr;
  KyCTextTable* m_texts = nullptr;      // texts written so far, with their numbers; null: not constructed
  std::uint64_t m_repeatedBytes = 0;    // length of all texts written as a number
  unsigned int m_streamStart = 0;       // position of the stream in the buffer
  unsigned int m_depth = 0;             // levels that are open
};
