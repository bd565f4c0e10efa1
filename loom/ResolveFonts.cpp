#include "ResolveFonts.h"

#include "Dialogs.h"
#include "GStringUtils.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"

namespace {

std::string NameOfFont(CFDictionaryRef font) {
  return XCFUtils::GetStringFromDict(font, CFSTR("PostScriptName"));
}

bool IsResolved(CFDictionaryRef font) {
  return CFDictionaryContainsKey(font, CFSTR("MatchedFont"));
}

std::vector<RetainPtr<CFDictionaryRef>> Replacements(CFDictionaryRef font) {
  const auto list = dynamicCF<CFArrayRef>(CFDictionaryGetValue(font, CFSTR("PossibleReplacements")));
  return list != nullptr ? ToVector<CFDictionaryRef>(list) : std::vector<RetainPtr<CFDictionaryRef>>();
}

// "Name (OpenType, Foundry, Version 1.0, Workgroup)", as far as the record tells.
std::string Description(CFDictionaryRef font) {
  std::string details;
  for (const CFStringRef key :
       {CFSTR("FontKind"), CFSTR("Foundry"), CFSTR("Version"), CFSTR("WorkgroupName")}) {
    const std::string detail = XCFUtils::GetStringFromDict(font, key);
    if (!detail.empty()) details += (details.empty() ? "" : ", ") + detail;
  }
  return NameOfFont(font) + (details.empty() ? "" : " (" + details + ")");
}

// False when the user has ended the input.
bool Resolve(CFMutableDictionaryRef font, const std::string& title, const std::string& prompt) {
  const std::vector<RetainPtr<CFDictionaryRef>> replacements = Replacements(font);
  if (replacements.empty()) return true;
  std::vector<std::string> options;
  options.reserve(replacements.size());
  for (const RetainPtr<CFDictionaryRef>& replacement : replacements) {
    options.push_back(Description(replacement.get()));
  }
  const Dialogs::Choice choice =
      Dialogs::Choose(GStringUtils::StringReplace(title, "%@", NameOfFont(font), 1), options, prompt);
  if (choice.index) CFDictionarySetValue(font, CFSTR("MatchedFont"), replacements[*choice.index].get());
  return !choice.isEnded;
}

}  // namespace

std::vector<std::string> FontNames(CFArrayRef fonts) {
  std::vector<std::string> names;
  if (dynamicCF<CFArrayRef>(fonts) == nullptr) return names;
  for (const RetainPtr<CFDictionaryRef>& font : ToVector<CFDictionaryRef>(fonts)) {
    if (const std::string name = NameOfFont(font.get()); !name.empty()) names.push_back(name);
  }
  return names;
}

void ShowResolveFonts(CFArrayRef problemFonts, const std::string& title, const std::string& prompt,
                      const std::string& unresolved) {
  if (dynamicCF<CFArrayRef>(problemFonts) == nullptr) return;
  if (!Dialogs::CanAsk()) {
    std::vector<std::string> names;
    for (const RetainPtr<CFDictionaryRef>& font : ToVector<CFDictionaryRef>(problemFonts)) {
      if (!IsResolved(font.get())) names.push_back(NameOfFont(font.get()));
    }
    if (!names.empty()) Dialogs::NoticeWithNames("", unresolved, names);
    return;
  }
  for (const RetainPtr<CFMutableDictionaryRef>& font : ToVector<CFMutableDictionaryRef>(problemFonts)) {
    if (!IsResolved(font.get()) && !Resolve(font.get(), title, prompt)) return;
  }
}
