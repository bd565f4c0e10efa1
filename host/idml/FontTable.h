#pragma once

#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "idml/Model.h"

namespace idml {

/// The font table of a document, Resources/Fonts.xml: families with their faces, and composite fonts, which
/// take the characters of each script from another font.
class FontTable {
 public:
  /// \param error  Says on failure what is wrong.
  /// \return false when there are more than limits::kMaximumFonts faces.
  bool Read(const pugi::xml_node& root, std::string& error);

  /// The fonts that a composite font is put together from, or null when no composite font has that name.
  const std::vector<UsedVariant>* FindComposite(const std::string& name) const;

  /// The families in the table's order.
  std::vector<FontFamily> TakeFamilies() { return std::move(m_vFamilies); }

 private:
  bool AddFamily(const pugi::xml_node& element, std::string& error);
  FontFamily& FamilyNamed(const std::string& name);

  std::vector<FontFamily> m_vFamilies;
  std::unordered_map<std::string, std::size_t> m_mFamilyIndices;
  std::unordered_map<std::string, std::vector<UsedVariant>> m_mComposites;
  std::size_t m_nFaces = 0;
};

}  // namespace idml
