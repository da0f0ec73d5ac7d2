// KyPluginLibrary.h: what the tests and their plug-in library agree on.
#pragma once

#include "composite/KyCComposite.h"

constexpr unsigned int KY_PLUGIN_REPORT = 1;    // code that a plug-in's traverseHook reports; the function is its name
constexpr unsigned int KY_PLUGIN_REFUSED_UNIT = 13;    // a unit that it makes nothing of
constexpr unsigned int KY_PLUGIN_OWNED_UNIT = 14;      // a unit that comes with another parent
