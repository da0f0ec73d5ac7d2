// KyCCompositeFactory.h: creates composites and drives the (de)serializers.
//
//   KyCCompositeFactory factory(pool);
//   KyCBinSerializer serializer(pool);
//   factory.setBinarySerializer(pool, &serializer);
//   factory.serialize(pool, root, 0, &buffer);
//   factory.setBinarySerializer(pool, nullptr);
#pragma once

#include "composite/KyCBinDeserializer.h"
#include "composite/KyCBinSerializer.h"
#include "composite/KyCBuffer.h"
#include "composite/KyCComposite.h"
#include "compositefactory/KyCompositeFactoryApi.h"

class KyCLibraryTable;

// Belongs to whoever made it. A derived class decides in createComposite what the nodes of a tree are; the base makes
// KyCComposite objects, or what a plug-in library makes of them.
//
// The serializers are the caller's: they have to live as long as they are installed. The factory neither owns the trees
// that it reads nor those that it stores. Threads: one factory is used by one thread at a time.
//
// A plug-in library is a shared object that exports
//
//   extern "C" KyCComposite* KyCreateComposite(KyCErrorListPool* pool, unsigned int classId, unsigned int unitId,
//                                              const char* description);
//
// which gives a new composite without parent, allocated by the pool allocator, or reports into the pool and gives null.
// The factory closes its libraries when it is destroyed: composites made by them have to be gone before.
class KY_COMPOSITEFACTORY_API KyCCompositeFactory
{
public:
  using TCreate = KyCComposite* (*)(KyCErrorListPool* pool, unsigned int classId, unsigned int unitId,
                                    const char* description);
  static constexpr const char* CREATE_FUNCTION = "KyCreateComposite";

  // Errors: "Out of memory." of the pool allocator; the factory then knows no libraries (0x01201000).
  explicit KyCCompositeFactory(KyCErrorListPool& pool);
  KyCCompositeFactory(const KyCCompositeFactory&) = delete;
  KyCCompositeFactory& operator=(const KyCCompositeFactory&) = delete;

  // Virtual operations, in slot order.
  virtual ~KyCCompositeFactory();

  // Makes a composite and attaches it to its parent.
  //
  //   description  copied; null is taken as empty
  //   parent       null: the composite stays free
  //
  // Result:    the composite; null on failure.
  // Errors:    0x01200800  it cannot be created (behind the report of its constructor or library)
  //            0x01200801  it cannot be attached; it is deleted, unless it has another parent
  // Called:    by deserialize for every node of a stream, parents first. An override attaches the node to the parent
  //            given, and reports when it gives null.
  // Ownership: the parent's; the caller's, if there is none.
  virtual KyCComposite* createComposite(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId,
                                        const char* description, KyCComposite* parent);

  // Loads a plug-in library: from now on the base's createComposite makes composites of these numbers through it.
  //
  //   unitId  0: any unit id for which there is no library of its own
  //   path    with at least one "/" in it, such as "./name.so": bare names would be looked for in folders that the
  //           environment names, and are refused
  //
  // Result:  true; false on failure.
  // Errors:  0x01201000  the factory's own construction failed
  //          0x01201001  the path is null, empty or a bare name
  //          0x01201002  the loader refuses it; its words are in the report
  //          0x01201003  it does not export KyCreateComposite
  //          0x01201004  there is a library for these numbers already
  //          "Out of memory." of the pool allocator
  virtual bool createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId, const char* path);

  // As above, for the library that searchLibOnFilesystem finds. Reports what these two report.
  virtual bool createLibrary(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId);

  // Path of the library for these numbers: the first file "libKyComposite_<classId>_<unitId>.so" in the library folders,
  // in the order they were added; when there is none, the first file "libKyComposite_<classId>.so".
  //
  // Result:  empty on failure.
  // Errors:  0x01201000  the factory's own construction failed
  //          0x01201005  there is none
  //          "Out of memory." of the pool allocator
  virtual KyCString searchLibOnFilesystem(KyCErrorListPool& pool, unsigned int classId, unsigned int unitId) const;

  // Adds a folder to those that searchLibOnFilesystem looks in. There are none at first, not even the current folder.
  //
  // Result:  true; false on failure.
  // Errors:  0x01201000  the factory's own construction failed
  //          0x01201006  the folder is null or empty
  //          "Out of memory." of the pool allocator
  bool addLibraryFolder(KyCErrorListPool& pool, const char* folder);

  // Installs the visitor that the next calls use; null uninstalls it. Cannot fail.
  void setBinarySerializer(KyCErrorListPool& pool, KyCBinSerializer* serializer);
  void setBinaryDeserializer(KyCErrorListPool& pool, KyCBinDeserializer* deserializer);

  // Appends a stream with the whole tree below `root` to the buffer.
  //
  //   root     null: writes nothing and reports nothing
  //   options  reserved, 0; not looked at
  //
  // Errors:     0x01200000  no serializer is installed
  //             0x01200002  no buffer was given
  //             0x01101800  the serializer is in use or could not be constructed
  //             those of the serializer's operations
  // On failure: what was written before the first report stays in the buffer.
  // Cost:       linear in the tree; no recursion, no memory per node.
  void serialize(KyCErrorListPool& pool, const KyCComposite* root, unsigned int options, KyCBuffer* buffer);

  // Reads one stream with a tree from the buffer's read position and leaves that right behind it.
  //
  //   parent  where the root is attached; null: nowhere
  //
  // Result:     the root; null when not even that could be made.
  // Errors:     0x01200001  no deserializer is installed
  //             0x01200002  no buffer was given
  //             0x01200800  createComposite gave null and no report
  //             0x01200802  createComposite gave a node that does not hang below its parent
  //             0x01101801  the deserializer is in use or could not be constructed
  //             0x01101805  nothing is left to read
  //             0x01101806  the stream is of another version
  //             those of createComposite, KyCComposite::addParameter and the deserializer's operations
  // On failure: reading stops at the first report; the result is what was read before, each node with the parameters and
  //             children read so far. A parameter is there if its standard part was read entirely.
  // Ownership:  the parent's; the caller's, if there is none.
  // Cost:       linear in the stream; no recursion.
  KyCComposite* deserialize(KyCErrorListPool& pool, KyCComposite* parent, KyCBuffer* buffer);

  // As serialize, for a stream that holds one parameter alone.
  // Errors: as serialize; 0x01200003  the parameter is null.
  void serializeParameter(KyCErrorListPool& pool, KyCBuffer* buffer, const KyCParam* parameter);

  // As deserialize, for a stream that holds one parameter alone. `parameter` is set to it, or to null when there is none;
  // the caller owns it.
  void deserializeParameter(KyCErrorListPool& pool, KyCParam*& parameter, KyCBuffer* buffer);

private:
  template <typename TVisitor>
  class TStream;
  using TRecord = KyCBinDeserializer::TRecord;

  bool isReady(KyCErrorListPool& pool, const char* function) const;
  bool canStore(KyCErrorListPool& pool, const KyCBuffer* buffer, const char* function) const;
  bool canRead(KyCErrorListPool& pool, const KyCBuffer* buffer, const char* function) const;
  static void storeTree(KyCErrorListPool& pool, KyCBinSerializer& serializer, const KyCComposite* root);
  static void storeNode(KyCErrorListPool& pool, KyCBinSerializer& serializer, const KyCComposite* node);
  KyCComposite* readTree(KyCErrorListPool& pool, KyCBinDeserializer& deserializer, KyCComposite* parent);
  KyCComposite* readNode(KyCErrorListPool& pool, KyCBinDeserializer& deserializer, KyCComposite* parent);
  static void readParameter(KyCErrorListPool& pool, KyCBinDeserializer& deserializer, KyCComposite& node);

  KyCLibraryTable* m_libraries = nullptr;    // null: not constructed
  KyCBinSerializer* m_serializer = nullptr;
  KyCBinDeserializer* m_deserializer = nullptr;
};
