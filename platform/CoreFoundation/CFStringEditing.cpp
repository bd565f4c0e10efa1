#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "CoreFoundation/CFString.h"
#include "CoreFoundation/CFStringEncodings.h"
#include "CoreFoundation/CFStringObject.h"
#include "CoreFoundation/CFStringSearch.h"

using cf::CastMutable;

namespace {

/// ICU's change of case, without a language's own rules.
template <typename Change>
void ChangeCase(CFMutableStringRef string, Change change) {
  __CFString* target = CastMutable(string);
  if (target == nullptr) return;
  icu::UnicodeString text(target->text.data(), static_cast<int32_t>(target->text.size()));
  change(text);
  target->text.assign(text.getBuffer(), static_cast<size_t>(text.length()));
  target->Limit();
}

}  // namespace

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
  CFStringInsert(string, CFStringGetLength(string), appended);
}

void CFStringAppendCString(CFMutableStringRef string, const char* text, CFStringEncoding encoding) {
  __CFString* target = CastMutable(string);
  if (target == nullptr || text == nullptr) return;
  if (const std::optional<std::u16string> units = cf::Decode(text, encoding, false)) target->text += *units;
  target->Limit();
}

void CFStringAppendCharacters(CFMutableStringRef string, const UniChar* characters, CFIndex length) {
  __CFString* target = CastMutable(string);
  if (target == nullptr || characters == nullptr || length <= 0) return;
  target->text.append(characters, characters + length);
  target->Limit();
}

void CFStringInsert(CFMutableStringRef string, CFIndex index, CFStringRef inserted) {
  CFStringReplace(string, {index, 0}, inserted);
}

void CFStringDelete(CFMutableStringRef string, CFRange range) {
  __CFString* target = CastMutable(string);
  if (target == nullptr) return;
  const CFRange part = cf::Cut(range, target->text.size());
  target->text.erase(static_cast<size_t>(part.location), static_cast<size_t>(part.length));
}

void CFStringReplace(CFMutableStringRef string, CFRange range, CFStringRef replacement) {
  __CFString* target = CastMutable(string);
  const auto* source = cf::Cast<__CFString>(replacement);
  if (target == nullptr || source == nullptr || !cf::IsWithin(range, target->text.size())) return;
  // The string may be put into itself.
  const std::u16string text = source->text;
  target->text.replace(static_cast<size_t>(range.location), static_cast<size_t>(range.length), text);
  target->Limit();
}

void CFStringReplaceAll(CFMutableStringRef string, CFStringRef replacement) {
  CFStringReplace(string, {0, CFStringGetLength(string)}, replacement);
}

CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef toFind, CFStringRef replacement,
                               CFRange range, CFStringCompareFlags options) {
  __CFString* target = CastMutable(string);
  const auto* source = cf::Cast<__CFString>(replacement);
  if (target == nullptr || source == nullptr) return 0;
  const CFRange cut = cf::Cut(range, target->text.size());
  const auto start = static_cast<size_t>(cut.location);
  const std::u16string part = target->text.substr(start, static_cast<size_t>(cut.length));
  const auto matches = cf::TextSearch(part, cf::TextOf(toFind), options).FindAll();
  std::u16string replaced;
  size_t done = 0;
  for (const cf::TextSearch::Match& match : matches) {
    replaced.append(part, done, match.begin - done);
    replaced += source->text;
    done = match.end;
  }
  replaced.append(part, done);
  target->text.replace(start, part.size(), replaced);
  target->Limit();
  return static_cast<CFIndex>(matches.size());
}

void CFStringTrim(CFMutableStringRef string, CFStringRef trimmed) {
  __CFString* target = CastMutable(string);
  const std::u16string mark(cf::TextOf(trimmed));
  if (target == nullptr || mark.empty()) return;
  std::u16string_view rest = target->text;
  while (rest.starts_with(mark)) rest.remove_prefix(mark.size());
  while (rest.ends_with(mark)) rest.remove_suffix(mark.size());
  target->text = std::u16string(rest);
}

void CFStringTrimWhitespace(CFMutableStringRef string) {
  __CFString* target = CastMutable(string);
  if (target == nullptr) return;
  std::u16string_view rest = target->text;
  while (!rest.empty() && u_isUWhiteSpace(rest.front())) rest.remove_prefix(1);
  while (!rest.empty() && u_isUWhiteSpace(rest.back())) rest.remove_suffix(1);
  target->text = std::u16string(rest);
}

void CFStringLowercase(CFMutableStringRef string, CFLocaleRef) {
  ChangeCase(string, [](icu::UnicodeString& text) { text.toLower(icu::Locale::getRoot()); });
}

void CFStringUppercase(CFMutableStringRef string, CFLocaleRef) {
  ChangeCase(string, [](icu::UnicodeString& text) { text.toUpper(icu::Locale::getRoot()); });
}

void CFStringCapitalize(CFMutableStringRef string, CFLocaleRef) {
  ChangeCase(string, [](icu::UnicodeString& text) { text.toTitle(nullptr, icu::Locale::getRoot()); });
}
