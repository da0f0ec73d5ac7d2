// KyCInventoryData.h: stores an inventory tree as a section, and reads sections from files and memory blocks.
//
//   #include "inventory/KyCInventoryItem.h"
//   KyCBuffer buffer(pool);
//   KyCInventoryData::generateInventorySection(pool, buffer, &root);    // bytes: buffer.getStorage(), getWritePosition()
//
//   KyCInventoryItem* root = nullptr;
//   KyCInventoryData::extractInventoryTreeFromFile(pool, "system.kyinv", root);
//   ...
//   delete root;
//
// A section is one stored tree: a header of 24 bytes, the tree's bytes (KyCInventoryItemFactory.h) and a trailer of 24
// bytes. The trailer repeats the header in mirrored order, so that a section is found from its end too: it may stand at
// the very beginning or at the very end of a larger file or block. Only the first and the last 24 bytes are ever
// examined; nothing is searched.
#pragma once

#include <cstddef>
#include <cstdio>

#include "composite/KyCBuffer.h"
#include "inventory/KyCInventoryItem.h"
#include "inventory/KyInventoryTreeApi.h"

// The two records, exactly as they are stored: 24 bytes without padding, each number in big-endian byte order whatever
// the host's is. Copy them from and to storage as raw bytes; the fields are not numbers of the host.
struct KyInventorySectionHeader
{
  char magicText[4];           // "INVE", no terminator
  unsigned int magicNumber;    // 0x554B59AA
  unsigned int version;        // 1
  unsigned int headerSize;     // 24 when written; bytes from the start of the section to the data, 24 or more
  unsigned int dataSize;       // bytes of the stored tree
  unsigned int trailerSize;    // 24 when written
};

struct KyInventorySectionTrailer
{
  unsigned int headerSize;
  unsigned int dataSize;
  unsigned int trailerSize;    // 24 when written; bytes from the end of the data to the end of the section, 24 or more
  unsigned int version;
  char magicText[4];
  unsigned int magicNumber;
};

static_assert(sizeof(KyInventorySectionHeader) == 24 && alignof(KyInventorySectionHeader) == 4 &&
                  offsetof(KyInventorySectionHeader, magicText) == 0 &&
                  offsetof(KyInventorySectionHeader, magicNumber) == 4 &&
                  offsetof(KyInventorySectionHeader, version) == 8 &&
                  offsetof(KyInventorySectionHeader, headerSize) == 12 &&
                  offsetof(KyInventorySectionHeader, dataSize) == 16 &&
                  offsetof(KyInventorySectionHeader, trailerSize) == 20,
              "stored record");
static_assert(sizeof(KyInventorySectionTrailer) == 24 && alignof(KyInventorySectionTrailer) == 4 &&
                  offsetof(KyInventorySectionTrailer, headerSize) == 0 &&
                  offsetof(KyInventorySectionTrailer, dataSize) == 4 &&
                  offsetof(KyInventorySectionTrailer, trailerSize) == 8 &&
                  offsetof(KyInventorySectionTrailer, version) == 12 &&
                  offsetof(KyInventorySectionTrailer, magicText) == 16 &&
                  offsetof(KyInventorySectionTrailer, magicNumber) == 20,
              "stored record");

// The operations on sections; there is no object of this class. They keep no state: calls on different pools, buffers,
// files and trees may run at the same time.
//
// Errors are layered: a report of an inner step stays in the pool, and the step around it adds its own behind it. In the
// methods below, "the count grew" means that a step recorded at least one error in the pool.
class KY_INVENTORY_API KyCInventoryData
{
public:
  KyCInventoryData() = delete;

  // --- Storing --------------------------------------------------------------------------------------------------------

  // Appends a complete section with the tree below and including root to the buffer; what the buffer holds stays in
  // front of it.
  //
  //   root        null gives a section without data, 48 bytes
  //
  // Errors:     0x130000F  the factory cannot be created (the count grew); the buffer is untouched
  //             0x130000A  the count grew while the tree was written, for instance because it is too deep (0x1101802) or
  //                        an item has two parameters of one ID (0x110180A); the header, with the data size 0, and what
  //                        was written of the tree stay in the buffer
  //             0x1300004  header or trailer cannot be written, see below; generating goes on all the same
  // Cost:       linear in the size of the tree.
  static void generateInventorySection(KyCErrorListPool& pool, KyCBuffer& buffer, KyCInventoryItem* root);

  // Writes a header.
  //
  //   dataSize    bytes, recorded in the header
  //   position    0xFFFFFFFF appends it at the buffer's write position; any other value overwrites the 24 bytes at this
  //               offset in the buffer and leaves the write position alone
  //
  // Errors:     0x1300004  the buffer refuses (the count grew)
  static void writeHeader(KyCErrorListPool& pool, KyCBuffer& buffer, unsigned int dataSize, unsigned int position);

  // Appends a trailer at the buffer's write position; as above otherwise.
  static void writeTrailer(KyCErrorListPool& pool, KyCBuffer& buffer, unsigned int dataSize);

  // --- Checking -------------------------------------------------------------------------------------------------------

  // Tells whether a section starts with this record, as found in storage. The first failure decides.
  //
  // Result:     false when the marks (magicText and magicNumber) are others, without a report: no section starts here;
  //             false with a report when they are right and the record cannot be used; else true.
  // Errors:     0x1300007  headerSize is below 24. A larger one is accepted: the data starts that much later.
  //             0x1300009  version is not 1
  static bool checkHeader(KyCErrorListPool& pool, const KyInventorySectionHeader& header);

  // Tells whether a section ends with this record; as above otherwise.
  //
  // Errors:     0x1300008  trailerSize is below 24. A larger one is accepted: the data ends that much earlier.
  //             0x1300009  version is not 1
  static bool checkTrailer(KyCErrorListPool& pool, const KyInventorySectionTrailer& trailer);

  // --- Finding a section and copying its data -------------------------------------------------------------------------

  // Reads the data of the section at the start of an open file into the buffer, which is reset just before.
  //
  //   file        open for binary reading; its position is used and not restored
  //   buffer      untouched when no usable header is found
  //
  // Result:     the number of data bytes read; 0 when there is no section, when it has no data, or on failure.
  // Errors:     0x1300002  a position cannot be set; so is one that the C library's long does not hold
  //             0x1300010  the size of the file cannot be found out, or long does not hold it
  //             0x1300005  the file ends too early, or reading fails. A data size that the file cannot hold ends here
  //                        without memory being asked for.
  //             0x1300006  no memory for the data (behind the allocator's own report)
  //             Those of checkHeader. A file of less than 24 bytes is no error.
  static unsigned int readInventoryDataHeaderFromFile(KyCErrorListPool& pool, std::FILE* file, KyCBuffer& buffer);

  // As above, for the section at the end of the file. The recorded header size is not used: the header may be missing.
  //
  // Errors:     0x1300002  also when the recorded sizes exceed the file
  //             Those of checkTrailer instead of checkHeader.
  static unsigned int readInventoryDataTrailerFromFile(KyCErrorListPool& pool, std::FILE* file, KyCBuffer& buffer);

  // Reads the data of the section at the end of a file; when that gives no bytes, of the section at its start.
  //
  //   path        null is taken as empty
  //   buffer      reset as soon as the file is open
  //
  // Errors:     0x1300001  the file cannot be opened; the buffer is untouched
  //             0x1300003  behind the reports of one of the two attempts. The start is tried after a failure at the end
  //                        too, and its data is then in the buffer although the pool holds errors.
  //             A file without a section is no error: the buffer is empty then.
  static void readInventoryDataFromFile(KyCErrorListPool& pool, const char* path, KyCBuffer& buffer);

  // Finds the data of the section at the start of a memory block.
  //
  //   block       of any alignment; null is taken as a block without a section
  //   length      bytes
  //   dataSize    receives the number of data bytes; 0 when the result is null
  //
  // Result:     the first data byte, within the block; null when there is no section or on failure. A section without
  //             data has a result that is not null.
  // Errors:     0x130000C  the block ends before the data does. The trailer is neither needed nor examined.
  //             Those of checkHeader.
  static const unsigned char* seekInventoryDataHeaderInMem(KyCErrorListPool& pool, const unsigned char* block,
                                                           unsigned int length, unsigned int& dataSize);

  // As above, for the section at the end of the block.
  //
  // Errors:     0x130000C  the data would begin before the block does. The header is neither needed nor examined.
  //             Those of checkTrailer.
  static const unsigned char* seekInventoryDataTrailerInMem(KyCErrorListPool& pool, const unsigned char* block,
                                                            unsigned int length, unsigned int& dataSize);

  // Appends the data of the section at the end of a memory block to the buffer; when none is found there, of the section
  // at its start. A section without data at the end counts as found.
  //
  // Kept on purpose: the buffer is not reset, unlike when reading from a file. Who uses a buffer again resets it first.
  // Errors:     0x130000D  behind the reports of one of the two attempts; the start is tried after a failure at the end
  //                        too
  //             0x1300004  the buffer refuses (the count grew)
  //             A block without a section is no error: the buffer is unchanged then.
  static void readInventoryDataFromMem(KyCErrorListPool& pool, const unsigned char* block, unsigned int length,
                                       KyCBuffer& buffer);

  // Tells the sizes, header and trailer included, of the sections at both ends of a memory block, as recorded there.
  //
  //   sizeByHeader    receives bytes of the section that starts the block; 0 when none does
  //   sizeByTrailer   receives bytes of the section that ends the block; 0 when none does, or when the first failed so
  //
  // Errors:     0x130000C  a recorded size exceeds length; the result holds it all the same, 0xFFFFFFFF standing for
  //                        anything larger. The end is not looked at after a failure of this kind at the start.
  //             Those of checkHeader and checkTrailer; the end is looked at after these.
  static void getInventorySectionSizeFromMem(KyCErrorListPool& pool, const char* block, unsigned int length,
                                             unsigned int& sizeByHeader, unsigned int& sizeByTrailer);

  // --- Reading a tree -------------------------------------------------------------------------------------------------

  // Reads the tree of the section at the end, else at the start, of a file.
  //
  //   path        null is taken as empty
  //   root        receives the tree; what it pointed to is neither used nor deleted
  //
  // Result:     in root: the tree when nothing was reported, null when something was. A file without a section, or with
  //             one without data, gives null and no report.
  // Errors:     0x130000E  the buffer cannot be created (the count grew)
  //             0x130000F  the factory cannot be created (the count grew)
  //             0x1300000  the stored tree is damaged; what was read of it is deleted
  //             Those of readInventoryDataFromFile.
  // Data behind the stored tree, within the section, is ignored.
  // Ownership:  the tree is the caller's; deleting its root deletes it.
  // Cost:       linear in the size of the section; never memory out of proportion to it.
  static void extractInventoryTreeFromFile(KyCErrorListPool& pool, const char* path, KyCInventoryItem*& root);

  // As above, for a memory block, which is not needed any more afterwards.
  //
  // Errors:     0x130000B  instead of 0x1300000
  //             Those of readInventoryDataFromMem.
  static void extractInventoryTreeFromMem(KyCErrorListPool& pool, const unsigned char* block, unsigned int length,
                                          KyCInventoryItem*& root);
};
