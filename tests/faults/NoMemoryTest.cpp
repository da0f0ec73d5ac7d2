// NoMemoryTest.cpp: every operation of the libraries with each of its allocations failing. What must hold then stands in
// KyScenario.h. Scenarios that MAY_THROW are those where an allocation failure leaves as std::bad_alloc: they have no pool
// to report to, and their headers say so.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "faults/KyScenario.h"

using namespace KyNInventoryIDs;

namespace
{
constexpr auto NOTHING_MORE = KyScenario::NOTHING_MORE;
constexpr auto MAY_THROW = KyScenario::MAY_THROW;

const char s_longText[] = "a text of more than six characters";
const char s_longUnit[] = "a unit of more than six characters";

KyCErrorManager& manager() { return *KyCErrorManager::getSingleton(); }

// Whether the operation told of nothing through the scene's pool.
bool isQuiet(const KyScene& scene) { return scene.pool.getErrorCount() == 0; }

bool updates(KyCErrorListPool&, KyCInventoryItem*, KyCInventoryParameter*) { return true; }

// Creates a parameter of each value type below the second board, which has them not.
template <typename T>
bool create(KyScene& scene, const T& value)
{
  static const KyCInventoryAddress address = BOARD[7] / IOCHANNEL / SIZE;
  return scene.root().createParameter<T>(scene.pool, address, value, s_longUnit, true, 1) != nullptr;
}

// Gets, sets and designates a value by address.
template <typename T>
bool change(KyScene& scene, const KyCInventoryAddress& id, const T& value)
{
  KyCInventoryItem& board = scene.board();
  board.getValue<T>(scene.pool, id);
  KyCInventoryParameter* const parameter = board.setValue<T>(scene.pool, id, value);
  if (parameter->getWriteMethod() == nullptr)
    parameter->setCheckAndWriteMethod(scene.pool, updates, updates, KyCInventoryAddress(), nullptr);
  parameter->setDesignatedValue<T>(scene.pool, value);
  if (!isQuiet(scene)) return false;
  parameter->getDesignatedValue<T>(scene.pool);
  parameter->adoptDesignatedValue(scene.pool);
  return isQuiet(scene);
}

template <typename T>
bool construct(KyScene& scene, const T& value)
{
  scene.free.reset(new (scene.pool)
                       KyCInventoryParameter(scene.pool, NAME, "its own description", value, s_longUnit, true, 1));
  return scene.free != nullptr;
}

// A chain of items deeper than what a walk holds without memory, with a parameter at its end.
KyCInventoryItem* deepTree(KyCErrorListPool& pool, const KyCInventoryAddress& end)
{
  auto* const root = new (pool) KyCInventoryItem(pool, ROOT, "ROOT");
  KyCInventoryItem* item = root;
  for (unsigned int n = 0; item != nullptr && n < 100; ++n)
    item = item->addPath(pool, BOARD);
  if (item != nullptr) item->createParameter<int>(pool, end, 1, nullptr, false, 0);
  return root;
}

bool isLinked(KyScene& scene)
{
  static const KyCInventoryAddress shared = BOARD[2] / IOCHANNEL / VOLTAGE_MAX;
  return scene.root().getParameter(shared) != nullptr;
}

// A node of the base library with enough children and parameters for an index.
struct KyPlainTree
{
  explicit KyPlainTree(KyCErrorListPool& pool) : root(pool, 1, 1, "a description of its own")
  {
    for (unsigned int n = 0; n < 100; ++n)
    {
      root.attach(new KyCComposite(pool, 2, n, "child"));
      root.addParameter(pool, new KyCParam(pool, n, "parameter", 0, n, nullptr));
    }
  }
  struct Node : KyCComposite
  {
    using KyCComposite::findChild;
    using KyCComposite::KyCComposite;
  };
  Node root;
};

// The scene's section in a file; written once, without memory failing: every scene has the same.
const char* storedFile(const KyScene& scene)
{
  static const std::string path = []
  {
    std::string name = ::testing::TempDir() + "ky-no-memory-XXXXXX";
    const int file = ::mkstemp(name.data());
    if (file >= 0) ::close(file);
    return name;
  }();
  static const bool isWritten = [&scene]
  {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    const bool isDone =
        file != nullptr && std::fwrite(scene.stored(), 1, scene.storedSize(), file) == scene.storedSize();
    if (file != nullptr) std::fclose(file);
    std::atexit([] { std::remove(path.c_str()); });
    return isDone;
  }();
  return isWritten ? path.c_str() : "";
}

// ---- libKyErrorHandling

const KyScenario s_errorHandling[] = {
    {"setError counts also where it cannot describe", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCErrorListPool list;
       for (unsigned int n = 0; n < 10; ++n)
         list.setError(0x1300801, 1, "work", "%s%s", "BOARD/NAME", "root item");
       scene.text = list.getErrorCount() == 10 ? "counts" : "lost";
       return true;
     }},
    {"createErrorList and deleteErrorList", NOTHING_MORE,
     [](KyScene&)
     {
       KyCErrorListPool* const list = manager().createErrorList(0, 1, 20, 5, 300);
       if (list == nullptr) return false;
       list->setError(1, 1, "work", nullptr);
       manager().deleteErrorList(*list);
       return true;
     }},
    {"sendErrorList and sendWarning", NOTHING_MORE,
     [](KyScene&)
     {
       KyCErrorListPool list;
       list.setError(1, 1, "work", "%s", s_longText);
       manager().sendErrorList(list, 0);
       manager().sendWarning(1, 1, "work", "%s", s_longText);
       return true;
     }},
    {"_registerMessages", NOTHING_MORE,
     [](KyScene&)
     {
       static const char* const messages[] = {"text"};
       static const unsigned int boundaries[] = {0, 1};
       static const KyResText table{messages, boundaries, 1, 0x3000000};
       manager()._registerMessages(&table);
       manager()._unregisterMessages(&table);
       return true;
     }},
    {"operator new of the pool", NOTHING_MORE,
     [](KyScene& scene)
     {
       int* const one = new (scene.pool) int(1);
       int* const many = new (scene.pool) int[10];
       const bool isDone = one != nullptr && many != nullptr;
       delete one;
       delete[] many;
       return isDone;
     }},
    {"KyNPoolAllocator allocate and reallocate", NOTHING_MORE,
     [](KyScene& scene)
     {
       void* const block = KyNPoolAllocator::allocate(scene.pool, 10);
       void* const grown = block != nullptr ? KyNPoolAllocator::reallocate(scene.pool, block, 10000) : nullptr;
       KyNPoolAllocator::release(grown != nullptr ? grown : block);
       return grown != nullptr;
     }},
};

// ---- libKyComposite

const KyScenario s_composite[] = {
    {"KyCString constructors", MAY_THROW,
     [](KyScene& scene)
     {
       const KyCString whole(s_longText);
       const KyCString part(s_longText, 10);
       scene.text = whole;
       return true;
     }},
    {"KyCString operators", MAY_THROW,
     [](KyScene& scene)
     {
       KyCString text;
       text = s_longText;
       text += s_longText;
       text += text;
       text += 4294967295u;
       scene.text = text + s_longText + text;
       return true;
     }},
    {"KyCString assign", NOTHING_MORE,
     [](KyScene& scene)
     { return scene.text.assign(scene.pool, s_longText, static_cast<unsigned int>(std::strlen(s_longText))); }},
    {"KyCString takeOver", NOTHING_MORE,
     [](KyScene& scene)
     {
       char* text = static_cast<char*>(std::malloc(40));
       if (text == nullptr) return false;
       std::memset(text, 'x', 40);
       const bool isDone = scene.text.takeOver(text, 40);
       std::free(text);
       return isDone;
     }},
    {"KyCVersion toString", MAY_THROW,
     [](KyScene& scene)
     {
       scene.text = KyCVersion(1, 22, 333, 4444).toString();
       return true;
     }},
    {"KyCBuffer grows", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCBuffer buffer(scene.pool);
       unsigned char bytes[200] = {};
       for (unsigned int n = 0; n < 20; ++n)
         buffer.writeBuffer(scene.pool, bytes, sizeof bytes, 1, -1);
       buffer.allocateBuffer(scene.pool, 10000);
       return isQuiet(scene);
     }},
    {"KyCParam constructors", NOTHING_MORE,
     [](KyScene& scene)
     {
       const KyCParam number(scene.pool, 1, "description", 0, 1u, nullptr);
       const KyCParam string(scene.pool, 1, "description", 0, KyCString("text"), nullptr);
       const KyCParam version(scene.pool, 1, "description", 0, KyCVersion(1, 2, 3, 4), nullptr);
       const KyCParam untyped(scene.pool, 1, "description", KyCParam::TYPE_VERSION);
       scene.text = version.getValueAsString(scene.pool);
       return isQuiet(scene);
     }},
    {"KyCParam copy constructor and assignment", MAY_THROW,
     [](KyScene& scene)
     {
       static const KyCParam version(scene.quiet, 1, "description", 0, KyCVersion(1, 2, 3, 4), nullptr);
       KyCParam copy(version);
       copy = version;
       return true;
     }},
    {"KyCParam setters and getValueAsString", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCParam string(scene.pool, 1, nullptr, KyCParam::TYPE_STRING);
       string.setValueConstChar(scene.pool, s_longText);
       KyCParam version(scene.pool, 1, nullptr, KyCParam::TYPE_VERSION);
       version.setValueKyCVersion(scene.pool, KyCVersion(1, 22, 333, 4444));
       scene.text = version.getValueAsString(scene.pool);
       return isQuiet(scene);
     }},
    {"KyCComposite constructor and setDescription", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCComposite node(scene.pool, 1, 1, "description");
       node.setDescription(scene.pool, "another description");
       return isQuiet(scene);
     }},
    {"KyCComposite looks up among many without memory for an index", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyPlainTree::Node root(scene.quiet, 1, 1, nullptr);
       static KyPlainTree many(scene.quiet);
       bool isFound = true;
       for (unsigned int n = 0; n < 100; ++n)
         isFound = isFound && many.root.findChild(2, n) != nullptr && many.root.getParameterById(n) != nullptr &&
                   many.root.getParameterByIndex(n) != nullptr;
       scene.text = isFound ? "found" : "lost";
       return true;
     }},
    {"KyCComposite attaches and adds many", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyPlainTree::Node root(scene.pool, 1, 1, nullptr);
       for (unsigned int n = 0; n < 40; ++n)
       {
         auto* const child = new (scene.pool) KyCComposite(scene.pool, 2, n, nullptr);
         if (child != nullptr) root.attach(child);
         auto* const parameter = new (scene.pool) KyCParam(scene.pool, n, nullptr, 0, n, nullptr);
         if (parameter != nullptr) root.addParameter(scene.pool, parameter);
         root.findChild(2, n);
         root.getParameterById(n);
       }
       KyCComposite* const first = root.getChild();
       if (first != nullptr && root.detachChild(first) == 0) delete first;
       delete root.removeParameter(scene.pool, 7);
       return isQuiet(scene);
     }},
};

// ---- libKyCompositeFactory

const KyScenario s_compositeFactory[] = {
    {"KyCCompositeFactory stores and reads", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCComposite root(scene.pool, 1, 2, "description");
       auto* const parameter = new (scene.pool) KyCParam(scene.pool, 1, "name", 0, KyCString(), nullptr);
       if (parameter != nullptr) root.addParameter(scene.pool, parameter);
       auto* const child = new (scene.pool) KyCComposite(scene.pool, 3, 4, "description");
       if (child != nullptr) root.attach(child);
       KyCCompositeFactory factory(scene.pool);
       KyCBinSerializer serializer(scene.pool);
       KyCBinDeserializer deserializer(scene.pool);
       factory.setBinarySerializer(scene.pool, &serializer);
       factory.setBinaryDeserializer(scene.pool, &deserializer);
       factory.serialize(scene.pool, &root, 0, &scene.buffer);
       delete factory.deserialize(scene.pool, nullptr, &scene.buffer);
       scene.buffer.reset();
       if (parameter != nullptr) factory.serializeParameter(scene.pool, &scene.buffer, parameter);
       KyCParam* read = nullptr;
       factory.deserializeParameter(scene.pool, read, &scene.buffer);
       delete read;
       return isQuiet(scene);
     }},
    {"KyCCompositeFactory createComposite", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCCompositeFactory factory(scene.pool);
       KyCComposite parent(scene.pool, 1, 1, nullptr);
       return factory.createComposite(scene.pool, 1, 2, "description", &parent) != nullptr && isQuiet(scene);
     }},
    {"KyCCompositeFactory libraries and folders", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCCompositeFactory factory(scene.pool);
       if (!isQuiet(scene)) return false;
       factory.addLibraryFolder(scene.pool, "/a/folder/that/is/not/there");
       factory.addLibraryFolder(scene.pool, "/another/one");
       if (!isQuiet(scene)) return false;
       const KyCString found = factory.searchLibOnFilesystem(scene.quiet, 1, 2);
       const bool isLibrary = factory.createLibrary(scene.quiet, 1, 2, "/a/folder/that/is/not/there/name.so");
       ::dlerror();    // the loader's own text
       return scene.quiet.getErrorCount() == 2 && found.isEmpty() && !isLibrary;
     }},
};

// ---- libKyInventoryTree: addresses and the tag map

const KyScenario s_ids[] = {
    {"KyCInventoryAddress copies and joins", MAY_THROW,
     [](KyScene& scene)
     {
       const KyCInventoryAddress joined = BOARD[2] / IOCHANNEL / NAME;
       KyCInventoryAddress copy(joined);
       copy = joined[4];
       copy.append(copy.getHeadAddress());
       copy.resize(20);
       copy.removePrefix(BOARD[2]);
       copy.removeSuffixElements(1);
       scene.address = copy.getSubAddress();
       return true;
     }},
    {"KyCInventoryAddress toString", MAY_THROW,
     [](KyScene& scene)
     {
       static const KyCInventoryAddress address = BOARD[2] / IOCHANNEL[17] / KyCInventoryAddress(99999);
       scene.text = address.toString();
       return true;
     }},
    {"KyCInventoryAddress readFromString gives the empty address", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString text("BOARD[2]/IOCHANNEL/NAME");
       scene.address.readFromString(text);
       return !scene.address.isEmpty();
     }},
    {"KyCInventoryTagMap add", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryTagMap map;
       for (unsigned int n = 0; n < 3000; ++n)
         map.add(n, "name");
       scene.text = map.getCount() == 3000 ? "all" : "some";
       return true;
     }},
};

// ---- libKyInventoryTree: items

const KyScenario s_items[] = {
    {"KyCInventoryItem constructor", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.made.reset(new (scene.pool) KyCInventoryItem(scene.pool, DEVICE[2], s_longText));
       return scene.made != nullptr;
     },
     true},
    {"getItem and getParameter among many", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem& root = scene.root();
       bool isFound = true;
       for (unsigned int n = 2; n < 12; ++n)
         isFound = isFound && root.getItem(DEVICE) != nullptr && scene.board().getParameter(NAME) != nullptr;
       scene.text = isFound ? "found" : "lost";
       return true;
     }},
    {"getAddress of an item and of a parameter", MAY_THROW,
     [](KyScene& scene)
     {
       scene.address = scene.root().getItem(DEVICE)->getFirstSubItem()->getParameterByOrdinalNumber(0)->getAddress();
       scene.address.append(scene.root().getItem(DEVICE)->getFirstSubItem()->getAddress());
       return true;
     }},
    {"addItem and detach", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* const board = &scene.board();
       board->detach();
       const bool isDone = scene.root().addItem(THIS_NODE, board) != nullptr;
       return isDone;
     }},
    {"addPath", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCInventoryAddress path = BOARD[9] / DEVICE / IOCHANNEL[2];
       return scene.root().addPath(scene.pool, path) != nullptr;
     }},
    {"addPath that is refused", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCInventoryAddress path = BOARD / NAME / IOCHANNEL[2];
       KyCErrorListPool expected;
       return scene.root().addPath(expected, path) == nullptr && expected.getErrorCount() == 1;
     }},
    {"addParameter and detachParameter", NOTHING_MORE,
     [](KyScene& scene)
     {
       if (scene.board().addParameter(scene.pool, THIS_NODE, scene.free.get()) == nullptr) return false;
       scene.free.release();
       scene.free.reset(scene.board().detachParameter(NAME.getCategory()));
       return scene.free != nullptr;
     }},
    {"setID", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.board().setID(DEVICE[9]);
       return true;
     }},
    {"createParameter<signed char>", NOTHING_MORE, [](KyScene& scene) { return create<signed char>(scene, -1); }},
    {"createParameter<short>", NOTHING_MORE, [](KyScene& scene) { return create<short>(scene, -1); }},
    {"createParameter<int>", NOTHING_MORE, [](KyScene& scene) { return create<int>(scene, -1); }},
    {"createParameter<long long>", NOTHING_MORE, [](KyScene& scene) { return create<long long>(scene, -1); }},
    {"createParameter<unsigned char>", NOTHING_MORE, [](KyScene& scene) { return create<unsigned char>(scene, 1); }},
    {"createParameter<unsigned short>", NOTHING_MORE, [](KyScene& scene) { return create<unsigned short>(scene, 1); }},
    {"createParameter<unsigned int>", NOTHING_MORE, [](KyScene& scene) { return create<unsigned int>(scene, 1); }},
    {"createParameter<unsigned long long>", NOTHING_MORE,
     [](KyScene& scene) { return create<unsigned long long>(scene, 1); }},
    {"createParameter<float>", NOTHING_MORE, [](KyScene& scene) { return create<float>(scene, 1); }},
    {"createParameter<double>", NOTHING_MORE, [](KyScene& scene) { return create<double>(scene, 1); }},
    {"createParameter<KyCString>", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString text(s_longText);
       return create<KyCString>(scene, text);
     }},
    {"createParameter<KyCVersion>", NOTHING_MORE,
     [](KyScene& scene) { return create<KyCVersion>(scene, KyCVersion(1, 2, 3, 4)); }},
    {"mergeTree", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* target = scene.tree.get();
       KyCInventoryItem* source = scene.other.release();
       KyCInventoryItem::mergeTree(scene.pool, target, source, 1);
       return source == nullptr && isQuiet(scene);
     }},
    {"mergeTree of deep trees", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* target = deepTree(scene.pool, SIZE);
       KyCInventoryItem* source = deepTree(scene.pool, OFFSET);
       KyCInventoryItem::mergeTree(scene.pool, target, source, 1);
       scene.made.reset(target);
       return source == nullptr && isQuiet(scene);
     }},
    {"copyTree", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* copy = nullptr;
       scene.root().copyTree(scene.pool, copy);
       scene.made.reset(copy);
       return copy != nullptr;
     },
     true},
    {"copyTree of a deep tree", NOTHING_MORE,
     [](KyScene& scene)
     {
       const std::unique_ptr<KyCInventoryItem> deep(deepTree(scene.pool, SIZE));
       KyCInventoryItem* copy = nullptr;
       if (deep != nullptr) deep->copyTree(scene.pool, copy);
       scene.made.reset(copy);
       return copy != nullptr;
     },
     true},
    {"linkSharedData", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.root().linkSharedData(scene.pool, nullptr);
       scene.text = isLinked(scene) ? "linked" : "not linked";
       return true;
     }},
    {"linkSharedData without a pool", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.root().linkSharedData(nullptr);
       scene.text = isLinked(scene) ? "linked" : "not linked";
       return true;
     }},
    {"linkSharedData that warns", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.root().getItem(SHARED_DATA[3])->setID(SHARED_DATA[4]);
       scene.root().linkSharedData(scene.pool, nullptr);
       return true;
     }},
    {"setUpdater", MAY_THROW,
     [](KyScene& scene)
     {
       KyCInventoryItem* const element = scene.root().getItem(UPDATE_ELEMENT[2]);
       auto updater = std::make_unique<KyIUpdater>();
       element->setUpdater(scene.pool, updater.get());
       updater.release();
       return isQuiet(scene);
     }},
    {"check, apply, updateParameters and deleteDesignatedValues", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem& root = scene.root();
       root.check(scene.pool, &root);
       root.apply(scene.pool, &root);
       root.updateParameters(scene.pool, &root);
       root.deleteDesignatedValues();
       return isQuiet(scene);
     }},
    {"addUpdateElementParameters", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString name(s_longText);
       KyNInventoryTree::addUpdateElementParameters(scene.root().getItem(UPDATE_ELEMENT), scene.pool, 3, 1, name, 17,
                                                    name, true, true, 1, 4);
       return isQuiet(scene);
     }},
    {"toString of a tree", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.text = scene.root().toString(scene.pool, 0, 0);
       return isQuiet(scene);
     }},
    {"writeToStream", MAY_THROW,    // getString does, as its header says
     [](KyScene& scene)
     {
       KyCInventoryItem::MyStream stream(false);
       const bool isDone = stream.writef("%s", s_longText) && stream.write(s_longText) &&
                           scene.root().writeIndentToStream(3, stream) &&
                           scene.root().writeToStream(scene.pool, 0, 0, stream);
       if (isDone) scene.text = stream.getString();
       return isDone;
     }},
};

// ---- libKyInventoryTree: parameters

const KyScenario s_parameters[] = {
    {"constructor of a number", NOTHING_MORE, [](KyScene& scene) { return construct<long long>(scene, 1); }},
    {"constructor of a string", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString text(s_longText);
       return construct<KyCString>(scene, text);
     }},
    {"constructor of a version", NOTHING_MORE,
     [](KyScene& scene) { return construct<KyCVersion>(scene, KyCVersion(1, 2, 3, 4)); }},
    {"constructor of a type", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.free.reset(new (scene.pool) KyCInventoryParameter(scene.pool, NAME, s_longText, KyCParam::TYPE_VERSION));
       return scene.free != nullptr;
     }},
    {"copy constructor", MAY_THROW,
     [](KyScene& scene)
     {
       auto copy = std::make_unique<KyCInventoryParameter>(*scene.board().getParameter(VERSION));
       scene.free = std::move(copy);
       return true;
     }},
    {"assignment", MAY_THROW,
     [](KyScene& scene)
     {
       KyCInventoryParameter target;
       target = *scene.board().getParameter(VERSION);
       target = *scene.free;
       *scene.free = target;
       return true;
     }},
    {"setUnit", MAY_THROW,
     [](KyScene& scene)
     {
       scene.free->setUnit("another unit of more than six characters");
       return true;
     }},
    {"getTypeAsString", MAY_THROW,
     [](KyScene& scene)
     {
       scene.text = scene.board().getParameter(VOLTAGE_MAX)->getTypeAsString();
       return true;
     }},
    {"setCheckAndWriteMethod", MAY_THROW,
     [](KyScene& scene)
     {
       scene.free->setCheckAndWriteMethod(scene.pool, updates, updates, BOARD / NAME, nullptr);
       scene.address = scene.free->getRelativeAddress();
       return isQuiet(scene);
     }},
    {"setUpdateMethod", MAY_THROW,
     [](KyScene& scene)
     {
       scene.free->setUpdateMethod(scene.pool, updates);
       return isQuiet(scene);
     }},
    {"setDesignatedValue and adoptDesignatedValue of a string", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString text("another text of more than six characters");
       KyCInventoryParameter* const parameter = scene.board().getParameter(NAME);
       parameter->setDesignatedValue<KyCString>(scene.pool, text);
       if (!isQuiet(scene)) return false;
       parameter->adoptDesignatedValue(scene.pool);
       return isQuiet(scene);
     }},
    {"setDesignatedValue and adoptDesignatedValue of a version", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryParameter* const parameter = scene.board().getParameter(VERSION);
       parameter->deleteDesignatedValue();
       parameter->setDesignatedValue<KyCVersion>(scene.pool, KyCVersion(9, 9, 9, 9));
       if (!isQuiet(scene)) return false;
       parameter->adoptDesignatedValue(scene.pool);
       return isQuiet(scene);
     }},
    {"values of type signed char", MAY_THROW, [](KyScene& scene) { return change<signed char>(scene, GAIN, 2); }},
    {"values of type short", MAY_THROW, [](KyScene& scene) { return change<short>(scene, SIZE, 2); }},
    {"values of type int", MAY_THROW, [](KyScene& scene) { return change<int>(scene, OFFSET, 2); }},
    {"values of type long long", MAY_THROW, [](KyScene& scene) { return change<long long>(scene, BAUDRATE_MIN, 2); }},
    {"values of type unsigned char", MAY_THROW, [](KyScene& scene) { return change<unsigned char>(scene, VALID, 2); }},
    {"values of type unsigned short", MAY_THROW,
     [](KyScene& scene) { return change<unsigned short>(scene, ACTIVE, 2); }},
    {"values of type unsigned int", MAY_THROW,
     [](KyScene& scene) { return change<unsigned int>(scene, SLOT_COUNT, 2); }},
    {"values of type unsigned long long", MAY_THROW,
     [](KyScene& scene) { return change<unsigned long long>(scene, BAUDRATE_MAX, 2); }},
    {"values of type float", MAY_THROW, [](KyScene& scene) { return change<float>(scene, VOLTAGE_MIN, 2); }},
    {"values of type double", MAY_THROW, [](KyScene& scene) { return change<double>(scene, VOLTAGE_MAX, 2); }},
    {"values of type KyCString", NOTHING_MORE,
     [](KyScene& scene)
     {
       static const KyCString text("another text of more than six characters");
       return change<KyCString>(scene, NAME, text);
     }},
    {"values of type KyCVersion", NOTHING_MORE,
     [](KyScene& scene) { return change<KyCVersion>(scene, VERSION, KyCVersion(7, 7, 7, 7)); }},
    {"getValue of another type reports", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCErrorListPool expected;
       scene.board().getValue<int>(expected, NAME);
       return expected.getErrorCount() == 2;
     }},
};

// ---- libKyInventoryTree: storing and reading

const KyScenario s_sections[] = {
    {"generateInventorySection", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryData::generateInventorySection(scene.pool, scene.buffer, scene.tree.get());
       return isQuiet(scene);
     }},
    {"writeHeader and writeTrailer", NOTHING_MORE,
     [](KyScene& scene)
     {
       for (unsigned int n = 0; n < 10; ++n)
       {
         KyCInventoryData::writeHeader(scene.pool, scene.buffer, n, 0xFFFFFFFF);
         KyCInventoryData::writeTrailer(scene.pool, scene.buffer, n);
       }
       return isQuiet(scene);
     }},
    {"checkHeader that reports", NOTHING_MORE,
     [](KyScene&)
     {
       KyCErrorListPool expected;
       KyInventorySectionHeader header = {};
       std::memcpy(&header, "INVE\x55\x4B\x59\xAA", 8);
       return !KyCInventoryData::checkHeader(expected, header) && expected.getErrorCount() == 1;
     }},
    {"getInventorySectionSizeFromMem", NOTHING_MORE,
     [](KyScene& scene)
     {
       unsigned int byHeader = 0;
       unsigned int byTrailer = 0;
       KyCInventoryData::getInventorySectionSizeFromMem(scene.pool, reinterpret_cast<const char*>(scene.stored()),
                                                        scene.storedSize(), byHeader, byTrailer);
       return byHeader == scene.storedSize() && byTrailer == byHeader;
     }},
    {"readInventoryDataFromMem", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryData::readInventoryDataFromMem(scene.pool, scene.stored(), scene.storedSize(), scene.buffer);
       return isQuiet(scene);
     }},
    {"extractInventoryTreeFromMem", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* root = nullptr;
       KyCInventoryData::extractInventoryTreeFromMem(scene.pool, scene.stored(), scene.storedSize(), root);
       scene.made.reset(root);
       EXPECT_EQ(root == nullptr, !isQuiet(scene));
       return isQuiet(scene);
     }},
    {"extractInventoryTreeFromMem of a damaged tree", NOTHING_MORE,
     [](KyScene& scene)
     {
       scene.section.getStorage()[scene.storedSize() / 2] ^= 0xFF;
       KyCInventoryItem* root = nullptr;
       KyCInventoryData::extractInventoryTreeFromMem(scene.quiet, scene.stored(), scene.storedSize(), root);
       EXPECT_EQ(root == nullptr, scene.quiet.getErrorCount() != 0);
       delete root;
       return true;
     }},
    {"KyCInventoryItemFactory of one parameter", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItemFactory factory(scene.pool);
       factory.serializeInventoryParameter(scene.pool, &scene.buffer, scene.board().getParameter(VERSION));
       KyCInventoryParameter* read = nullptr;
       factory.deserializeInventoryParameter(scene.pool, read, &scene.buffer);
       delete read;
       return isQuiet(scene);
     }},
    {"KyCInventoryItemFactory of a tree", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItemFactory factory(scene.pool);
       factory.serialize(scene.pool, &scene.buffer, scene.tree.get());
       KyCInventoryItem* read = nullptr;
       factory.deserialize(scene.pool, read, &scene.buffer);
       scene.made.reset(read);
       return isQuiet(scene);
     }},
};

const KyScenario s_files[] = {
    {"readInventoryDataFromFile", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryData::readInventoryDataFromFile(scene.pool, storedFile(scene), scene.buffer);
       return isQuiet(scene);
     }},
    {"readInventoryDataHeaderFromFile and readInventoryDataTrailerFromFile", NOTHING_MORE,
     [](KyScene& scene)
     {
       std::FILE* const file = std::fopen(storedFile(scene), "rb");
       if (file == nullptr) return false;
       KyCInventoryData::readInventoryDataTrailerFromFile(scene.pool, file, scene.buffer);
       KyCInventoryData::readInventoryDataHeaderFromFile(scene.pool, file, scene.buffer);
       std::fclose(file);
       return isQuiet(scene);
     }},
    {"extractInventoryTreeFromFile", NOTHING_MORE,
     [](KyScene& scene)
     {
       KyCInventoryItem* root = nullptr;
       KyCInventoryData::extractInventoryTreeFromFile(scene.pool, storedFile(scene), root);
       scene.made.reset(root);
       EXPECT_EQ(root == nullptr, !isQuiet(scene));
       return isQuiet(scene);
     }},
};

}    // namespace

TEST(NoMemory, errorHandling) { kyRunAll(s_errorHandling); }
TEST(NoMemory, composite) { kyRunAll(s_composite); }
TEST(NoMemory, compositeFactory) { kyRunAll(s_compositeFactory); }
TEST(NoMemory, addressesAndIDs) { kyRunAll(s_ids); }
TEST(NoMemory, items) { kyRunAll(s_items); }
TEST(NoMemory, parameters) { kyRunAll(s_parameters); }
TEST(NoMemory, sections) { kyRunAll(s_sections); }
TEST(NoMemory, files) { kyRunAll(s_files); }
