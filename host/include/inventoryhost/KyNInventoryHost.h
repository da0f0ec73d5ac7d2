// KyNInventoryHost.h: takes the inventory of a real machine.
//
//   KyCErrorListPool pool;
//   KyCInventoryItem* const machine = KyNInventoryHost::scanMachine(pool);
//   if (machine != nullptr) machine->printTree(pool, 0, 0);
//   delete machine;
#pragma once

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventoryhost/KyInventoryHostApi.h"

// All functions give a tree below a new root item ROOT: the machine itself, its mainboard and BIOS, processors with
// cores and caches, memory, PCI devices, network interfaces, disks and operating system. docs/host-mapping.md lists
// every address with its type, its unit and where the value comes from. Predefined IDs only; no parameter is
// modifiable. What the machine does not tell is left out: no placeholder, no empty text, no zero in place of an
// unknown number. Everything read is taken as untrusted: texts are bounded, trimmed, freed of control characters and
// made valid UTF-8.
//
// Without memory std::bad_alloc leaves a scan, or it ends in a report, and nothing of it stays; hwloc itself was not made for
// that, and may leave something out or end the process. An update method gives a report and leaves its value as it was.
//
// Two threads may scan at once, each with a pool of its own, and then use their trees at once, each its own.
namespace KyNInventoryHost
{
// The machine this program runs on, as hwloc, /sys, /proc and os-release tell it. Parts that the machine hides, as
// containers and virtual machines do, are simply missing.
//
// What changes while the machine runs has an update method, so that KyCInventoryItem::updateParameters on the root, or on
// any item below it, reads it again: available memory, the processors' clock frequencies, state, speed and duplex mode
// of network links, temperatures, the time since the start. The walk's context is not used. Types and units stay as they
// are, and no parameter comes or goes. A value that cannot be read stays as it is and is reported as 0x1400007 (the file
// cannot be read or holds something else; functions "update..."), in front of the walk's own 0x1300807. A link that
// goes down is no failure: its speed is 0 and its duplex mode "unknown" then, as with a link that is not up at the scan.
// Stored and copied trees hold the values without the methods.
//
// Result:     the root of the new tree; null on failure.
// Errors:     0x1400004  hwloc cannot find out the topology
//             0x1400005  hwloc's environment variables (HWLOC_XMLFILE, HWLOC_SYNTHETIC, ...) put another machine in
//                        place of the running one
//             0x1400006  the tree cannot be built (behind the cause)
// Ownership:  the caller owns the tree and deletes its root.
KY_INVENTORYHOST_API KyCInventoryItem* scanMachine(KyCErrorListPool& pool);

// The machine that an hwloc topology file describes. The same file always gives the same tree, parameter by parameter
// and in the same order; nothing of the running machine gets into it.
//
//   path        an XML file as hwloc writes it, at most 64 MiB; may be a pipe; null is taken as empty
//
// Result:     the root of the new tree; null on failure.
// Errors:     0x1400000  the file cannot be opened
//             0x1400001  the file cannot be read, or the process that examines it cannot be started
//             0x1400002  the file is larger than 64 MiB
//             0x1400003  hwloc cannot read the file as a topology, or finds it inconsistent
//             0x1400004  hwloc cannot find out the topology
//             0x1400006  the tree cannot be built (behind the cause)
// Ownership:  the caller owns the tree and deletes its root.
// Cost:       near-linear in the file's size. A damaged topology can take the process down inside hwloc, so a child
//             process (fork) reads the file first and only a file that it survives is read here.
KY_INVENTORYHOST_API KyCInventoryItem* scanTopologyFile(KyCErrorListPool& pool, const char* path);

// As scanTopologyFile, for what an open file, pipe or socket holds from where it stands to its end.
//
//   descriptor  stays open, at its end
//   name        what it is called in reports, "standard input" for example; null is taken as empty
//
// Result, Errors, Ownership, Cost: as above.
KY_INVENTORYHOST_API KyCInventoryItem* scanTopologyStream(KyCErrorListPool& pool, int descriptor, const char* name);
}    // namespace KyNInventoryHost
