#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "GErrorCodes.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeLoom.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

/// A manager that is the live one as long as it exists.
class LiveAgent : public CoreAgentInterface {
 public:
  LiveAgent() { sm_pFontManager = this; }
  ~LiveAgent() override { sm_pFontManager = nullptr; }

  using FontManagerInterface::VersionsAreCompatible;

  static void ResetSelection() {
    sValidWorkgroupSelected = true;
    sSelectWorkgroupInProgress = false;
  }
};

/// The agent's manager between a client library, a UI framework and an operating system in memory. A launch
/// file names an agent that can be started, until CannotBeLaunched().
class AgentTest : public ::testing::Test {
 protected:
  AgentTest() {
    HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));
    SetFlags(true);
    HornbeamGlobals::SetBulkReplicationRunning(false);
    HornbeamGlobals::SetIncrementalReplicationRunning(false);
    HornbeamGlobals::SetDisplayedSchemaError(false);
    LiveAgent::ResetSelection();
    CanBeLaunched();
    loom.SetPreference("EnablePlugin", 1);
    loom.SetPreference("CurrentWorkgroup", 1);
    library.AddWorkgroup(1, "Mine", 3);
    library.AddWorkgroup(9, "System", 4);
  }

  static void SetFlags(bool on) {
    HornbeamGlobals::SetPluginServicesEnabled(on);
    HornbeamGlobals::SetConnectedToCore(on);
    HornbeamGlobals::SetLoggedIn(on);
    HornbeamGlobals::SetUserHasWorkgroups(on);
  }

  void CanBeLaunched() {
    home.Write("data/Talworth/com.talworth.Kiln-LaunchInfo.conf",
               "kiln.path = " + home.Write("Kiln", "") + "\nkiln.args = quiet\n");
  }
  void CannotBeLaunched() { home.Write("data/Talworth/com.talworth.Kiln-LaunchInfo.conf", ""); }

  /// Connects, and forgets what that has called and shown.
  LiveAgent& Connect() {
    agent.reset();
    agent = std::make_unique<LiveAgent>();
    library.calls.clear();
    library.facades.clear();
    loom.boxes.clear();
    return *agent;
  }

  TemporaryFolder home;
  ScopedEnvironment root{"PLATFORM_SYSTEM_ROOT", home.Path()};
  ScopedEnvironment data{"XDG_DATA_HOME", home.Path("data")};
  FakeProcesses processes;
  FakeClock clock;
  ScopedReplacement<platform::Processes> replacedProcesses{processes};
  ScopedReplacement<platform::Clock> replacedClock{clock};
  FakeClientLibrary library;
  FakeLoom loom;
  std::unique_ptr<LiveAgent> agent;
};
