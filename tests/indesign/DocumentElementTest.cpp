#include "Activation/FontActivationTracker.h"
#include "DocumentElement.h"
#include "GStringUtils.h"
#include "PlugInTest.h"

namespace {

using Names = std::vector<std::string>;

class DocumentElementTest : public PlugInTest {
 protected:
  DocumentElementTest() { element.SetUIDRef(document.Ref()); }

  Names UsedNames() { return FontNamesOf(element.GetFontsInDocument().get()); }

  InMemoryDocument document{"Brochure.idml"};
  DocumentElement element;
};

TEST_F(DocumentElementTest, UsedFontsAreNamedByPostScriptName) {
  const struct {
    const char *name, *family;
    const char* faces;  // each with its PostScript name
    const char *usedStyles, *expected;
  } kCases[] = {
      {"each style", "Acme", "Regular=Acme-Regular|Bold=Acme-Bold", "Bold|Regular", "Acme-Bold|Acme-Regular"},
      {"no real name", "Acme Sans", "Bold=", "Bold", "AcmeSans|AcmeSans-Bold"},
      {"no style takes every regular face", "Acme",
       "Bold=Acme-Bold| Book =Acme-Book|Roman=Acme-Roman|R=Acme-R", "", "Acme-Book|Acme-Roman|Acme-R"},
      {"a face named by blanks is regular", "Acme", "=Acme-Nameless|  =Acme-Blank|regular=Acme-lower", "",
       "Acme-Blank"},
      {"no faces", "Acme", "", "", "Acme|Acme-Regular"},
      {"the host's own fonts are left out", "Minion", "Regular=MinionPro-Regular|Bold=Minion-Bold",
       "Regular|Bold", "Minion-Bold"},
  };
  for (const auto& row : kCases) {
    InMemoryDocument::Family family{row.family, {}, GStringUtils::Split(row.usedStyles, "|")};
    if (family.usedStyles.empty()) family.usedStyles.emplace_back();
    for (const std::string& face : GStringUtils::Split(row.faces, "|")) {
      family.faces.push_back({face.substr(0, face.find('=')), face.substr(face.find('=') + 1)});
    }
    InMemoryDocument used("Used.idml");
    used.Use(family);
    element.SetUIDRef(used.Ref());
    EXPECT_EQ(UsedNames(), GStringUtils::Split(row.expected, "|")) << row.name;
  }
}

TEST_F(DocumentElementTest, FontsInDocumentNeedsTheDocument) {
  document.Use("Acme", {{"Regular", "Acme-Regular"}});
  document.hasDataBase = false;
  EXPECT_TRUE(UsedNames().empty());
  EXPECT_TRUE(element.GetDocumentName().IsEmpty());
  element.SetUIDRef(UIDRef::Null());
  EXPECT_TRUE(UsedNames().empty());
}

TEST_F(DocumentElementTest, AModifiedDocumentIsLookedThroughAnew) {
  UsedNames();
  EXPECT_EQ(document.refreshes, 0);
  document.isModified = true;
  UsedNames();
  EXPECT_EQ(document.refreshes, 1);
}

TEST_F(DocumentElementTest, AConvertedDocumentHasItsFamiliesLookedUpByName) {
  document.Use(" Acme Sans ", {{"Bold", "AcmeSans-Bold"}});
  UsedNames();
  EXPECT_TRUE(document.familyLookUps.empty());
  document.isConvertedFromID2 = true;
  UsedNames();
  EXPECT_EQ(document.familyLookUps,
            (std::vector<std::pair<std::string, std::string>>{{"Acme Sans", "Bold"}}));
}

TEST_F(DocumentElementTest, TheIdentifierKeepsTheNameOfItsFirstUse) {
  UsedNames();
  const std::string identifier = element.GetDocumentIdentifier();
  EXPECT_EQ(identifier, "Brochure.idml/" + element.GetActivationIdentifier());
  EXPECT_EQ(element.GetActivationIdentifier().size(), 36u);
  document.name = "Renamed.idml";
  UsedNames();
  EXPECT_EQ(element.GetDocumentName(), PMString("Renamed.idml"));
  EXPECT_EQ(element.GetDocumentIdentifier(), identifier);

  DocumentElement other;
  EXPECT_NE(other.GetActivationIdentifier(), element.GetActivationIdentifier());
}

TEST_F(DocumentElementTest, LongNamesAreCut) {
  const std::string x33(33, 'x');
  const struct {
    std::string name;
    std::string added;
  } rows[] = {
      {std::string(32, 'x'), std::string(32, 'x')},
      {x33, std::string(32, 'x')},
      {"abc-efghij.lmnopqrstuvwxyzabcdefghijklmn", "abc-efghij"},
      {"abc-" + x33, "abc-" + std::string(28, 'x')},
      {std::string(31, 'x') + "-y-" + "z", std::string(31, 'x') + "-"},
      {"abc-" + std::string(28, 'x') + ".yz", "abc-" + std::string(28, 'x')},
  };
  for (const auto& row : rows) {
    const auto fonts = MakeArray();
    EXPECT_TRUE(element.AddFontToArray(row.name, fonts.get(), false));
    EXPECT_FALSE(element.AddFontToArray(row.name, fonts.get(), false));
    ASSERT_EQ(FontNamesOf(fonts.get()).size(), 1u) << row.name;
    EXPECT_EQ(FontNamesOf(fonts.get()).front().substr(0, row.added.size()), row.added) << row.name;
    EXPECT_LE(FontNamesOf(fonts.get()).front().size(), 32u) << row.name;
  }
}

TEST_F(DocumentElementTest, AFontThatTheHostHasIsNoProblem) {
  document.Use("Acme", {{"Regular", "Acme-Regular"}, {"Bold", "Acme-Bold"}});
  host.fonts = {"Acme-Bold"};
  element.ActivateFontList();
  EXPECT_EQ(host.problems, Names{"Acme-Regular"});
}

TEST_F(DocumentElementTest, TheUserResolvesWhatHasNoMatch) {
  loom.SetPreference("PickBestMatch", 0);
  document.Use("Acme", {{"Regular", "Acme-Regular"}, {"Bold", "Acme-Bold"}, {"Thin", "Acme-Thin"}});
  AddFont("Acme-Regular");
  const unsigned int chosen = AddFont("AcmeNext-Bold");
  loom.resolve = [&](CFArrayRef problems) {
    EXPECT_EQ(FontNamesOf(problems), (Names{"Acme-Bold", "Acme-Thin"}));
    auto* record = dynamicCF<CFMutableDictionaryRef>(CFArrayGetValueAtIndex(problems, 0));
    ASSERT_NE(record, nullptr);
    CFDictionarySetValue(record, kGM_MatchedFontKey, MakeMatchedFont("AcmeNext-Bold", chosen).get());
    manager.fonts[chosen - 1].state = 3;
  };
  element.ActivateFontList();
  EXPECT_EQ(host.matched, (Names{"Acme-Regular 1", "AcmeNext-Bold 2"}));
  EXPECT_EQ(host.problems, Names{"Acme-Thin"});
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  EXPECT_EQ(tracker->CountFontsOpenedForIdentifier(element.GetDocumentIdentifier()), 2u);
}

TEST_F(DocumentElementTest, DataForASaveHoldsTheActiveFontsOnly) {
  document.Use("Acme", {{"Regular", "Acme-Regular"}, {"Bold", "Acme-Bold"}});
  manager.AddFont({{kGM_PostScriptNameKey, "Acme-Regular"}, {kGM_FoundryKey, "Acme"}, {kGM_PathKey, "/x"}},
                  2);
  manager.AddFont({{kGM_PostScriptNameKey, "Acme-Bold"}}, 1);
  element.CollectGlyphMarkInfoForWrite();
  ASSERT_EQ(FontNamesOf(element.GetGlyphMarkInfo()), Names{"Acme-Regular"});
  EXPECT_EQ(FontValue(FontRecord::At(element.GetGlyphMarkInfo(), 0), kGM_FoundryKey), "Acme");
  EXPECT_EQ(FontValue(FontRecord::At(element.GetGlyphMarkInfo(), 0), kGM_PathKey), "");
  EXPECT_EQ(element.CountFontsUsedByDocument(), 2);

  bool allFound = true;
  EXPECT_TRUE(element.CollectGlyphMarkInfoForDocument(-2, true, allFound));
  EXPECT_FALSE(allFound);

  manager.connected = false;
  EXPECT_FALSE(element.CollectGlyphMarkInfoForDocument(-2, true, allFound));
  loom.SetPreference("EnableGlyphMark", 0);
  element.CollectGlyphMarkInfoForWrite();
  EXPECT_EQ(element.GetGlyphMarkInfo(), nullptr);
}

TEST(FontListElementTest, NamesThatCanGoToTheFontManager) {
  const struct {
    std::string name;
    bool isValid;
  } rows[] = {{"", false},
              {"A", true},
              {"Acme Sans", false},
              {std::string(32, 'x'), true},
              {std::string(33, 'x'), false},
              {"Kiln\xC3\xA9" + std::string(27, 'x'), true}};
  for (const auto& row : rows) EXPECT_EQ(FontListElement::IsValidFontName(row.name), row.isValid) << row.name;
}

}  // namespace
