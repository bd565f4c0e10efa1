#include "GFileSystemSpec.h"

#include "GErrors.h"
#include "GFileSystem.h"
#include "GStringUtils.h"

namespace {

constexpr const char* kIdentifier = "FileSystem";

std::string Joined(const std::string& path, const std::string& component) {
  const std::string& separator = GFileSystem::OSGetPathSeparator();
  return GStringUtils::StripTrailingString(path, separator) + separator +
         GStringUtils::StripPrecedingString(GStringUtils::StripTrailingString(component, separator),
                                            separator);
}

}  // namespace

GFileSystemSpec::GFileSystemSpec(const std::string& text) {
  std::string path = GStringUtils::StripTrailingString(GStringUtils::StripPrecedingString(text, "\""), "\"");
  if (path.empty()) return;
  path = GFileSystem::OSExpandPath(path);
  if (!path.empty() && GFileSystem::OSIsPartialPath(path)) {
    const std::string folder = GFileSystem::OSGetCWD();
    path = folder.empty() ? folder : Joined(folder, path);
  }
  if (!path.empty()) GCHECK(SetFullPath(path), kIdentifier, GLogger::eError);
}

TErrCode GFileSystemSpec::SetFullPath(const std::string& path) {
  const std::string strCopy = GFileSystem::OSExpandPath(path);
  const TErrCode status = GREQUIRE(strCopy.empty() || GFileSystem::OSIsValidFullPath(strCopy),
                                   TErrCode{CoreErrorCodes::kInvalidParam}, kIdentifier, GLogger::eError);
  if (status != CoreErrorCodes::kSuccess) return status;
  // A path that can't be expanded is no empty path.
  if (strCopy.empty() && !path.empty()) {
    return GCHECK(CoreErrorCodes::kInvalidParam, kIdentifier, GLogger::eError);
  }
  mFullPath = strCopy;
  return status;
}

void GFileSystemSpec::AppendPathComponent(const std::string& component) {
  mFullPath = Joined(mFullPath, component);
}

void GFileSystemSpec::RemoveLastPathComponent() {
  const std::size_t separator = mFullPath.rfind(GFileSystem::OSGetPathSeparator());
  if (separator == mFullPath.npos) return;
  mFullPath.resize(separator == 0 ? 1 : separator);
}

std::string GFileSystemSpec::GetLastPathComponent() const {
  const std::size_t separator = mFullPath.rfind(GFileSystem::OSGetPathSeparator());
  return separator == mFullPath.npos ? mFullPath : mFullPath.substr(separator + 1);
}
