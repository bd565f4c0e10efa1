#include "idml/DesignMap.h"

#include <sstream>
#include <string_view>
#include <unordered_set>

namespace idml {

DesignMap ReadDesignMap(const pugi::xml_node& root) {
  DesignMap map;
  std::unordered_set<std::string> named;
  for (const pugi::xml_node child : root.children()) {
    const std::string_view name = child.name();
    constexpr std::string_view kPackagePrefix = "idPkg:";
    if (name.substr(0, kPackagePrefix.size()) != kPackagePrefix) continue;
    const std::string_view kind = name.substr(kPackagePrefix.size());
    std::vector<std::string>* parts = kind == "Fonts"          ? &map.fonts
                                      : kind == "Styles"       ? &map.styles
                                      : kind == "Spread"       ? &map.spreads
                                      : kind == "MasterSpread" ? &map.masterSpreads
                                      : kind == "Story"        ? &map.stories
                                                               : nullptr;
    const std::string part = child.attribute("src").value();
    if (parts && !part.empty() && named.insert(part).second) parts->push_back(part);
  }
  std::istringstream list(root.attribute("StoryList").value());
  for (std::string story; list >> story;) map.storyList.push_back(story);
  return map;
}

}  // namespace idml
