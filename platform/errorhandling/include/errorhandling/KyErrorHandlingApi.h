// KyErrorHandlingApi.h: marks what libKyErrorHandling exports.
#pragma once

#define KY_ERRORHANDLING_API __attribute__((visibility("default")))
