#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "idml/FontTable.h"
#include "idml/Model.h"

namespace idml {

/// Collects the pairs of family and style that text is set in, each once, in the order in which they come. A
/// composite font stands for the fonts that it is put together from.
class UsedFonts {
 public:
  /// \param fontTable  Outlives the object.
  explicit UsedFonts(const FontTable& fontTable) : m_fontTable(fontTable) {}

  /// Does nothing for text without a family.
  void Add(const std::string& family, const std::string& style);

  const std::vector<UsedVariant>& Variants() const { return m_vVariants; }

 private:
  void AddPlain(const std::string& family, const std::string& style);

  const FontTable& m_fontTable;
  std::vector<UsedVariant> m_vVariants;
  std::unordered_set<std::string> m_seen;        // Family, a line end, style.
  std::unordered_set<std::string> m_composites;  // Those that have been taken apart.
};

}  // namespace idml
