#include "KilnLibrary.h"

#include "Memory/CFCast.h"
#include "Memory/CFVector.h"
#include "Utilities/AgentLauncher.h"
#include "XCFUtils.h"

namespace {

constexpr char kAgentName[] = "Kiln";
constexpr char kLibraryName[] = "TalworthPluginInterface.framework";

template <typename Entry>
bool BindEntry(CFBundleRef bundle, const char* name, Entry& outEntry) {
  outEntry = reinterpret_cast<Entry>(CFBundleGetFunctionPointerForName(bundle, ToCFString(name).get()));
  return outEntry != nullptr;
}

RetainPtr<CFMutableArrayRef> NewArray() {
  return adoptCF(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
}

std::string Text(CFDictionaryRef dictionary, const char* key) {
  return XCFUtils::GetStringFromDict(dictionary, ToCFString(key).get());
}

unsigned long Number(CFDictionaryRef dictionary, const char* key) {
  return XCFUtils::GetULongFromDictString(dictionary, ToCFString(key).get());
}

CFDictionaryRef DictionaryAt(CFArrayRef array, CFIndex index) {
  return dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(array, index));
}

}  // namespace

KilnLibrary::KilnLibrary(CFBundleRef bundle) : m_bundle(retainCF(bundle)) {}

KilnLibrary::~KilnLibrary() {
  if (m_cleanUp && m_getFacade) m_cleanUp(m_getFacade());
}

bool KilnLibrary::IsKilnRunning() {
  std::string folder;
  return GetPathToRunningProcessExe(kAgentName, folder) == 0;
}

std::unique_ptr<KilnLibrary> KilnLibrary::Open(Launch launch, std::string& outProblem) {
  std::string folder;
  if (GetPathToRunningProcessExe(kAgentName, folder) != 0) {
    if (launch == Launch::kNever) {
      outProblem = "Kiln isn't running";
      return nullptr;
    }
    if (FindAndLaunchKiln(&folder) != 0) {
      outProblem =
          "Kiln isn't running and couldn't be started; com.talworth.Kiln-LaunchInfo.conf must say where it "
          "is,"
          " and Kiln.log may say why it ended";
      return nullptr;
    }
  }
  const std::string path = folder + kLibraryName;
  const RetainPtr<CFURLRef> url = adoptCF(CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true));
  const RetainPtr<CFBundleRef> bundle = adoptCF(CFBundleCreate(nullptr, url.get()));
  std::unique_ptr<KilnLibrary> library(bundle ? new KilnLibrary(bundle.get()) : nullptr);
  if (!library || !library->Bind()) {
    outProblem = path + ": can't be loaded";
    return nullptr;
  }
  return library;
}

bool KilnLibrary::Bind() {
  return BindEntry(m_bundle.get(), "GetPluginFacadeInstance", m_getFacade) &&
         BindEntry(m_bundle.get(), "CleanUpOnShutdown", m_cleanUp) &&
         BindEntry(m_bundle.get(), "KilnLibraryAddPaths", m_addPaths) &&
         BindEntry(m_bundle.get(), "KilnLibraryListFonts", m_listFonts) &&
         BindEntry(m_bundle.get(), "KilnLibraryStatus", m_status);
}

ErrCode KilnLibrary::AddPaths(const std::vector<std::string>& paths, KilnProgressProc progress, void* context,
                              std::vector<FileResult>& outResults) {
  const RetainPtr<CFMutableArrayRef> list = NewArray();
  std::vector<FileResult> unsayable;
  for (const std::string& path : paths) {
    if (const RetainPtr<CFStringRef> text = ToCFString(path)) {
      CFArrayAppendValue(list.get(), text.get());
    } else {
      unsayable.push_back({path, "failed", "The name isn't UTF-8 text.", {}});
    }
  }
  const RetainPtr<CFMutableArrayRef> results = NewArray();
  const ErrCode code = m_addPaths(m_getFacade(), 0, list.get(), progress, context, results.get());
  if (code != 0) return code;
  outResults.insert(outResults.end(), unsayable.begin(), unsayable.end());
  for (CFIndex i = 0; i < CFArrayGetCount(results.get()); ++i) {
    const CFDictionaryRef entry = DictionaryAt(results.get(), i);
    if (!entry) continue;
    FileResult result;
    result.path = Text(entry, "path");
    result.status = Text(entry, "status");
    result.message = Text(entry, "message");
    const RetainPtr<CFStringRef> key = ToCFString("fonts");
    if (const auto fonts = dynamicCF<CFArrayRef>(CFDictionaryGetValue(entry, key.get()))) {
      result.fonts = ToStringVector(fonts);
    }
    outResults.push_back(std::move(result));
  }
  return 0;
}

ErrCode KilnLibrary::ListFonts(std::vector<Font>& outFonts) {
  const RetainPtr<CFMutableArrayRef> fonts = NewArray();
  const ErrCode code = m_listFonts(m_getFacade(), fonts.get());
  if (code != 0) return code;
  for (CFIndex i = 0; i < CFArrayGetCount(fonts.get()); ++i) {
    const CFDictionaryRef record = DictionaryAt(fonts.get(), i);
    if (!record) continue;
    Font font;
    font.databaseID = Number(record, "DatabaseID");
    font.postScriptName = Text(record, "PostScriptName");
    font.family = Text(record, "Family");
    font.style = Text(record, "Style");
    font.kind = Text(record, "FontKind");
    font.version = Text(record, "Version");
    font.active = Text(record, "IsActive") == "1";
    outFonts.push_back(std::move(font));
  }
  return 0;
}

ErrCode KilnLibrary::GetStatus(Status& outStatus) {
  const RetainPtr<CFMutableDictionaryRef> status = adoptCF(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  const ErrCode code = m_status(m_getFacade(), status.get());
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
