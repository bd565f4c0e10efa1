#include "FontFinder.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "Complaint.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/RecordKeys.h"

namespace {

// As many as Kiln tells at once.
constexpr unsigned long kMaxFontsOfOneName = 100000;

}  // namespace

FontFinder::FontFinder(const KilnConnection& kiln, std::vector<unsigned int> workgroups)
    : m_kiln(kiln), m_workgroups(workgroups.empty() ? std::vector<unsigned int>{0} : std::move(workgroups)) {}

bool FontFinder::Find(const std::vector<std::string>& texts, Take take,
                      std::vector<NamedFont>& outFonts) const {
  bool foundAll = true;
  for (const std::string& text : texts) {
    std::vector<NamedFont> fonts;
    ErrCode code = 0;
    if (const unsigned int id = ParseFontID(text)) {
      NamedFont font;
      code = FindByID(id, font);
      if (code == 0) fonts.push_back(font);
    } else {
      code = FindByName(text, fonts);
    }
    if (fonts.empty()) {
      const bool isUnknown = code == 0 || code == CoreErrorCodes::kNotFound;
      isUnknown ? Complain(text + ": no such font") : ComplainOfCode(text, code);
      foundAll = false;
    }
    if (take == Take::kBest && fonts.size() > 1) fonts.resize(1);
    for (NamedFont& font : fonts) {
      const bool isThere = std::any_of(outFonts.begin(), outFonts.end(),
                                       [&font](const NamedFont& other) { return other.id == font.id; });
      if (!isThere) outFonts.push_back(std::move(font));
    }
  }
  return foundAll;
}

ErrCode FontFinder::FindByID(unsigned int id, NamedFont& outFont) const {
  const RetainPtr<CFMutableDictionaryRef> query = MakeDictionary();
  XCFUtils::PutULongIntoDictAsString(query.get(), RecordKeys::kDatabaseID, id);
  CFMutableDictionaryRef info = nullptr;
  const ErrCode code = m_kiln.Call(
      KILN_ENTRY(GetFontInfoByID), m_workgroups.data(), static_cast<unsigned long>(m_workgroups.size()),
      static_cast<CFDictionaryRef>(query.get()), static_cast<unsigned int*>(nullptr), &info);
  const RetainPtr<CFMutableDictionaryRef> owned = adoptCF(info);
  if (code == 0) {
    // The agent has the record of a system font wherever it is asked for.
    const auto workgroup =
        static_cast<unsigned int>(XCFUtils::GetULongFromDictString(info, RecordKeys::kWorkgroupID));
    const auto isWanted = [workgroup](unsigned int wanted) { return wanted == 0 || wanted == workgroup; };
    if (!std::any_of(m_workgroups.begin(), m_workgroups.end(), isWanted)) return CoreErrorCodes::kNotFound;
    outFont = {id, XCFUtils::GetStringFromDict(info, RecordKeys::kPostScriptName),
               XCFUtils::GetBoolFromDictString(info, RecordKeys::kIsSystem)};
  }
  return code;
}

ErrCode FontFinder::FindByName(const std::string& name, std::vector<NamedFont>& outFonts) const {
  std::vector<unsigned int> ids(kMaxFontsOfOneName);
  unsigned int count = 0;
  const ErrCode code =
      m_kiln.Call(KILN_ENTRY(GetFontsByPostscriptName), name.c_str(), m_workgroups.data(),
                  static_cast<unsigned long>(m_workgroups.size()), ids.data(), kMaxFontsOfOneName, &count);
  if (code == 0) {
    for (unsigned int i = 0; i < count; ++i) outFonts.push_back({ids[i], name, false});
  }
  return code;
}

unsigned int ParseFontID(const std::string& text) {
  unsigned int id = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, id);
  return error == std::errc() && rest == end ? id : 0;
}

std::vector<unsigned int> IDsOf(const std::vector<NamedFont>& fonts) {
  std::vector<unsigned int> ids;
  ids.reserve(fonts.size());
  for (const NamedFont& font : fonts) ids.push_back(font.id);
  return ids;
}
