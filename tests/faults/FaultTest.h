#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Interposer.h"
#include "crossplugin/CoreAgentInterface/AgentTest.h"
#include "support/FakeLoom.h"
#include "support/FontRecords.h"
#include "support/PrivateHome.h"
#include "support/ProgramRun.h"
#include "support/ScopedReplacement.h"

/// The machine's own processes, with a watch on what is started.
class WatchedProcesses : public platform::Processes {
 public:
  int Launch(const std::string& executable, const std::vector<std::string>& arguments,
             const platform::LaunchOptions& options, pid_t* pid) override;
  std::vector<platform::RunningProcess> ListSession() override;

  int launches = 0;
  int diesWhenSeen = 0;  ///< That many more launched agents die as soon as they have been seen to run.
};

/// The plug-in's font manager on the staged client library and a real Kiln, in a session of its own. The UI
/// framework is a fake, so that what the user sees can be read.
class FaultTest : public testing::Test {
 public:
  static const std::string kKiln;
  static const std::string kHornbeam;

  /// Kills the session's Kiln and waits until it has gone.
  static void KillKiln();

 protected:
  FaultTest();
  ~FaultTest() override;

  /// Puts small fonts "Fault-0", "Fault-1", ... into the library, by `hornbeam`; Kiln runs then.
  void FillLibrary(int fonts);
  void StartKiln();

  /// A manager that has connected; what that has shown is forgotten.
  LiveAgent& Connect();
  /// Makes the library connect anew, through an interposer.
  Interposer& Interpose();

  static RetainPtr<CFMutableArrayRef> FontsNamed(const std::vector<std::string>& names);
  /// The agent's record of "Fault-<number>".
  RetainPtr<CFDictionaryRef> Record(int number);

  /// What nobody has given back: fonts that a Kiln, started if need be, calls active, and the files that
  /// other programs are shown.
  std::string Active();
  size_t LinkCount() const;

  template <typename Condition>
  static void WaitUntil(const Condition& condition) {
    while (!condition()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  PrivateHome home;
  WatchedProcesses processes;
  ScopedReplacement<platform::Processes> replacedProcesses{processes};
  FakeLoom loom;
  std::unique_ptr<Interposer> interposer;
  std::unique_ptr<LiveAgent> agent;

 private:
  static void LoadLibrary();
};
