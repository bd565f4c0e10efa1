#include "Activation/Vocabulary/WorkgroupRecord.h"

#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Memory/CFCast.h"
#include "XCFUtils.h"

long GetWorkgroupType(CFDictionaryRef record) {
  if (record == nullptr) return 0;
  long type = 0;
  CFNumberRef number = dynamicCF<CFNumberRef>(CFDictionaryGetValue(record, kGM_WorkgroupTypeKey));
  if (number != nullptr) {
    CFNumberGetValue(number, kCFNumberLongType, &type);
    return type;
  }
  return XCFUtils::GetLongFromDictString(record, kGM_WorkgroupTypeKey);
}

int GetWorkgroupRecordID(CFDictionaryRef record) {
  return static_cast<int>(XCFUtils::GetLongFromDictString(record, kGM_WorkgroupIDKey));
}
