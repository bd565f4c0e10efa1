#include "Utilities/AgentLauncher.h"

#include <CoreFoundation/CoreFoundation.h>
#include <syslog.h>

#include <cstring>
#include <exception>
#include <map>
#include <vector>

#include "GConfigurationFile.h"
#include "GFileSystem.h"
#include "Memory/CFVector.h"
#include "System/Clock.h"
#include "System/Processes.h"
#include "Utilities/BundleUtilities.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

constexpr int kMaxWaits = 20;
constexpr CFTimeInterval kSecondsPerWait = 0.25;

GFileSystemSpec LaunchInfoInDomain(GFileSystem::EDomain domain) {
  GFileSystemSpec spec;
  if (GFileSystem::FindDirectory(domain, GFileSystem::eLibraryDirectory, false, spec) != 0) return spec;
  spec.AppendPathComponent(kCompanyName);
  spec.AppendPathComponent(kLaunchInfoConfigName);
  return spec;
}

GFileSystemSpec FindLaunchInfo() {
  const GFileSystemSpec local = LaunchInfoInDomain(GFileSystem::eLocalDomain);
  return GFileSystem::OSDoesFileExist(local) ? local : LaunchInfoInDomain(GFileSystem::eUserDomain);
}

struct LaunchInfo {
  GFileSystemSpec executable;  // empty when there is nothing to start
  std::vector<std::string> arguments;
};

LaunchInfo ReadLaunchInfo() {
  LaunchInfo info;
  const GFileSystemSpec spec = FindLaunchInfo();
  OutputIndentedAndFormattedString(0, "Will attempt to open '%s'", spec.GetFullPath().c_str());
  if (!GFileSystem::OSDoesFileExist(spec)) {
    OutputIndentedAndFormattedString(0, "Could not find Kiln-LaunchInfo.conf");
    return info;
  }
  std::map<std::string, std::string> entries;
  if (GConfigurationFile::ParseFile(spec, entries) != 0) return info;
  // With its links resolved, since the list of processes tells the real file.
  info.executable = GFileSystemSpec(entries[kKilnPathKeyName]);
  if (!entries[kKilnArgsKeyName].empty()) info.arguments = {entries[kKilnArgsKeyName]};
  if (!GFileSystem::OSDoesFileExist(info.executable)) info.executable = GFileSystemSpec();
  return info;
}

// The trace leads nowhere as a rule; why an agent couldn't be started is for the system's log as well.
void ReportToSystem(const std::string& text) {
  OutputIndentedAndFormattedString(0, "ERROR:  %s", text.c_str());
  syslog(LOG_USER | LOG_ERR, "Hornbeam: %s", text.c_str());
}

// A loop without timers ends its run at once; the rest of the time is waited out, so that the agent has its 5
// seconds in any host.
void ServeRunLoop() {
  platform::Clock& clock = platform::Clock::Get();
  const auto start = clock.Now();
  CFRunLoopRunInMode(kCFRunLoopDefaultMode, kSecondsPerWait, false);
  const std::chrono::duration<double> rest =
      std::chrono::duration<double>(kSecondsPerWait) - (clock.Now() - start);
  if (rest.count() > 0) clock.Sleep(std::chrono::duration_cast<std::chrono::nanoseconds>(rest));
}

bool WaitUntilSeen(const std::string& name, pid_t child) {
  std::string scratch;
  bool isReaped = false;
  for (int i = 0; i < kMaxWaits; ++i) {
    ServeRunLoop();
    // A child that hands over to an agent that already runs ends at once; it must not stay as a zombie.
    if (!isReaped) {
      isReaped = platform::Processes::Get().Reap(child, nullptr) != platform::ReapResult::kStillRunning;
    }
    if (GetPathToRunningProcessExe(name, scratch) == 0) return true;
  }
  return false;
}

bool Launch(const LaunchInfo& info, std::string* outFolderPath) {
  pid_t child = 0;
  const int error = platform::Processes::Get().Launch(info.executable.GetFullPath(), info.arguments,
                                                      platform::LaunchOptions(), &child);
  if (error != 0) {
    ReportToSystem("could not start '" + info.executable.GetFullPath() + "':  " + std::strerror(error));
    return false;
  }
  if (outFolderPath != nullptr) {
    GFileSystemSpec folder = info.executable;
    folder.RemoveLastPathComponent();
    *outFolderPath = folder.GetFullPath() + GFileSystem::OSGetPathSeparator();
  }
  return WaitUntilSeen(info.executable.GetLastPathComponent(), child);
}

}  // namespace

int FindAndLaunchKiln(std::string* outFolderPath) {
  OperationTrace trace("FindAndLaunchKiln", "Entering %s()", "FindAndLaunchKiln");
  int result = -1;
  try {
    const LaunchInfo info = ReadLaunchInfo();
    if (!info.executable.IsEmpty() && Launch(info, outFolderPath)) result = 0;
  } catch (const std::exception& exception) {
    ReportToSystem(std::string("exception caught in FindAndLaunchKiln:  ") + exception.what());
  }
  if (result != 0) OutputIndentedAndFormattedString(0, "Could not launch Kiln");
  trace.Exiting("%s() returning %d", "FindAndLaunchKiln", result);
  return result;
}

int GetPathToRunningProcessExe(const std::string& name, std::string& outFolderPath) {
  for (const platform::RunningProcess& process : platform::Processes::Get().ListSession()) {
    if (process.Name() != name) continue;
    outFolderPath = process.executable.substr(0, process.executable.size() - name.size());
    return 0;
  }
  return -1;
}

int ReadFieldFromVersionResource(const char* bundlePath, const char* key, unsigned long size,
                                 char* outValue) {
  if (outValue == nullptr || size == 0) return 0;
  outValue[0] = '\0';
  if (bundlePath == nullptr || key == nullptr) return 0;
  const RetainPtr<CFBundleRef> bundle = OpenBundleAtPath(bundlePath);
  const RetainPtr<CFStringRef> name = ToCFString(key);
  if (!bundle || !name) return 0;
  const std::string value = ToStdString(CFBundleGetValueForInfoDictionaryKey(bundle.get(), name.get()));
  if (value.empty() || value.size() >= size) return 0;
  std::memcpy(outValue, value.c_str(), value.size() + 1);
  return 1;
}

int ReadVersionResource(const char* bundlePath, unsigned long size, char* outValue) {
  return ReadFieldFromVersionResource(bundlePath, "CFBundleShortVersionString", size, outValue);
}
