// KyInventoryHostApi.h: marks what libKyInventoryHost exports.
#pragma once

#define KY_INVENTORYHOST_API __attribute__((visibility("default")))
