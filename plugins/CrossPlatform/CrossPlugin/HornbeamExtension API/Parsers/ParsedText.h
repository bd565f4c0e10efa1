#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string_view>

#include "Memory/RetainPtr.h"

/// Text out of a graphic file: UTF-8, and what isn't valid UTF-8 byte for byte as Latin-1, so that no name
/// gets lost. Never null.
RetainPtr<CFStringRef> MakeParsedText(std::string_view bytes);
