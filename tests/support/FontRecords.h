#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"

/// Font records and lists as a test writes them down.

using FontFields = std::initializer_list<std::pair<CFStringRef, std::string>>;

inline RetainPtr<CFMutableDictionaryRef> MakeFontRecord(FontFields fields) {
  auto record = MakeDictionary();
  for (const auto& [key, value] : fields) XCFUtils::PutStringIntoDict(record.get(), key, value);
  return record;
}

/// A record as a table of cases writes it, with the texts of its keys: "FontKind=TrueType|Version=1.0".
inline RetainPtr<CFMutableDictionaryRef> ParseFontRecord(std::string_view text) {
  auto record = MakeDictionary();
  while (!text.empty()) {
    const std::string_view field = text.substr(0, text.find('|'));
    const size_t equals = field.find('=');
    XCFUtils::PutStringIntoDict(record.get(), ToCFString(field.substr(0, equals)).get(),
                                field.substr(equals + 1));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
  }
  return record;
}

/// A record as the agent hands it out for a matched font.
inline RetainPtr<CFMutableDictionaryRef> MakeMatchedFont(const std::string& name, unsigned int fontID,
                                                         const std::string& isActive = "0") {
  return MakeFontRecord({{kGM_PostScriptNameKey, name},
                         {kGM_DatabaseIDKey, std::to_string(fontID)},
                         {kGM_IsActiveKey, isActive}});
}

inline RetainPtr<CFMutableArrayRef> MakeFontList(
    const std::vector<RetainPtr<CFMutableDictionaryRef>>& records) {
  return ToCFArray(records);
}

inline std::vector<unsigned int> FontIDsOf(CFArrayRef fonts) {
  std::vector<unsigned int> fontIDs;
  for (CFIndex i = 0; i < FontRecord::Count(fonts); ++i) {
    fontIDs.push_back(FontRecord::GetDatabaseID(FontRecord::At(fonts, i)));
  }
  return fontIDs;
}

/// The PostScript names in order; "-" for an entry without one.
inline std::vector<std::string> FontNamesOf(CFArrayRef fonts) {
  std::vector<std::string> names;
  for (CFIndex i = 0; i < FontRecord::Count(fonts); ++i) {
    CFStringRef name = FontRecord::GetPostScriptName(FontRecord::At(fonts, i));
    names.push_back(name ? ToStdString(name) : "-");
  }
  return names;
}

inline std::string FontValue(CFDictionaryRef font, CFStringRef key) {
  return XCFUtils::GetStringFromDict(font, key);
}
