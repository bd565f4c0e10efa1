#pragma once

#include <pugixml.hpp>
#include <string>

namespace idml {

class ZipArchive;

/// One XML part of a package, parsed and found fit to be walked by recursion: well formed, no declared
/// entities, nested no deeper than limits::kMaximumDepth. White space is kept where it is an element's whole
/// text, and processing instructions are kept (in a story they stand for characters).
class XmlPart {
 public:
  /// \param error  Says on failure what is wrong, with the part's name and, where known, the offset in it.
  /// \return false on failure; the part is then empty.
  bool Load(ZipArchive& archive, const std::string& name, std::string& error);

  /// The same for text that is at hand already.
  bool LoadText(std::string text, const std::string& name, std::string& error);

  /// The root element. Valid as long as the part.
  pugi::xml_node Root() const { return m_document.document_element(); }

 private:
  std::string m_text;  // The document points into it.
  pugi::xml_document m_document;
};

}  // namespace idml
