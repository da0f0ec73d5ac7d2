// KyAnonymize.h: trees without what tells whose machine it is.
//
//   std::string key;
//   if (KyNInventoryKit::randomKey(pool, key)) tree = KyNInventoryKit::anonymizedTree(pool, *tree, key);
//
// What is replaced
// - By ID: the values of SERIAL_NUMBER, SERIAL_NUMBER_PLUGON, SERIAL_NUMBER_PLUGON2, PS_SERIAL_NUMBER, TARGET_SERIAL_NUMBER,
//   PACKAGE_SERIAL_NUMBER, SERIAL and UNITID (serial numbers), SYSTEMNAME, RACKNAME and UNITNAME (names of hosts), IPADDRESS,
//   GATEWAY_ADDRESS, DHCP_SERVER_IPADDRESS_MIN and _MAX, MAC_ADDRESS, whatever their type. Likewise a parameter whose
//   description is not the ID's name and speaks of a serial number, an asset, a UUID or a host name.
// - By form, in every string value, unit and description: MAC addresses (00:1B:21:3C:4D:5E, with "-", as 001b.213c.4d5e, with
//   ":" or "-" there, too, or as 0:1b:21:3c:4d:5e, and longer ones), IPv4 and IPv6 addresses and UUIDs; words of 12 or 32 hexadecimal digits, letters and
//   digits both, are MAC addresses and UUIDs without their separators.
// - By a label, there: the word behind "Serial Number", "Serial No", "S/N", "SN", "Asset Tag", "Asset Number", "Inventory
//   Number", "UUID", "PARTUUID", "GUID", "Hostname" or "Host name"; behind "Serial", "Asset", "Machine ID", "Node name",
//   "Computer name" or "Host" only when there is ":", "=" or "#" between. Without one of these the word must have a digit and four
//   characters. Upper and lower case are the same, as are "SerialNumber", "serial_number" and "serial-number".
// - Everywhere else: every original of these, upper and lower case being the same; of a host name also the first label and
//   the domain; of a MAC address and a UUID every spelling, with and without separators and leading zeros, also the
//   identifier of 8 bytes that is made of a MAC address (02:1b:21:ff:fe:3c:4d:5e) and the end of an IPv6 address that is.
//   Originals of 3 to 5 characters, and those behind labels, count where they stand alone, longer ones of digits alone where
//   no further digit stands beside them. Shorter ones, texts of fewer than 5 digits and numbers below 100000 are replaced in
//   their own parameters, or behind their labels, alone.
//
// What stays
// - Versions: parameters of the type Version (but under the IDs above), and what looks like an IPv4 address in a parameter
//   whose ID has VERSION or REVISION in its name, or with a letter right in front of it (v10.2.3.4). Elsewhere four
//   numbers from 0 to 255 joined by dots are taken for an address.
// - Checksums and the like: words of hexadecimal digits in parameters for versions and checksums (by ID or description), behind
//   words such as "md5", "checksum", "hash", "commit", "version" or "firmware", and all with 0x in front, unless the same
//   digits are an address or a UUID elsewhere in the tree. Words of 12 or 32 that are all digits, or all letters, and
//   words of other lengths: a World Wide Name or another identifier of 16 digits that is not made of a MAC address.
// - MAC addresses that are not known and are written with blanks, or without zeros and letters (0:1:2:3:4:5); a UUID whose bytes
//   are swapped has a pseudonym of its own.
// - Identifiers in free texts behind no label, or one in another language, and further ones of a list: "S/N AB12, CD34".
// - What names no machine: empty texts, fillers such as "None" or "00000000", localhost, loopback addresses, netmasks, and
//   addresses of nothing but zeros or ones; behind "serial" what a port is set to (115200, ttyS0); behind "host" numbers and
//   kinds of devices (bridge, usb).
// - Numbers under other IDs, IDs, indices and the shape of the tree. Names of persons or firms in other texts are not known
//   here: look at the result before it goes to others.
//
// Pseudonyms
// - One text has one pseudonym in a tree, and in all trees with one key. Who has the key can find out originals by trying;
//   without it that is as hard as guessing a key of 128 bits. A key that people make up is easier to guess.
// - They have the form of what they replace. A MAC address stays one, locally administered; IPv4 addresses come from
//   198.18.0.0/15, which is never routed (the ranges for documentation are too small: two of 30 addresses would often be
//   one); IPv6 addresses from 2001:db8::/32; UUIDs are of version 4; hosts are "host-" and 8 hexadecimal digits, domains
//   "domain-" and 8 more; serial numbers are of 10, 16, 19, 24 or 32 letters and digits, of digits alone where they were that,
//   with a 1 in front, so that 32 bits hold the shortest. Numbers stay numbers of their type.
// - Nothing of subnets, vendors of network cards or ranges stays recognisable.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventory/KyCInventoryItem.h"
#include "inventorykit/KyInventoryKitApi.h"
#include "inventorykit/KyTree.h"

namespace KyNInventoryKit
{
// A copy of an item and all below it, anonymised; everything else is the same. Auxiliary info, pending values and links to
// shared data are left out.
//
//   key         any text; the same key gives the same pseudonyms
//
// Result:     null on failure.
// Errors:     those of the libraries below: no memory
// Cost:       near-linear in the size of the tree and its texts; needs no stack, however deep the tree.
KY_INVENTORYKIT_API TreePointer anonymizedTree(KyCErrorListPool& pool, const KyCInventoryItem& root,
                                               const std::string& key);

// A key of 128 bits that nobody knows.
//
// Result:     false on failure.
// Errors:     0x1505006  the system gives no random bytes
KY_INVENTORYKIT_API bool randomKey(KyCErrorListPool& pool, std::string& key);
}    // namespace KyNInventoryKit
