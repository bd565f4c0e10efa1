#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace FontDebugUtils {

/// A place for a breakpoint that wants a font list; does nothing.
void DumpFontNames(CFArrayRef fonts, const char* title);

}  // namespace FontDebugUtils
