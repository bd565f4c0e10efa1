#include "kiln/fonts/DocumentMatcher.h"

#include <unistd.h>

#include <algorithm>
#include <map>
#include <utility>

#include "kiln/fonts/FontRanking.h"
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

void AddProblem(wire::ActivateDocumentFontsReply& reply, int index, wire::ProblemFont::Reason reason,
                uint32_t error) {
  wire::ProblemFont& problem = *reply.add_problems();
  problem.set_request_index(static_cast<uint32_t>(index));
  problem.set_reason(reason);
  problem.set_error(error);
}

}  // namespace

std::vector<FontRow> DocumentMatcher::Ranked(int64_t clientID, const std::vector<uint32_t>& ids,
                                             const WorkgroupScope& scope,
                                             const wire::FontIdentity* identity) {
  std::vector<FontRow> rows;
  for (const uint32_t id : ids) {
    std::optional<FontRow> row = mFonts.Load(id, scope);
    if (!row) continue;
    row->font.set_state(mBook.StateFor(*row, clientID));
    const bool active = IsActive(row->font.state());
    if (!active) {
      row->missing = access(row->font.path().c_str(), R_OK) != 0;
      row->font.set_state(row->missing ? wire::ACTIVATION_MISSING : wire::ACTIVATION_INACTIVE);
    }
    rows.push_back(std::move(*row));
  }
  std::sort(rows.begin(), rows.end(), [identity](const FontRow& first, const FontRow& second) {
    return CompareCandidates(identity, first.font, second.font) < 0;
  });
  return rows;
}

std::optional<uint32_t> DocumentMatcher::Choose(int64_t clientID, const wire::FontIdentity& identity,
                                                const WorkgroupScope& scope, bool useIdentity,
                                                wire::ProblemFont::Reason& reason) {
  const std::vector<FontRow> ranked = Ranked(clientID, mFonts.WithPostScriptName(identity.postscript_name()),
                                             scope, useIdentity ? &identity : nullptr);
  if (ranked.empty()) {
    reason = wire::ProblemFont::NOT_FOUND;
  } else if (ranked.front().font.state() == wire::ACTIVATION_MISSING) {
    reason = wire::ProblemFont::FILE_MISSING;
  } else {
    return ranked.front().font.id();
  }
  return std::nullopt;
}

// Behind each font the other members of its family group, one per name that the document doesn't have
// already.
void DocumentMatcher::AddFamilies(int64_t clientID, const WorkgroupScope& scope,
                                  std::vector<Choice>& choices) {
  std::set<std::string> names;
  for (const Choice& choice : choices) {
    if (const std::optional<FontRow> row = mFonts.Load(choice.fontID))
      names.insert(row->font.postscript_name());
  }
  std::set<uint32_t> groups;
  std::vector<Choice> all;
  for (const Choice& choice : choices) {
    all.push_back(choice);
    const std::optional<FontRow> row = mFonts.Load(choice.fontID);
    if (!row || !groups.insert(row->font.family_group_id()).second) continue;
    const std::vector<uint32_t> members = mFonts.InFamilyGroup(row->font.family_group_id());
    for (const FontRow& member : Ranked(clientID, members, scope, nullptr)) {
      if (member.font.state() == wire::ACTIVATION_MISSING) continue;
      if (names.insert(member.font.postscript_name()).second)
        all.push_back({choice.index, member.font.id(), true});
    }
  }
  choices = std::move(all);
}

uint32_t DocumentMatcher::Activate(int64_t clientID, const wire::ActivateDocumentFontsRequest& request,
                                   wire::ActivateDocumentFontsReply& reply, ActivationChange& change) {
  std::map<std::string, const wire::FontIdentity*> embedded;
  for (const wire::FontIdentity& font : request.embedded_fonts())
    embedded.emplace(font.postscript_name(), &font);

  const WorkgroupScope scope = ScopeOf(request.workgroup_id());
  std::vector<Choice> choices;
  std::map<int, std::pair<wire::ProblemFont::Reason, uint32_t>> problems;  // by index in the request
  for (int i = 0; i < request.fonts_size(); ++i) {
    const auto stored = embedded.find(request.fonts(i).postscript_name());
    const wire::FontIdentity identity =
        Completed(request.fonts(i), stored == embedded.end() ? nullptr : stored->second);
    wire::ProblemFont::Reason reason = wire::ProblemFont::NOT_FOUND;
    const std::optional<uint32_t> id =
        Choose(clientID, identity, scope, request.glyph_mark_enabled(), reason);
    if (id) {
      choices.push_back({i, *id, false});
    } else {
      problems[i] = {reason,
                     reason == wire::ProblemFont::FILE_MISSING ? codes::kFontMissing : codes::kNotFound};
    }
  }
  if (request.activate_entire_family()) AddFamilies(clientID, scope, choices);

  if (choices.size() > kMostMatches) return codes::kInvalidParam;
  std::vector<uint32_t> ids;
  ids.reserve(choices.size());
  for (const Choice& choice : choices) ids.push_back(choice.fontID);
  ActivationBook::ActivateResult result;
  const wire::ActivationMode mode = request.local() ? wire::MODE_AUTO_LOCAL : wire::MODE_AUTO;
  if (const uint32_t error = mBook.Activate(clientID, ids, scope, mode, result)) return error;

  std::map<uint32_t, const FontRow*> activated;
  for (const FontRow& row : result.fonts) activated[row.font.id()] = &row;
  for (const Choice& choice : choices) {
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
      problems[choice.index] = {gone ? wire::ProblemFont::FILE_MISSING : wire::ProblemFont::ACTIVATION_FAILED,
                                error};
    }
  }
  for (const auto& [index, problem] : problems) AddProblem(reply, index, problem.first, problem.second);
  change = std::move(result.change);
  return codes::kSuccess;
}

}  // namespace kiln
