#pragma once

#include <string>
#include <unordered_map>

#include "IDFile.h"
#include "IDataBase.h"
#include "headless/InstalledFonts.h"
#include "idml/Model.h"

namespace headless {

/// What the interfaces of one document share. Each of them holds it, so that one that a plug-in keeps too
/// long still finds it.
struct DocumentContent {
  /// The table's entry for a family, or null.
  const idml::FontFamily* FindFamily(const std::string& name) const {
    const auto found = familiesByName.find(name);
    return found == familiesByName.end() ? nullptr : &model.families[found->second];
  }

  std::string name;
  IDFile file;
  idml::Document model;
  std::unordered_map<std::string, std::size_t> familiesByName;
  InstalledFonts* installedFonts = nullptr;  // The host's, which outlives its documents; null once closed.
  IDataBase* database = nullptr;             // Null once the document is being taken down.
  std::uint32_t fontGeneration = 0;          // Goes up when families shall look at the installed fonts again.
};

}  // namespace headless
