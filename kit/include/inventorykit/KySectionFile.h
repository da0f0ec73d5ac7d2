// KySectionFile.h: trees in files.
//
//   KyCErrorListPool pool;
//   KyNInventoryKit::TreePointer tree = KyNInventoryKit::readTree(pool, "rack.kyinv");
//   if (tree) KyNInventoryKit::replaceTree(pool, "rack.kyinv", *tree);
//
// A file may hold more than the section: a firmware image with a section at its end, say. The bytes around the section
// stay as they are in everything that is done here.
//
// Writing never leaves half a file behind: the bytes go to a temporary file beside the target, are flushed to the disk
// and take the target's place in one step, with its mode, owner, access list and extended attributes; other names of it (hard
// links) keep the old content. The target is the old or the new file, whole, whatever happens. A link stays a link; the
// file that it leads to is replaced. What is no ordinary file is never replaced: bytes that are to be written there go to
// terminals, pipes and the like as they are, and to disks not at all. "-" is standard input or standard output.
// A new file gets the mode 0666 without what the umask, or the folder's access list, takes away.
//
// Errors of all of these, besides those of KyCInventoryData:
//             0x1500000  the file cannot be read; 0x1500001 it is a folder; 0x1500002 it holds no section
//             0x1500003  it cannot be written; 0x1500004 it is a link that leads to no file; 0x1500005 its owner cannot be kept
//             0x1500006  it exists already and may not be written over
//             0x1500007  what was to be written does not read back equal
//             0x1500009  it is no ordinary file
// On failure: null or false, with reports in the pool; files are as they were.
// Threads:    may read and write files at once, each with a pool and trees of its own. Of several that write the same file, the
//             last one wins, whole; nothing is locked. What belongs to the process (umask, folder, signal handlers) is not
//             touched; while it writes, the calling thread alone holds back signals that would end the program.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
enum class Overwrite
{
  NO,    // an existing ordinary file is left alone
  YES
};

// The bytes of a file, or of standard input.
//
// Result:     false on failure; bytes then holds nothing of use.
KY_INVENTORYKIT_API bool readBytes(KyCErrorListPool& pool, const std::string& path, std::string& bytes);

// Writes a file whole.
KY_INVENTORYKIT_API bool writeBytes(KyCErrorListPool& pool, const std::string& path, const std::string& bytes,
                                    Overwrite overwrite);

// Whether `writeBytes` may write there. For asking before long work: nothing keeps the answer true until then.
//
// Result:     false with 0x1500006 when an ordinary file is there and may not be written over; else true, also where writing
//             fails for other reasons.
KY_INVENTORYKIT_API bool mayWrite(KyCErrorListPool& pool, const std::string& path, Overwrite overwrite);

// Where a section lies in a file; [begin, end) with header and trailer.
struct SectionPlace
{
  std::size_t begin = 0;
  std::size_t end = 0;
  bool isAtEnd = false;    // found by its trailer; otherwise by its header, at the start of the file
};

// Finds the section that reading takes: the one at the end, when that gives data, else the one at the start. When both are
// empty, or one is and there is no other, it is that of the end.
//
// Result:     false when there is none; without a report when nothing looks like one. Also when something at the end says that
//             it is a section and is damaged: reading gives no tree then, even where there is one at the start.
KY_INVENTORYKIT_API bool findSection(KyCErrorListPool& pool, const std::string& bytes, SectionPlace& place);

// Reads the tree of the section at the end or the start of a file, or of bytes that came from one; see findSection. Both give
// the same: unlike KyCInventoryData, bytes with an empty section at the end are read from the start, too.
//
//   name        what the bytes are called in reports
KY_INVENTORYKIT_API TreePointer readTree(KyCErrorListPool& pool, const std::string& path);
KY_INVENTORYKIT_API TreePointer readTreeFromBytes(KyCErrorListPool& pool, const std::string& bytes,
                                                  const std::string& name);

// The section of a tree, once it has been found to read back equal.
//
// Result:     empty on failure.
KY_INVENTORYKIT_API std::string sectionOf(KyCErrorListPool& pool, KyCInventoryItem& root);

// Stores a tree as a file that holds its section alone.
KY_INVENTORYKIT_API bool writeTree(KyCErrorListPool& pool, const std::string& path, KyCInventoryItem& root,
                                   Overwrite overwrite);

// Stores a tree in place of the section that a file holds. What stands around the section stays. A section that cannot be
// read as a tree stays, too; an empty one is replaced.
//
// Errors:     0x1500009  the path leads to a pipe, a device or the like
//             0x1502805  the section has a damaged header or trailer, which would stay beside the new one
//             those of reading it
KY_INVENTORYKIT_API bool replaceTree(KyCErrorListPool& pool, const std::string& path, KyCInventoryItem& root);
}    // namespace KyNInventoryKit
