// KyInspect.h: what a file with a section consists of: places, sizes, counts, and the meaning of every byte.
//
//   KyNInventoryKit::Inspection inspection;
//   if (KyNInventoryKit::inspectFile(pool, "rack.kyinv", KyNInventoryKit::SectionEnd::READ, inspection)) ...
//
// Both look at the stored bytes through StreamReader and make no tree. Damaged sections are described as far as they can
// be read.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
// Which section of a file.
enum class SectionEnd
{
  READ,    // the one that reading takes: at the end, else at the start
  START,
  END
};

// A header or a trailer.
struct SectionRecordFields
{
  bool isThere = false;
  std::uint64_t offset = 0;    // of its 24 bytes, in the file
  unsigned int version = 0;
  unsigned int headerSize = 0;
  unsigned int dataSize = 0;
  unsigned int trailerSize = 0;
};

struct Inspection
{
  std::string name;
  std::uint64_t fileSize = 0;

  // [begin, end) with header and trailer; the data between them.
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::uint64_t dataBegin = 0;
  std::uint64_t dataEnd = 0;
  bool isAtEnd = false;    // found by its trailer; otherwise by its header
  SectionRecordFields header;
  SectionRecordFields trailer;
  std::string
      sha256;    // of the bytes from begin to end, as sha256sum gives it for the extracted section, if that is whole

  unsigned int streamVersion = 0;    // 0: no data
  std::uint64_t treeSize = 0;        // bytes of the stored tree that could be read
  std::uint64_t behindTree = 0;      // bytes of the data that were not
  std::string damage;                // empty: the tree is whole
  std::uint64_t damageOffset = 0;    // in the file

  // Of what could be read.
  struct Count
  {
    std::uint64_t items = 0;
    std::uint64_t parameters = 0;
  };
  std::uint64_t items = 0;
  std::uint64_t parameters = 0;
  std::uint64_t depth = 0;                             // levels of items; 1 for a root alone
  std::uint64_t storedTexts = 0;                       // descriptions whose bytes are stored
  std::uint64_t repeatedTexts = 0;                     // descriptions that name one of these
  std::uint64_t distinctTexts = 0;                     // different descriptions, the empty one left out
  std::map<std::string, std::uint64_t> countOfType;    // parameters, by the names of types
  std::map<std::string, Count> countOfID;              // by the names of IDs; numbers where there is none
};

// Errors:     0x1500002  the file holds no section
//             0x1502802  the file has no section at this end
//             0x1502800  the file is larger than 4294967295 bytes; also those of readBytes
// Result:     false on failure. Damage is no failure: it is told in the inspection.
KY_INVENTORYKIT_API bool inspectFile(KyCErrorListPool& pool, const std::string& path, SectionEnd at,
                                     Inspection& inspection);
KY_INVENTORYKIT_API bool inspectBytes(KyCErrorListPool& pool, const std::string& bytes, const std::string& name,
                                      SectionEnd at, Inspection& inspection);

// As a JSON object. Texts that are not valid UTF-8 are {"bytes": "<base64>"}.
KY_INVENTORYKIT_API std::string inspectionAsJson(const Inspection& inspection);

// Some bytes of a file that mean one thing.
struct ByteNote
{
  std::uint64_t offset = 0;    // in the file
  std::string_view bytes;
  std::string meaning;    // "ID BOARD", "value \"I/O\""; printable characters alone, long texts cut
  std::string address;    // of the item or parameter; of a long one the end, behind "..."; empty: none
};

// Tells the meaning of every byte of a section, from its first to its last, each byte once. What cannot be read because of
// damage in front of it is noted as such.
//
//   sink        called once per note; false ends the whole without an error
//
// Result:     whether there is a section, damaged or not; also true when the sink has ended it.
// Errors:     those of inspectBytes
// Cost:       linear in the size of the section; memory does not grow with the notes.
KY_INVENTORYKIT_API bool annotateBytes(KyCErrorListPool& pool, const std::string& bytes, const std::string& name,
                                       SectionEnd at, const std::function<bool(const ByteNote&)>& sink);

// One note as a JSON object in one line: "offset", "length", "bytes" (hexadecimal), "meaning", "address".
KY_INVENTORYKIT_API std::string noteAsJson(const ByteNote& note);
}    // namespace KyNInventoryKit
