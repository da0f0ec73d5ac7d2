// KyCErrorManager.h: the process-wide error manager.
#pragma once

#include "errorhandling/KyCErrorListPool.h"
#include "errorhandling/KyIErrorListener.h"
#include "errorhandling/KyResText.h"

class KY_ERRORHANDLING_API KyCErrorManager
{
 public:
  static KyCErrorManager* s_pErrorManager;    // null until getSingleton() is called first
  static KyCErrorManager* getSingleton();

  KyCErrorManager(const KyCErrorManager&) = delete;
  KyCErrorManager& operator=(const KyCErrorManager&) = delete;

  KyCErrorListPool& getMasterErrorList() const;
  KyCErrorListPool* createErrorList(unsigned int ownerId, unsigned int listId, unsigned int entryCapacity,
                                    unsigned int entryGrowth, unsigned int textCapacity);
  void deleteErrorList(KyCErrorListPool& list);
  void sendErrorList(KyCErrorListPool& list, unsigned int options);
  void sendWarning(unsigned int code, unsigned int line, const char* function, const char* argFormat, ...);
  KyIErrorListener* setListener(KyIErrorListener* listener);
  void _registerMessages(const KyResText* table);
  void _unregisterMessages(const KyResText* table);

 private:
  KyCErrorManager();
  ~KyCErrorManager();
};
