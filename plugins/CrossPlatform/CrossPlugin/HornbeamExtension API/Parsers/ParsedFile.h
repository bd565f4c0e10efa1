#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "Memory/RetainPtr.h"
#include "Parsers/FStreamWrapper.h"

/// The file of a parser: how to open it, and the stream while it is open.
struct ParsedFile {
  /// \param fileURL  May be null. Both are retained.
  ParsedFile(CFURLRef fileURL, CFStringRef filePath) : url(retainCF(fileURL)), path(retainCF(filePath)) {}

  bool Open(bool readOnly) { return OpenFileStreamFromCFURLRef(url.get(), path.get(), &stream, readOnly); }

  RetainPtr<CFURLRef> url;
  RetainPtr<CFStringRef> path;
  FStreamWrapper stream;
};
