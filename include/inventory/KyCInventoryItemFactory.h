// KyCInventoryItemFactory.h: turns inventory trees and parameters into bytes and back.
//
//   KyCInventoryItemFactory factory(pool);
//   factory.serialize(pool, &buffer, &root);
//
// The bytes have no frame: they do not say where they end or that they are an inventory tree. KyCInventoryData.h puts a
// header before them and a trailer behind them and is what most programs use.
#pragma once

#include "compositefactory/KyCCompositeFactory.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyCInventoryParameter.h"
#include "inventory/KyInventoryTreeApi.h"

// A base factory whose nodes are KyCInventoryItem objects, with the four entry points in inventory terms.
//
// Owned by its creator, usually on the stack for one job; it may serve any number of calls, one after the other. Two
// threads need two factories, two pools and two buffers; they may store the same tree while nobody changes it.
//
// In the methods below, "the count grew" means that the step recorded at least one error in the pool; its own reports
// stay in front of the one added here. The four entry points install a serializer or deserializer of their own for the
// call and leave none installed. Only where an exception of an own createComposite passes through, the factory still
// names the one that is gone: call one of the four next, or install another, before using the base class directly.
class KY_INVENTORY_API KyCInventoryItemFactory : public KyCCompositeFactory
{
public:
  // Errors:     those of the base class, recorded in the pool; the object must not be used then.
  explicit KyCInventoryItemFactory(KyCErrorListPool& pool);
  ~KyCInventoryItemFactory() override;

  // Creates the item for one node.
  // Called:     by the base class, for each node that it reads; anybody may call it.
  //
  //   classId, unitId   ID of the item and its index
  //   description       copied, unless it is the registered name of the ID; null is taken as empty
  //   parent            where the item is attached, behind its last child; null for a root
  //
  // Result:     the item; null on failure.
  // Errors:     0x1302806  the parent refuses the item; %1 is the result of KyCComposite::attach. That is -1 when there
  //                        was no memory for the item (behind the allocator's own report).
  //             Those of the item's constructor, left in the pool for the caller.
  // On failure: a refused item is deleted, except after -3: it hangs below another node then, which owns it.
  // Ownership:  the parent's; a root is the caller's.
  KyCComposite* createComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                const char* description, KyCComposite* parent) override;

  // Appends the tree below and including root to the buffer.
  //
  //   buffer      receives the bytes at its write position
  //   root        null writes nothing and is no error
  //
  // Errors:     0x1302802  the serializer cannot be created (the count grew); nothing is written
  //             0x1302803  the count grew while writing; what was written stays in the buffer
  // Cost:       linear in the size of the tree.
  void serialize(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCInventoryItem* root);

  // Reads one tree from the buffer, from its read position on. Bytes behind the tree are left unread.
  //
  //   root        receives the new tree; what it pointed to is neither used nor deleted
  //
  // Errors:     0x1302802  the deserializer cannot be created (the count grew); root is untouched.
  //                        Kept on purpose: the text names KyCInventoryBinSerializer, as when storing.
  //             0x1302801  the count grew while reading, or the stream holds parameters that are not inventory
  //                        parameters (those are dropped); root holds what was read before, or null
  // Ownership:  root is the caller's to delete, after an error too.
  // Cost:       linear in the size of the stream; never memory out of proportion to it.
  void deserialize(KyCErrorListPool& pool, KyCInventoryItem*& root, KyCBuffer* buffer);

  // Appends one parameter to the buffer, without the item it belongs to.
  //
  // Errors:     0x1302802  the serializer cannot be created (the count grew); nothing is written
  //             0x1302804  the count grew while writing; what was written stays in the buffer
  void serializeInventoryParameter(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCInventoryParameter* parameter);

  // Reads one parameter from the buffer, from its read position on.
  //
  //   parameter   receives the new parameter, which has no owner; what it pointed to is neither used nor deleted
  //
  // Errors:     0x1302805  the deserializer cannot be created (the count grew); parameter is untouched
  //             0x1302800  the count grew while reading, or the stream holds a parameter that is not an inventory
  //                        parameter; parameter holds what was read, possibly without its custom part, or null
  // Ownership:  parameter is the caller's to delete, after an error too.
  void deserializeInventoryParameter(KyCErrorListPool& pool, KyCInventoryParameter*& parameter, KyCBuffer* buffer);
};
