#include "kiln/server/ClientHub.h"

#include <algorithm>

namespace kiln {
namespace {

constexpr size_t kPlacesPerEvent = 5000;

wire::ServerMessage EventOf(std::vector<wire::FontPlace>::const_iterator first,
                            std::vector<wire::FontPlace>::const_iterator last, bool activated, bool local) {
  wire::ServerMessage event;
  const auto fill = [&](auto& body) {
    for (auto place = first; place != last; ++place) *body.add_fonts() = *place;
    body.set_local(local);
  };
  if (activated) {
    fill(*event.mutable_fonts_activated());
  } else {
    fill(*event.mutable_fonts_deactivated());
  }
  return event;
}

template <class Send>
void ForEachEvent(const std::vector<wire::FontPlace>& places, bool activated, bool local, const Send& send) {
  for (size_t start = 0; start < places.size(); start += kPlacesPerEvent) {
    const size_t end = std::min(places.size(), start + kPlacesPerEvent);
    const auto first = places.begin();
    send(EventOf(first + static_cast<ptrdiff_t>(start), first + static_cast<ptrdiff_t>(end), activated,
                 local));
  }
}

}  // namespace

void ClientHub::Announce(int64_t clientID, const ActivationChange& change) {
  const auto toAll = [this](const wire::ServerMessage& event) { Broadcast(event); };
  const auto toOne = [this, clientID](const wire::ServerMessage& event) { SendTo(clientID, event); };
  ForEachEvent(change.activated, true, false, toAll);
  ForEachEvent(change.deactivated, false, false, toAll);
  ForEachEvent(change.localActivated, true, true, toOne);
  ForEachEvent(change.localDeactivated, false, true, toOne);
  if (!change.missing.empty()) {
    wire::ServerMessage event;
    event.mutable_fonts_missing()->mutable_font_ids()->Add(change.missing.begin(), change.missing.end());
    toAll(event);
  }
  if (!change.refused.empty()) {
    wire::ServerMessage event;
    event.mutable_compliance_refused()->mutable_font_ids()->Add(change.refused.begin(), change.refused.end());
    toOne(event);
  }
}

}  // namespace kiln
