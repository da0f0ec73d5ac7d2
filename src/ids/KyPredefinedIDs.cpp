// KyPredefinedIDs.cpp: the predefined IDs as they stand in the file of the library, and their names.
#include "ids/KyPredefinedIDs.h"

#include <cstddef>
#include <type_traits>

#include "inventory/KyNInventoryIDs.h"

// Each object is made when the library is built: its memory is a KyIDImage, and the exported name is a second name of
// that image. The image refers to itself by its hidden name. So the loader has an offset to add for each of them and no
// name to look up, and there is nothing to construct, to register for destruction or to destroy.
// Their section is their own, and its name could be one of C, to keep sanitizers from putting anything between them.
// Programs that are compiled to reach an object of a shared library as if it were its own hold copies of them, made byte
// by byte by the loader; such a copy goes on referring to the element of the image, which says the same as its own.
#define KY_ID_IMAGE(name, length, id, index)                                                            \
  extern "C" __attribute__((section("ky_predefined_ids"), visibility("hidden"))) KyIDImage kyID_##name; \
  KyIDImage kyID_##name = {length, {id, index}, &kyID_##name.inlineElement};                            \
  namespace KyNInventoryIDs                                                                             \
  {                                                                                                     \
  extern KY_INVENTORY_API const KyCInventoryAddress name __attribute__((alias("kyID_" #name)));         \
  }

static_assert(std::is_standard_layout_v<KyCInventoryAddress> && std::is_standard_layout_v<KyIDImage> &&
                  sizeof(KyIDImage) == sizeof(KyCInventoryAddress) &&
                  alignof(KyIDImage) == alignof(KyCInventoryAddress),
              "an image is an address");

KY_ID_IMAGE(THIS_NODE, 0, 0, 0)
#define KY_PREDEFINED_ID(id, name) KY_ID_IMAGE(name, 1, id, 1)
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID

namespace
{
struct KyNames
{
#define KY_PREDEFINED_ID(id, name) char name##_[sizeof #name];
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
};
static_assert(sizeof(KyNames) <= UINT16_MAX, "every name has an offset");

constexpr KyNames s_names = {
#define KY_PREDEFINED_ID(id, name) #name,
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
};

constexpr std::uint16_t s_offsets[] = {
#define KY_PREDEFINED_ID(id, name) offsetof(KyNames, name##_),
#include "inventory/KyPredefinedIDs.inc"
#undef KY_PREDEFINED_ID
};
}    // namespace

const KyIDNames kyPredefinedIDNames = {reinterpret_cast<const char*>(&s_names), s_offsets,
                                       sizeof s_offsets / sizeof s_offsets[0]};
