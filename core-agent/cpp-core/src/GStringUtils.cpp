#include "GStringUtils.h"

#include <algorithm>
#include <cstdio>

namespace {

bool IsGraphic(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte > 0x20 && byte != 0x7F;
}

}  // namespace

std::vector<std::string> GStringUtils::OSTokenizeString(const std::string& text,
                                                        const std::string& delimiters) {
  std::vector<std::string> tokens;
  std::size_t start = text.find_first_not_of(delimiters);
  while (start != text.npos) {
    const std::size_t end = text.find_first_of(delimiters, start);
    tokens.push_back(text.substr(start, end - start));
    start = text.find_first_not_of(delimiters, end);
  }
  return tokens;
}

std::vector<std::string> GStringUtils::Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> pieces;
  if (text.empty() || separator.empty()) return pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != text.npos; end = text.find(separator, start)) {
    pieces.push_back(text.substr(start, end - start));
    start = end + separator.size();
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

std::string GStringUtils::StringReplace(const std::string& text, const std::string& search,
                                        const std::string& replacement, int maxCount) {
  if (search.empty()) return text;
  std::string result;
  std::size_t start = 0;
  for (int count = 0; maxCount < 0 || count < maxCount; ++count) {
    const std::size_t found = text.find(search, start);
    if (found == text.npos) break;
    result.append(text, start, found - start).append(replacement);
    start = found + search.size();
  }
  return result.append(text, start);
}

std::string GStringUtils::StripPrecedingString(const std::string& text, const std::string& prefix) {
  if (prefix.empty()) return text;
  std::size_t start = 0;
  while (text.compare(start, prefix.size(), prefix) == 0) start += prefix.size();
  return text.substr(start);
}

std::string GStringUtils::StripTrailingString(const std::string& text, const std::string& suffix) {
  if (suffix.empty()) return text;
  std::size_t end = text.size();
  while (end >= suffix.size() && text.compare(end - suffix.size(), suffix.size(), suffix) == 0) {
    end -= suffix.size();
  }
  return text.substr(0, end);
}

std::string GStringUtils::StripPrecedingWhitespace(const std::string& text) {
  const std::size_t start = FirstNonWhiteSpaceCharacterLoc(text);
  return start == text.npos ? std::string() : text.substr(start);
}

std::string GStringUtils::StripTrailingWhitespace(const std::string& text) {
  const auto last = std::find_if(text.rbegin(), text.rend(), IsGraphic);
  return {text.begin(), last.base()};
}

std::size_t GStringUtils::FirstNonWhiteSpaceCharacterLoc(const std::string& text) {
  const auto first = std::find_if(text.begin(), text.end(), IsGraphic);
  return first == text.end() ? std::string::npos : static_cast<std::size_t>(first - text.begin());
}

bool GStringUtils::BeginsWith(const std::string& text, const std::string& prefix) {
  return text.starts_with(prefix);
}

bool GStringUtils::EndsWith(const std::string& text, const std::string& suffix) {
  return text.ends_with(suffix);
}

std::string GStringUtils::OSToLowerCase(const std::string& text) {
  std::string lower = text;
  for (char& character : lower) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return lower;
}

int GStringUtils::OSvsnprintf(char* buffer, std::size_t size, const char* format, va_list args) {
  return std::vsnprintf(buffer, size, format, args);
}
