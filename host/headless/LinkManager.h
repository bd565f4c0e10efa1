#pragma once

#include <vector>

#include "CPMUnknown.h"
#include "ILinkManager.h"

namespace headless {

/// The links of one document, in its order.
class LinkManager final : public CPMUnknown<ILinkManager> {
 public:
  using CPMUnknown::CPMUnknown;

  void Add(UID link) { m_vLinks.push_back(link); }
  void QueryLinks(const LinkQuery&, K2Vector<UID>& links) const override {
    links.insert(links.end(), m_vLinks.begin(), m_vLinks.end());
  }

 private:
  std::vector<UID> m_vLinks;
};

}  // namespace headless
