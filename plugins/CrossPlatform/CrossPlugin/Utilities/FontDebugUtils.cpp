#include "Utilities/FontDebugUtils.h"

void FontDebugUtils::DumpFontNames(CFArrayRef, const char*) {}
