#include "idml/LinkReader.h"

#include <charconv>
#include <cstring>
#include <ctime>
#include <string_view>

#include "idml/Limits.h"
#include "idml/XmlText.h"

namespace idml {
namespace {

constexpr std::uint64_t kStampTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

// Takes a decimal number and one blank after it from the front of the text.
bool TakeNumber(std::string_view& text, std::uint64_t& number) {
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (code != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!text.empty() && text.front() != ' ') return false;
  if (!text.empty()) text.remove_prefix(1);
  return true;
}

void ReadStamp(std::string_view stamp, Link& link) {
  constexpr std::string_view kFileStamp = "file ";
  if (stamp.substr(0, kFileStamp.size()) != kFileStamp) return;
  stamp.remove_prefix(kFileStamp.size());
  std::uint64_t number = 0;
  if (!TakeNumber(stamp, number)) return;
  link.importTime = static_cast<std::int64_t>(number / kStampTicksPerSecond) - kSecondsFrom1601To1970;
  if (TakeNumber(stamp, number)) link.importSize = number;
}

void ReadLocalTime(const char* text, Link& link) {
  std::tm local = {};
  const char* end = strptime(text, "%Y-%m-%dT%H:%M:%S", &local);
  if (!end || *end) return;
  local.tm_isdst = -1;
  const std::time_t time = std::mktime(&local);
  if (time != -1) link.importTime = time;
}

Link ReadLink(const pugi::xml_node& element) {
  Link link;
  link.uri = Property(element, "LinkResourceURI").value_or("");
  link.format = NameProperty(element, "LinkResourceFormat").value_or("");
  const std::string_view state = element.attribute("StoredState").value();
  link.embedded = state.find("Embedded") != std::string_view::npos;
  link.outOfDate = state.find("OutOfDate") != std::string_view::npos ||
                   element.attribute("LinkResourceModified").as_bool();
  ReadStamp(element.attribute("LinkImportStamp").value(), link);
  if (!link.importTime) ReadLocalTime(element.attribute("LinkImportModificationTime").value(), link);
  return link;
}

}  // namespace

bool ReadLinks(const pugi::xml_node& root, std::vector<Link>& links) {
  for (const pugi::xml_node child : root.children()) {
    if (std::strcmp(child.name(), "Link") == 0) {
      if (links.size() == limits::kMaximumLinks) return false;
      links.push_back(ReadLink(child));
    }
    if (!ReadLinks(child, links)) return false;
  }
  return true;
}

}  // namespace idml
