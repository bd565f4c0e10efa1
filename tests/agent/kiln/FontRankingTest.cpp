#include <gtest/gtest.h>

#include <functional>

#include "kiln/fonts/FontRanking.h"

namespace kiln {
namespace {

wire::Font Candidate(uint32_t id) {
  wire::Font font;
  font.set_id(id);
  font.set_postscript_name("Testa-Regular");
  font.set_kind(wire::FONT_KIND_TRUETYPE);
  font.set_version("1.5");
  font.set_foundry("Adobe");
  font.set_checksum(11);
  font.set_glyphmark_checksum(22);
  font.set_in_vault(true);
  return font;
}

// The first font of each row must win against the second, in either order.
struct RankingCase {
  const char* name;
  std::function<void(wire::Font& winner, wire::Font& loser, wire::FontIdentity& identity)> arrange;
};

class CompareCandidatesTest : public testing::TestWithParam<RankingCase> {};

TEST_P(CompareCandidatesTest, TheBetterOneComesFirst) {
  wire::Font winner = Candidate(9);
  wire::Font loser = Candidate(8);
  wire::FontIdentity identity;
  GetParam().arrange(winner, loser, identity);
  EXPECT_LT(CompareCandidates(&identity, winner, loser), 0);
  EXPECT_GT(CompareCandidates(&identity, loser, winner), 0);
}

using F = wire::Font;
using I = wire::FontIdentity;

INSTANTIATE_TEST_SUITE_P(
    Rules, CompareCandidatesTest,
    testing::Values(
        RankingCase{"ActiveBeforeInactive", [](F& w, F&, I&) { w.set_state(wire::ACTIVATION_AUTO); }},
        RankingCase{"UsersFontBeforeSystemFont",
                    [](F& w, F& l, I&) {
                      w.set_state(wire::ACTIVATION_PERMANENT);
                      l.set_state(wire::ACTIVATION_SYSTEM);
                      l.set_is_system(true);
                    }},
        RankingCase{"ActiveBeforeNewer",
                    [](F& w, F& l, I&) {
                      w.set_state(wire::ACTIVATION_AUTO);
                      l.set_version("9.0");
                    }},
        RankingCase{"OpenTypeBeforePostscript",
                    [](F& w, F& l, I&) {
                      w.set_kind(wire::FONT_KIND_OPENTYPE);
                      l.set_kind(wire::FONT_KIND_POSTSCRIPT);
                      l.set_version("2.0");
                    }},
        RankingCase{"PostscriptBeforeTrueType", [](F& w, F&, I&) { w.set_kind(wire::FONT_KIND_POSTSCRIPT); }},
        RankingCase{"NewerVersion", [](F& w, F&, I&) { w.set_version("1.51"); }},
        RankingCase{"VersionsAreDecimal",
                    [](F& w, F& l, I&) {
                      w.set_version("2.9");
                      l.set_version("2.10");
                    }},
        RankingCase{"NumberBeforeText", [](F&, F& l, I&) { l.set_version("nan"); }},
        RankingCase{"VaultBeforeElsewhere", [](F&, F& l, I&) { l.set_in_vault(false); }},
        RankingCase{"SmallerIDLast", [](F& w, F& l, I&) { w.set_id(3), l.set_id(4); }},
        RankingCase{"IdentityBeforeActive",
                    [](F& w, F& l, I& i) {
                      i.set_checksum(11);
                      l.set_checksum(12);
                      l.set_state(wire::ACTIVATION_PERMANENT);
                      w.set_version("1.0");
                    }},
        RankingCase{"KindOfTheDocument",
                    [](F&, F& l, I& i) {
                      i.set_kind(wire::FONT_KIND_TRUETYPE);
                      l.set_kind(wire::FONT_KIND_OPENTYPE);
                    }},
        RankingCase{"FoundryButForCase",
                    [](F&, F& l, I& i) {
                      i.set_foundry("ADOBE");
                      l.set_foundry("Linotype");
                    }},
        RankingCase{"VersionOfTheDocumentBeforeNewer",
                    [](F&, F& l, I& i) {
                      i.set_version("1.5");
                      l.set_version("3.0");
                    }},
        RankingCase{"ChecksumBeforeKindAndFoundry",
                    [](F& w, F& l, I& i) {
                      i.set_glyphmark_checksum(22);
                      i.set_kind(wire::FONT_KIND_OPENTYPE);
                      i.set_foundry("Linotype");
                      l.set_glyphmark_checksum(23);
                      l.set_kind(wire::FONT_KIND_OPENTYPE);
                      l.set_foundry("Linotype");
                      w.set_version("0.1");
                    }},
        RankingCase{"AFileThatIsThereBeforeTheRightOneThatIsNot",
                    [](F& w, F& l, I& i) {
                      i.set_checksum(11);
                      w.set_checksum(12);
                      l.set_state(wire::ACTIVATION_MISSING);
                    }}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(Agreement, AnIdentityOfNothingButANameDecidesNothing) {
  wire::FontIdentity identity;
  identity.set_postscript_name("Testa-Regular");
  EXPECT_EQ(Agreement(identity, Candidate(1)), 0u);
  EXPECT_EQ(Agreement(identity, wire::Font()), 0u) << "unknown doesn't agree with unknown";
}

}  // namespace
}  // namespace kiln
