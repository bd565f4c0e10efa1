#include "GConfigurationFile.h"

#include "GErrors.h"
#include "GFile.h"
#include "GStringUtils.h"

namespace {

constexpr const char* kIdentifier = "FileSystem";

std::string Stripped(const std::string& text) {
  return GStringUtils::StripPrecedingWhitespace(GStringUtils::StripTrailingWhitespace(text));
}

void ParseLine(const std::string& line, GLogger& logger, std::map<std::string, std::string>& outMap) {
  logger.LogDebug(kIdentifier, "Configuration line:\n%s", line.c_str());
  const std::string entry = Stripped(line.substr(0, line.find('#')));
  if (entry.empty()) return;
  const std::size_t delimiter = entry.find(GConfigurationFile::GetKeyValueDelimiter());
  const std::string key =
      delimiter == entry.npos ? "" : GStringUtils::OSToLowerCase(Stripped(entry.substr(0, delimiter)));
  if (key.empty()) {
    logger.LogWarning(kIdentifier, "Ignoring illegal line in configuration:\n%s", line.c_str());
    return;
  }
  const std::string value = Stripped(entry.substr(delimiter + 1));
  logger.LogInfo(kIdentifier, "Configuration key = %s, value = %s", key.c_str(), value.c_str());
  outMap[key] = value;
}

}  // namespace

TErrCode GConfigurationFile::ParseFile(const GFileSystemSpec& spec,
                                       std::map<std::string, std::string>& outMap) {
  GFile file;
  std::string text;
  TErrCode status = GCHECK(file.Open(spec, GFile::eRead | GFile::eBinary), kIdentifier, GLogger::eError);
  if (status != CoreErrorCodes::kSuccess) return status;
  status = GCHECK(file.Read(text), kIdentifier, GLogger::eError);
  if (status != CoreErrorCodes::kSuccess) return status;
  status = GCHECK(file.Close(), kIdentifier, GLogger::eError);
  if (status != CoreErrorCodes::kSuccess) return status;
  return GCHECK(ParseString(text, outMap), kIdentifier, GLogger::eError);
}

TErrCode GConfigurationFile::ParseString(const std::string& text,
                                         std::map<std::string, std::string>& outMap) {
  GLogger* const logger = GLogger::GetSharedInstance();
  if (logger == nullptr) return CoreErrorCodes::kNullPointer;
  for (const std::string& line : GStringUtils::OSTokenizeString(text, "\r\n")) {
    ParseLine(line, *logger, outMap);
  }
  return CoreErrorCodes::kSuccess;
}
