#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "Identity/BestMatch.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

constexpr size_t kNameBufferSize = 128;
constexpr size_t kSlugBufferSize = 0x10000;
constexpr int16_t kStateActive = 2;
constexpr int16_t kStateTemporarilyActive = 3;

// The lookups that one request makes: where they look and what they have found so far.
struct Lookup {
  FontManagerInterface& manager;
  long workgroupID;
  bool& outExcludedRemote;
  CFArrayRef* inOutData;
  FontNameForm* outFoundName;
  int status = kErrorNotDone;

  bool HasFound() const { return FontRecord::Count(*inOutData) > 0; }

  // An empty name is no question. What is found takes the place of the array before.
  void Ask(const std::string& name, TypeOfFontName type) {
    if (name.empty()) return;
    CFArrayRef found = nullptr;
    status = manager.GetGlyphMarkDataForFontName(name.c_str(), type, outExcludedRemote, workgroupID, &found);
    if (!found) return;
    CFRelease(*inOutData);
    *inOutData = found;
    if (outFoundName) *outFoundName = {name, type};
  }

  // Whether the search for other forms of the name ends here.
  bool IsOver() const { return status == kErrorHornbeamNotRunning || (status == 0 && HasFound()); }
};

void AskForCruftlessNames(Lookup& lookup, const char* name) {
  char buffer[kNameBufferSize];
  std::strncpy(buffer, name, sizeof(buffer) - 1);
  buffer[sizeof(buffer) - 1] = '\0';
  while (GlyphMarkSupport::PSNameMightHaveCruftAppended(buffer, sizeof(buffer), buffer)) {
    lookup.Ask(buffer, TypeOfFontName::kPostScriptName);
    if (lookup.IsOver()) return;
    lookup.Ask(buffer, TypeOfFontName::kFamilyName);
    if (lookup.IsOver()) return;
    std::string spaced = buffer;
    std::replace(spaced.begin(), spaced.end(), '-', ' ');
    lookup.Ask(spaced, TypeOfFontName::kFamilyName);
    if (lookup.IsOver()) return;
  }
}

RetainPtr<CFArrayRef> ParseSlug(const char* slug, const char* fontName) {
  const RetainPtr<CFDataRef> data = ToCFData(slug);
  CFStringRef outReason = nullptr;
  const RetainPtr<CFPropertyListRef> list = adoptCF(
      CFPropertyListCreateFromXMLData(nullptr, data.get(), kCFPropertyListMutableContainers, &outReason));
  const RetainPtr<CFStringRef> reason = adoptCF(outReason);
  RetainPtr<CFArrayRef> array = retainCF(dynamicCF<CFArrayRef>(list.get()));
  if (FontRecord::Count(array.get()) > 0 && FontRecord::At(array.get(), 0)) return array;
  const std::string message = reason ? ToStdString(reason.get()) : "no list of font records";
  OutputIndentedAndFormattedString(
      0, "...CFPropertyListCreateFromXMLData failed on \"%s\".  OS message is:\n   \"%s\"", fontName,
      message.c_str());
  return nullptr;
}

void WriteState(CFMutableDictionaryRef font, const FontOrSetInfoRec& rec) {
  const bool isTemporary = rec.activationState == kStateTemporarilyActive;
  const bool isActive = isTemporary || rec.activationState == kStateActive;
  XCFUtils::PutULongIntoDictAsString(font, kGM_DatabaseIDKey, rec.databaseID);
  XCFUtils::PutLongIntoDictAsString(font, kGM_IsTempKey, isTemporary ? 1 : 0);
  XCFUtils::PutLongIntoDictAsString(font, kGM_IsActiveKey, isActive ? 1 : 0);
  XCFUtils::PutLongIntoDictAsString(font, kGM_ActivationStateKey, rec.activationState);
}

// Adds the records of one font's slug, unless its workgroup is disabled. Elements that are no records are
// left out.
void AppendSlug(FontManagerInterface& manager, CFArrayRef slug, const FontOrSetInfoRec& rec,
                bool& outExcludedRemote, RetainPtr<CFMutableArrayRef>& result) {
  auto first = dynamicCF<CFMutableDictionaryRef>(CFArrayGetValueAtIndex(slug, 0));
  if (!first) return;
  if (manager.IsRemoteWorkgroupTypeDisabled(GetWorkgroupType(first))) {
    outExcludedRemote = true;
    OutputIndentedAndFormattedString(
        0, "Excluding version with checksum %d because it's remote and we're running standalone.",
        static_cast<int>(XCFUtils::GetLongFromDictString(first, kGM_GlyphMark_1_2_Key)));
    return;
  }
  WriteState(first, rec);
  if (!result) result = MakeArray();
  const CFIndex count = CFArrayGetCount(slug);
  for (CFIndex i = 0; i < count; ++i) {
    if (CFDictionaryRef font = FontRecord::At(slug, i)) CFArrayAppendValue(result.get(), font);
  }
}

}  // namespace

int FontManagerInterface::GetGlyphMarkDataForFontName(const char* name, TypeOfFontName type,
                                                      bool& outExcludedRemote, long workgroupID,
                                                      CFArrayRef* inOutData) {
  OperationTrace trace("FontManagerInterface::GetGlyphMarkDataForFontName",
                       "Entering %s('%s', %d, workgroupID=%ld)",
                       "FontManagerInterface::GetGlyphMarkDataForFontName", name ? name : "",
                       static_cast<int>(type), workgroupID);
  if (!name || !inOutData) return kErrorBadParameter;

  long count = 0;
  std::string token;
  int status = CountNamedFonts(name, type, workgroupID, &count, token);
  if (status != 0) count = 0;

  std::vector<char> buffer;
  RetainPtr<CFMutableArrayRef> result;
  for (long index = 1; index <= count && status != kErrorHornbeamNotRunning; ++index) {
    FontOrSetInfoRec rec;
    status = GetNamedFontInfo(name, type, workgroupID, index, token, &rec);
    const RetainPtr<CFMutableDictionaryRef> fontInfo = adoptCF(rec.fontInfo);
    if (status != 0) continue;

    buffer.assign(kSlugBufferSize, '\0');
    unsigned long size = kSlugBufferSize;
    status = GetGlyphMarkInfo(rec.databaseID, fontInfo.get(), buffer.data(), &size);
    buffer.back() = '\0';
    if (status != 0 || buffer.front() == '\0') {
      OutputIndentedAndFormattedString(0, "...GetGlyphMarkInfo returned %d for %s (databaseID %d).", status,
                                       name, static_cast<int>(rec.databaseID));
      continue;
    }
    const RetainPtr<CFArrayRef> slug = ParseSlug(buffer.data(), name);
    if (slug) AppendSlug(*this, slug.get(), rec, outExcludedRemote, result);
  }

  if (result) *inOutData = result.leakRef();
  EndGetGlyphMarkInfo(token);
  trace.Exiting("%s() returning %d", "FontManagerInterface::GetGlyphMarkDataForFontName", status);
  return status;
}

int FontManagerInterface::GetGlyphMarkData(CFDictionaryRef font, TypeOfFontName type, bool& outExcludedRemote,
                                           long workgroupID, CFArrayRef* inOutData,
                                           FontNameForm* outFoundName) {
  OperationTrace trace("FontManagerInterface::GetGlyphMarkData", "Entering %s(%d, workgroupID=%ld)",
                       "FontManagerInterface::GetGlyphMarkData", static_cast<int>(type), workgroupID);
  CFStringRef name = nullptr;
  if (type == TypeOfFontName::kPostScriptName) {
    name = XCFUtils::GetCFStringFromDict(font, kGM_PostScriptNameKey);
  } else if (type == TypeOfFontName::kFamilyName) {
    name = XCFUtils::GetCFStringFromDict(font, kGM_FamilyKey);
  }
  if (!name || CFStringGetLength(name) == 0 || !inOutData || !*inOutData) {
    OutputIndentedAndFormattedString(0, "...GetGlyphMarkData has no name to look up or no array to fill.");
    return kErrorNotDone;
  }
  // A name that doesn't fit leaves an empty one, which nobody is asked for.
  char buffer[kNameBufferSize];
  if (!CFStringGetCString(name, buffer, sizeof(buffer), kCFStringEncodingUTF8)) {
    OutputIndentedAndFormattedString(0, "...GetGlyphMarkData doesn't look up a name this long.");
    buffer[0] = '\0';
  }

  Lookup lookup{*this, workgroupID, outExcludedRemote, inOutData, outFoundName};
  lookup.Ask(buffer, type);
  if (lookup.status == 0 && !lookup.HasFound()) {
    lookup.Ask(GlyphMarkSupport::StripIllegalPostScriptCharacters(buffer), type);
  }
  if (lookup.status == 0 && !lookup.HasFound()) AskForCruftlessNames(lookup, buffer);

  const CFIndex count = FontRecord::Count(*inOutData);
  if (count > 1) {
    OutputIndentedAndFormattedString(0, "...Sorting a %d-element array of GlyphMark data for '%s'.",
                                     static_cast<int>(count), buffer);
    // What a lookup made can be changed; what the caller gave is a mutable array by its contract.
    auto array = static_cast<CFMutableArrayRef>(const_cast<void*>(static_cast<const void*>(*inOutData)));
    CFArraySortValues(array, CFRangeMake(0, count), PickBestMatchCallBack,
                      const_cast<void*>(static_cast<const void*>(font)));
  }
  trace.Exiting("%s() returning %d", "FontManagerInterface::GetGlyphMarkData", lookup.status);
  return lookup.status;
}
