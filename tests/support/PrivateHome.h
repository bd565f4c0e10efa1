#pragma once

#include <signal.h>

#include <chrono>
#include <string>
#include <thread>

#include "System/Processes.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"

/// A user of its own for the length of a scope: folders, fontconfig configuration and session are private,
/// and what was started in the session is ended with it.
class PrivateHome {
 public:
  PrivateHome() {
    for (const char* folder : {"data/fonts", "config", "cache", "state", "run"}) m_folder.MakeFolder(folder);
    // Not by prefix="xdg", which also takes in the folders of XDG_DATA_DIRS.
    m_folder.Write("fonts.conf",
                   "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig><dir>" +
                       m_folder.Path("data/fonts") +
                       "</dir><cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>\n");
  }

  ~PrivateHome() {
    EndProcesses(SIGTERM);
    EndProcesses(SIGKILL);
  }

  PrivateHome(const PrivateHome&) = delete;
  PrivateHome& operator=(const PrivateHome&) = delete;

  const TemporaryFolder& Folder() const { return m_folder; }

  /// Leaves word of where Kiln lies, as the installer does.
  void WriteLaunchInformation(const std::string& kiln) const {
    m_folder.Write("data/Talworth/com.talworth.Kiln-LaunchInfo.conf",
                   "kiln.path = " + kiln + "\nkiln.args = --exit-when-idle=60\n");
  }

  /// Sends a signal to the session's programs of a name. How many there were.
  static int SignalPrograms(const std::string& name, int signal) {
    int found = 0;
    for (const platform::RunningProcess& process : platform::Processes::Get().ListSession()) {
      if (process.Name() != name) continue;
      platform::Processes::Get().Signal(process.pid, signal);
      ++found;
    }
    return found;
  }

 private:
  static void EndProcesses(int signal) {
    for (int i = 0; i < 200 && SignalPrograms("Kiln", signal) > 0; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }

  TemporaryFolder m_folder;
  ScopedEnvironment m_data{"XDG_DATA_HOME", m_folder.Path("data")};
  ScopedEnvironment m_config{"XDG_CONFIG_HOME", m_folder.Path("config")};
  ScopedEnvironment m_cache{"XDG_CACHE_HOME", m_folder.Path("cache")};
  ScopedEnvironment m_state{"XDG_STATE_HOME", m_folder.Path("state")};
  ScopedEnvironment m_runtime{"XDG_RUNTIME_DIR", m_folder.Path("run")};
  ScopedEnvironment m_fonts{"FONTCONFIG_FILE", m_folder.Path("fonts.conf")};
  // No launch information of the machine's own.
  ScopedEnvironment m_root{"PLATFORM_SYSTEM_ROOT", m_folder.Path("root")};
};
