#include "CoreFoundation/CFURL.h"

#include <cctype>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

#include "CoreFoundation/CFStringObject.h"
#include "CoreFoundation/CFURLObject.h"

using cf::Cast;

namespace {

std::string WithoutEndSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return std::string(path);
}

std::string Escape(std::string_view path) {
  // What RFC 3986 lets stand in a path.
  constexpr std::string_view kPlain = "-._~!$&'()*+,;=:@/";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte < 0x80 && std::isalnum(byte) != 0) || kPlain.find(character) != std::string_view::npos) {
      text.push_back(character);
    } else {
      text += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

std::optional<int> HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const int letter = digit | 0x20;
  if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
  return std::nullopt;
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string path;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '?' || text[i] == '#') return std::nullopt;
    if (text[i] != '%') {
      path.push_back(text[i]);
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const std::optional<int> high = HexDigit(text[i + 1]);
    const std::optional<int> low = HexDigit(text[i + 2]);
    if (!high || !low) return std::nullopt;
    path.push_back(static_cast<char>(*high * 16 + *low));
    i += 2;
  }
  return path;
}

CFStringRef CopyText(std::string_view text) {
  return CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                 static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false);
}

}  // namespace

__CFURL::__CFURL(std::string_view givenPath, std::string baseFolder, bool isFolder)
    : Object(kType),
      path(WithoutEndSlashes(givenPath)),
      base(std::move(baseFolder)),
      isDirectory(isFolder || givenPath.ends_with('/')) {}

bool __CFURL::Equals(const Object& other) const {
  const auto& url = static_cast<const __CFURL&>(other);
  return isDirectory == url.isDirectory && AbsolutePath() == url.AbsolutePath();
}

CFHashCode __CFURL::Hash() const {
  return std::hash<std::string>()(AbsolutePath());
}

std::string __CFURL::AbsolutePath() const {
  if (base.empty()) return path;
  return base == "/" ? "/" + path : base + "/" + path;
}

std::string_view __CFURL::LastComponent() const {
  const std::string_view whole = path;
  return whole == "/" ? whole : whole.substr(whole.rfind('/') + 1);
}

CFStringRef __CFURL::String() const {
  std::call_once(stringOnce_, [this] {
    std::string text = "file://" + Escape(AbsolutePath());
    if (isDirectory && !text.ends_with('/')) text += '/';
    string_ = adoptCF(cf::NewString(text));
  });
  return string_.get();
}

namespace cf {

CFURLRef NewURL(std::string_view path, bool isDirectory) {
  if (path.empty() || path.find('\0') != std::string_view::npos) return nullptr;
  std::string base;
  if (path.front() != '/') {
    std::error_code error;
    base = std::filesystem::current_path(error).string();
    if (base.empty()) base = "/";
  }
  return new __CFURL(path, std::move(base), isDirectory);
}

}  // namespace cf

CFTypeID CFURLGetTypeID() {
  return cf::kURLType;
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef path, CFURLPathStyle style,
                                       Boolean isDirectory) {
  const auto* source = Cast<__CFString>(path);
  if (source == nullptr || style != kCFURLPOSIXPathStyle) return nullptr;
  return cf::NewURL(cf::ToUTF8(source->text), isDirectory);
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory) {
  if (path == nullptr || length <= 0) return nullptr;
  return cf::NewURL({reinterpret_cast<const char*>(path), static_cast<size_t>(length)}, isDirectory);
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef text, CFURLRef base) {
  const std::string url = cf::ToUTF8(cf::TextOf(text));
  std::string_view rest = url;
  if (base != nullptr || !rest.starts_with("file:")) return nullptr;
  rest.remove_prefix(5);
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    if (rest.starts_with("localhost/")) rest.remove_prefix(9);
  }
  if (!rest.starts_with('/')) return nullptr;
  const std::optional<std::string> path = Unescape(rest);
  return path ? cf::NewURL(*path, false) : nullptr;
}

CFURLRef CFURLCopyAbsoluteURL(CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  if (source == nullptr) return nullptr;
  if (source->base.empty()) return static_cast<CFURLRef>(CFRetain(url));
  return new __CFURL(source->AbsolutePath(), {}, source->isDirectory);
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef component,
                                               Boolean isDirectory) {
  const auto* source = Cast<__CFURL>(url);
  const std::string appended = cf::ToUTF8(cf::TextOf(component));
  const size_t start = appended.find_first_not_of('/');
  if (source == nullptr || start == std::string::npos || appended.find('\0') != std::string::npos)
    return nullptr;
  const std::string front = source->path == "/" ? std::string() : source->path;
  return new __CFURL(front + "/" + appended.substr(start), source->base, isDirectory);
}

CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef, CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  if (source == nullptr) return nullptr;
  std::string folder = std::filesystem::path(source->path).parent_path().string();
  if (folder.empty()) folder = ".";
  return new __CFURL(folder, source->base, true);
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex bufferSize) {
  const auto* source = Cast<__CFURL>(url);
  if (buffer == nullptr || bufferSize <= 0) return false;
  buffer[0] = 0;
  if (source == nullptr) return false;
  const std::string path = resolveAgainstBase ? source->AbsolutePath() : source->path;
  if (path.size() >= static_cast<size_t>(bufferSize)) return false;
  std::memcpy(buffer, path.c_str(), path.size() + 1);
  return true;
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  const auto* source = Cast<__CFURL>(url);
  return source == nullptr || style != kCFURLPOSIXPathStyle ? nullptr : CopyText(source->path);
}

CFStringRef CFURLGetString(CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  return source == nullptr ? nullptr : source->String();
}

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  return source == nullptr ? nullptr : CopyText(source->LastComponent());
}

CFStringRef CFURLCopyPathExtension(CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  if (source == nullptr) return nullptr;
  const std::string_view name = source->LastComponent();
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size()) return nullptr;
  return CopyText(name.substr(dot + 1));
}

Boolean CFURLHasDirectoryPath(CFURLRef url) {
  const auto* source = Cast<__CFURL>(url);
  return source != nullptr && source->isDirectory;
}
