#include "golden/sections/KyGoldenTrees.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include "inventory/KyCInventoryData.h"
#include "inventory/KyNInventoryIDs.h"

// Never change a tree here: its file is committed and must store and read back for ever. Add a new one instead.
namespace
{
using namespace KyNInventoryIDs;
using TItem = std::unique_ptr<KyCInventoryItem>;

TItem newItem(KyCErrorListPool& pool, const KyCInventoryAddress& id, const char* description)
{
  return TItem(new KyCInventoryItem(pool, id, description));
}

// Items and parameters whose IDs are not predefined, or whose descriptions are not the names of their IDs.
KyCInventoryItem* add(KyCInventoryItem& parent, TItem item)
{
  parent.addItem(KyCInventoryAddress(), item.get());
  return item.release();
}

template <typename T>
void add(KyCErrorListPool& pool, KyCInventoryItem& item, unsigned int id, const char* description, const T& value,
         const char* unit = "", bool modifiable = false, unsigned int relevance = 0)
{
  item.addParameter(
      pool, KyCInventoryAddress(),
      new KyCInventoryParameter(pool, KyCInventoryAddress(id), description, value, unit, modifiable, relevance));
}

// The bits are put in place: handing a number out by value may change a signalling NaN.
template <typename T, typename TBits>
void addBits(KyCErrorListPool& pool, KyCInventoryItem& item, unsigned int id, TBits bits)
{
  T value;
  static_assert(sizeof value == sizeof bits, "same size");
  std::memcpy(&value, &bits, sizeof value);
  add(pool, item, id, "bits", value);
}

TItem nothing(KyCErrorListPool&, KyForm) { return nullptr; }

TItem rootAlone(KyCErrorListPool& pool, KyForm) { return newItem(pool, ROOT, "ROOT"); }

TItem everyType(KyCErrorListPool& pool, KyForm)
{
  TItem root = newItem(pool, ROOT, "ROOT");
  root->createParameter<signed char>(pool, TEST_I8, -8, "", false, 0);
  root->createParameter<short>(pool, TEST_I16, -1600, "mV", true, 1);
  root->createParameter<int>(pool, TEST_I32, -320000, "kHz", false, 2);
  root->createParameter<long long>(pool, TEST_I64, -64000000000LL, "ns", true, 3);
  root->createParameter<unsigned char>(pool, TEST_UI8, 208, "%", false, 4);
  root->createParameter<unsigned short>(pool, TEST_UI16, 61600, "ppm", true, 5);
  root->createParameter<unsigned int>(pool, TEST_UI32, 4003200000U, "bytes", false, 6);
  root->createParameter<unsigned long long>(pool, TEST_UI64, 18000064000000000000ULL, "ticks", true, 7);
  root->createParameter<float>(pool, TEST_F32, 1.5F, "A", false, 8);
  root->createParameter<double>(pool, TEST_F64, -0.1, "V", true, 9);
  root->createParameter<KyCString>(pool, NAME, KyCString("a name of more than six characters"), "", false, 10);
  root->createParameter<KyCVersion>(pool, TEST_V, KyCVersion(1, 2, 3, 400), "", true, 11);
  return root;
}

void addIntegerLimits(KyCErrorListPool& pool, KyCInventoryItem& item)
{
  add<signed char>(pool, item, 100, "", SCHAR_MIN);
  add<signed char>(pool, item, 101, "", SCHAR_MAX);
  add<short>(pool, item, 102, "", SHRT_MIN);
  add<short>(pool, item, 103, "", SHRT_MAX);
  add<int>(pool, item, 104, "", INT_MIN);
  add<int>(pool, item, 105, "", INT_MAX);
  add<long long>(pool, item, 106, "", LLONG_MIN);
  add<long long>(pool, item, 107, "", LLONG_MAX);
  add<unsigned char>(pool, item, 108, "", UCHAR_MAX);
  add<unsigned short>(pool, item, 109, "", USHRT_MAX);
  add<unsigned int>(pool, item, 110, "", UINT_MAX, "", true, 0xFFFFFFFF);
  add<unsigned long long>(pool, item, 111, "", ULLONG_MAX);
}

void addBitPatterns(KyCErrorListPool& pool, KyCInventoryItem& item)
{
  const std::uint32_t floats[] = {0x00000000, 0x80000000, 0x00000001, 0x807FFFFF, 0x7F7FFFFF,
                                  0x7F800000, 0xFF800000, 0x7FC00000, 0xFFC12345, 0x7FA00001};
  const std::uint64_t doubles[] = {0x0000000000000000, 0x8000000000000000, 0x0000000000000001, 0x800FFFFFFFFFFFFF,
                                   0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000,
                                   0xFFF8123456789ABC, 0x7FF4000000000001};
  unsigned int id = 200;
  for (std::uint32_t bits : floats)
    addBits<float>(pool, item, id++, bits);
  for (std::uint64_t bits : doubles)
    addBits<double>(pool, item, id++, bits);
}

void addTexts(KyCErrorListPool& pool, KyCInventoryItem& item)
{
  std::string everyByte;
  for (unsigned int byte = 0; byte < 256; ++byte)
    everyByte += static_cast<char>(byte);
  const std::string lengths[] = {"", "6 char", "7 chars", std::string(127, 'x'), std::string(128, 'y'), everyByte};
  unsigned int id = 300;
  for (const std::string& text : lengths)
    add(pool, item, id++, "text", KyCString(text.data(), static_cast<unsigned int>(text.size())));
}

TItem extremes(KyCErrorListPool& pool, KyForm)
{
  TItem root = newItem(pool, KyCInventoryAddress(0xFFFFFFFF, 0xFFFFFFFF), "no predefined ID");
  addIntegerLimits(pool, *add(*root, newItem(pool, KyCInventoryAddress(1000, 0), "integers")));
  addBitPatterns(pool, *add(*root, newItem(pool, KyCInventoryAddress(1000, 127), "floating point")));
  addTexts(pool, *add(*root, newItem(pool, KyCInventoryAddress(1000, 128), "texts")));
  KyCInventoryItem& versions = *add(*root, newItem(pool, KyCInventoryAddress(0, 0x80000000), "versions"));
  add(pool, versions, 0xFFFFFFFF, "", KyCVersion(0, 0, 0, 0));
  add(pool, versions, 0, "", KyCVersion(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF));
  return root;
}

// Lengths in bytes; the second line is what is left of each: the length mod 256, at most 100.
constexpr unsigned int UNIT_LENGTHS[] = {0, 1, 6, 7, 44, 99, 100, 101, 128, 255, 256, 257, 300, 356, 357};
constexpr unsigned int READ_LENGTHS[] = {0, 1, 6, 7, 44, 99, 100, 100, 100, 100, 0, 1, 44, 100, 100};

TItem units(KyCErrorListPool& pool, KyForm form)
{
  TItem root = newItem(pool, ROOT, "ROOT");
  unsigned int id = 10;
  for (unsigned int length : form == KyForm::GIVEN ? UNIT_LENGTHS : READ_LENGTHS)
  {
    std::string unit;
    for (unsigned int n = 0; n < length; ++n)
      unit += static_cast<char>('A' + n % 26);
    add(pool, *root, id, "unit", static_cast<int>(id), unit.c_str(), id % 2 == 0, id * 0x01010101);
    ++id;
  }
  add(pool, *root, id, "unit", 0, "\xC2\xB5V");    // UTF-8
  return root;
}

// 300 levels, a parameter in each.
TItem deep(KyCErrorListPool& pool, KyForm)
{
  TItem root = newItem(pool, ROOT, "ROOT");
  KyCInventoryItem* item = root.get();
  for (unsigned int level = 1; level <= 300; ++level)
  {
    item->createParameter<unsigned int>(pool, SIZE, level, "", false, level);
    item = item->addPath(pool, BOARD[level]);
  }
  return root;
}

// Boards and channels as a real system has them: the same names again and again, some of them not registered.
TItem wide(KyCErrorListPool& pool, KyForm)
{
  TItem root = newItem(pool, ROOT, "ROOT");
  root->createParameter<KyCString>(pool, SYSTEMNAME, KyCString("bench 7"), "", true, 0);
  for (unsigned int board = 1; board <= 12; ++board)
  {
    KyCInventoryItem& item = *add(*root, newItem(pool, BOARD[board], board % 3 == 0 ? "special board" : "BOARD"));
    item.createParameter<KyCString>(pool, SERIAL_NUMBER, KyCString("SN-0"), "", false, board);
    item.createParameter<KyCVersion>(pool, VERSION, KyCVersion(2, board, 0, 0), "", false, 0);
    for (unsigned int channel = 1; channel <= 8; ++channel)
    {
      const KyCInventoryAddress id = IOCHANNEL[channel];
      item.createParameter<int>(pool, id / VOLTAGE_MIN, -10, "V", true, 0);
      item.createParameter<int>(pool, id / VOLTAGE_MAX, 10, "V", true, 0);
    }
  }
  return root;
}
}    // namespace

const std::vector<KyGoldenTree>& kyGoldenTrees()
{
  static const std::vector<KyGoldenTree> trees = {
      {"empty", "a section without data", nothing},
      {"root", "one item without parameters", rootAlone},
      {"types", "a parameter of each of the twelve types", everyType},
      {"extremes", "limits of every type, bit patterns of NaNs, texts with every byte, the largest IDs and indices",
       extremes},
      {"units", "units of up to 357 bytes, of which at most 100 are stored", units},
      {"deep", "301 levels", deep},
      {"wide", "many siblings, repeated descriptions", wide},
  };
  return trees;
}

std::vector<unsigned char> kyStoredSection(KyCErrorListPool& pool, KyCInventoryItem* root)
{
  KyCBuffer buffer(pool);
  KyCInventoryData::generateInventorySection(pool, buffer, root);
  return std::vector<unsigned char>(buffer.getStorage(), buffer.getStorage() + buffer.getWritePosition());
}
