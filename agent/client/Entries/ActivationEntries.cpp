// What changes which fonts are active.

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <vector>

#include "Memory/CFCast.h"
#include "Memory/CFVector.h"
#include "client/Entries/EntryGuard.h"
#include "client/FontRecords.h"
#include "client/LibraryInterface.h"
#include "client/RecordKeys.h"

using kiln::wire::ClientMessage;
using kiln::wire::ServerMessage;

namespace {

// System fonts are visible as it is.
void AppendForProcess(const kiln::wire::Font& font, bool local, std::vector<ProcessFonts::Font>& fonts) {
  if (font.is_system() || font.id() == 0 || font.path().empty()) return;
  fonts.push_back({font.id(), font.path(), local});
}

void CopyIDs(const google::protobuf::RepeatedField<uint32_t>& ids, unsigned long capacity, unsigned int* out,
             unsigned int* outCount) {
  const unsigned long count = out == nullptr ? 0 : std::min(capacity, static_cast<unsigned long>(ids.size()));
  std::copy_n(ids.begin(), count, out);
  if (outCount != nullptr) *outCount = static_cast<unsigned int>(count);
}

// A font list as it comes in: the identity data for the agent, and which record each piece is from.
struct FontList {
  std::vector<RetainPtr<CFDictionaryRef>> records;
  kiln::wire::ActivateDocumentFontsRequest request;

  explicit FontList(CFArrayRef fonts) {
    for (const auto& element : ToVector<CFDictionaryRef>(fonts)) {
      if (auto identity = FontRecords::ReadIdentity(element.get())) {
        *request.add_fonts() = std::move(*identity);
        records.push_back(element);
      } else {
        AddEmbedded(dynamicCF<CFArrayRef>(CFDictionaryGetValue(element.get(), RecordKeys::kEmbeddedFonts)));
      }
    }
  }

 private:
  void AddEmbedded(CFArrayRef embedded) {
    if (embedded == nullptr) return;
    for (const auto& record : ToVector<CFDictionaryRef>(embedded)) {
      if (auto identity = FontRecords::ReadIdentity(record.get())) {
        *request.add_embedded_fonts() = std::move(*identity);
      }
    }
  }
};

// `broughtIn`: it wasn't active before, whatever the agent says after an answer that got lost.
RetainPtr<CFMutableDictionaryRef> MatchedRecord(kiln::wire::MatchedFont& match, bool broughtIn,
                                                CFDictionaryRef requested) {
  if (broughtIn) match.mutable_font()->set_state(kiln::wire::ACTIVATION_INACTIVE);
  auto record = FontRecords::MakeRecord(match.font());
  FontRecords::PutMeaningOfState(record.get(), match.font().state());
  // The agent doesn't see which parts of the document use the font; the record says it on.
  if (CFTypeRef documents = CFDictionaryGetValue(requested, RecordKeys::kSubDocumentsWithFont);
      documents != nullptr && !match.family_member()) {
    CFDictionarySetValue(record.get(), RecordKeys::kSubDocumentsWithFont, documents);
  }
  return record;
}

RetainPtr<CFMutableDictionaryRef> ProblemRecord(CFDictionaryRef requested) {
  auto record = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, requested));
  CFDictionarySetValue(record.get(), RecordKeys::kPossibleReplacements, MakeArray().get());
  return record;
}

void NoteLostAnswer(ErrCode code) {
  if (EntryGuard::IsUnreachable(code)) ClientLibrary::Get().Own().LoseAnswer();
}

// Who holds the fonts of an answer now.
ErrCode TakeAnswer(Session& session, const kiln::wire::ActivateFontsReply& answer,
                   kiln::wire::ActivationMode mode) {
  OwnActivations& own = ClientLibrary::Get().Own();
  if (mode == kiln::wire::MODE_PERMANENT || mode == kiln::wire::MODE_TEMPORARY) {
    std::vector<unsigned int> usersOwn;
    for (const auto& font : answer.fonts()) usersOwn.push_back(font.id());
    own.Release(usersOwn);
    return CoreErrorCodes::kSuccess;
  }
  std::vector<OwnActivations::Answered> answered;
  for (const auto& font : answer.fonts()) answered.push_back({font.id(), font.state()});
  std::vector<bool> broughtIn;
  return own.TakeAnswer(session, answered, broughtIn);
}

ErrCode Activate(Session& session, unsigned long count, const unsigned int* fontIDs,
                 kiln::wire::ActivationMode mode, Connection::Incoming& reply,
                 std::vector<unsigned int>& unseen) {
  ClientMessage request;
  auto& body = *request.mutable_activate_fonts();
  body.set_mode(mode);
  if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
  const ErrCode code = session.Call(request, reply, EntryGuard::kWorkLimit);
  NoteLostAnswer(code);
  if (!reply.message.has_activate_fonts()) {
    return code == CoreErrorCodes::kSuccess ? GKVMessageDataHandler::kInvalidMessage : code;
  }
  if (const ErrCode unknown = TakeAnswer(session, reply.message.activate_fonts(), mode)) {
    reply.message.Clear();
    return unknown;
  }
  std::vector<ProcessFonts::Font> visible;
  const bool local = mode == kiln::wire::MODE_AUTO_LOCAL;
  for (const auto& font : reply.message.activate_fonts().fonts()) AppendForProcess(font, local, visible);
  unseen = ClientLibrary::Get().Fonts().Activate(visible, reply.order);
  return code;
}

// Given back before, by a call whose answer was lost: this one finds nothing to give back, and events don't
// come over a connection that has broken. A question that fails leaves the fonts in sight, which harms
// nobody.
std::vector<unsigned int> GoneUnheard(Session& session, std::span<const unsigned int> fontIDs,
                                      const kiln::wire::DeactivateFontsReply& answer) {
  if (!ClientLibrary::Get().Own().HasLostAnswer()) return {};
  std::set<unsigned int> heard(answer.deactivated_ids().begin(), answer.deactivated_ids().end());
  heard.insert(answer.released_ids().begin(), answer.released_ids().end());
  std::vector<unsigned int> ids;
  std::ranges::copy_if(fontIDs, std::back_inserter(ids),
                       [&](unsigned int id) { return !heard.contains(id); });
  if (ids.empty()) return {};
  ClientMessage request;
  request.mutable_font_is_activated()->mutable_font_ids()->Add(ids.begin(), ids.end());
  Connection::Incoming reply;
  if (session.Call(request, reply) != CoreErrorCodes::kSuccess) return {};
  const auto& states = reply.message.font_is_activated().states();
  if (static_cast<size_t>(states.size()) != ids.size()) return {};
  auto state = states.begin();
  std::erase_if(ids, [&state](unsigned int) {
    return FontRecords::IsActive(static_cast<kiln::wire::ActivationState>(*state++));
  });
  return ids;
}

ErrCode GiveBack(Session& session, const unsigned int* fontIDs, unsigned long count, bool byHand = false) {
  ClientMessage request;
  auto& body = *request.mutable_deactivate_fonts();
  body.set_by_hand(byHand);
  if (const ErrCode code = EntryGuard::ReadIDs(fontIDs, count, *body.mutable_font_ids())) return code;
  Connection::Incoming reply;
  if (const ErrCode code = EntryGuard::Ask(session, request, reply, &ServerMessage::has_deactivate_fonts,
                                           EntryGuard::kWorkLimit)) {
    NoteLostAnswer(code);
    return code;
  }
  const auto& answer = reply.message.deactivate_fonts();
  std::vector<unsigned int> gone = GoneUnheard(session, {fontIDs, count}, answer);
  gone.insert(gone.end(), answer.deactivated_ids().begin(), answer.deactivated_ids().end());
  ClientLibrary::Get().Own().Release({fontIDs, count});
  ClientLibrary::Get().Fonts().Deactivate(gone, {answer.released_ids().begin(), answer.released_ids().end()});
  return CoreErrorCodes::kSuccess;
}

}  // namespace

ErrCode ActivateFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs, const void*,
                      int mode, int flagA, int, unsigned long capacityA, unsigned long capacityB,
                      unsigned int* idsA, unsigned int* idsB, unsigned int* countA, unsigned int* countB) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    const auto wanted = mode == 0    ? kiln::wire::MODE_PERMANENT
                        : flagA == 0 ? kiln::wire::MODE_TEMPORARY
                                     : kiln::wire::MODE_AUTO;
    Connection::Incoming reply;
    std::vector<unsigned int> unseen;
    const ErrCode code = Activate(session, count, fontIDs, wanted, reply, unseen);
    if (reply.message.has_activate_fonts()) {
      CopyIDs(reply.message.activate_fonts().failed_ids(), capacityA, idsA, countA);
      CopyIDs(reply.message.activate_fonts().refused_ids(), capacityB, idsB, countB);
    }
    return code;
  });
}

ErrCode PreviewActivateFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs, int) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    Connection::Incoming reply;
    std::vector<unsigned int> unseen;
    const ErrCode code = Activate(session, count, fontIDs, kiln::wire::MODE_AUTO_LOCAL, reply, unseen);
    if (unseen.empty()) return code;
    // Active for this process alone, which can't see them: then not active at all.
    GiveBack(session, unseen.data(), unseen.size());
    return code != CoreErrorCodes::kSuccess ? code : GFontActivation::kOSActivationError;
  });
}

ErrCode ActivateDocumentFontsByPath(FacadeRef facade, const char* path, CFArrayRef fonts, bool nextGenPlugin,
                                    bool activateEntireFamily, bool pickBestMatch, bool glyphMarkEnabled,
                                    int workgroupID, CFMutableArrayRef outMatched,
                                    CFMutableArrayRef outProblems) {
  return EntryGuard::RunInSession(facade, [&](Session& session) -> ErrCode {
    if (const ErrCode code = EntryGuard::CheckObject(fonts)) return code;
    if (const ErrCode code = EntryGuard::CheckObject(outMatched)) return code;
    if (const ErrCode code = EntryGuard::CheckObject(outProblems)) return code;
    FontList list(fonts);
    // Only for the agent's log: a name that isn't UTF-8 is no reason to leave the document without fonts.
    if (path != nullptr && ToCFString(path) != nullptr) list.request.set_document_path(path);
    list.request.set_next_gen_plugin(nextGenPlugin);
    list.request.set_activate_entire_family(activateEntireFamily);
    list.request.set_pick_best_match(pickBestMatch);
    list.request.set_glyph_mark_enabled(glyphMarkEnabled);
    list.request.set_workgroup_id(
        EntryGuard::IsAllWorkgroups(workgroupID) ? 0 : static_cast<uint32_t>(workgroupID));

    ClientMessage request;
    *request.mutable_activate_document_fonts() = std::move(list.request);
    Connection::Incoming reply;
    if (const ErrCode code = EntryGuard::Ask(
            session, request, reply, &ServerMessage::has_activate_document_fonts, EntryGuard::kWorkLimit)) {
      NoteLostAnswer(code);
      return code;
    }
    auto& answer = *reply.message.mutable_activate_document_fonts();
    std::vector<OwnActivations::Answered> answered;
    for (const auto& match : answer.matched()) answered.push_back({match.font().id(), match.font().state()});
    std::vector<bool> broughtIn;
    if (const ErrCode code = ClientLibrary::Get().Own().TakeAnswer(session, answered, broughtIn)) return code;
    std::vector<ProcessFonts::Font> visible;
    for (int i = 0; i < answer.matched_size(); ++i) {
      auto& match = *answer.mutable_matched(i);
      if (match.request_index() >= list.records.size() || match.font().id() == 0) continue;
      CFDictionaryRef requested = list.records[match.request_index()].get();
      CFArrayAppendValue(outMatched,
                         MatchedRecord(match, broughtIn[static_cast<size_t>(i)], requested).get());
      AppendForProcess(match.font(), false, visible);
    }
    ClientLibrary::Get().Fonts().Activate(visible, reply.order);
    for (const auto& problem : answer.problems()) {
      if (problem.request_index() >= list.records.size()) continue;
      CFArrayAppendValue(outProblems, ProblemRecord(list.records[problem.request_index()].get()).get());
    }
    return CoreErrorCodes::kSuccess;
  });
}

ErrCode DeactivateFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs, int) {
  return EntryGuard::RunInSession(facade,
                                  [&](Session& session) { return GiveBack(session, fontIDs, count); });
}

ErrCode KilnLibraryDeactivateFonts(FacadeRef facade, unsigned long count, const unsigned int* fontIDs) {
  return EntryGuard::RunInSession(facade,
                                  [&](Session& session) { return GiveBack(session, fontIDs, count, true); });
}
