#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>

#include "Framework.h"
#include "LoomEntries.h"
#include "Memory/CFVector.h"
#include "support/FakeSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/ScopedReplacement.h"
#include "support/TemporaryFolder.h"

namespace {

class LoomEntriesTest : public testing::Test {
 protected:
  LoomEntriesTest() : m_configHome("XDG_CONFIG_HOME", m_folder.Path()) {
    startup = MakeDictionary();
    CFDictionarySetValue(startup.get(), CFSTR("HostApp"), CFSTR("InDesignCC2020"));
    CFDictionarySetValue(startup.get(), CFSTR("FrameworkURL"), ToCFURL(SourceFolder().string(), true).get());
    EXPECT_EQ(LoomInitializeFramework(startup.get()), 0);
  }
  ~LoomEntriesTest() override { Framework::Reset(); }

  // Without Info.plist, but with the Resources that the bundle is made of.
  static std::filesystem::path SourceFolder() {
    return std::filesystem::path(HORNBEAM_FIXTURES "/../../loom").lexically_normal();
  }
  static std::string Localized(const char* key) {
    return ToStdString(adoptCF(LoomLocalizedString(ToCFString(key).get())).get());
  }
  bool Shows(const std::string& text) const { return terminal.written.find(text) != std::string::npos; }

  RetainPtr<CFMutableDictionaryRef> startup;
  FakeTerminal terminal;

 private:
  TemporaryFolder m_folder;
  ScopedEnvironment m_configHome;
  ScopedEnvironment m_overrides{"LOOM_PREFERENCES", "Overridden=1"};
  ScopedEnvironment m_prompt{"LOOM_TERMINAL_PROMPT", std::nullopt};
  ScopedReplacement<platform::Terminal> m_replaced{terminal};
};

RetainPtr<CFMutableDictionaryRef> Font(const char* name) {
  auto font = MakeDictionary();
  CFDictionarySetValue(font.get(), CFSTR("PostScriptName"), ToCFString(name).get());
  return font;
}

std::string MatchOf(CFDictionaryRef font) {
  const auto match = dynamicCF<CFDictionaryRef>(CFDictionaryGetValue(font, CFSTR("MatchedFont")));
  return match != nullptr ? ToStdString(CFDictionaryGetValue(match, CFSTR("PostScriptName"))) : "";
}

}  // namespace

TEST_F(LoomEntriesTest, AcceptsOnlyTheVersionItKnows) {
  EXPECT_TRUE(LoomIsVersionCompatible("1.0"));
  EXPECT_FALSE(LoomIsVersionCompatible("1.0.1"));
  EXPECT_FALSE(LoomIsVersionCompatible(nullptr));
  EXPECT_EQ(LoomInitializeFramework(nullptr), 1);
}

TEST_F(LoomEntriesTest, SpeaksOfTheEditionAndTheHost) {
  EXPECT_NE(Localized("FontManagerNotFoundMessage").find("Start Kiln, then restart InDesign CC 2020."),
            std::string::npos);
  CFDictionarySetValue(startup.get(), CFSTR("FontManager"), CFSTR("SycamorePlugin"));
  EXPECT_EQ(Localized("[FONT_MANAGER]"), "Sycamore");
  CFDictionarySetValue(startup.get(), CFSTR("FontManager"), CFSTR("HornbeamStudioPlugin"));
  EXPECT_EQ(Localized("[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]"),
            "Hornbeam Studio Auto-Activation Plug-in for InDesign CC 2020");
  EXPECT_EQ(Localized("%@'s fonts"), "%@'s fonts");
  EXPECT_EQ(Localized("A text of the caller's"), "A text of the caller's");
  EXPECT_EQ(LoomLocalizedString(nullptr), nullptr);
}

TEST_F(LoomEntriesTest, HasASentenceForEveryKeyOfABox) {
  std::istringstream plain(R"(
      FontManagerNotFoundHeader FontManagerNotFoundMessage HornbeamOldVersionHeader
      HornbeamOldVersionMessage PluginWillBeDisabled UnsupportedHostAppMessage NotLoggedInHeader
      NotLoggedInOfferLoginMessage NotLoggedInPluginDisabledMessage HSCoreAgentMissingHeader
      HSCoreAgentMissingMessage SYCoreAgentMissingHeader SYCoreAgentMissingMessage GoOnlineErrorHeader
      GoOnlineErrorMessage NoLibrariesHeader NoLibrariesMessage NoWorkgroupsHeader NoWorkgroupsMessage
      CannotExportHeader CannotExportMessage MissingFontsExportHeader MissingFontsOfflineExportMessage
      MissingFontsExportMessage SetNameTooLongHeader SetNameTooLongMessage HSCoreAgentOutOfSyncHeader
      HSCoreAgentOutOfSyncMessage SYCoreAgentOutOfSyncHeader SYCoreAgentOutOfSyncMessage
      CouldNotOpenVaultInUseLaunchPrefs CouldNotOpenVaultLaunchPrefs VaultNeedsUpgradeTitle
      VaultNeedsUpgradeMessage AllServerFontsWorkgroup ServerBasedPersonalWorkgroup
      LocalPersonalWorkgroup GoogleFontsLibrary CollectFontsForOutput CreateDocumentSetEllipsis)");
  std::vector<std::string> keys = {"System Fonts (LOCALIZE ME)", "Temporary Fonts (LOCALIZE ME)",
                                   "Font Library (LOCALIZE ME)"};
  keys.insert(keys.end(), std::istream_iterator<std::string>(plain), {});
  for (const std::string& key : keys) {
    EXPECT_NE(Localized(key.c_str()), key);
    EXPECT_EQ(Localized(key.c_str()).find('['), std::string::npos) << key;
  }
}

TEST_F(LoomEntriesTest, GivesAndTakesPreferencesOfAllKinds) {
  EXPECT_TRUE(LoomGetPreferenceForKey(CFSTR("Overridden")));
  LoomSetLongPreferenceForKey(CFSTR("CurrentWorkgroup"), -2);
  EXPECT_FALSE(LoomDoPreferencesExist());
  LoomSetPreferenceForKey(CFSTR("EnablePlugin"), true);
  LoomSetStringPreferenceForKey(CFSTR("Text"), CFSTR("words"));
  LoomSetPreferenceForKey(nullptr, true);
  EXPECT_TRUE(LoomDoPreferencesExist());
  EXPECT_EQ(LoomGetLongPreferenceForKey(CFSTR("CurrentWorkgroup")), -2);
  EXPECT_EQ(ToStdString(LoomGetStringPreferenceForKey(CFSTR("Text"))), "words");
  EXPECT_EQ(LoomGetStringPreferenceForKey(CFSTR("CurrentWorkgroup")), nullptr);
  EXPECT_EQ(LoomGetLongPreferenceForKey(CFSTR("Text")), 0);
  LoomSetStringPreferenceForKey(CFSTR("Text"), nullptr);
  EXPECT_EQ(LoomGetStringPreferenceForKey(CFSTR("Text")), nullptr);
  EXPECT_FALSE(LoomGetPreferenceForKey(nullptr));
}

TEST_F(LoomEntriesTest, AnswersByRuleWithoutATerminal) {
  terminal.canAsk = false;
  EXPECT_EQ(LoomShowMessageBox(CFSTR("GoOnlineErrorHeader"), CFSTR("GoOnlineErrorMessage"), 1), 1);
  EXPECT_EQ(terminal.written,
            "hornbeam: Going online failed: Kiln couldn't reach its server. Fonts that are "
            "already on this machine can still be activated.\n");
  terminal.written.clear();
  EXPECT_EQ(LoomShowMessageBox(nullptr, CFSTR("Two\nlines\x1b[2J?"), 2), 2);
  EXPECT_EQ(terminal.written, "hornbeam: Two lines[2J? [no terminal; answered: No]\n");
  EXPECT_EQ(LoomShowCommandBox(CFSTR("a"), CFSTR("b")), 2);
  CFStringRef text = nullptr;
  EXPECT_TRUE(LoomAskForOneString(CFSTR("t"), CFSTR("Set Name:"), CFSTR("Brochure"), &text));
  EXPECT_EQ(ToStdString(adoptCF(text).get()), "Brochure");
  EXPECT_FALSE(LoomAskForOneString(nullptr, nullptr, nullptr, nullptr));
}

TEST_F(LoomEntriesTest, AsksUntilItUnderstands) {
  terminal.answers = {"perhaps", " YES "};
  EXPECT_EQ(LoomShowMessageBox(CFSTR("h"), CFSTR("m"), 2), 1);
  terminal.answers = {""};
  EXPECT_EQ(LoomShowMessageBox(CFSTR("h"), CFSTR("m"), 2), 2);
  EXPECT_EQ(LoomShowMessageBox(CFSTR("h"), CFSTR("m"), 2), 2);  // the input has ended
  // The last byte of this "a" is white space in Latin 1.
  terminal.answers = {"  Spring  ", " Voil\xC3\xA0\t", ""};
  for (const char* expected : {"Spring", "Voil\xC3\xA0", "Proposal"}) {
    CFStringRef text = nullptr;
    EXPECT_TRUE(LoomAskForOneString(CFSTR("t"), CFSTR("p"), CFSTR("Proposal"), &text));
    EXPECT_EQ(ToStdString(adoptCF(text).get()), expected);
  }
  CFStringRef text = nullptr;
  EXPECT_FALSE(LoomAskForOneString(CFSTR("t"), CFSTR("p"), CFSTR("Proposal"), &text));
  EXPECT_EQ(text, nullptr);
  const ScopedEnvironment forbidden("LOOM_TERMINAL_PROMPT", "0");
  terminal.answers = {"y"};
  EXPECT_EQ(LoomShowMessageBox(CFSTR("h"), CFSTR("m"), 2), 2);
}

TEST_F(LoomEntriesTest, WritesTheChosenReplacementIntoTheRecord) {
  const auto replacements = MakeArray();
  CFArrayAppendValue(replacements.get(), CFSTR("no record"));
  CFArrayAppendValue(replacements.get(), Font("First").get());
  CFArrayAppendValue(replacements.get(), Font("Second").get());
  std::vector<RetainPtr<CFMutableDictionaryRef>> records;
  for (const char* name : {"A", "B", "C", "D"}) {
    records.push_back(Font(name));
    CFDictionarySetValue(records.back().get(), CFSTR("PossibleReplacements"), replacements.get());
  }
  CFDictionarySetValue(records[1].get(), CFSTR("PossibleReplacements"), CFSTR("no list"));
  const auto problems = ToCFArray(records);
  CFArrayAppendValue(problems.get(), CFSTR("no record"));
  const auto immutable = adoptCF(CFDictionaryCreateCopy(kCFAllocatorDefault, records[0].get()));
  CFArrayInsertValueAtIndex(problems.get(), 0, immutable.get());

  terminal.answers = {"3", "2", ""};
  LoomShowResolveFonts(problems.get());
  EXPECT_EQ(MatchOf(records[0].get()), "Second");
  for (const std::size_t i : {1u, 2u, 3u}) EXPECT_EQ(MatchOf(records[i].get()), "") << i;
  EXPECT_TRUE(Shows("The font 'A' has no exact match"));
  EXPECT_TRUE(Shows("  2) Second\n"));
  EXPECT_FALSE(Shows("The font 'B'"));

  terminal.written.clear();
  terminal.canAsk = false;
  LoomShowResolveFonts(problems.get());
  EXPECT_TRUE(Shows("hornbeam: These fonts have no exact match and stay missing:"));
  EXPECT_EQ(MatchOf(records[2].get()), "");
  LoomShowResolveFonts(nullptr);
}

TEST_F(LoomEntriesTest, TellsLongListsOfFontsInShort) {
  std::vector<RetainPtr<CFMutableDictionaryRef>> fonts;
  fonts.reserve(25);
  for (int i = 0; i < 25; ++i) fonts.push_back(Font(("Font" + std::to_string(i)).c_str()));
  LoomShowMissingFonts(ToCFArray(fonts).get());
  EXPECT_TRUE(Shows("Font19\n  and 5 more\n"));
  terminal.written.clear();
  LoomShowMissingFonts(MakeArray().get());
  LoomShowRestrictedFonts(nullptr);
  EXPECT_EQ(terminal.written, "");
}

TEST_F(LoomEntriesTest, DrawsProgressOnOneLineOfATerminal) {
  LoomUpdateProgress(CFSTR("early"), 1, 2);
  terminal.width = 12;
  LoomShowProgress(CFSTR("Adding"));
  LoomUpdateProgress(CFSTR("Grotesk\nBold"), 3, 7);
  LoomUpdateProgress(CFSTR("Grotesk\nBold"), 3, 7);
  LoomHideProgress();
  LoomHideProgress();
  EXPECT_EQ(terminal.written, "\r\x1b[KAdding\r\x1b[KAdding [3/7\r\x1b[K");
  terminal.written.clear();
  terminal.showsProgress = false;
  LoomShowProgress(CFSTR("Adding"));
  LoomHideProgress();
  EXPECT_EQ(terminal.written, "");
}

TEST_F(LoomEntriesTest, SwitchesPreferencesAndTellsAboutItself) {
  terminal.answers = {"1", "99", "3", "1", ""};
  LoomShowPreferences();
  EXPECT_FALSE(LoomGetPreferenceForKey(CFSTR("EnablePlugin")));
  EXPECT_TRUE(LoomGetPreferenceForKey(CFSTR("PickBestMatch")));
  EXPECT_TRUE(Shows("1) [x] Activate the fonts of documents automatically"));
  LoomSetIsOnline(false);
  const auto details = MakeDictionary();
  CFDictionarySetValue(details.get(), CFSTR("HostAppDisplayName"), CFSTR("Layout"));
  LoomSetHostDetails(details.get());
  EXPECT_EQ(ToStdString(LoomGetHostAppDisplayName()), "Layout");
  LoomShowAboutBox();
  EXPECT_TRUE(Shows("Kiln Auto-Activation Plug-in for Layout\n"));
  EXPECT_TRUE(Shows("Kiln is offline."));
}

TEST(HostDisplayName, IsReadableForEveryHostCode) {
  const struct {
    const char* code;
    const char* name;
  } kCases[] = {
      {"InDesign", "InDesign"},
      {"InDesignCC2020", "InDesign CC 2020"},
      {"InDesign15.0", "InDesign 15.0"},
      {"AfterEffectsCC2020", "After Effects CC 2020"},
      {"Other", "Other"},
      {"", "the host application"},
  };
  for (const auto& [code, name] : kCases) {
    const auto startup = MakeDictionary();
    CFDictionarySetValue(startup.get(), CFSTR("HostApp"), ToCFString(code).get());
    LoomInitializeFramework(startup.get());
    EXPECT_EQ(ToStdString(LoomGetHostAppDisplayName()), name);
    Framework::Reset();
  }
}
