#include "KilnLibrary.h"

#include "Memory/CFVector.h"
#include "XCFUtils.h"

namespace {

// Among the agent's raw states.
constexpr unsigned long kMissingState = 7;
constexpr unsigned long kUnusableState = 8;

std::string Text(CFDictionaryRef dictionary, const char* key) {
  return XCFUtils::GetStringFromDict(dictionary, ToCFString(key).get());
}

unsigned long Number(CFDictionaryRef dictionary, const char* key) {
  return XCFUtils::GetULongFromDictString(dictionary, ToCFString(key).get());
}

}  // namespace

ErrCode KilnLibrary::AddPaths(unsigned int workgroupID, const std::vector<std::string>& paths,
                              KilnProgressProc progress, void* context,
                              std::vector<FileResult>& outResults) const {
  const RetainPtr<CFMutableArrayRef> list = MakeArray();
  std::vector<FileResult> unsayable;
  for (const std::string& path : paths) {
    if (const RetainPtr<CFStringRef> text = ToCFString(path)) {
      CFArrayAppendValue(list.get(), text.get());
    } else {
      unsayable.push_back({path, "failed", "The name isn't UTF-8 text.", {}});
    }
  }
  const RetainPtr<CFMutableArrayRef> results = MakeArray();
  const ErrCode code =
      m_kiln.Call(KILN_ENTRY(KilnLibraryAddPaths), workgroupID, list.get(), progress, context, results.get());
  if (code != 0) return code;
  outResults.insert(outResults.end(), unsayable.begin(), unsayable.end());
  for (const auto& entry : ToVector<CFDictionaryRef>(results.get())) {
    FileResult result;
    result.path = Text(entry.get(), "path");
    result.status = Text(entry.get(), "status");
    result.message = Text(entry.get(), "message");
    const RetainPtr<CFStringRef> key = ToCFString("fonts");
    if (const auto fonts = dynamicCF<CFArrayRef>(CFDictionaryGetValue(entry.get(), key.get()))) {
      result.fonts = ToStringVector(fonts);
    }
    outResults.push_back(std::move(result));
  }
  return 0;
}

ErrCode KilnLibrary::ListFonts(std::vector<Font>& outFonts) const {
  const RetainPtr<CFMutableArrayRef> fonts = MakeArray();
  const ErrCode code = m_kiln.Call(KILN_ENTRY(KilnLibraryListFonts), fonts.get());
  if (code != 0) return code;
  for (const auto& record : ToVector<CFDictionaryRef>(fonts.get())) {
    Font font;
    font.databaseID = Number(record.get(), "DatabaseID");
    font.postScriptName = Text(record.get(), "PostScriptName");
    font.family = Text(record.get(), "Family");
    font.style = Text(record.get(), "Style");
    font.kind = Text(record.get(), "FontKind");
    font.version = Text(record.get(), "Version");
    font.active = Text(record.get(), "IsActive") == "1";
    font.missing = Number(record.get(), "ActivationStatus") == kMissingState;
    font.damaged = Number(record.get(), "ActivationStatus") == kUnusableState;
    outFonts.push_back(std::move(font));
  }
  return 0;
}

ErrCode KilnLibrary::GetStatus(Status& outStatus) const {
  const RetainPtr<CFMutableDictionaryRef> status = MakeDictionary();
  const ErrCode code = m_kiln.Call(KILN_ENTRY(KilnLibraryStatus), status.get());
  if (code != 0) return code;
  outStatus.version = Text(status.get(), "version");
  outStatus.processID = Text(status.get(), "pid");
  outStatus.vaultPath = Text(status.get(), "vaultPath");
  outStatus.fontCount = Number(status.get(), "fontCount");
  outStatus.activeFontCount = Number(status.get(), "activeFontCount");
  outStatus.requestCount = Number(status.get(), "requestCount");
  outStatus.vaultStatus = static_cast<ErrCode>(Number(status.get(), "vaultStatus"));
  return 0;
}
