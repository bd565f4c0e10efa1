#include "headless/HostLink.h"

#include <sys/stat.h>

#include <charconv>
#include <string_view>

#include "InterfacePtr.h"

namespace headless {
namespace {

constexpr std::string_view kFileScheme = "file:";

// False for a broken escape and for one that hides a zero byte.
bool DecodePercents(std::string_view text, std::string& decoded) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    unsigned char byte = 0;
    if (text.size() - i < 3) return false;
    const char* end = text.data() + i + 3;
    if (std::from_chars(text.data() + i + 1, end, byte, 16).ptr != end || byte == 0) return false;
    decoded += static_cast<char>(byte);
    i += 2;
  }
  return true;
}

}  // namespace

std::string PathOfFileURI(const std::string& uri) {
  std::string_view rest = uri;
  if (rest.substr(0, kFileScheme.size()) != kFileScheme) return {};
  rest.remove_prefix(kFileScheme.size());
  if (rest.substr(0, 2) == "//") {
    const std::size_t path = rest.find('/', 2);
    const std::string_view host = rest.substr(2, path == std::string_view::npos ? path : path - 2);
    if (path == std::string_view::npos || (!host.empty() && host != "localhost")) return {};
    rest.remove_prefix(path);
  }
  std::string decoded;
  return DecodePercents(rest, decoded) ? decoded : std::string();
}

Facade::ILinkFacade::LinkStatus HostLink::Status() const {
  using Status = Facade::ILinkFacade;
  if (m_link.embedded) return Status::kEmbedded;
  const bool isFile = m_link.uri.compare(0, kFileScheme.size(), kFileScheme) == 0;
  if (!isFile) return m_link.outOfDate ? Status::kOutOfDate : Status::kUpToDate;
  const std::string path = PathOfFileURI(m_link.uri);
  struct stat info = {};
  if (path.empty() || path.front() != '/' || stat(path.c_str(), &info) != 0) return Status::kMissing;
  const bool outOfDate = m_link.importTime ? info.st_mtime > *m_link.importTime : m_link.outOfDate;
  return outOfDate ? Status::kOutOfDate : Status::kUpToDate;
}

Facade::ILinkFacade::LinkStatus LinkFacade::GetLinkStatus(const UIDRef& link) const {
  const InterfacePtr<ILink> asked(link, UseDefaultIID());
  const auto* hostLink = dynamic_cast<const HostLink*>(asked.get());
  return hostLink ? hostLink->Status() : kMissing;
}

}  // namespace headless
