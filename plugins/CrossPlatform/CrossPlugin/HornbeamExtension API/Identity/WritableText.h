#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"

/// A copy of the list in which no text holds a character that XML 1.0 can't: control characters other than
/// tab and line ends, half a surrogate pair, U+FFFE and U+FFFF are left out. Containers in it are copied too,
/// down to the depth that a property list may have; null for a deeper one.
RetainPtr<CFArrayRef> CreateListOfWritableText(CFArrayRef list);
