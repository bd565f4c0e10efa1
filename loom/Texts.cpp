#include "Texts.h"

#include <utility>

#include "GStringUtils.h"
#include "Memory/CFVector.h"

namespace {

constexpr int kAll = -1;

}  // namespace

Texts::Texts(RetainPtr<CFBundleRef> bundle) : m_bundle(std::move(bundle)) {}

std::string Texts::Lookup(const std::string& key) const {
  const RetainPtr<CFStringRef> name = ToCFString(key);
  if (!m_bundle || !name || key.empty()) return key;
  const RetainPtr<CFStringRef> text =
      adoptCF(CFBundleCopyLocalizedString(m_bundle.get(), name.get(), name.get(), nullptr));
  return ToStdString(text.get());
}

std::string Texts::Sentence(const std::string& key, const Names& names) const {
  std::string text = Lookup(key);
  const std::string manager = Lookup(names.fontManager.empty() ? "UnknownFontManager" : names.fontManager);
  const std::string modifier =
      Lookup(names.fontManager.empty() ? "UnknownFontManagerModifier" : names.fontManager);
  text = GStringUtils::StringReplace(text, "[FONT_MANAGER]", manager, kAll);
  text = GStringUtils::StringReplace(text, "[FONT_MANAGER_MODIFIER]", modifier, kAll);
  return GStringUtils::StringReplace(text, "[host app]", names.hostApp, kAll);
}
