// cases.cpp: what must not compile. tests/nocompile/check compiles this file with KY_CASE=0, where everything stands as it
// should be, and then once for each case with what must be refused in its place.
#include "errorhandling/KyErrorHandling.h"
#include "inventory/KyInventoryTree.h"

#define KY_EITHER_1(wrong, right) wrong
#define KY_EITHER_0(wrong, right) right
#define KY_JOIN(a, b) a##b

// KY_MUST_NOT(flag, wrong, right): `wrong` where the case's flag is 1, `right` otherwise.
#define KY_MUST_NOT(flag, wrong, right) KY_JOIN(KY_EITHER_, flag)(wrong, right)

// One flag for each case: 1 for the one that is compiled.
#include "flags.h"

class KyIncompleteListener : public KyIErrorListener
{
  void onError(const KyErrorEntry&) override {}
};

class KyCompleteListener : public KyIErrorListener
{
  void onError(const KyErrorEntry&) override {}
  void onWarning(const KyErrorEntry&) override {}
};

void use(KyCErrorListPool& pool, KyCInventoryItem& item, const KyCInventoryItem& constantItem,
         KyCInventoryParameter& parameter, const KyCInventoryAddress& address, KyCInventoryAddress& target)
{
  // What owns something that cannot be shared is not copied.
  KY_MUST_NOT(KY_CASE_1, KyCErrorListPool copy(pool), KyCErrorListPool copy);
  static_cast<void>(copy);
  KY_MUST_NOT(KY_CASE_2, KyCInventoryItem twin(item), KyCInventoryItem twin(pool, address, ""));
  KyCBuffer buffer(pool);
  KY_MUST_NOT(KY_CASE_3, KyCBuffer second(buffer), KyCBuffer second(pool));
  KY_MUST_NOT(KY_CASE_4, KyCInventoryItem::MyStream sink, KyCInventoryItem::MyStream sink(false));

  // There is one of them, or none.
  KY_MUST_NOT(KY_CASE_5, KyCErrorManager manager, KyCErrorManager* manager = KyCErrorManager::getSingleton());
  static_cast<void>(manager);
  KY_MUST_NOT(KY_CASE_6, KyCInventoryData data, using KyData = KyCInventoryData);

  // The base classes of items and parameters are not for users.
  KY_MUST_NOT(KY_CASE_7, KyCComposite* node = &item, KyCInventoryItem* node = &item);
  static_cast<void>(node);
  KY_MUST_NOT(KY_CASE_8, KyCParam* leaf = &parameter, KyCInventoryParameter* leaf = &parameter);
  static_cast<void>(leaf);
  KY_MUST_NOT(KY_CASE_9, item.setFriend(nullptr), item.getDescription());

  // Values are of the twelve types, and nothing is converted on the way.
  KY_MUST_NOT(KY_CASE_10, item.createParameter(pool, address, 1L, "", false, 0),
              item.createParameter(pool, address, 1, "", false, 0));
  KY_MUST_NOT(KY_CASE_11, item.createParameter(pool, address, true, "", false, 0),
              item.createParameter<unsigned char>(pool, address, 1, "", false, 0));
  KY_MUST_NOT(KY_CASE_12, item.createParameter(pool, address, "text", "", false, 0),
              item.createParameter(pool, address, KyCString("text"), "", false, 0));
  KY_MUST_NOT(KY_CASE_13, parameter.getValue<char>(pool), parameter.getValue<signed char>(pool));
  KY_MUST_NOT(KY_CASE_14, parameter.setValue<const char*>(pool, "text"), parameter.setValue<KyCString>(pool, "text"));
  KY_MUST_NOT(KY_CASE_15, parameter.getDesignatedValue<const char*>(pool),
              parameter.getDesignatedValue<KyCString>(pool));
  KY_MUST_NOT(KY_CASE_16, parameter.setDesignatedValue(pool, 1UL), parameter.setDesignatedValue(pool, 1U));

  // Kept on purpose: looking for an item is no const operation, looking for a parameter is.
  KY_MUST_NOT(KY_CASE_17, constantItem.getItem(address), constantItem.getParameter(address));

  // Predefined IDs and their map are read only.
  KY_MUST_NOT(KY_CASE_18, KyNInventoryIDs::BOARD = address, target = KyNInventoryIDs::BOARD);
  KY_MUST_NOT(KY_CASE_19, KyNInventoryIDs::BOARD.append(address), target.append(KyNInventoryIDs::BOARD));
  KY_MUST_NOT(KY_CASE_20, KyCInventoryTagMap map(KyNInventoryIDs::Map),
              const KyCInventoryTagMap& map = KyNInventoryIDs::Map);
  static_cast<void>(map);

  // Arguments of reports and formatted text fit their conversions.
  KY_MUST_NOT(KY_CASE_21, pool.setError(0x1500001, 1, "use", "%s", 12), pool.setError(0x1500001, 1, "use", "%d", 12));
  KY_MUST_NOT(KY_CASE_22, sink.writef("%s", 12), sink.writef("%d", 12));

  // A listener takes errors and warnings.
  KY_MUST_NOT(KY_CASE_23, KyIncompleteListener listener, KyCompleteListener listener);
  static_cast<void>(listener);

  // A buffer, a serializer and a factory are not made of a pool by accident.
  KY_MUST_NOT(KY_CASE_24, KyCBuffer third = pool, KyCBuffer third(pool));
  KY_MUST_NOT(KY_CASE_25, KyCInventoryItemFactory factory = pool, KyCInventoryItemFactory factory(pool));
}
