// KyCInventoryBinSerializer.h: writes what an inventory parameter has beyond a base parameter.
#pragma once

#include "composite/KyCBinSerializer.h"
#include "inventory/KyInventoryTreeApi.h"

class KyCInventoryParameter;

// The serializer that KyCInventoryItemFactory installs while it stores a tree or a parameter. The base class writes the
// standard part of every composite and parameter; this one adds the custom part behind each parameter's standard part:
//
//   1 byte     L, length of the stored unit in bytes: min(length of the unit mod 256, 100)
//   L bytes    the first L bytes of the unit, without a terminator
//   1 byte     0xFF when the parameter is modifiable, else 0x00
//   4 bytes    relevance, big-endian
//
// Kept on purpose: the length is reduced to 8 bits before it is limited to 100, so a unit of 256 bytes is stored as empty
// and one of 300 bytes as its first 44.
//
// Owned by its creator; it has no state of its own. Like the buffer it writes to, it serves one thread at a time.
class KY_INVENTORY_API KyCInventoryBinSerializer : public KyCBinSerializer
{
public:
  // Errors:     those of the base class, recorded in the pool; the object must not be used then.
  explicit KyCInventoryBinSerializer(KyCErrorListPool& pool);
  ~KyCInventoryBinSerializer() override;

  // Appends the custom part of one parameter to getBuffer().
  // Called:     by the base class, once behind the standard part of each custom parameter.
  //
  //   parameter   always a KyCInventoryParameter: no other carries the custom flag. Not checked here.
  //
  // Errors:     those of KyCBuffer::writeBuffer, left in the pool for the caller.
  void handleCustomParameter(KyCErrorListPool& pool, const KyCParam* parameter) override;

private:
  void writeFields(KyCErrorListPool& pool, const KyCInventoryParameter& source);
};
