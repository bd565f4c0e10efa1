#include "FaultTest.h"

#include <fontconfig/fontconfig.h>

#include <filesystem>
#include <utility>

#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "client/Session.h"
#include "support/FontBuilder.h"

namespace {

constexpr const char* kKilnName = "Kiln";

// Another may be on its way in already: only this one is waited for.
void End(pid_t pid) {
  platform::Processes system;
  system.Signal(pid, SIGKILL);
  while (system.IsAlive(pid)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// The library stays loaded from test to test, as it does in a host; nothing of it is left at the end.
class UnloadLibrary : public testing::Environment {
  void TearDown() override { delete ShuttleLoader::ReplaceSharedInstanceForTesting(nullptr); }
};
const testing::Environment* const kUnloadLibrary = testing::AddGlobalTestEnvironment(new UnloadLibrary);

}  // namespace

const std::string FaultTest::kKiln = HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln";
const std::string FaultTest::kHornbeam = HORNBEAM_STAGE "/bin/hornbeam";

int WatchedProcesses::Launch(const std::string& executable, const std::vector<std::string>& arguments,
                             const platform::LaunchOptions& options, pid_t* pid) {
  launches += executable.ends_with("/Kiln") ? 1 : 0;
  return Processes::Launch(executable, arguments, options, pid);
}

std::vector<platform::RunningProcess> WatchedProcesses::ListSession() {
  std::vector<platform::RunningProcess> running = Processes::ListSession();
  for (const platform::RunningProcess& process : running) {
    if (diesWhenSeen == 0 || process.Name() != kKilnName) continue;
    --diesWhenSeen;
    End(process.pid);
  }
  return running;
}

FaultTest::FaultTest() {
  FcInitReinitialize();
  home.WriteLaunchInformation(kKiln);
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));
  HornbeamGlobals::IdentifyPluginVersion(CFSTR("15.1.0"));
  HornbeamGlobals::SetUserHasWorkgroups(true);
  HornbeamGlobals::SetDisplayedSchemaError(false);
  LiveAgent::ResetSelection();
  LoadLibrary();
  loom.SetPreference("EnablePlugin", 1);
  loom.SetPreference("CurrentWorkgroup", 1);
}

FaultTest::~FaultTest() {
  agent.reset();
  ShuttleLoader::GetSharedInstance()->CleanUpOnShutdown();
  interposer.reset();
  HornbeamGlobals::IdentifyPluginVersion(nullptr);
}

// Looking for the library starts Kiln, which not every test wants.
void FaultTest::LoadLibrary() {
  static bool isLoaded = false;
  if (std::exchange(isLoaded, true)) return;
  ShuttleLoader::GetSharedInstance();
  KillKiln();
}

void FaultTest::KillKiln() {
  platform::Processes system;
  for (const platform::RunningProcess& process : system.ListSession()) {
    if (process.Name() == kKilnName) End(process.pid);
  }
}

void FaultTest::StartKiln() {
  pid_t pid = 0;
  const std::vector<std::string> arguments{"--exit-when-idle=60"};
  ASSERT_EQ(processes.Processes::Launch(kKiln, arguments, {}, &pid), 0);
  while (PrivateHome::SignalPrograms(kKilnName, 0) == 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void FaultTest::FillLibrary(int fonts) {
  for (int i = 0; i < fonts; ++i) {
    FontBuilder font;
    font.postScriptName = "Fault-" + std::to_string(i);
    font.style = std::to_string(i);
    home.Folder().Write("fonts/" + font.postScriptName + ".ttf", font.TrueType());
  }
  ProgramRun add(kHornbeam, {"library", "add", home.Folder().Path("fonts")});
  ASSERT_EQ(add.Wait(), 0) << add.Errors();
}

LiveAgent& FaultTest::Connect() {
  agent.reset();
  agent = std::make_unique<LiveAgent>();
  loom.boxes.clear();
  processes.launches = 0;
  return *agent;
}

Interposer& FaultTest::Interpose() {
  interposer.reset();
  interposer = std::make_unique<Interposer>();
  ShuttleLoader::GetSharedInstance()->ResetPluginFacadeInstance();
  return *interposer;
}

RetainPtr<CFMutableArrayRef> FaultTest::FontsNamed(const std::vector<std::string>& names) {
  auto fonts = MakeArray();
  for (const std::string& name : names) {
    CFArrayAppendValue(fonts.get(), MakeFontRecord({{kGM_PostScriptNameKey, name}}).get());
  }
  return fonts;
}

RetainPtr<CFDictionaryRef> FaultTest::Record(int number) {
  FontOrSetInfoRec record;
  const int status = agent->GetNamedFontInfo("Fault-" + std::to_string(number),
                                             TypeOfFontName::kPostScriptName, -2, 1, "", &record);
  EXPECT_EQ(status, 0);
  return adoptCF(static_cast<CFDictionaryRef>(record.fontInfo));
}

size_t FaultTest::LinkCount() const {
  size_t count = 0;
  std::error_code error;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(home.Folder().Path("data/fonts/kiln"), error)) {
    count += entry.is_regular_file() ? 1 : 0;
  }
  return count;
}

std::string FaultTest::Active() {
  if (PrivateHome::SignalPrograms(kKilnName, 0) == 0) StartKiln();
  Session session("11111111-2222-3333-4444-555555555555", [](auto&&) {});
  kiln::wire::ClientMessage request;
  Connection::Incoming reply;
  request.mutable_status();
  EXPECT_EQ(session.Call(request, reply), CoreErrorCodes::kSuccess);
  session.Drop();
  return std::to_string(reply.message.status().active_count()) + " fonts, " + std::to_string(LinkCount()) +
         " files";
}
