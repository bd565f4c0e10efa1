// Kiln is killed around each call, and the plug-in brings it back: the first time without a word.

#include <functional>

#include "Activation/FontActivationTracker.h"
#include "FaultTest.h"

namespace {

using Kind = Interposer::Kind;
using Message = kiln::wire::ClientMessage;

enum class Moment { kNever, kBefore, kOnRequest, kOnReply };

const std::pair<const char*, Moment> kMoments[] = {
    {"before the call", Moment::kBefore},
    {"when it has the request", Moment::kOnRequest},
    {"when it has done it", Moment::kOnReply},
};

class KilledAgentTest : public FaultTest {
 protected:
  void Arm(Moment moment, Kind kind = Kind::BODY_NOT_SET) {
    const auto wanted = kind == Kind::BODY_NOT_SET ? std::nullopt : std::optional(kind);
    if (moment == Moment::kBefore) KillKiln();
    if (moment == Moment::kOnRequest) interposer->KillKilnOn(Interposer::Kill::kOnRequest, wanted);
    if (moment == Moment::kOnReply) interposer->KillKilnOn(Interposer::Kill::kOnReply, wanted);
  }
};

// ---- Work is done all the same.

struct WorkCase {
  const char* name;
  Kind kind;
  int (*call)(LiveAgent&, CFArrayRef);
  bool activeBefore, activeAfter;
};

CFDictionaryRef First(CFArrayRef fonts) {
  return FontRecord::At(fonts, 0);
}

const WorkCase kWork[] = {
    {"AreSchemaVersionsInSync", Message::kSchemaInSync,
     [](LiveAgent& agent, CFArrayRef) { return agent.AreSchemaVersionsInSync() ? 0 : -1; }, false, false},
    {"ActivateDocumentFontsByPath", Message::kActivateDocumentFonts,
     [](LiveAgent& agent, CFArrayRef fonts) {
       const auto matched = MakeArray();
       const auto problems = MakeArray();
       const int result = agent.ActivateDocumentFontsByPath("/a.idml", fonts, matched.get(), problems.get());
       EXPECT_EQ(FontNamesOf(matched.get()), std::vector<std::string>{"Fault-0"});
       EXPECT_EQ(FontValue(First(matched.get()), kGM_IsActiveKey), "0") << "before the call";
       return result;
     },
     false, true},
    {"ActivateFontByID", Message::kActivateFonts,
     [](LiveAgent& agent, CFArrayRef fonts) { return agent.ActivateFontByID(First(fonts), "a", nullptr); },
     false, true},
    {"ActivateFontsByID", Message::kActivateFonts,
     [](LiveAgent& agent, CFArrayRef fonts) {
       const auto activated = MakeArray();
       const int result = agent.ActivateFontsByID(fonts, "a", nullptr, activated.get(), nullptr);
       EXPECT_EQ(CFArrayGetCount(activated.get()), 1);
       return result;
     },
     false, true},
    {"DeactivateFont", Message::kDeactivateFonts,
     [](LiveAgent& agent, CFArrayRef fonts) { return agent.DeactivateFont(First(fonts), nullptr); }, true,
     false},
    {"DeactivateFonts", Message::kDeactivateFonts,
     [](LiveAgent& agent, CFArrayRef fonts) {
       const auto deactivated = MakeArray();
       const int result = agent.DeactivateFonts(fonts, nullptr, deactivated.get());
       EXPECT_EQ(CFArrayGetCount(deactivated.get()), 1);
       return result;
     },
     true, false},
    {"MakeSetForDocumentFonts", Message::kCreateSet,
     [](LiveAgent& agent, CFArrayRef fonts) -> int {
       return agent.MakeSetForDocumentFonts(CFSTR("a"), fonts);
     },
     false, false},
    {"CollectFontsUsedByCurrentDocument", Message::kExportFonts,
     [](LiveAgent& agent, CFArrayRef fonts) {
       FakeTerminal terminal;
       const ScopedReplacement<platform::Terminal> replaced(terminal);
       const TemporaryFolder collected;
       terminal.answers = {collected.Path("fonts")};
       const int result = agent.CollectFontsUsedByCurrentDocument("a", "/a.idml", fonts);
       EXPECT_TRUE(collected.Exists("fonts/Fault-0.ttf"));
       return result;
     },
     false, false},
};

TEST_F(KilledAgentTest, OneRelaunchWithoutAWordDoesTheWork) {
  FillLibrary(1);
  Connect();
  const auto record = Record(0);
  const auto fonts = MakeArray();
  CFArrayAppendValue(fonts.get(), record.get());
  for (const WorkCase& row : kWork) {
    for (const auto& [when, moment] : kMoments) {
      SCOPED_TRACE(std::string(row.name) + ", killed " + when);
      if (row.activeBefore) {
        ASSERT_EQ(agent->ActivateFontByID(record.get(), "a", nullptr), 0);
      }
      Interpose();
      ASSERT_TRUE(agent->IsRunning());
      processes.launches = 0;
      Arm(moment, row.kind);
      EXPECT_EQ(row.call(*agent, fonts.get()), 0);
      EXPECT_EQ(processes.launches, 1);
      EXPECT_EQ(loom.Messages(), std::vector<std::string>{});
      EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
      EXPECT_EQ(Active(), row.activeAfter ? "1 fonts, 1 files" : "0 fonts, 0 files");
      EXPECT_EQ(agent->DeactivateFont(record.get(), nullptr), 0);
      EXPECT_EQ(Active(), "0 fonts, 0 files");
    }
  }
}

TEST_F(KilledAgentTest, AFontOfThisApplicationAloneIsActivatedAgain) {
  FillLibrary(1);
  loom.SetPreference("ActivateLocally", 1);
  Connect();
  const auto record = Record(0);
  for (const auto& [when, moment] : kMoments) {
    SCOPED_TRACE(when);
    Interpose();
    ASSERT_TRUE(agent->IsRunning());
    Arm(moment, Message::kActivateFonts);
    EXPECT_EQ(agent->ActivateFontByID(record.get(), "a", nullptr), 0);
    EXPECT_EQ(agent->GetClientFontActivationStates({FontRecord::GetDatabaseID(record.get())}).begin()->second,
              true);
    EXPECT_EQ(agent->DeactivateFont(record.get(), nullptr), 0);
    EXPECT_EQ(Active(), "0 fonts, 0 files");
  }
}

// ---- An agent that dies again and again.

struct DyingCase {
  const char* name;
  int dies;  // launched agents that die at once
  int result, launches;
  size_t boxes;
  bool services;
};

const DyingCase kDying[] = {
    {"the second one lives", 1, 0, 2, 1, true},
    {"the last one lives", 4, 0, 5, 4, true},
    {"none lives", 100, -1, 5, 4, false},
};

TEST_F(KilledAgentTest, EachFurtherRelaunchIsToldUntilTheCap) {
  FillLibrary(1);
  Connect();
  const auto record = Record(0);
  for (const DyingCase& row : kDying) {
    SCOPED_TRACE(row.name);
    HornbeamGlobals::SetPluginServicesEnabled(true);
    HornbeamGlobals::SetConnectedToCore(true);
    loom.boxes.clear();
    KillKiln();
    processes.launches = 0;
    processes.diesWhenSeen = row.dies;
    EXPECT_EQ(agent->ActivateFontByID(record.get(), "a", nullptr), row.result);
    processes.diesWhenSeen = 0;
    EXPECT_EQ(processes.launches, row.launches);
    EXPECT_EQ(loom.Messages(), std::vector<std::string>(row.boxes, "FontManagerNotFoundMessage"));
    EXPECT_EQ(HornbeamGlobals::ArePluginServicesEnabled(), row.services);
    EXPECT_EQ(HornbeamGlobals::ConnectedToCore(), row.services);
    EXPECT_EQ(agent->DeactivateFont(record.get(), nullptr), 0);
    EXPECT_EQ(Active(), "0 fonts, 0 files");
  }
}

TEST_F(KilledAgentTest, AnAgentThatCannotBeLaunchedIsAskedFor) {
  FillLibrary(1);
  Connect();
  const auto record = Record(0);
  KillKiln();
  std::filesystem::remove_all(home.Folder().Path("data/Talworth"));
  EXPECT_EQ(agent->ActivateFontByID(record.get(), "a", nullptr), -1);
  EXPECT_EQ(loom.Messages(), std::vector<std::string>{"HSCoreAgentMissingMessage"});
  EXPECT_FALSE(HornbeamGlobals::ConnectedToCore());
}

// ---- Questions say that they can't be answered, and start nothing.

using Question = std::function<bool(LiveAgent&, CFDictionaryRef)>;

// What each says without an agent.
const std::pair<const char*, Question> kQuestions[] = {
    {"RunningStandalone", [](LiveAgent& agent, CFDictionaryRef) { return agent.RunningStandalone(); }},
    {"IsGoogleWebFontsEnabled",
     [](LiveAgent& agent, CFDictionaryRef) { return agent.IsGoogleWebFontsEnabled(); }},
    {"IsLoggedIn", [](LiveAgent& agent, CFDictionaryRef) { return !agent.IsLoggedIn(); }},
    {"FontIDsForPostScriptName",
     [](LiveAgent& agent, CFDictionaryRef) {
       std::vector<unsigned long> ids;
       return agent.FontIDsForPostScriptName("Fault-0", -2, ids) == -1 && ids.empty();
     }},
    {"FontIDsForFamilyName",
     [](LiveAgent& agent, CFDictionaryRef) {
       std::vector<unsigned long> ids;
       return agent.FontIDsForFamilyName("Testa", -2, ids) == -1 && ids.empty();
     }},
    {"GetNamedFontInfo",
     [](LiveAgent& agent, CFDictionaryRef) {
       FontOrSetInfoRec record;
       return agent.GetNamedFontInfo("Fault-0", TypeOfFontName::kPostScriptName, -2, 1, "", &record) == -1;
     }},
    {"GetFontInfoByID",
     [](LiveAgent& agent, CFDictionaryRef font) {
       FontOrSetInfoRec record;
       return agent.GetFontInfoByID(font, &record) != 0 && record.fontInfo == nullptr;
     }},
    {"GetPostscriptNameByID",
     [](LiveAgent& agent, CFDictionaryRef font) {
       CFStringRef name = nullptr;
       return agent.GetPostscriptNameByID(name, -2, FontRecord::GetDatabaseID(font)) != 0 && name == nullptr;
     }},
    {"GetFontIsActivated",
     [](LiveAgent& agent, CFDictionaryRef font) {
       const auto fonts = MakeArray();
       CFArrayAppendValue(fonts.get(), font);
       return agent.GetFontIsActivated(fonts.get()).empty();
     }},
    {"GetFontConflicts",
     [](LiveAgent& agent, CFDictionaryRef font) {
       return agent.GetFontConflicts({FontRecord::GetDatabaseID(font)}).empty();
     }},
    {"GetClientFontActivationStates",
     [](LiveAgent& agent, CFDictionaryRef font) {
       const unsigned int id = FontRecord::GetDatabaseID(font);
       return agent.GetClientFontActivationStates({id}) == std::map<unsigned int, bool>{{id, false}};
     }},
};

TEST_F(KilledAgentTest, QuestionsStartNothing) {
  FillLibrary(1);
  Connect();
  const auto record = Record(0);
  for (const auto& [when, moment] : {kMoments[0], kMoments[1]}) {
    for (const auto& [name, question] : kQuestions) {
      SCOPED_TRACE(std::string(name) + ", killed " + when);
      if (PrivateHome::SignalPrograms("Kiln", 0) == 0) StartKiln();
      Interpose();
      ASSERT_TRUE(agent->IsRunning());
      Arm(moment);
      EXPECT_TRUE(question(*agent, record.get()));
      KillKiln();
    }
  }
  EXPECT_EQ(processes.launches, 0);
  EXPECT_EQ(loom.Messages(), std::vector<std::string>{});
}

// ---- Two documents with a font in common, from the first open to the last close.

class DocumentsTest : public KilledAgentTest {
 protected:
  int Open(const std::string& document, const std::vector<std::string>& names) {
    CFMutableArrayRef matched = CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks);
    CFMutableArrayRef problems = CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks);
    const auto ownedMatched = adoptCF(matched);
    const auto ownedProblems = adoptCF(problems);
    return Tracker().ActivateDocumentFonts(document, "/" + document, matched, problems,
                                           FontsNamed(names).get());
  }
  int Close(const std::string& document) {
    return Tracker().CloseAllFontsForIdentifier(document, true, nullptr);
  }
  static FontActivationTracker& Tracker() { return *HornbeamGlobals::GetSharedFontActivationTracker(); }
};

TEST_F(DocumentsTest, NoFontIsLostAndNoneIsLeft) {
  FillLibrary(2);
  Connect();
  const std::pair<std::function<int()>, const char*> steps[] = {
      {[this] {
         return Open("a", {"Fault-0", "Fault-1"});
       },
       "2 fonts, 2 files"},
      {[this] { return Open("b", {"Fault-1"}); }, "2 fonts, 2 files"},
      {[this] { return Close("a"); }, "1 fonts, 1 files"},
      {[this] { return Close("b"); }, "0 fonts, 0 files"},
  };
  for (size_t killedAt = 0; killedAt < std::size(steps); ++killedAt) {
    for (const auto& [when, moment] : kMoments) {
      for (size_t step = 0; step < std::size(steps); ++step) {
        SCOPED_TRACE("killed " + std::string(when) + " " + std::to_string(killedAt) + ", step " +
                     std::to_string(step));
        if (step == killedAt) {
          Interpose();
          Arm(moment);
        }
        EXPECT_EQ(steps[step].first(), 0);
        EXPECT_EQ(Active(), steps[step].second);
      }
      EXPECT_EQ(loom.Messages(), std::vector<std::string>{});
    }
  }
}

}  // namespace
