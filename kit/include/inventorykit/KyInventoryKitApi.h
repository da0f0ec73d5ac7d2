// KyInventoryKitApi.h: marks what libKyInventoryKit exports.
#pragma once

#define KY_INVENTORYKIT_API __attribute__((visibility("default")))
