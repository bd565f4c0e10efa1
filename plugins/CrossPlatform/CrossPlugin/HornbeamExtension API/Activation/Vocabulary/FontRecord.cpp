#include "Activation/Vocabulary/FontRecord.h"

#include <limits>

#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Memory/CFCast.h"
#include "XCFUtils.h"

namespace FontRecord {

CFDictionaryRef At(CFArrayRef fonts, CFIndex index) {
  return dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(fonts, index));
}

CFStringRef GetPostScriptName(CFDictionaryRef font) {
  return XCFUtils::GetCFStringFromDict(font, kGM_PostScriptNameKey);
}

uint32_t GetDatabaseID(CFDictionaryRef font) {
  const long value = XCFUtils::GetLongFromDictString(font, kGM_DatabaseIDKey);
  const bool fits = value > 0 && value <= static_cast<long>(std::numeric_limits<uint32_t>::max());
  return fits ? static_cast<uint32_t>(value) : 0;
}

CFIndex Count(CFArrayRef fonts) {
  return fonts ? CFArrayGetCount(fonts) : 0;
}

}  // namespace FontRecord
