#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/AgentLog.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

namespace {

const std::vector<std::string> kAllEntries = {
#define AGENT_ENTRY(name, ...) #name,
#define FLAG_ENTRY(name) #name,
#define COLUMN_ENTRY(name) #name,
#define PLAIN_ENTRY(result, name, ...) #name,
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
};

// Lines of the trace while it exists.
class TraceLines {
 public:
  TraceLines() {
    DebugUtils::SetTraceSink(
        [](int, const char* text, void* lines) {
          static_cast<std::vector<std::string>*>(lines)->push_back(text);
        },
        &lines);
  }
  ~TraceLines() { DebugUtils::SetTraceSink(nullptr, nullptr); }

  long Count(const std::string& line) const { return std::count(lines.begin(), lines.end(), line); }

  std::vector<std::string> lines;
};

// A machine with real bundles, compiled here, and a list of processes.
class ShuttleSearch : public ::testing::Test {
 protected:
  static constexpr const char* kIdentifier = "com.example.ShuttleSearchTest";

  ShuttleSearch() : shared_(ShuttleLoader::ReplaceSharedInstanceForTesting(nullptr)) {}
  ~ShuttleSearch() override {
    delete ShuttleLoader::ReplaceSharedInstanceForTesting(shared_);
    HornbeamGlobals::IdentifyPluginBundleID(nullptr);
  }

  static std::string InfoPlist(const std::string& keys) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" + keys +
           "</dict></plist>";
  }

  // A library whose entries do nothing, without those of `missing`. False when there is no compiler.
  bool MakeLibrary(const std::string& folder, const std::string& version,
                   const std::vector<std::string>& missing = {}) {
    std::string code;
    for (const std::string& entry : kAllEntries) {
      if (std::find(missing.begin(), missing.end(), entry) == missing.end()) {
        code += "unsigned " + entry + "(void) { return 0; }\n";
      }
    }
    const std::string bundle = folder + "/TalworthPluginInterface.framework/";
    home.Write(bundle + "Info.plist",
               InfoPlist("<key>CFBundleExecutable</key><string>TalworthPluginInterface</string>" +
                         (version.empty()
                              ? ""
                              : "<key>CFBundleShortVersionString</key><string>" + version + "</string>")));
    const std::string command = "cc -shared -fPIC -w -o '" + home.Path(bundle + "TalworthPluginInterface") +
                                "' '" + home.Write("entries.c", code) + "'";
    return std::system(command.c_str()) == 0;
  }

  TemporaryFolder home;
  ScopedEnvironment root{"PLATFORM_SYSTEM_ROOT", home.Path()};
  ScopedEnvironment data{"XDG_DATA_HOME", home.Path("data")};
  FakeProcesses processes;
  FakeClock clock;
  ScopedReplacement<platform::Processes> replacedProcesses{processes};
  ScopedReplacement<platform::Clock> replacedClock{clock};
  std::string location = "before";
  std::string version = "before";
  int missing = -1;

 private:
  ShuttleLoader* shared_;
};

#define MAKE_LIBRARY_OR_SKIP(...) \
  if (!MakeLibrary(__VA_ARGS__)) GTEST_SKIP() << "There is no C compiler to build a library with"

TEST_F(ShuttleSearch, NoLibraryAnywhere) {
  const TraceLines trace;
  const ShuttleLoader* loader = ShuttleLoader::GetSharedInstance();
  EXPECT_FALSE(loader->IsLoaded(&location, &version, &missing));
  EXPECT_EQ(location, "");
  EXPECT_EQ(version, "");
  EXPECT_EQ(missing, 86);
  EXPECT_EQ(trace.Count("ERROR:  cannot find TalworthPluginInterface.framework"), 1);
  EXPECT_EQ(trace.Count("ShuttleLoader::IsLoaded() returning false because all 86 functions are missing."),
            1);
  EXPECT_EQ(ShuttleLoader::GetSharedInstance(), loader) << "nothing searches again";
  int loggedIn = 7;
  EXPECT_EQ(loader->GetIsLoggedIn(&loggedIn), ShuttleLoader::kEntryMissing);
  EXPECT_EQ(loggedIn, 7);
  EXPECT_EQ(loader->CanAccessGoogleFonts(), 0);
  EXPECT_EQ(loader->GetPluginFacadeInstance(), nullptr);
  char buffer[8] = "before";
  EXPECT_EQ(loader->GetExportFontsColumnID(buffer, sizeof(buffer)), ShuttleLoader::kEntryMissing);
}

TEST_F(ShuttleSearch, FirstPlaceIsThePluginsOwnFrameworks) {
  MAKE_LIBRARY_OR_SKIP("Plug.plugin/Contents/Frameworks", "15.1.0");
  ASSERT_TRUE(MakeLibrary("Library/Frameworks", "1.0.0"));
  home.Write("Plug.plugin/Contents/Info.plist",
             InfoPlist("<key>CFBundleIdentifier</key><string>" + std::string(kIdentifier) + "</string>"));
  const auto plugin = adoptCF(CFBundleCreate(nullptr, ToCFURL(home.Path("Plug.plugin"), true).get()));
  HornbeamGlobals::IdentifyPluginBundleID(ToCFString(kIdentifier).get());
  EXPECT_TRUE(ShuttleLoader::GetSharedInstance()->IsLoaded(&location, &version, &missing));
  EXPECT_EQ(location, home.Path("Plug.plugin/Contents/Frameworks"));
  EXPECT_EQ(version, "15.1.0");
  EXPECT_EQ(missing, 0);
  EXPECT_TRUE(ShuttleLoader::GetSharedInstance()->VerifyThatAllMembersAre(true));
}

TEST_F(ShuttleSearch, SecondPlaceIsBesideTheRunningAgent) {
  MAKE_LIBRARY_OR_SKIP("Agent", "15.1.0");
  processes.running = {{7, home.Path("Agent/Kiln")}};
  EXPECT_TRUE(ShuttleLoader::GetSharedInstance()->IsLoaded(&location, &version, &missing));
  EXPECT_EQ(location, home.Path("Agent/"));
  EXPECT_TRUE(processes.launched.empty());
}

TEST_F(ShuttleSearch, AnAgentThatDoesNotRunIsStarted) {
  MAKE_LIBRARY_OR_SKIP("Agent", "15.1.0");
  home.Write("data/Talworth/com.talworth.Kiln-LaunchInfo.conf",
             "kiln.path = " + home.Write("Agent/Kiln", "") + "\n");
  EXPECT_TRUE(ShuttleLoader::GetSharedInstance()->IsLoaded(&location, &version, &missing));
  EXPECT_EQ(location, home.Path("Agent/"));
  EXPECT_EQ(processes.launched.size(), 1u);
}

TEST_F(ShuttleSearch, LastPlaceIsTheFixedOneAndAMissingEntryIsCounted) {
  MAKE_LIBRARY_OR_SKIP("Library/Frameworks", "", {"GetFontUsage"});
  processes.running = {{7, home.Path("Elsewhere/Kiln")}};
  const TraceLines trace;
  const ShuttleLoader* loader = ShuttleLoader::GetSharedInstance();
  EXPECT_FALSE(loader->IsLoaded(&location, &version, &missing));
  EXPECT_EQ(location, home.Path("Library/Frameworks"));
  EXPECT_EQ(version, "");
  EXPECT_EQ(missing, 1);
  EXPECT_EQ(trace.Count("ShuttleLoader::IsLoaded() returning false because of one or more null inputs."), 1);
  EXPECT_FALSE(loader->VerifyThatAllMembersAre(true));
  EXPECT_EQ(trace.Count("ERROR:  this->pfGetFontUsage is NULL."), 1);
  EXPECT_EQ(loader->Log("still bound"), 0u);
  EXPECT_EQ(loader->GetFontUsage("/a", static_cast<CFMutableArrayRef>(nullptr)),
            ShuttleLoader::kEntryMissing);
}

TEST(AgentLog, ABannerOpensTheNamedFile) {
  FakeClientLibrary library;
  InitLogging("InDesign.log");
  ASSERT_EQ(library.calls.size(), 2u);
  EXPECT_EQ(library.calls[0], "BeginLogging('InDesign.log')");
  const std::string banner = library.calls[1];
  EXPECT_TRUE(banner.starts_with("Log('\n=======\n")) << banner;
  EXPECT_TRUE(banner.ends_with("\n=======\n')")) << banner;
  EXPECT_EQ(std::count(banner.begin(), banner.end(), '\n'), 4);
  library.calls.clear();
  library.Loader().pfBeginLogging = nullptr;
  InitLogging("InDesign.log");
  EXPECT_TRUE(library.calls.empty()) << "a library without a log";
}

}  // namespace
