#include "client/FontListing.h"

#include <algorithm>
#include <utility>

#include "GErrorCodes.h"

TErrCode FontListing::Read(Session& session, const std::vector<uint32_t>& workgroupIDs,
                           std::vector<kiln::wire::Font>& outFonts) {
  uint32_t last = 0;
  for (bool more = true; more;) {
    kiln::wire::ClientMessage request;
    auto& body = *request.mutable_list_fonts();
    body.mutable_workgroup_ids()->Add(workgroupIDs.begin(), workgroupIDs.end());
    body.set_after_id(last);
    Connection::Incoming reply;
    if (const TErrCode code = session.Call(request, reply)) return code;
    if (!reply.message.has_list_fonts()) return GKVMessageDataHandler::kInvalidMessage;
    more = reply.message.list_fonts().more();
    const uint32_t before = last;
    for (auto& font : *reply.message.mutable_list_fonts()->mutable_fonts()) {
      last = std::max(last, font.id());
      outFonts.push_back(std::move(font));
    }
    // A page that brings nothing new would be asked for again for ever.
    if (more && last == before) return GKVMessageDataHandler::kInvalidMessage;
  }
  return CoreErrorCodes::kSuccess;
}
