// Sets, export, families, conflicts and the compliance rule of a real Kiln.

#include <set>

#include "KilnTestHome.h"
#include "kiln/store/Database.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

class KilnSetTest : public KilnTestHome {
 protected:
  KilnSetTest() {
    StartKiln();
    mClient = std::make_unique<WireClient>();
    mClient->AddFiles(
        {FontFile("Testa-Regular"), FontFile("Testa-Bold"), FontFile("Other-Regular", "Other")});
    mRegular = mClient->IdOf("Testa-Regular");
    mBold = mClient->IdOf("Testa-Bold");
    mOther = mClient->IdOf("Other-Regular");
  }

  wire::ServerMessage CreateSet(const std::string& name, uint32_t workgroup, std::vector<uint32_t> fonts) {
    wire::ClientMessage request;
    request.mutable_create_set()->set_name(name);
    request.mutable_create_set()->set_workgroup_id(workgroup);
    request.mutable_create_set()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    return mClient->Ask(request);
  }
  uint32_t AddToSets(std::vector<uint32_t> sets, std::vector<uint32_t> fonts) {
    wire::ClientMessage request;
    request.mutable_add_fonts_to_sets()->mutable_set_ids()->Add(sets.begin(), sets.end());
    request.mutable_add_fonts_to_sets()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    return mClient->Ask(request).error();
  }
  // "name: fonts" of each set.
  std::vector<std::string> Sets() {
    wire::ClientMessage request;
    request.mutable_list_sets();
    const wire::ServerMessage reply = mClient->Ask(request);
    std::vector<std::string> sets;
    for (const wire::FontSet& set : reply.list_sets().sets()) {
      std::string& text = sets.emplace_back(set.name() + ":");
      for (const uint32_t font : set.font_ids()) text += " " + std::to_string(font);
    }
    return sets;
  }
  static std::string SetOf(const std::string& name, const std::set<uint32_t>& fonts) {
    std::string text = name + ":";
    for (const uint32_t font : fonts) text += " " + std::to_string(font);
    return text;
  }
  wire::ServerMessage Export(std::vector<uint32_t> fonts, const std::string& destination) {
    wire::ClientMessage request;
    request.mutable_export_fonts()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    request.mutable_export_fonts()->set_destination(destination);
    return mClient->Ask(request);
  }
  bool CanExport(std::vector<uint32_t> fonts) {
    wire::ClientMessage request;
    request.mutable_can_export_fonts()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    return mClient->Ask(request).can_export_fonts().allowed();
  }
  uint32_t Refuse(uint32_t workgroup, std::vector<uint32_t> fonts) {
    wire::ClientMessage request;
    request.mutable_set_compliance()->set_workgroup_id(workgroup);
    request.mutable_set_compliance()->mutable_font_ids()->Add(fonts.begin(), fonts.end());
    request.mutable_set_compliance()->set_refused(true);
    return mClient->Ask(request).error();
  }
  uint32_t SystemFont() {
    FontBuilder font;
    font.postScriptName = "Systema-Regular";
    mHome.Folder().Write("data/fonts/systema.ttf", font.TrueType());
    KillKiln();
    StartKiln();
    mClient = std::make_unique<WireClient>();
    return mClient->IdOf("Systema-Regular");
  }

  std::unique_ptr<WireClient> mClient;
  uint32_t mRegular = 0;
  uint32_t mBold = 0;
  uint32_t mOther = 0;
};

TEST_F(KilnSetTest, SetsHoldFontsOfOneWorkgroupAndOutliveKiln) {
  const uint32_t system = SystemFont();
  const uint32_t first = CreateSet("Brochure", 1, {mBold, mRegular, mBold}).create_set().set_id();
  EXPECT_TRUE(mClient->WaitForEvent(wire::ServerMessage::kSetsChanged));
  const uint32_t second = CreateSet("Brochure", 1, {}).create_set().set_id();
  EXPECT_NE(first, second) << "a name may be there twice";
  const struct {
    const char* what;
    uint32_t code;
    uint32_t expected;
  } cases[] = {
      {"no name", CreateSet("", 1, {}).error(), codes::kInvalidParam},
      {"blanks", CreateSet(" \t", 1, {}).error(), codes::kInvalidParam},
      {"too long", CreateSet(std::string(254, 'a') + "\xF0\x9F\x96\x8B", 1, {}).error(),
       codes::kInvalidParam},
      {"no workgroup", CreateSet("a", 77, {}).error(), codes::kWorkgroupNotFound},
      {"System", CreateSet("a", 2, {}).error(), codes::kCannotAddSetsToSystemWorkgroup},
      {"system font", CreateSet("a", 1, {mBold, system}).error(), codes::kCannotAddSystemFontsToSet},
      {"unknown font", CreateSet("a", 1, {mBold, 999}).error(), codes::kFontNotInSourceContainer},
      {"unknown set", AddToSets({first, 999}, {mOther}), codes::kSetNotFound},
  };
  for (const auto& row : cases) EXPECT_EQ(row.code, row.expected) << row.what;
  EXPECT_EQ(AddToSets({first, second}, {mOther}), codes::kSuccess);
  KillKiln();
  StartKiln();
  mClient = std::make_unique<WireClient>();
  EXPECT_EQ(Sets(), (std::vector<std::string>{SetOf("Brochure", {mRegular, mBold, mOther}),
                                              SetOf("Brochure", {mOther})}));
  wire::ClientMessage request;
  request.mutable_delete_set()->set_set_id(first);
  EXPECT_EQ(mClient->Ask(request).error(), codes::kSuccess);
  EXPECT_EQ(mClient->Ask(request).error(), codes::kSetNotFound);
  EXPECT_EQ(Sets().size(), 1u);
}

TEST_F(KilnSetTest, ExportsEachFileOnceUnderItsOwnNameWithItsMetrics) {
  FontBuilder bold;
  bold.postScriptName = "Both-Bold";
  FontBuilder regular;
  regular.postScriptName = "Both-Regular";
  const std::string collection = FontBuilder::Collection({regular, bold});
  const std::string type1 = FontBuilder{"Old-Regular"}.Type1Segments();
  mFiles.Write("t1/Old.afm", "KPX A V -70\n");
  mClient->AddFiles({mFiles.Write("both.ttc", collection), mFiles.Write("t1/Old.pfb", type1)});
  const uint32_t system = SystemFont();
  const std::vector<uint32_t> fonts = {mClient->IdOf("Both-Bold"), mClient->IdOf("Both-Regular"),
                                       mClient->IdOf("Old-Regular"), system};
  const std::string folder = mFiles.Path("out/fonts");
  EXPECT_TRUE(CanExport(fonts));
  const wire::ServerMessage reply = Export(fonts, folder);
  EXPECT_EQ(reply.error(), codes::kSuccess);
  std::vector<std::string> paths;
  for (const auto& font : reply.export_fonts().fonts()) paths.push_back(font.path());
  EXPECT_EQ(paths, (std::vector<std::string>{folder + "/both.ttc", folder + "/both.ttc", folder + "/Old.pfb",
                                             folder + "/systema.ttf"}));
  EXPECT_EQ(mFiles.Read("out/fonts/both.ttc"), collection);
  EXPECT_EQ(mFiles.Read("out/fonts/Old.pfb"), type1);
  EXPECT_EQ(mFiles.Read("out/fonts/Old.afm"), "KPX A V -70\n");
  EXPECT_EQ(Export(fonts, folder).export_fonts().fonts(2).path(), folder + "/Old 2.pfb");
}

TEST_F(KilnSetTest, AnExportSaysWhatItCouldntCopy) {
  const std::string folder = mFiles.Path("out");
  const wire::ServerMessage some = Export({999, mRegular}, folder);
  EXPECT_EQ(some.error(), codes::kCouldNotCopyFile);
  ASSERT_EQ(some.export_fonts().fonts_size(), 2);
  EXPECT_EQ(some.export_fonts().fonts(0).error(), codes::kInvalidFontIDs);
  EXPECT_EQ(some.export_fonts().fonts(1).path(), folder + "/Testa-Regular.ttf");
  EXPECT_EQ(Export({999}, folder).error(), codes::kNoAvailableFontsToExport);
  EXPECT_EQ(Export({}, folder).error(), codes::kNoFontsToExport);
  EXPECT_EQ(Export({mRegular}, "relative").error(), codes::kInvalidPath);
  EXPECT_EQ(Export({mRegular}, mFiles.Write("file", "")).error(), codes::kCouldNotCreateFolder);
}

TEST_F(KilnSetTest, AWorkgroupMayForbidExport) {
  const uint32_t system = SystemFont();
  uint32_t error = 0;
  ASSERT_TRUE(Database::Open(mHome.Folder().Path("data/kiln/Kiln.sqlite"), error)
                  ->Execute("UPDATE workgroups SET export_allowed = 0"));
  EXPECT_FALSE(CanExport({system, mRegular}));
  EXPECT_EQ(Export({system, mRegular}, mFiles.Path("out")).error(),
            codes::kNotGrantedPermissionToExportFonts);
  EXPECT_FALSE(std::filesystem::exists(mFiles.Path("out")));
  EXPECT_TRUE(CanExport({system}));
}

TEST_F(KilnSetTest, FamiliesAndConflictsAreTold) {
  wire::ClientMessage request;
  request.mutable_family_fonts()->set_font_id(mBold);
  wire::FamilyFontsReply family = mClient->Ask(request).family_fonts();
  ASSERT_EQ(family.fonts_size(), 2);
  EXPECT_EQ(family.fonts(0).id(), std::min(mRegular, mBold));
  request.mutable_family_fonts()->add_workgroup_ids(2);
  EXPECT_EQ(mClient->Ask(request).family_fonts().fonts_size(), 0) << "System has none of it";
  request.mutable_family_fonts()->set_font_id(999);
  EXPECT_EQ(mClient->Ask(request).error(), codes::kNotFound);

  FontBuilder twin;
  twin.version = "Version 2.000";
  mClient->AddFiles({mFiles.Write("twin.ttf", twin.TrueType())});
  const uint32_t newer = mClient->IdOf("Testa-Regular");
  const auto conflicts = [&] {
    wire::ClientMessage question;
    for (const uint32_t id : {newer, mRegular, 999u}) question.mutable_font_conflicts()->add_font_ids(id);
    const wire::ServerMessage reply = mClient->Ask(question);
    const auto& ids = reply.font_conflicts().conflicting_ids();
    return std::vector<uint32_t>(ids.begin(), ids.end());
  };
  EXPECT_EQ(conflicts(), (std::vector<uint32_t>{0, 0, 0}));
  mClient->Activate({mRegular}, wire::MODE_PERMANENT);
  EXPECT_EQ(conflicts(), (std::vector<uint32_t>{mRegular, 0, 0}));
}

TEST_F(KilnSetTest, MarkedFontsAreRefusedOneByOneAndWhatIsActiveStays) {
  mClient->Activate({mOther}, wire::MODE_AUTO);
  EXPECT_EQ(Refuse(77, {mBold}), codes::kWorkgroupNotFound);
  EXPECT_EQ(Refuse(1, {mBold, mOther, 999}), codes::kSuccess);
  wire::ClientMessage request;
  for (const uint32_t id : {mRegular, mBold, mOther}) request.mutable_activate_fonts()->add_font_ids(id);
  for (const wire::ActivationMode mode : {wire::MODE_AUTO_LOCAL, wire::MODE_AUTO, wire::MODE_PERMANENT}) {
    request.mutable_activate_fonts()->set_mode(mode);
    const wire::ServerMessage reply = mClient->Ask(request);
    EXPECT_EQ(reply.error(), codes::kLicenseComplianceViolation);
    ASSERT_EQ(reply.activate_fonts().refused_ids_size(), 1);
    EXPECT_EQ(reply.activate_fonts().refused_ids(0), mBold);
    EXPECT_EQ(reply.activate_fonts().fonts_size(), 2);
  }
  EXPECT_TRUE(FcListShows("Testa-Regular"));
  EXPECT_FALSE(FcListShows("Testa-Bold"));
  EXPECT_TRUE(FcListShows("Other-Regular"));
}

TEST_F(KilnSetTest, ADocumentGetsTheAllowedFontOfANameAndLearnsOfTheRefused) {
  FontBuilder twin;
  twin.version = "Version 2.000";
  mClient->AddFiles({mFiles.Write("twin.ttf", twin.TrueType())});
  Refuse(1, {mClient->IdOf("Testa-Regular"), mBold});
  wire::ClientMessage request;
  request.mutable_activate_document_fonts()->set_activate_entire_family(true);
  for (const char* name : {"Testa-Bold", "Testa-Regular"}) {
    request.mutable_activate_document_fonts()->add_fonts()->set_postscript_name(name);
  }
  WireClient other(WireClient::kSecondUuid);
  const auto reply = mClient->Ask(request).activate_document_fonts();
  ASSERT_EQ(reply.matched_size(), 1) << "neither the newer one nor the family's other";
  EXPECT_EQ(reply.matched(0).font().id(), mRegular);
  ASSERT_EQ(reply.problems_size(), 1);
  EXPECT_EQ(reply.problems(0).reason(), wire::ProblemFont::REFUSED);
  EXPECT_EQ(reply.problems(0).error(), codes::kLicenseComplianceViolation);
  const auto event = mClient->WaitForEvent(wire::ServerMessage::kComplianceRefused);
  ASSERT_TRUE(event);
  EXPECT_EQ(event->compliance_refused().font_ids(0), mBold);
}

}  // namespace
}  // namespace kiln
