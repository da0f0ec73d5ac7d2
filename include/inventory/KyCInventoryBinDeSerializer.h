// KyCInventoryBinDeSerializer.h: creates inventory parameters while a stream is read.
#pragma once

#include "composite/KyCBinDeserializer.h"
#include "inventory/KyInventoryTreeApi.h"

class KyCInventoryParameter;

// The deserializer that KyCInventoryItemFactory installs while it reads a tree or a parameter back. The base class reads
// the standard parts; this one makes each custom parameter a KyCInventoryParameter and reads its custom part, which
// KyCInventoryBinSerializer.h lays out.
//
// Owned by its creator; it has no state of its own. Like the buffer it reads from, it serves one thread at a time.
class KY_INVENTORY_API KyCInventoryBinDeSerializer : public KyCBinDeserializer
{
public:
  // Errors:     those of the base class, recorded in the pool; the object must not be used then.
  explicit KyCInventoryBinDeSerializer(KyCErrorListPool& pool);
  ~KyCInventoryBinDeSerializer() override;

  // Creates the object for one custom parameter; the base class reads the value into it afterwards.
  // Called:     by the base class, once for each custom parameter.
  //
  //   id            ID of the parameter, as stored
  //   type          type code, as stored; the parameter adds the custom flag. A flag that ties the parameter to a
  //                 description in memory means nothing in a stream and is dropped.
  //   description   borrowed for the call; null is taken as empty
  //
  // Result:     a KyCInventoryParameter, not modifiable, with an empty unit and the relevance 0; null without memory.
  // Errors:     those of the allocation and of the parameter's constructor, left in the pool for the caller.
  // Ownership:  the parameter is the caller's.
  KyCParam* createCustomParameter(KyCErrorListPool& pool, unsigned int id, unsigned int type,
                                  const char* description) override;

  // Reads the custom part of one parameter from the buffer being read.
  // Called:     by the base class, once for each parameter from createCustomParameter, when its value has been read.
  //
  //   parameter   always a KyCInventoryParameter, see createCustomParameter. Not checked here.
  //
  // Errors:     0x1302000  the stored unit is longer than 100 bytes. Nothing behind its length is read, and the
  //                        parameter keeps its unit, modifiable flag and relevance.
  //             Those of KyCBuffer::readBuffer, left in the pool for the caller. What could not be read counts as an
  //             empty unit, not modifiable and the relevance 0.
  // A stored unit ends at its first NUL byte, if it has one.
  void handleCustomParameter(KyCErrorListPool& pool, KyCParam* parameter) override;

private:
  bool readWhole(KyCErrorListPool& pool, KyCInventoryParameter& target);
  void readFields(KyCErrorListPool& pool, KyCInventoryParameter& target);
};
