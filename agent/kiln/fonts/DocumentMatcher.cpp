#include "kiln/fonts/DocumentMatcher.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kiln/fonts/FontRanking.h"
#include "kiln/fonts/Vault.h"
#include "kiln/store/Database.h"
#include "protocol/ActivationStates.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

// What the document stored of a font fills the gaps of what the request says of it.
wire::FontIdentity Completed(const wire::FontIdentity& identity, const wire::FontIdentity* embedded) {
  if (!embedded) return identity;
  wire::FontIdentity whole = *embedded;
  whole.MergeFrom(identity);
  return whole;
}

WorkgroupScope ScopeOf(uint32_t workgroup) {
  if (workgroup == 0) return {};
  return WorkgroupScope(std::vector<uint32_t>{workgroup, kSystemWorkgroup});
}

// Orders the candidates for a font, or, without an identity, any fonts.
struct Better {
  const wire::FontIdentity* identity;
  bool operator()(const FontRow& first, const FontRow& second) const {
    return CompareCandidates(identity, first.font, second.font) < 0;
  }
};

// As far as is noted.
bool IsThere(const wire::Font& font) {
  return font.state() != wire::ACTIVATION_MISSING && font.state() != wire::ACTIVATION_UNUSABLE;
}

// What becomes of a font that isn't active by a look at its file.
wire::ActivationState StateOfFile(const wire::Font& font) {
  return StateOfInactive(Vault::StateOf(font.path(), font.outline_file_size()));
}

// What a mark keeps from being activated; a font that is active stays so.
bool IsRefused(const wire::Font& font) {
  return font.refused() && !IsActive(font.state());
}

}  // namespace

void DocumentMatcher::Matching::Choose(int index, FontRow row, bool familyMember) {
  choices.push_back({index, row.font.id(), familyMember});
  if (chosen.insert(row.font.id()).second) rows.push_back(std::move(row));
}

std::vector<FontRow> DocumentMatcher::Ranked(int64_t clientID, const std::vector<uint32_t>& ids,
                                             const WorkgroupScope& scope,
                                             const wire::FontIdentity* identity) {
  std::vector<FontRow> rows;
  for (const uint32_t id : ids) {
    std::optional<FontRow> row = mFonts.Load(id, scope);
    if (!row) continue;
    row->font.set_state(mBook.StateFor(*row, clientID));
    // It may have come back a moment ago.
    if (!IsThere(row->font) && StateOfFile(row->font) == wire::ACTIVATION_INACTIVE) {
      row->font.set_state(wire::ACTIVATION_INACTIVE);
    }
    rows.push_back(std::move(*row));
  }
  std::sort(rows.begin(), rows.end(), Better{identity});
  return rows;
}

void DocumentMatcher::MatchOne(int64_t clientID, const wire::ActivateDocumentFontsRequest& request, int index,
                               const Embedded& embedded, const WorkgroupScope& scope, Matching& matching) {
  const wire::FontIdentity& asked = request.fonts(index);
  const auto stored = embedded.find(asked.postscript_name());
  const wire::FontIdentity identity = Completed(asked, stored == embedded.end() ? nullptr : stored->second);
  const wire::FontIdentity* useful = request.glyph_mark_enabled() ? &identity : nullptr;
  std::vector<FontRow> ranked =
      Ranked(clientID, mFonts.WithPostScriptName(identity.postscript_name()), scope, useful);
  if (ranked.empty()) {
    matching.problems[index] = {wire::ProblemFont::NOT_FOUND, codes::kNotFound, 0};
    return;
  }
  const uint32_t best = ranked.front().font.id();
  std::erase_if(ranked, [](const FontRow& row) { return IsRefused(row.font); });
  if (ranked.empty()) {
    matching.problems[index] = {wire::ProblemFont::REFUSED, codes::kLicenseComplianceViolation, best};
    return;
  }
  // Only the best one's file matters; one that has just gone leaves its place to the next.
  while (ranked.front().font.state() == wire::ACTIVATION_INACTIVE) {
    const wire::ActivationState now = StateOfFile(ranked.front().font);
    if (now == wire::ACTIVATION_INACTIVE) break;
    ranked.front().font.set_state(now);
    std::sort(ranked.begin(), ranked.end(), Better{useful});
  }
  if (ranked.front().font.state() == wire::ACTIVATION_MISSING && ranked.front().file == FileState::kMissing) {
    matching.problems[index] = {wire::ProblemFont::FILE_MISSING, codes::kFontMissing, best};
    return;
  }
  // That a file is missing or unusable which isn't noted as such is for the activation to find and to note.
  matching.Choose(index, std::move(ranked.front()), false);
}

// Behind each font the other members of its family group, one per name that the document doesn't have
// already.
void DocumentMatcher::AddFamilies(int64_t clientID, const WorkgroupScope& scope, Matching& matching) {
  std::set<std::string> names;
  std::map<uint32_t, uint32_t> groupOf;
  for (const FontRow& row : matching.rows) {
    names.insert(row.font.postscript_name());
    groupOf[row.font.id()] = row.font.family_group_id();
  }
  std::set<uint32_t> groups;
  for (const Choice& choice : std::exchange(matching.choices, {})) {
    matching.choices.push_back(choice);
    const uint32_t group = groupOf[choice.fontID];
    if (!groups.insert(group).second) continue;
    for (FontRow& member : Ranked(clientID, mFonts.InFamilyGroup(group), scope, nullptr)) {
      if (!IsThere(member.font) || IsRefused(member.font)) continue;
      if (names.insert(member.font.postscript_name()).second)
        matching.Choose(choice.index, std::move(member), true);
    }
  }
}

uint32_t DocumentMatcher::Activate(int64_t clientID, const wire::ActivateDocumentFontsRequest& request,
                                   wire::ActivateDocumentFontsReply& reply, ActivationChange& change) {
  Embedded embedded;
  for (const wire::FontIdentity& font : request.embedded_fonts())
    embedded.emplace(font.postscript_name(), &font);

  const WorkgroupScope scope = ScopeOf(request.workgroup_id());
  Matching matching;
  {
    // Thousands of small readings are cheaper under one lock.
    const Transaction reading(mDatabase);
    for (int i = 0; i < request.fonts_size(); ++i) MatchOne(clientID, request, i, embedded, scope, matching);
    if (request.activate_entire_family()) AddFamilies(clientID, scope, matching);
  }
  if (matching.choices.size() > kMostMatches) return codes::kInvalidParam;

  ActivationBook::ActivateResult result;
  const wire::ActivationMode mode = request.local() ? wire::MODE_AUTO_LOCAL : wire::MODE_AUTO;
  if (const uint32_t error = mBook.Activate(clientID, std::move(matching.rows), mode, result)) return error;

  std::map<uint32_t, const FontRow*> activated;
  for (const FontRow& row : result.fonts) activated[row.font.id()] = &row;
  for (const Choice& choice : matching.choices) {
    const auto row = activated.find(choice.fontID);
    if (row != activated.end()) {
      wire::MatchedFont& matched = *reply.add_matched();
      matched.set_request_index(static_cast<uint32_t>(choice.index));
      *matched.mutable_font() = row->second->font;
      matched.set_was_active(IsActive(row->second->font.state()));
      matched.set_family_member(choice.familyMember);
    } else if (!choice.familyMember) {
      const uint32_t error = result.failures[choice.fontID];
      const bool gone = error == codes::kFontMissing;
      matching.problems[choice.index] = {
          gone ? wire::ProblemFont::FILE_MISSING : wire::ProblemFont::ACTIVATION_FAILED, error,
          choice.fontID};
    }
  }
  change = std::move(result.change);
  std::set<uint32_t> refused;
  for (const auto& [index, found] : matching.problems) {
    wire::ProblemFont& problem = *reply.add_problems();
    problem.set_request_index(static_cast<uint32_t>(index));
    problem.set_reason(found.reason);
    problem.set_error(found.error);
    if (found.reason == wire::ProblemFont::REFUSED) refused.insert(found.fontID);
  }
  change.refused.assign(refused.begin(), refused.end());
  return codes::kSuccess;
}

}  // namespace kiln
