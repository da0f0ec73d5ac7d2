// KyCompositeApi.h: marks what libKyComposite exports.
#pragma once

#define KY_COMPOSITE_API __attribute__((visibility("default")))
