#include "LibrarySession.h"

#include <utility>

std::optional<LibrarySession> LibrarySession::Open() {
  LibrarySession session;
  session.kiln = KilnConnection::Open();
  if (session.kiln) session.logic = PlugInLogic::Start(*session.kiln);
  if (!session.logic) return std::nullopt;
  std::optional<Workgroups> workgroups = Workgroups::Read(*session.kiln, *session.logic);
  if (!workgroups) return std::nullopt;
  session.workgroups = std::move(*workgroups);
  return session;
}
