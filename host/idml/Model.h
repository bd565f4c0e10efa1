#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace idml {

/// A face that the document's font table lists (element Font of Resources/Fonts.xml). All texts are UTF-8
/// without the "$ID/" that marks translatable names.
struct FontFace {
  std::string styleName;
  std::string postScriptName;  ///< Empty when the table doesn't say.
  std::string fullName;
  std::string type;    ///< FontType, such as "OpenTypeCFF" or "TrueType".
  std::string status;  ///< Status when the document was stored, such as "Installed" or "NotAvailable".
};

/// A family of the font table with its faces in the table's order. Each family stands there once.
struct FontFamily {
  std::string name;
  std::vector<FontFace> faces;
};

/// A family and style that text of the document is set in.
struct UsedVariant {
  std::string family;
  std::string style;  ///< Empty when no style says one.

  bool operator==(const UsedVariant&) const = default;
};

/// A placed file (element Link).
struct Link {
  std::string uri;     ///< LinkResourceURI as it stands.
  std::string format;  ///< LinkResourceFormat without "$ID/", such as "EPS".
  bool embedded = false;
  bool outOfDate = false;  ///< The document itself says so (StoredState, LinkResourceModified).
  /// Modification time of the file when it was placed, in seconds since 1970 UTC, when the link tells it.
  std::optional<std::int64_t> importTime;
  std::optional<std::uint64_t> importSize;  ///< Size of the file when it was placed, likewise.
};

/// What a host needs to know of a document.
struct Document {
  std::vector<FontFamily> families;       ///< The font table, in its order.
  std::vector<UsedVariant> usedVariants;  ///< Each once, in the order found: story by story, text by text.
  std::vector<Link> links;  ///< Spreads, master spreads, then stories, in the design map's order.
  /// What PackageWriter has stored, by name.
  std::map<std::string, std::string> stored;
};

}  // namespace idml
