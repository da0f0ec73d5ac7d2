// KyCompositeFactoryApi.h: marks what libKyCompositeFactory exports.
#pragma once

#define KY_COMPOSITEFACTORY_API __attribute__((visibility("default")))
