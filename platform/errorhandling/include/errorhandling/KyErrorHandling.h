// KyErrorHandling.h: everything of libKyErrorHandling.
#pragma once

#include "errorhandling/KyCErrorList.h"
#include "errorhandling/KyCErrorListPool.h"
#include "errorhandling/KyCErrorManager.h"
#include "errorhandling/KyCMessageTable.h"
#include "errorhandling/KyIErrorListener.h"
#include "errorhandling/KyNPoolAllocator.h"
#include "errorhandling/KyResText.h"
