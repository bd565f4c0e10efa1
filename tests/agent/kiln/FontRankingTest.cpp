#include <gtest/gtest.h>

#include <functional>

#include "kiln/fonts/FontRanking.h"

namespace kiln {
namespace {

// What two candidates, or a document's data, may differ in.
struct Traits {
  uint32_t id = 0;
  wire::FontKind kind = wire::FONT_KIND_TRUETYPE;
  const char* version = "1.5";
  const char* foundry = "Adobe";
  uint32_t checksum = 11;
  uint32_t glyphs = 22;
  wire::ActivationState state = wire::ACTIVATION_INACTIVE;
  bool isSystem = false;
  bool inVault = true;
};

wire::Font Candidate(const Traits& traits) {
  wire::Font font;
  font.set_id(traits.id);
  font.set_postscript_name("Testa-Regular");
  font.set_kind(traits.kind);
  font.set_version(traits.version);
  font.set_foundry(traits.foundry);
  font.set_checksum(traits.checksum);
  font.set_glyphmark_checksum(traits.glyphs);
  font.set_state(traits.state);
  font.set_is_system(traits.isSystem);
  font.set_in_vault(traits.inVault);
  return font;
}

wire::FontIdentity Identity(const std::function<void(wire::FontIdentity&)>& set) {
  wire::FontIdentity identity;
  set(identity);
  return identity;
}

// The first font of each row must win against the second, in either order.
TEST(CompareCandidates, TheBetterOneComesFirst) {
  constexpr auto kOpenType = wire::FONT_KIND_OPENTYPE;
  constexpr auto kPostScript = wire::FONT_KIND_POSTSCRIPT;
  constexpr auto kAuto = wire::ACTIVATION_AUTO;
  constexpr auto kPermanent = wire::ACTIVATION_PERMANENT;
  using I = wire::FontIdentity;
  const struct {
    const char* name;
    Traits winner;
    Traits loser;
    wire::FontIdentity identity = {};
  } cases[] = {
      {"active before inactive", {.state = kAuto}, {}},
      {"the user's before the system's",
       {.state = kPermanent},
       {.state = wire::ACTIVATION_SYSTEM, .isSystem = true}},
      {"active before newer", {.state = kAuto}, {.version = "9.0"}},
      {"OpenType before PostScript", {.kind = kOpenType}, {.kind = kPostScript, .version = "2.0"}},
      {"PostScript before TrueType", {.kind = kPostScript}, {}},
      {"newer version", {.version = "1.51"}, {}},
      {"versions are decimal", {.version = "2.9"}, {.version = "2.10"}},
      {"number before text", {}, {.version = "nan"}},
      {"vault before elsewhere", {}, {.inVault = false}},
      {"smaller ID last", {.id = 3}, {.id = 4}},
      {"identity before active",
       {.version = "1.0"},
       {.checksum = 12, .state = kPermanent},
       Identity([](I& i) { i.set_checksum(11); })},
      {"kind of the document", {}, {.kind = kOpenType}, Identity([](I& i) {
         i.set_kind(wire::FONT_KIND_TRUETYPE);
       })},
      {"foundry but for case", {}, {.foundry = "Linotype"}, Identity([](I& i) { i.set_foundry("ADOBE"); })},
      {"version of the document before newer", {}, {.version = "3.0"}, Identity([](I& i) {
         i.set_version("1.5");
       })},
      {"checksum before kind and foundry",
       {.version = "0.1"},
       {.kind = kOpenType, .foundry = "Linotype", .glyphs = 23},
       Identity([](I& i) {
         i.set_glyphmark_checksum(22);
         i.set_kind(kOpenType);
         i.set_foundry("Linotype");
       })},
      {"a file that is there before the right one that is not",
       {.checksum = 12},
       {.state = wire::ACTIVATION_MISSING},
       Identity([](I& i) { i.set_checksum(11); })},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    Traits winner = row.winner;
    Traits loser = row.loser;
    if (winner.id == 0) winner.id = 9;
    if (loser.id == 0) loser.id = 8;
    EXPECT_LT(CompareCandidates(&row.identity, Candidate(winner), Candidate(loser)), 0);
    EXPECT_GT(CompareCandidates(&row.identity, Candidate(loser), Candidate(winner)), 0);
  }
}

TEST(Agreement, AnIdentityOfNothingButANameDecidesNothing) {
  wire::FontIdentity identity;
  identity.set_postscript_name("Testa-Regular");
  EXPECT_EQ(Agreement(identity, Candidate({.id = 1})), 0u);
  EXPECT_EQ(Agreement(identity, wire::Font()), 0u) << "unknown doesn't agree with unknown";
}

}  // namespace
}  // namespace kiln
