#include "GErrors.h"

#include <map>
#include <string_view>

#include "GMutex.h"
#include "GScopedLock.h"

namespace {

struct CodeName {
  TErrCode indexBits;
  TErrCode classNumber;  // 0 stands for the number of the class
  const char* constant;
};

void AddClass(std::map<TErrCode, std::string>& names, TErrCode classNumber, const char* className,
              std::initializer_list<CodeName> codes) {
  for (const CodeName& code : codes) {
    const TErrCode number = code.classNumber != 0 ? code.classNumber : classNumber;
    names[code.indexBits | number] = std::string(className) + "::" + code.constant;
  }
}

void AddAllClasses(std::map<TErrCode, std::string>& names) {
#define GERROR_CLASS(number, name, codes) AddClass(names, number, #name, {codes});
#define GERROR_CODE(index, name) {TErrCode{index} << 24, 0, #name},
#define GERROR_CODE_OF(number, index, name) {TErrCode{index} << 24, number, #name},
#include "GErrorCodes.def"
#undef GERROR_CLASS
#undef GERROR_CODE
#undef GERROR_CODE_OF
}

std::string WithoutExtension(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const std::size_t slash = path.rfind('/');
  const bool hasExtension = dot != path.npos && (slash == path.npos || dot > slash);
  return std::string(hasExtension ? path.substr(0, dot) : path);
}

}  // namespace

std::string GetNameForErrorCode(TErrCode code) {
  static GMutex& mutex = *new GMutex;
  static auto& gMap = *new std::map<TErrCode, std::string>;
  const char* const kUnknown = "Unknown error code";
  const GScopedLock lock(mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return kUnknown;
  if (gMap.empty()) AddAllClasses(gMap);
  const auto entry = gMap.find(code);
  return entry == gMap.end() ? kUnknown : entry->second;
}

TErrCode GErrors::Report(TErrCode code, const char* identifier, GLogger::LoggingLevel level,
                         const char* expression, const char* file, int line) {
  if (code == CoreErrorCodes::kSuccess) return code;
  if (GLogger* logger = GLogger::GetSharedInstance()) {
    logger->Log(identifier, level, "Error='%s'  File='%s'  Line=%d  Expression='%s'  Code='%u'  ",
                GetNameForErrorCode(code).c_str(), WithoutExtension(file).c_str(), line, expression, code);
  }
  return code;
}
