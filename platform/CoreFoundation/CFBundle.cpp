#include "CoreFoundation/CFBundle.h"

#include <algorithm>
#include <filesystem>

#include "CoreFoundation/CFArrayObject.h"
#include "CoreFoundation/CFBundleRegistry.h"
#include "CoreFoundation/CFStringObject.h"
#include "CoreFoundation/CFURLObject.h"
#include "Memory/CFVector.h"

const CFStringRef kCFBundleInfoDictionaryVersionKey = CFSTR("CFBundleInfoDictionaryVersion");
const CFStringRef kCFBundleExecutableKey = CFSTR("CFBundleExecutable");
const CFStringRef kCFBundleIdentifierKey = CFSTR("CFBundleIdentifier");
const CFStringRef kCFBundleVersionKey = CFSTR("CFBundleVersion");
const CFStringRef kCFBundleDevelopmentRegionKey = CFSTR("CFBundleDevelopmentRegion");
const CFStringRef kCFBundleNameKey = CFSTR("CFBundleName");

namespace {

/// The bundle, which calls below may change (they lock); null for anything else.
__CFBundle* AsBundle(CFBundleRef bundle) {
  return cf::Cast<__CFBundle>(bundle) == nullptr ? nullptr : bundle;
}

CFURLRef CopyPlace(CFBundleRef bundle, const char* place) {
  const auto* source = cf::Cast<__CFBundle>(bundle);
  return source == nullptr ? nullptr : cf::NewURL(source->contents + place, true);
}

}  // namespace

CFTypeID CFBundleGetTypeID() {
  return cf::kBundleType;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
  const std::string folder = ToPath(bundleURL);
  return folder.empty() ? nullptr : cf::BundleRegistry::Get().Create(folder);
}

CFArrayRef CFBundleCreateBundlesFromDirectory(CFAllocatorRef allocator, CFURLRef folder, CFStringRef type) {
  const std::string path = ToPath(folder);
  if (path.empty()) return nullptr;
  const std::string end = type == nullptr ? std::string() : "." + ToStdString(type);
  std::vector<std::string> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(path, error), last; !error && entry != last;
       entry.increment(error)) {
    std::error_code ignored;
    const std::string name = entry->path().filename().string();
    if (name.ends_with(end) && entry->is_directory(ignored)) found.push_back(entry->path().string());
  }
  std::sort(found.begin(), found.end());
  RetainPtr<CFMutableArrayRef> bundles = MakeArray();
  for (const std::string& bundle : found) {
    CFArrayAppendValue(bundles.get(), adoptCF(CFBundleCreate(allocator, ToCFURL(bundle, true).get())).get());
  }
  return bundles.leakRef();
}

CFBundleRef CFBundleGetMainBundle() {
  return cf::BundleRegistry::Get().Main();
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
  return cf::Cast<__CFString>(identifier) == nullptr ? nullptr : cf::BundleRegistry::Get().Find(identifier);
}

CFArrayRef CFBundleGetAllBundles() {
  thread_local RetainPtr<CFArrayRef> kept;
  const cf::UncountedScope uncounted;
  auto* array = new __CFArray(nullptr, false);
  for (__CFBundle* bundle : cf::BundleRegistry::Get().All()) array->values.push_back(bundle);
  kept = adoptCF<CFArrayRef>(array);
  return kept.get();
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
  const auto* source = cf::Cast<__CFBundle>(bundle);
  return source == nullptr ? nullptr : source->info.get();
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
  return key == nullptr ? nullptr : CFDictionaryGetValue(CFBundleGetInfoDictionary(bundle), key);
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
  return dynamicCF<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleIdentifierKey));
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  const auto* source = cf::Cast<__CFBundle>(bundle);
  return source == nullptr ? nullptr : cf::NewURL(source->path, true);
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
  const auto* source = cf::Cast<__CFBundle>(bundle);
  return source == nullptr ? nullptr : cf::NewURL(source->ExecutablePath(), false);
}

CFURLRef CFBundleCopyPrivateFrameworksURL(CFBundleRef bundle) {
  return CopyPlace(bundle, "/Frameworks");
}

CFURLRef CFBundleCopyBuiltInPlugInsURL(CFBundleRef bundle) {
  return CopyPlace(bundle, "/PlugIns");
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
  return CopyPlace(bundle, "/Resources");
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subfolder) {
  const auto* source = cf::Cast<__CFBundle>(bundle);
  std::string file = ToStdString(name);
  if (source == nullptr || file.empty()) return nullptr;
  if (const std::string extension = ToStdString(type); !extension.empty()) file += "." + extension;
  if (const std::string folder = ToStdString(subfolder); !folder.empty()) file.insert(0, folder + "/");
  for (const std::string& place : {source->ResourcesFolder(), source->LocalizedFolder()}) {
    std::error_code error;
    std::string candidate = place;
    candidate.append("/").append(file);
    const std::filesystem::file_status status = std::filesystem::status(candidate, error);
    if (std::filesystem::exists(status)) return cf::NewURL(candidate, std::filesystem::is_directory(status));
  }
  return nullptr;
}

CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table) {
  __CFBundle* source = AsBundle(bundle);
  std::string name = ToStdString(table);
  if (name.empty()) name = "Localizable";
  if (source != nullptr && key != nullptr && name.find('/') == std::string::npos) {
    std::optional<std::u16string> text = source->LocalizedText(name, std::u16string(cf::TextOf(key)));
    if (text) return cf::NewString(std::move(*text));
  }
  return CFStringCreateCopy(kCFAllocatorDefault, CFStringGetLength(value) > 0 ? value : key);
}

Boolean CFBundleLoadExecutable(CFBundleRef bundle) {
  return CFBundleLoadExecutableAndReturnError(bundle, nullptr);
}

Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error) {
  std::string problem = "There is no bundle";
  __CFBundle* source = AsBundle(bundle);
  if (source != nullptr && source->Load(&problem)) return true;
  if (error != nullptr) {
    const RetainPtr<CFMutableDictionaryRef> information = MakeDictionary();
    const auto text = adoptCF(cf::NewString(problem));
    CFDictionarySetValue(information.get(), kCFErrorLocalizedDescriptionKey, text.get());
    *error = CFErrorCreate(kCFAllocatorDefault, kCFErrorDomainCocoa, kCFBundleExecutableLoadError,
                           information.get());
  }
  return false;
}

Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle) {
  __CFBundle* source = AsBundle(bundle);
  return source != nullptr && source->IsLoaded();
}

void CFBundleUnloadExecutable(CFBundleRef bundle) {
  if (__CFBundle* source = AsBundle(bundle)) source->Unload();
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name) {
  __CFBundle* source = AsBundle(bundle);
  return source == nullptr ? nullptr : source->Symbol(ToStdString(name));
}

void* CFBundleGetDataPointerForName(CFBundleRef bundle, CFStringRef name) {
  return CFBundleGetFunctionPointerForName(bundle, name);
}
