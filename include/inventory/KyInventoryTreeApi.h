// KyInventoryTreeApi.h: marks what libKyInventoryTree exports.
#pragma once

#define KY_INVENTORY_API __attribute__((visibility("default")))
