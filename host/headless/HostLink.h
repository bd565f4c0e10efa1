#pragma once

#include <string>
#include <utility>

#include "CPMUnknown.h"
#include "ILink.h"
#include "ILinkFacade.h"
#include "idml/Model.h"

namespace headless {

/// One placed file, with what the document remembers of it.
class HostLink final : public CPMUnknown<ILink> {
 public:
  HostLink(IPMUnknown* boss, idml::Link link) : CPMUnknown(boss), m_link(std::move(link)) {}

  std::string GetURI() const override { return m_link.uri; }

  /// Compares the document's memory with the file as it is now. A file that isn't there is missing, whatever
  /// the document says; one that is newer than when it was placed is out of date. Where the document doesn't
  /// tell the time, its own word counts. A link to something other than a file is never missing.
  Facade::ILinkFacade::LinkStatus Status() const;

 private:
  idml::Link m_link;
};

/// The path that a file URI means: RFC 8089, and the form without slashes before a drive letter. Percent
/// signs are decoded.
///
/// \return "" for a URI of another scheme and for one that can't be a path.
std::string PathOfFileURI(const std::string& uri);

/// Answers from the link's own object.
class LinkFacade final : public CPMUnknown<Facade::ILinkFacade> {
 public:
  using CPMUnknown::CPMUnknown;

  LinkStatus GetLinkStatus(const UIDRef& link) const override;
};

}  // namespace headless
