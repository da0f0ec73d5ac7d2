// layout.cpp: sizes, offsets and orders that programs built against these headers rely on. Compiling this file is the test;
// it holds no code. Where a line fails, programs that were built before no longer work: see docs/compatibility.md.
//
// Compiled with -fno-access-control: what matters is where a field stands, not who may name it.
#include <cstddef>
#include <type_traits>

#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"

namespace
{
constexpr bool is64 = sizeof(void*) == 8;

// The number for each word size.
constexpr std::size_t of(std::size_t x86, std::size_t x64) { return is64 ? x64 : x86; }
}    // namespace

#define KY_SIZE(type, x86, x64) static_assert(sizeof(type) == of(x86, x64), "size of " #type)
#define KY_FIELD(type, field, x86, x64) static_assert(offsetof(type, field) == of(x86, x64), #type "::" #field)

// --- What the compilers agree on ---------------------------------------------------------------------------------------

static_assert(sizeof(char) == 1 && sizeof(short) == 2 && sizeof(int) == 4 && sizeof(long long) == 8, "widths");
static_assert(sizeof(float) == 4 && sizeof(double) == 8 && sizeof(bool) == 1, "widths");
KY_SIZE(void*, 4, 8);
static_assert(!is64 || sizeof(std::ptrdiff_t) == 8, "64 bits");

// 64-bit numbers inside records are aligned to 4 bytes on x86 and to 8 on x86-64.
struct KyNumberBehindByte
{
  char byte;
  long long number;
};
struct KyDoubleBehindByte
{
  char byte;
  double number;
};
KY_FIELD(KyNumberBehindByte, number, 4, 8);
KY_SIZE(KyNumberBehindByte, 12, 16);
KY_FIELD(KyDoubleBehindByte, number, 4, 8);
KY_SIZE(KyDoubleBehindByte, 12, 16);
static_assert(alignof(KyNumberBehindByte) == of(4, 8) && alignof(KyDoubleBehindByte) == of(4, 8), "alignment");

// --- libKyErrorHandling ------------------------------------------------------------------------------------------------

KY_FIELD(KyResText, messages, 0, 0);
KY_FIELD(KyResText, groupBoundaries, 4, 8);
KY_FIELD(KyResText, groupCount, 8, 16);
KY_FIELD(KyResText, codeBase, 12, 20);
KY_SIZE(KyResText, 16, 24);

KY_FIELD(KyErrorEntry, code, 0, 0);
KY_FIELD(KyErrorEntry, line, 4, 4);
KY_FIELD(KyErrorEntry, function, 8, 8);
KY_FIELD(KyErrorEntry, text, 12, 16);
KY_SIZE(KyErrorEntry, 16, 24);

KY_FIELD(KyCErrorList, m_entries, 0, 0);
KY_FIELD(KyCErrorList, m_entryCount, 4, 8);
KY_FIELD(KyCErrorList, m_entryCapacity, 8, 12);
KY_FIELD(KyCErrorList, m_errorCount, 12, 16);    // read inline, before and after every call
KY_FIELD(KyCErrorList, m_created, 16, 24);
KY_SIZE(KyCErrorList, 20, 32);
KY_SIZE(KyCErrorListPool, 20, 32);
static_assert(std::is_base_of<KyCErrorList, KyCErrorListPool>::value, "a pool is an error list");
static_assert(!std::is_polymorphic<KyCErrorListPool>::value, "made on any stack, without a table of functions");
KY_SIZE(KyIErrorListener, 4, 8);
KY_SIZE(KyCErrorManager, 4, 8);

// --- libKyComposite ----------------------------------------------------------------------------------------------------

KY_FIELD(KyCString, m_bits, 0, 0);
KY_SIZE(KyCString, 8, 8);
static_assert(alignof(KyCString) == of(4, 8), "a string is aligned as a 64-bit number is");

KY_FIELD(KyCVersion, m_major, 0, 0);
KY_FIELD(KyCVersion, m_minor, 4, 4);
KY_FIELD(KyCVersion, m_maintenance, 8, 8);
KY_FIELD(KyCVersion, m_build, 12, 12);
KY_SIZE(KyCVersion, 16, 16);

KY_FIELD(KyCBuffer, m_storage, 0, 0);
KY_FIELD(KyCBuffer, m_capacity, 4, 8);
KY_FIELD(KyCBuffer, m_writePosition, 8, 12);
KY_FIELD(KyCBuffer, m_readPosition, 12, 16);
KY_SIZE(KyCBuffer, 16, 24);

KY_FIELD(KyCParam, m_id, 4, 8);    // behind the table of functions
KY_FIELD(KyCParam, m_typeAndFlags, 8, 12);
KY_FIELD(KyCParam, m_next, 12, 16);
KY_FIELD(KyCParam, m_value, 16, 24);
KY_FIELD(KyCParam, m_parent, 24, 32);
KY_FIELD(KyCParam, m_description, 28, 40);
KY_SIZE(KyCParam::TValue, 8, 8);
KY_SIZE(KyCParam, 32, 48);

KY_FIELD(KyCComposite, m_classId, 4, 8);
KY_FIELD(KyCComposite, m_unitId, 8, 12);
KY_FIELD(KyCComposite, m_filterAndFlags, 12, 16);    // 64 bits at a multiple of 4 on x86
KY_FIELD(KyCComposite, m_firstParameter, 20, 24);
KY_FIELD(KyCComposite, m_found, 24, 32);
KY_FIELD(KyCComposite, m_indexes, 28, 40);
KY_FIELD(KyCComposite, m_firstChild, 32, 48);
KY_FIELD(KyCComposite, m_friend, 36, 56);
KY_FIELD(KyCComposite, m_next, 40, 64);
KY_FIELD(KyCComposite, m_parent, 44, 72);
KY_FIELD(KyCComposite, m_lastParameter, 48, 80);
KY_FIELD(KyCComposite, m_lastChild, 52, 88);
KY_FIELD(KyCComposite, m_previous, 56, 96);
KY_FIELD(KyCComposite, m_description, 60, 104);
KY_SIZE(KyCComposite, 64, 112);

KY_FIELD(KyCBinSerializer, m_buffer, 4, 8);      // what getBuffer reads inline
KY_FIELD(KyCBinDeserializer, m_buffer, 4, 8);    // derived classes read it directly
KY_FIELD(KyCBinDeserializer, m_customParametersOnly, 8, 16);
KY_SIZE(KyCBinSerializer, 28, 40);
KY_SIZE(KyCBinDeserializer, 56, 80);
KY_SIZE(KyCCompositeFactory, 16, 32);

// Type codes, as parameters and streams carry them.
static_assert(KyCParam::TYPE_INT8 == 0x111 && KyCParam::TYPE_INT16 == 0x112 && KyCParam::TYPE_INT32 == 0x114 &&
                  KyCParam::TYPE_LONG64 == 0x118,
              "signed integers");
static_assert(KyCParam::TYPE_UINT8 == 0x121 && KyCParam::TYPE_UINT16 == 0x122 && KyCParam::TYPE_UINT32 == 0x124 &&
                  KyCParam::TYPE_ULONG64 == 0x128,
              "unsigned integers");
static_assert(KyCParam::TYPE_FLOAT32 == 0x214 && KyCParam::TYPE_FLOAT64 == 0x218 && KyCParam::TYPE_STRING == 0x2000 &&
                  KyCParam::TYPE_VERSION == 0x4000,
              "floating-point numbers, strings and versions");
static_assert(KyCParam::FLAG_CUSTOM == 0x10000, "the mark of every inventory parameter");

// --- libKyInventoryTree: identification --------------------------------------------------------------------------------

KY_FIELD(KyCInventoryAddress::TElement, id, 0, 0);
KY_FIELD(KyCInventoryAddress::TElement, index, 4, 4);
KY_SIZE(KyCInventoryAddress::TElement, 8, 8);
static_assert(alignof(KyCInventoryAddress::TElement) == 4, "two 32-bit numbers");

KY_FIELD(KyCInventoryAddress, m_length, 0, 0);
KY_FIELD(KyCInventoryAddress, m_inline, 4, 4);
KY_FIELD(KyCInventoryAddress, m_elements, 12, 16);
KY_SIZE(KyCInventoryAddress, 16, 24);
static_assert(!std::is_polymorphic<KyCInventoryAddress>::value, "a plain value");

KY_FIELD(KyCInventoryTagMap, m_names, 0, 0);
KY_FIELD(KyCInventoryTagMap, m_capacity, 4, 8);
KY_FIELD(KyCInventoryTagMap, m_count, 8, 12);
KY_SIZE(KyCInventoryTagMap, 12, 16);

// --- libKyInventoryTree: items and parameters --------------------------------------------------------------------------

static_assert(std::is_base_of<KyCParam, KyCInventoryParameter>::value, "a parameter of the base library");
KY_FIELD(KyCInventoryParameter, m_unit, 32, 48);    // right behind the base
KY_FIELD(KyCInventoryParameter, m_modifiable, 40, 56);
KY_FIELD(KyCInventoryParameter, m_relevance, 44, 60);
KY_FIELD(KyCInventoryParameter, m_auxInfo, 48, 64);
KY_SIZE(KyCInventoryParameter, 52, 72);

static_assert(std::is_base_of<KyCComposite, KyCInventoryItem>::value, "a node of the base library");
static_assert(!std::is_base_of<KyNInventoryItem::KyCVirtualClass, KyCInventoryItem>::value, "no base of items");
KY_FIELD(KyCInventoryItem, m_auxInfo, 64, 112);    // right behind the base, and alone
KY_SIZE(KyCInventoryItem, 68, 120);

// --- libKyInventoryTree: auxiliary information -------------------------------------------------------------------------

static_assert(KyCInventoryAuxInfo::AUX_ITEM_UPDATE == 1 && KyCInventoryAuxInfo::AUX_PARAM_WRITE == 2 &&
                  KyCInventoryAuxInfo::AUX_PARAM_UPDATE == 3,
              "kinds");
static_assert(sizeof(KyCInventoryAuxInfo::TType) == 4, "kinds take 32 bits");
KY_FIELD(KyCInventoryAuxInfo, m_type, 4, 8);
KY_SIZE(KyCInventoryAuxInfo, 8, 16);

KY_FIELD(KyNInventoryItem::KyCAuxInfoUpdate, m_updater, 8, 16);
KY_SIZE(KyNInventoryItem::KyCAuxInfoUpdate, 12, 24);

KY_FIELD(KyNInventoryParameter::KyCAuxInfoWrite, m_checkMethod, 8, 16);
KY_FIELD(KyNInventoryParameter::KyCAuxInfoWrite, m_writeMethod, 12, 24);
KY_FIELD(KyNInventoryParameter::KyCAuxInfoWrite, m_designatedValue, 16, 32);
KY_FIELD(KyNInventoryParameter::KyCAuxInfoWrite, m_relativeAddress, 20, 40);
KY_FIELD(KyNInventoryParameter::KyCAuxInfoWrite, m_customPointer, 36, 64);
KY_SIZE(KyNInventoryParameter::KyCAuxInfoWrite, 40, 72);

KY_FIELD(KyNInventoryParameter::KyCAuxInfoParamUpdate, m_updateMethod, 8, 16);
KY_SIZE(KyNInventoryParameter::KyCAuxInfoParamUpdate, 12, 24);

static_assert(std::is_same<KyCInventoryParameter::TMethod,
                           bool (*)(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*)>::value,
              "check, write and update methods are plain functions");
KY_SIZE(KyCInventoryParameter::TMethod, 4, 8);

static_assert(std::is_base_of<KyNInventoryItem::KyCVirtualClass, KyIUpdater>::value, "an updater's first base");
KY_SIZE(KyNInventoryItem::KyCVirtualClass, 4, 8);
KY_SIZE(KyIUpdater, 4, 8);

// --- libKyInventoryTree: stored trees and dump -----------------------------------------------------------------------------

KY_FIELD(KyInventorySectionHeader, magicText, 0, 0);
KY_FIELD(KyInventorySectionHeader, magicNumber, 4, 4);
KY_FIELD(KyInventorySectionHeader, version, 8, 8);
KY_FIELD(KyInventorySectionHeader, headerSize, 12, 12);
KY_FIELD(KyInventorySectionHeader, dataSize, 16, 16);
KY_FIELD(KyInventorySectionHeader, trailerSize, 20, 20);
KY_SIZE(KyInventorySectionHeader, 24, 24);

KY_FIELD(KyInventorySectionTrailer, headerSize, 0, 0);
KY_FIELD(KyInventorySectionTrailer, dataSize, 4, 4);
KY_FIELD(KyInventorySectionTrailer, trailerSize, 8, 8);
KY_FIELD(KyInventorySectionTrailer, version, 12, 12);
KY_FIELD(KyInventorySectionTrailer, magicText, 16, 16);
KY_FIELD(KyInventorySectionTrailer, magicNumber, 20, 20);
KY_SIZE(KyInventorySectionTrailer, 24, 24);

// Without fields of their own.
KY_SIZE(KyCInventoryBinSerializer, 28, 40);
KY_SIZE(KyCInventoryBinDeSerializer, 56, 80);
KY_SIZE(KyCInventoryItemFactory, 16, 32);

KY_FIELD(KyCInventoryItem::MyStream, m_print, 0, 0);
KY_FIELD(KyCInventoryItem::MyStream, m_buffer, 4, 8);
KY_FIELD(KyCInventoryItem::MyStream, m_capacity, 8, 16);
KY_FIELD(KyCInventoryItem::MyStream, m_length, 12, 20);
KY_SIZE(KyCInventoryItem::MyStream, 16, 24);
