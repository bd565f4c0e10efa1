#include "support/IdmlFixture.h"

#include <zip.h>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr char kXml[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr char kNamespace[] =
    " xmlns:idPkg=\"http://ns.adobe.com/AdobeInDesign/idml/1.0/packaging\" DOMVersion=\"15.0\"";

// What the design map calls a part of that folder; "" for a part that it doesn't name.
std::string KindOf(const std::string& name) {
  if (name == "Resources/Fonts.xml") return "Fonts";
  if (name == "Resources/Styles.xml") return "Styles";
  if (name.rfind("MasterSpreads/", 0) == 0) return "MasterSpread";
  if (name.rfind("Spreads/", 0) == 0) return "Spread";
  if (name.rfind("Stories/", 0) == 0) return "Story";
  return {};
}

std::string SelfOfStory(const std::string& name) {
  const std::size_t begin = name.rfind('_') + 1;
  return name.substr(begin, name.rfind('.') - begin);
}

std::string Wrap(const std::string& name, std::string_view body) {
  const std::string kind = KindOf(name);
  if (kind.empty() || body.substr(0, 5) == "<?xml") return std::string(body);
  std::string inner(body);
  if (kind == "Story") inner = "<Story Self=\"" + SelfOfStory(name) + "\">" + inner + "</Story>";
  return kXml + ("<idPkg:" + kind) + kNamespace + ">" + inner + "</idPkg:" + kind + ">\n";
}

}  // namespace

IdmlFixture::IdmlFixture(std::string_view text) {
  constexpr std::string_view kMark = "=== ";
  std::string name;
  std::string body;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    if (line.substr(0, kMark.size()) == kMark) {
      if (!name.empty()) SetBody(name, body);
      name = line.substr(kMark.size(), line.find_last_not_of("\r\n") + 1 - kMark.size());
      body.clear();
    } else {
      body += line;
    }
  }
  if (!name.empty()) SetBody(name, body);
}

IdmlFixture& IdmlFixture::Set(const std::string& name, std::string bytes) {
  const auto part = std::find_if(m_vParts.begin(), m_vParts.end(),
                                 [&name](const auto& candidate) { return candidate.first == name; });
  if (part == m_vParts.end()) {
    m_vParts.emplace_back(name, std::move(bytes));
  } else {
    part->second = std::move(bytes);
  }
  return *this;
}

IdmlFixture& IdmlFixture::SetBody(const std::string& name, std::string_view body) {
  return Set(name, Wrap(name, body));
}

IdmlFixture& IdmlFixture::Remove(const std::string& name) {
  m_vRemoved.push_back(name);
  return *this;
}

std::string IdmlFixture::DesignMap() const {
  std::string stories;
  std::string parts;
  for (const auto& [name, bytes] : m_vParts) {
    const std::string kind = KindOf(name);
    if (kind == "Story") stories += (stories.empty() ? "" : " ") + SelfOfStory(name);
    if (!kind.empty()) parts += "<idPkg:" + kind + " src=\"" + name + "\"/>\n";
  }
  return kXml + std::string("<Document") + kNamespace + " Self=\"d\" StoryList=\"" + stories + "\">\n" +
         parts + "</Document>\n";
}

std::string IdmlFixture::Write(const std::string& path) const {
  std::vector<std::pair<std::string, std::string>> parts = {
      {"mimetype", "application/vnd.adobe.indesign-idml-package"}};
  const auto has = [this](const char* name) {
    return std::any_of(m_vParts.begin(), m_vParts.end(),
                       [name](const auto& part) { return part.first == name; });
  };
  if (has("mimetype")) parts.clear();
  if (!has("designmap.xml")) parts.emplace_back("designmap.xml", DesignMap());
  parts.insert(parts.end(), m_vParts.begin(), m_vParts.end());
  std::erase_if(parts, [this](const auto& part) {
    return std::find(m_vRemoved.begin(), m_vRemoved.end(), part.first) != m_vRemoved.end();
  });

  int code = 0;
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
  if (!archive) throw std::runtime_error("Can't write " + path);
  for (const auto& [name, bytes] : parts) {
    zip_source_t* source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) zip_source_free(source);  // a name that is there already, or no name
    if (index >= 0 && name == "mimetype") {
      zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
    }
  }
  if (zip_close(archive) != 0) {
    zip_discard(archive);
    throw std::runtime_error("Can't write " + path);
  }
  return path;
}
