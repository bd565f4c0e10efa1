#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

namespace idml {

/// The table of contents of a package, designmap.xml: which parts there are, each once, by kind and in its
/// order.
struct DesignMap {
  std::vector<std::string> fonts;
  std::vector<std::string> styles;
  std::vector<std::string> spreads;
  std::vector<std::string> masterSpreads;
  std::vector<std::string> stories;
  std::vector<std::string> storyList;  ///< Identifiers (Self) of stories in the document's order.
};

DesignMap ReadDesignMap(const pugi::xml_node& root);

}  // namespace idml
