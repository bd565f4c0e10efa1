#pragma once

#include "IPMUnknown.h"
#include "K2Vector.h"
#include "LinkQuery.h"
#include "UID.h"

/// The links of one document. Belongs to the root object of its database; each link has ILink.
class ILinkManager : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ILINKMANAGER;

  /// Appends the links that the query wants, in the document's order.
  virtual void QueryLinks(const LinkQuery& query, K2Vector<UID>& links) const = 0;
};
