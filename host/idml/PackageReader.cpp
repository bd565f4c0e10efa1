#include "idml/PackageReader.h"

#include <algorithm>
#include <exception>
#include <unordered_map>
#include <utility>

#include "idml/DesignMap.h"
#include "idml/FontTable.h"
#include "idml/Limits.h"
#include "idml/LinkReader.h"
#include "idml/PackageNames.h"
#include "idml/StoryReader.h"
#include "idml/StyleSheet.h"
#include "idml/UsedFonts.h"
#include "idml/XmlPart.h"
#include "idml/ZipArchive.h"

namespace idml {
namespace {

/// Reads the parts of one package in the order in which they need one another.
class PackageReading {
 public:
  explicit PackageReading(ZipArchive& archive) : m_archive(archive), m_usedFonts(m_fontTable) {}

  bool Run(Document& document, std::string& error) {
    if (!ReadMap(error) || !ReadFonts(error) || !ReadStyles(error) || !ReadStored(document, error))
      return false;
    for (const auto* spreads : {&m_map.spreads, &m_map.masterSpreads}) {
      for (const std::string& part : *spreads) {
        if (!ReadSpread(part, error)) return false;
      }
    }
    if (!ReadStories(error)) return false;
    document.families = m_fontTable.TakeFamilies();
    document.usedVariants = m_usedFonts.Variants();
    document.links = std::move(m_vLinks);
    return true;
  }

 private:
  bool ReadMap(std::string& error) {
    std::optional<std::string> type;
    if (m_archive.Contains(kMimeTypePart) && !(type = m_archive.Read(kMimeTypePart, error))) return false;
    if (type && type->substr(0, std::string_view(kMimeType).size()) != kMimeType) {
      error = "is a package of another kind than a document";
      return false;
    }
    XmlPart part;
    if (!part.Load(m_archive, kDesignMapPart, error)) return false;
    m_map = ReadDesignMap(part.Root());
    return true;
  }

  bool ReadFonts(std::string& error) {
    for (const std::string& name : m_map.fonts) {
      XmlPart part;
      if (!part.Load(m_archive, name, error)) return false;
      if (!m_fontTable.Read(part.Root(), error)) return InPart(name, error);
    }
    return true;
  }

  bool ReadStyles(std::string& error) {
    for (const std::string& name : m_map.styles) {
      XmlPart part;
      if (!part.Load(m_archive, name, error)) return false;
      if (!m_styleSheet.Read(part.Root(), error)) return InPart(name, error);
    }
    return true;
  }

  bool ReadStored(Document& document, std::string& error) {
    const std::string prefix = kStoredPartPrefix;
    for (const std::string& name : m_archive.NamesWithPrefix(prefix)) {
      std::optional<std::string> bytes = m_archive.Read(name, error);
      if (!bytes) return false;
      document.stored.emplace(name.substr(prefix.size()), std::move(*bytes));
    }
    return true;
  }

  bool ReadSpread(const std::string& name, std::string& error) {
    XmlPart part;
    return part.Load(m_archive, name, error) &&
           (ReadLinks(part.Root(), m_vLinks) || TooManyLinks(name, error));
  }

  // The design map lists stories by identifier, and only a story's own part tells which one it is: the name
  // of the part tells it by custom, but nothing says so. A name that fits neither is read after the others.
  bool ReadStories(std::string& error) {
    std::unordered_map<std::string, std::size_t> ranks;
    for (const std::string& story : m_map.storyList) ranks.emplace(story, ranks.size());
    std::vector<std::pair<std::size_t, std::string>> ordered;
    for (const std::string& name : m_map.stories) {
      const auto rank = ranks.find(StoryOfPart(name));
      ordered.emplace_back(rank == ranks.end() ? ranks.size() : rank->second, name);
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& entry : ordered) {
      if (!ReadStory(entry.second, error)) return false;
    }
    return true;
  }

  bool ReadStory(const std::string& name, std::string& error) {
    XmlPart part;
    if (!part.Load(m_archive, name, error)) return false;
    StoryReader(m_styleSheet, m_usedFonts).Read(part.Root());
    if (m_usedFonts.Variants().size() > limits::kMaximumUsedFonts) {
      error = "text uses more than " + std::to_string(limits::kMaximumUsedFonts) + " fonts";
      return InPart(name, error);
    }
    return ReadLinks(part.Root(), m_vLinks) || TooManyLinks(name, error);
  }

  // "u18e" of "Stories/Story_u18e.xml".
  static std::string StoryOfPart(const std::string& name) {
    const std::size_t begin = name.rfind('_');
    const std::size_t end = name.rfind('.');
    if (begin == std::string::npos || end == std::string::npos || end < begin) return {};
    return name.substr(begin + 1, end - begin - 1);
  }

  static bool InPart(const std::string& name, std::string& error) {
    error = name + ": " + error;
    return false;
  }

  static bool TooManyLinks(const std::string& name, std::string& error) {
    error = "the document has more than " + std::to_string(limits::kMaximumLinks) + " links";
    return InPart(name, error);
  }

  ZipArchive& m_archive;
  DesignMap m_map;
  FontTable m_fontTable;
  StyleSheet m_styleSheet;
  UsedFonts m_usedFonts;
  std::vector<Link> m_vLinks;
};

// A message may carry names out of the package: they must neither steer a terminal nor fill it.
std::string Printable(std::string message) {
  constexpr std::size_t kMaximumLength = 400;
  if (message.size() > kMaximumLength) message = message.substr(0, kMaximumLength) + "...";
  std::replace_if(
      message.begin(), message.end(),
      [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }, '?');
  return message;
}

}  // namespace

std::optional<Document> ReadPackage(const std::string& path, std::string& error) {
  try {
    const std::unique_ptr<ZipArchive> archive = ZipArchive::Open(path, error);
    Document document;
    if (archive && PackageReading(*archive).Run(document, error)) return document;
  } catch (const std::exception& failure) {
    error = failure.what();  // No memory left, for one.
  }
  error = path + ": " + Printable(std::move(error));
  return std::nullopt;
}

}  // namespace idml
