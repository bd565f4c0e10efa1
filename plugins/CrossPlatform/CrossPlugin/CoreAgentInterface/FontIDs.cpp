#include "CoreAgentInterface/FontIDs.h"

#include <algorithm>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "XCFUtils.h"

std::unique_ptr<unsigned int[]> CreateArrayFromVector(const std::vector<unsigned int>& ids) {
  auto array = std::make_unique<unsigned int[]>(ids.size());
  std::copy(ids.begin(), ids.end(), array.get());
  return array;
}

void AppendArrayToVector(std::vector<unsigned long>& out, const unsigned int* ids, unsigned long count) {
  out.insert(out.end(), ids, ids + count);
}

std::vector<unsigned int> GetFontIDsFromFontInfoArray(CFArrayRef fonts, bool skipSystemFonts) {
  std::vector<unsigned int> ids;
  const CFIndex count = FontRecord::Count(fonts);
  ids.reserve(static_cast<size_t>(count));
  for (CFIndex index = 0; index < count; ++index) {
    CFDictionaryRef font = FontRecord::At(fonts, index);
    const unsigned int id = FontRecord::GetDatabaseID(font);
    if (id == 0) continue;
    if (skipSystemFonts && XCFUtils::GetLongFromDictString(font, kGM_IsSystemKey) != 0) continue;
    ids.push_back(id);
  }
  return ids;
}

std::string GetPostscriptName(CFDictionaryRef font) {
  return XCFUtils::GetStringFromDict(font, kGM_PostScriptNameKey);
}
