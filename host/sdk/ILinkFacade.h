#pragma once

#include "IPMUnknown.h"
#include "UIDRef.h"

namespace Facade {

/// Questions about links that take both the document and the file system to answer. Belongs to the session.
class ILinkFacade : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ILINKFACADE;

  enum LinkStatus : int32 {
    kUpToDate = 0,
    kOutOfDate = 1,  ///< The file was changed after it was placed.
    kEmbedded = 2,   ///< The document carries the content itself.
    kMissing = 5,
  };

  /// \param link  The link in its document's database. One that does not exist is missing.
  virtual LinkStatus GetLinkStatus(const UIDRef& link) const = 0;
};

}  // namespace Facade
