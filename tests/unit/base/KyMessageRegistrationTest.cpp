// KyMessageRegistrationTest.cpp: the life of the catalogue's registration, and the way to the error manager. The
// catalogue's source is part of this program, so that registration happens here and nowhere else.
#include <gtest/gtest.h>

#include <type_traits>

#include "base/KyErrorManagerAccess.h"
#include "base/KyMessageCatalogue.h"
#include "errorhandling/KyErrorHandling.h"
#include "support/KyRegisteredText.h"

using KyInventoryTree::KyCErrMsgResourceHandler;

static_assert(std::is_empty<KyCErrMsgResourceHandler>::value, "no data members");
static_assert(std::is_nothrow_destructible<KyCErrMsgResourceHandler>::value, "nothing escapes while unloading");
static_assert(!std::is_copy_constructible<KyCErrMsgResourceHandler>::value, "one withdrawal per registration");
static_assert(sizeof(void*) != 4 || sizeof(KyInventoryTree::messageCatalogue) == 16, "registration record on x86");

TEST(KyMessageRegistration, theRecordHasSixGroupsOfSixtySixMessages)
{
  const KyResText& record = KyInventoryTree::messageCatalogue;
  EXPECT_EQ(record.groupCount, 6u);
  EXPECT_EQ(record.codeBase, 0x01300000u);
  const unsigned int boundaries[] = {0, 17, 45, 56, 58, 59, 66};
  for (unsigned int n = 0; n < 7; ++n)
    EXPECT_EQ(record.groupBoundaries[n], boundaries[n]) << n;
  EXPECT_STREQ(record.messages[0], "Cannot deserialize inventory data from file %1.");
  EXPECT_STREQ(record.messages[65],
               "Internal error. Kyrel Support information: Cannot attach KyCComposite object. Error code: %1");
}

TEST(KyMessageRegistration, textsAreKnownFromRegistrationToTheHandlersEnd)
{
  EXPECT_EQ(registeredText(0x130000C), "Message 0x130000C");
  {
    KyInventoryTree::registerMessages();
    const KyCErrMsgResourceHandler handler;
    EXPECT_EQ(registeredText(0x130000C), "Inventory section is corrupt.");
  }
  EXPECT_EQ(registeredText(0x130000C), "Message 0x130000C");
}

TEST(KyMessageRegistration, theHandlersBeginRegistersNothing)
{
  const KyCErrMsgResourceHandler handler;
  EXPECT_EQ(registeredText(0x130000C), "Message 0x130000C");
}

TEST(KyErrorManagerAccess, theSingletonServesWhileThePointerIsNull)
{
  KyCErrorManager* const singleton = KyCErrorManager::getSingleton();
  KyCErrorManager::s_pErrorManager = nullptr;
  EXPECT_EQ(&kyErrorManager(), singleton);
  KyCErrorManager::s_pErrorManager = singleton;
}

TEST(KyErrorManagerAccess, thePointerIsUsedOnceItIsSet)
{
  KyCErrorManager* const singleton = KyCErrorManager::getSingleton();
  alignas(KyCErrorManager) static unsigned char other[sizeof(KyCErrorManager)];
  KyCErrorManager::s_pErrorManager = reinterpret_cast<KyCErrorManager*>(other);
  EXPECT_EQ(static_cast<void*>(&kyErrorManager()), other);
  KyCErrorManager::s_pErrorManager = singleton;
  EXPECT_EQ(&kyErrorManager(), singleton);
}
