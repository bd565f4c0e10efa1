#include "idml/XmlPart.h"

#include <cstring>
#include <optional>
#include <utility>

#include "idml/Limits.h"
#include "idml/ZipArchive.h"

namespace idml {
namespace {

constexpr unsigned int kParseFlags =
    pugi::parse_default | pugi::parse_pi | pugi::parse_ws_pcdata_single | pugi::parse_doctype;

// Without recursion, since this is what makes recursion safe elsewhere.
bool IsDeeperThan(const pugi::xml_document& document, int maximum) {
  int depth = 0;
  pugi::xml_node node = document;
  for (;;) {
    if (const pugi::xml_node child = node.first_child()) {
      if (++depth > maximum) return true;
      node = child;
      continue;
    }
    while (!node.next_sibling()) {
      node = node.parent();
      if (!node || node == document) return false;
      --depth;
    }
    node = node.next_sibling();
  }
}

bool DeclaresEntities(const pugi::xml_document& document) {
  for (const pugi::xml_node child : document.children()) {
    if (child.type() == pugi::node_doctype && std::strstr(child.value(), "<!ENTITY")) return true;
  }
  return false;
}

}  // namespace

bool XmlPart::Load(ZipArchive& archive, const std::string& name, std::string& error) {
  std::optional<std::string> text = archive.Read(name, error);
  return text && LoadText(std::move(*text), name, error);
}

bool XmlPart::LoadText(std::string text, const std::string& name, std::string& error) {
  m_document.reset();
  m_text = std::move(text);
  const pugi::xml_parse_result result =
      m_document.load_buffer_inplace(m_text.data(), m_text.size(), kParseFlags, pugi::encoding_auto);
  if (!result) {
    error = name + ": offset " + std::to_string(result.offset) + ": " + result.description();
  } else if (DeclaresEntities(m_document)) {
    error = name + ": declares entities, which no document does";
  } else if (IsDeeperThan(m_document, limits::kMaximumDepth)) {
    error = name + ": elements are nested too deep";
  } else {
    return true;
  }
  m_document.reset();
  m_text.clear();
  return false;
}

}  // namespace idml
