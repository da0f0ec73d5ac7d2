// KyImage.h: sections at the end or the start of firmware and other images.
//
//   std::string image;    // its bytes
//   if (KyNInventoryKit::appendSection(pool, image, "firmware.bin", section, KyNInventoryKit::SectionEnd::END,
//                                      KyNInventoryKit::Replace::NO)) ...
//
// Only the bytes are looked after here; files are read and written with readImage and writeBytes. Nothing is searched for:
// marks that stand anywhere but at an end are content like any other.
//
// Errors of all of these:
//             0x1500002, 0x1502802  there is no section at either end, or at the one that was asked for
//             0x1502800  more than 4294967295 bytes, the most that sections can be read from
//             0x1502804  the header or trailer that leads to the section is damaged, or the file was cut
//             those of KyCInventoryData when the section that was found does not read as a tree
// On failure: false; what was to be changed or filled is as it was.
#pragma once

#include <string>

#include "errorhandling/KyCErrorListPool.h"
#include "inventorykit/KyInspect.h"
#include "inventorykit/KyInventoryKitApi.h"

namespace KyNInventoryKit
{
enum class Replace
{
  NO,    // a section that is there already is left alone
  YES
};

// The bytes of a file ("-": standard input) that is small enough to hold a section that can be read.
KY_INVENTORYKIT_API bool readImage(KyCErrorListPool& pool, const std::string& path, std::string& bytes);

// The section of some bytes, and nothing else; it has been read as a tree. It is given byte for byte, but for a header and
// trailer of which one is missing or damaged: new ones are written then, so that damage at one end does not cost the tree.
//
//   name        what the bytes are called in reports
KY_INVENTORYKIT_API bool extractSection(KyCErrorListPool& pool, const std::string& bytes, const std::string& name,
                                        SectionEnd at, std::string& section);

// Puts a section to the end, or the start, of an image, which may be empty. A section that has lost its header or trailer
// gets a new one, so that where it begins and ends stays certain.
//
//   at          SectionEnd::READ stands for the end
//   section     one section and nothing else, as extractSection gives it
//   replace     whether a section at this end of the image goes first, as with stripSection, whose errors are reported then
//
// Errors:     0x1502801  the image has a section at this end
//             0x1502803  the new image does not give back the section, or the old image when it is stripped
KY_INVENTORYKIT_API bool appendSection(KyCErrorListPool& pool, std::string& image, const std::string& name,
                                       const std::string& section, SectionEnd at, Replace replace);

// Takes the section away: what is left is what the image was before it was appended. One that begins or ends an image
// may lack the header or trailer there.
//
// Errors:     0x1502805  where the header, or the trailer, must be stands something else: where the section begins, or
//                        ends, is not certain
KY_INVENTORYKIT_API bool stripSection(KyCErrorListPool& pool, std::string& image, const std::string& name,
                                      SectionEnd at);
}    // namespace KyNInventoryKit
