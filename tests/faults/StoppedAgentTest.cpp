// A Kiln that exists and doesn't answer.

#include "FaultTest.h"

namespace {

constexpr auto kFarBeyondAnyLimit = std::chrono::seconds(25);

class StoppedAgentTest : public FaultTest {
 protected:
  StoppedAgentTest() {
    FillLibrary(1);
    Connect();
    font = Record(0);
  }

  static void Stop() { PrivateHome::SignalPrograms("Kiln", SIGSTOP); }
  static void Continue() { PrivateHome::SignalPrograms("Kiln", SIGCONT); }

  RetainPtr<CFDictionaryRef> font;
  const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

TEST_F(StoppedAgentTest, ACallSucceedsWhenItGoesOnWhileTheUserReads) {
  ASSERT_EQ(agent->ActivateFontByID(font.get(), "a", nullptr), 0);
  Stop();
  loom.duringBox = [] { Continue(); };
  EXPECT_EQ(agent->DeactivateFont(font.get(), nullptr), 0);
  EXPECT_EQ(loom.Messages(), std::vector<std::string>{"FontManagerNotFoundMessage"});
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_EQ(Active(), "0 fonts, 0 files");
  EXPECT_LT(std::chrono::steady_clock::now() - start, kFarBeyondAnyLimit);
}

TEST_F(StoppedAgentTest, WhatWasGivenUpIsNotDoneLater) {
  Stop();
  std::vector<unsigned long> ids;
  EXPECT_EQ(agent->ActivateFontByID(font.get(), "a", nullptr), -1);
  EXPECT_FALSE(HornbeamGlobals::ConnectedToCore());
  EXPECT_EQ(agent->FontIDsForPostScriptName("Fault-0", -2, ids), -1);
  EXPECT_FALSE(agent->IsRunning());
  agent.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, kFarBeyondAnyLimit);
  Continue();
  EXPECT_EQ(Active(), "0 fonts, 0 files");
}

}  // namespace
