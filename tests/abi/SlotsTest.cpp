// Virtual operations are called by their place in an object's table of functions: the compiler writes that place into the
// programs it compiles. So these tests call them by number, and look at the tables of the libraries as they are loaded.
#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"

namespace
{
using TTable = void* const*;

// The first word of an object with virtual operations points to slot 0.
TTable tableOf(const void* object) { return *static_cast<const TTable*>(object); }

// Calls a slot as compiled code does: a function whose first argument is the object.
template <typename TResult = void, typename... TArguments>
TResult callSlot(void* object, unsigned int slot, TArguments... arguments)
{
  using TFunction = TResult (*)(void*, TArguments...);
  return reinterpret_cast<TFunction>(tableOf(object)[slot])(object, arguments...);
}

// How many slots the library's own table has: its symbol begins two words in front of slot 0 and has a size.
std::size_t slotCount(const void* object)
{
  Dl_info place;
  const ElfW(Sym)* symbol = nullptr;
  void* entry = nullptr;
  if (dladdr1(tableOf(object), &place, &entry, RTLD_DL_SYMENT) == 0) return 0;
  symbol = static_cast<const ElfW(Sym)*>(entry);
  return symbol == nullptr ? 0 : symbol->st_size / sizeof(void*) - 2;
}

// The slots in which a table differs from the one of its base.
std::vector<unsigned int> ownSlots(const void* object, const void* base, unsigned int count)
{
  std::vector<unsigned int> slots;
  for (unsigned int n = 0; n < count; ++n)
    if (tableOf(object)[n] != tableOf(base)[n]) slots.push_back(n);
  return slots;
}

using TSlots = std::vector<unsigned int>;

std::string s_called;    // what ran last
unsigned int s_freed;    // how often operator delete of a recorder ran

// Slot 0 of every class ends the object and leaves its memory, slot 1 gives the memory back too.
template <typename TRecorder, typename... TArguments>
void expectDestructorsInSlots0And1(TArguments&... arguments)
{
  alignas(TRecorder) unsigned char memory[sizeof(TRecorder)];
  s_called.clear();
  s_freed = 0;
  callSlot(new (static_cast<void*>(memory)) TRecorder(arguments...), 0);
  EXPECT_EQ(s_called, "destructor");
  EXPECT_EQ(s_freed, 0u);

  s_called.clear();
  callSlot(new TRecorder(arguments...), 1);
  EXPECT_EQ(s_called, "destructor");
  EXPECT_EQ(s_freed, 1u);
}

#define KY_RECORDS_ITS_END(type)                                               \
  ~type() override { s_called = "destructor"; }                                \
  static void* operator new(std::size_t size) { return ::operator new(size); } \
  static void* operator new(std::size_t, void* p) { return p; }                \
  static void operator delete(void* p)                                         \
  {                                                                            \
    ++s_freed;                                                                 \
    ::operator delete(p);                                                      \
  }                                                                            \
  static void operator delete(void*, void*) {}

struct KyRecordingComposite : KyCComposite
{
  explicit KyRecordingComposite(KyCErrorListPool& pool) : KyCComposite(pool, 1, 1, "") {}
  KY_RECORDS_ITS_END(KyRecordingComposite)
  void update(KyCErrorListPool&) override { s_called = "update"; }
  void PreInit(KyCErrorListPool&) override { s_called = "PreInit"; }
  void PostInit(KyCErrorListPool&) override { s_called = "PostInit"; }
  void PreApply(KyCErrorListPool&) override { s_called = "PreApply"; }
  void PostApply(KyCErrorListPool&) override { s_called = "PostApply"; }
  void PreReset(KyCErrorListPool&) override { s_called = "PreReset"; }
  void PostReset(KyCErrorListPool&) override { s_called = "PostReset"; }
  void traverseHook(KyCErrorListPool&, unsigned int value) override
  {
    s_called = "traverseHook " + std::to_string(value);
  }
  void virtualDummyFunction4() override { s_called = "virtualDummyFunction4"; }
  void virtualDummyFunction3() override { s_called = "virtualDummyFunction3"; }
  void virtualDummyFunction2() override { s_called = "virtualDummyFunction2"; }
  void virtualDummyFunction1() override { s_called = "virtualDummyFunction1"; }
};

struct KyRecordingParam : KyCParam
{
  explicit KyRecordingParam(KyCErrorListPool& pool) : KyCParam(pool, 1, "", 0, 5, nullptr) {}
  KY_RECORDS_ITS_END(KyRecordingParam)
};

struct KyRecordingSerializer : KyCBinSerializer
{
  explicit KyRecordingSerializer(KyCErrorListPool& pool) : KyCBinSerializer(pool) {}
  KY_RECORDS_ITS_END(KyRecordingSerializer)
  void CompositeStart(KyCErrorListPool&, const KyCComposite*) override { s_called = "CompositeStart"; }
  void CompositeEnd(KyCErrorListPool&, const KyCComposite*) override { s_called = "CompositeEnd"; }
  void CompositeParameter(KyCErrorListPool&, const KyCParam*) override { s_called = "CompositeParameter"; }
  void handleCustomParameter(KyCErrorListPool&, const KyCParam*) override { s_called = "handleCustomParameter"; }
};

struct KyRecordingDeserializer : KyCBinDeserializer
{
  explicit KyRecordingDeserializer(KyCErrorListPool& pool) : KyCBinDeserializer(pool) {}
  KY_RECORDS_ITS_END(KyRecordingDeserializer)
  void CompositeStart(KyCErrorListPool&) override { s_called = "CompositeStart"; }
  void CompositeEnd(KyCErrorListPool&) override { s_called = "CompositeEnd"; }
  void CompositeParameter(KyCErrorListPool&) override { s_called = "CompositeParameter"; }
  KyCParam* createCustomParameter(KyCErrorListPool&, unsigned int id, unsigned int type,
                                  const char* description) override
  {
    s_called = "createCustomParameter " + std::to_string(id) + " " + std::to_string(type) + " " + description;
    return nullptr;
  }
  void handleCustomParameter(KyCErrorListPool&, KyCParam*) override { s_called = "handleCustomParameter"; }
};

struct KyRecordingFactory : KyCCompositeFactory
{
  explicit KyRecordingFactory(KyCErrorListPool& pool) : KyCCompositeFactory(pool) {}
  KY_RECORDS_ITS_END(KyRecordingFactory)
  KyCComposite* createComposite(KyCErrorListPool&, unsigned int classId, unsigned int unitId, const char* description,
                                KyCComposite* parent) override
  {
    s_called = "createComposite " + std::to_string(classId) + " " + std::to_string(unitId) + " " + description;
    return parent;
  }
  bool createLibrary(KyCErrorListPool&, unsigned int classId, unsigned int unitId, const char* path) override
  {
    s_called = "createLibrary " + std::to_string(classId) + " " + std::to_string(unitId) + " " + path;
    return true;
  }
  bool createLibrary(KyCErrorListPool&, unsigned int classId, unsigned int unitId) override
  {
    s_called = "createLibrary " + std::to_string(classId) + " " + std::to_string(unitId);
    return true;
  }
  KyCString searchLibOnFilesystem(KyCErrorListPool&, unsigned int classId, unsigned int unitId) const override
  {
    s_called = "searchLibOnFilesystem " + std::to_string(classId) + " " + std::to_string(unitId);
    return KyCString("./found on the file system.so");
  }
};

struct KyRecordingListener : KyIErrorListener
{
  KY_RECORDS_ITS_END(KyRecordingListener)
  void onError(const KyErrorEntry& entry) override { s_called = "onError " + std::to_string(entry.code); }
  void onWarning(const KyErrorEntry& entry) override { s_called = "onWarning " + std::to_string(entry.code); }
};

struct KyRecordingInfo : KyCInventoryAuxInfo
{
  KyRecordingInfo() : KyCInventoryAuxInfo(AUX_ITEM_UPDATE) {}
  KY_RECORDS_ITS_END(KyRecordingInfo)
};

struct KyRecordingVirtualClass : KyNInventoryItem::KyCVirtualClass
{
  KY_RECORDS_ITS_END(KyRecordingVirtualClass)
};

struct KyRecordingUpdater : KyIUpdater
{
  KY_RECORDS_ITS_END(KyRecordingUpdater)
};

TEST(Slots, compositeHasFourteen)
{
  KyCErrorListPool pool;
  KyRecordingComposite composite(pool);
  KyCErrorListPool* const p = &pool;    // a reference travels as a pointer does
  callSlot(&composite, 2, p);
  EXPECT_EQ(s_called, "update");
  callSlot(&composite, 3, p);
  EXPECT_EQ(s_called, "PreInit");
  callSlot(&composite, 4, p);
  EXPECT_EQ(s_called, "PostInit");
  callSlot(&composite, 5, p);
  EXPECT_EQ(s_called, "PreApply");
  callSlot(&composite, 6, p);
  EXPECT_EQ(s_called, "PostApply");
  callSlot(&composite, 7, p);
  EXPECT_EQ(s_called, "PreReset");
  callSlot(&composite, 8, p);
  EXPECT_EQ(s_called, "PostReset");
  callSlot(&composite, 9, p, 4294967295u);
  EXPECT_EQ(s_called, "traverseHook 4294967295");
  callSlot(&composite, 10);
  EXPECT_EQ(s_called, "virtualDummyFunction4");
  callSlot(&composite, 11);
  EXPECT_EQ(s_called, "virtualDummyFunction3");
  callSlot(&composite, 12);
  EXPECT_EQ(s_called, "virtualDummyFunction2");
  callSlot(&composite, 13);
  EXPECT_EQ(s_called, "virtualDummyFunction1");

  const KyCComposite base(pool, 1, 1, "");
  EXPECT_EQ(slotCount(&base), 14u);
  expectDestructorsInSlots0And1<KyRecordingComposite>(pool);
}

TEST(Slots, itemOverridesTheDestructorsOfTheCompositeAlone)
{
  KyCErrorListPool pool;
  const KyCComposite base(pool, 1, 1, "");
  const KyCInventoryItem item(pool, KyNInventoryIDs::ROOT, "ROOT");
  EXPECT_EQ(slotCount(&item), 14u);
  EXPECT_EQ(ownSlots(&item, &base, 14), (TSlots{0, 1}));
}

TEST(Slots, paramHasItsDestructorsAlone)
{
  KyCErrorListPool pool;
  const KyCParam base(pool, 1, "", 0, 5, nullptr);
  EXPECT_EQ(slotCount(&base), 2u);
  expectDestructorsInSlots0And1<KyRecordingParam>(pool);
}

TEST(Slots, inventoryParameterOverridesTheTwoOfTheParam)
{
  KyCErrorListPool pool;
  const KyCParam base(pool, 1, "", 0, 5, nullptr);
  const KyCInventoryParameter parameter(pool, KyNInventoryIDs::SIZE, "SIZE", 5, "kB", false, 0);
  EXPECT_EQ(slotCount(&parameter), 2u);
  EXPECT_EQ(ownSlots(&parameter, &base, 2), (TSlots{0, 1}));
}

TEST(Slots, serializerHasSix)
{
  KyCErrorListPool pool;
  KyCErrorListPool* const p = &pool;
  KyRecordingSerializer serializer(pool);
  const KyCComposite* const composite = nullptr;
  const KyCParam* const parameter = nullptr;
  callSlot(&serializer, 2, p, composite);
  EXPECT_EQ(s_called, "CompositeStart");
  callSlot(&serializer, 3, p, composite);
  EXPECT_EQ(s_called, "CompositeEnd");
  callSlot(&serializer, 4, p, parameter);
  EXPECT_EQ(s_called, "CompositeParameter");
  callSlot(&serializer, 5, p, parameter);
  EXPECT_EQ(s_called, "handleCustomParameter");

  const KyCBinSerializer base(pool);
  EXPECT_EQ(slotCount(&base), 6u);
  expectDestructorsInSlots0And1<KyRecordingSerializer>(pool);
}

TEST(Slots, inventorySerializerOverridesDestructorsAndCustomParameters)
{
  KyCErrorListPool pool;
  const KyCBinSerializer base(pool);
  const KyCInventoryBinSerializer serializer(pool);
  EXPECT_EQ(slotCount(&serializer), 6u);
  EXPECT_EQ(ownSlots(&serializer, &base, 6), (TSlots{0, 1, 5}));
}

TEST(Slots, deserializerHasSeven)
{
  KyCErrorListPool pool;
  KyCErrorListPool* const p = &pool;
  KyRecordingDeserializer deserializer(pool);
  KyCParam* const parameter = nullptr;
  callSlot(&deserializer, 2, p);
  EXPECT_EQ(s_called, "CompositeStart");
  callSlot(&deserializer, 3, p);
  EXPECT_EQ(s_called, "CompositeEnd");
  callSlot(&deserializer, 4, p);
  EXPECT_EQ(s_called, "CompositeParameter");
  EXPECT_EQ(callSlot<KyCParam*>(&deserializer, 5, p, 11u, 12u, "text"), nullptr);
  EXPECT_EQ(s_called, "createCustomParameter 11 12 text");
  callSlot(&deserializer, 6, p, parameter);
  EXPECT_EQ(s_called, "handleCustomParameter");

  const KyCBinDeserializer base(pool);
  EXPECT_EQ(slotCount(&base), 7u);
  expectDestructorsInSlots0And1<KyRecordingDeserializer>(pool);
}

TEST(Slots, inventoryDeserializerOverridesDestructorsAndTheTwoForCustomParameters)
{
  KyCErrorListPool pool;
  const KyCBinDeserializer base(pool);
  const KyCInventoryBinDeSerializer deserializer(pool);
  EXPECT_EQ(slotCount(&deserializer), 7u);
  EXPECT_EQ(ownSlots(&deserializer, &base, 7), (TSlots{0, 1, 5, 6}));
}

TEST(Slots, factoryHasSix)
{
  KyCErrorListPool pool;
  KyCErrorListPool* const p = &pool;
  KyRecordingFactory factory(pool);
  KyCComposite parent(pool, 1, 1, "");
  EXPECT_EQ(callSlot<KyCComposite*>(&factory, 2, p, 11u, 12u, "text", &parent), &parent);
  EXPECT_EQ(s_called, "createComposite 11 12 text");
  EXPECT_TRUE(callSlot<bool>(&factory, 3, p, 11u, 12u, "./path"));
  EXPECT_EQ(s_called, "createLibrary 11 12 ./path");
  EXPECT_TRUE(callSlot<bool>(&factory, 4, p, 11u, 12u));
  EXPECT_EQ(s_called, "createLibrary 11 12");
  EXPECT_STREQ(callSlot<KyCString>(&factory, 5, p, 11u, 12u).c_str(), "./found on the file system.so");
  EXPECT_EQ(s_called, "searchLibOnFilesystem 11 12");

  const KyCCompositeFactory base(pool);
  EXPECT_EQ(slotCount(&base), 6u);
  expectDestructorsInSlots0And1<KyRecordingFactory>(pool);
}

TEST(Slots, inventoryFactoryOverridesDestructorsAndCreateComposite)
{
  KyCErrorListPool pool;
  const KyCCompositeFactory base(pool);
  const KyCInventoryItemFactory factory(pool);
  EXPECT_EQ(slotCount(&factory), 6u);
  EXPECT_EQ(ownSlots(&factory, &base, 6), (TSlots{0, 1, 2}));
}

TEST(Slots, listenerHasFour)
{
  KyRecordingListener listener;
  const KyErrorEntry entry = {7, 1, "", ""};
  const KyErrorEntry* const e = &entry;
  callSlot(&listener, 2, e);
  EXPECT_EQ(s_called, "onError 7");
  callSlot(&listener, 3, e);
  EXPECT_EQ(s_called, "onWarning 7");
  expectDestructorsInSlots0And1<KyRecordingListener>();
}

TEST(Slots, auxiliaryInformationHasItsDestructorsAlone)
{
  const KyCInventoryAuxInfo base(KyCInventoryAuxInfo::AUX_ITEM_UPDATE);
  EXPECT_EQ(slotCount(&base), 2u);
  const KyNInventoryItem::KyCAuxInfoUpdate update(nullptr);
  EXPECT_EQ(slotCount(&update), 2u);
  const KyNInventoryParameter::KyCAuxInfoWrite write(nullptr, nullptr, KyCInventoryAddress(), nullptr);
  EXPECT_EQ(slotCount(&write), 2u);
  const KyNInventoryParameter::KyCAuxInfoParamUpdate parameterUpdate(nullptr);
  EXPECT_EQ(slotCount(&parameterUpdate), 2u);
  expectDestructorsInSlots0And1<KyRecordingInfo>();
}

TEST(Slots, updaterHasItsDestructorsAlone)
{
  const KyNInventoryItem::KyCVirtualClass root;
  EXPECT_EQ(slotCount(&root), 2u);
  const KyIUpdater updater;
  EXPECT_EQ(slotCount(&updater), 2u);
  expectDestructorsInSlots0And1<KyRecordingVirtualClass>();
  expectDestructorsInSlots0And1<KyRecordingUpdater>();
}

// The update info destroys whatever it was given through the deleting destructor of KyCVirtualClass.
TEST(Slots, updateInfoDestroysItsUpdaterThroughSlot1)
{
  s_called.clear();
  s_freed = 0;
  auto* const updater = new KyRecordingUpdater;
  {
    const KyNInventoryItem::KyCAuxInfoUpdate info(updater);
    EXPECT_EQ(info.getUpdater(), updater);
  }
  EXPECT_EQ(s_called, "destructor");
  EXPECT_EQ(s_freed, 1u);
}
}    // namespace
