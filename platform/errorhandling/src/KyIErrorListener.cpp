// KyIErrorListener.cpp: home of the interface's virtual table.
#include "errorhandling/KyIErrorListener.h"

KyIErrorListener::~KyIErrorListener() = default;
