#include "kiln/sources/ServerConfiguration.h"

#include <sys/stat.h>

#include <charconv>

#include "GConfigurationFile.h"
#include "GErrorCodes.h"
#include "GStringUtils.h"

namespace kiln {
namespace {

constexpr const char* kFileName = "server.conf";
constexpr off_t kLargest = 1 << 20;
constexpr const char* kEverybody = "*";
constexpr const char* kBlanks = " \t";

std::set<std::string> Items(const std::string& list) {
  std::set<std::string> items;
  for (const std::string& item : GStringUtils::OSTokenizeString(list, ",")) {
    const size_t first = item.find_first_not_of(kBlanks);
    if (first != std::string::npos) {
      items.insert(item.substr(first, item.find_last_not_of(kBlanks) - first + 1));
    }
  }
  return items;
}

}  // namespace

std::optional<ServerConfiguration> ServerConfiguration::Read(const std::string& folder) {
  const std::string path = folder + "/" + kFileName;
  struct stat found {};
  if (stat(path.c_str(), &found) != 0 || !S_ISREG(found.st_mode) || found.st_size > kLargest) return {};
  std::map<std::string, std::string> entries;
  if (GConfigurationFile::ParseFile(GFileSystemSpec(path), entries) != CoreErrorCodes::kSuccess) return {};
  return ServerConfiguration(std::move(entries));
}

std::optional<ServerConfiguration> ServerConfiguration::Parse(const std::string& text) {
  std::map<std::string, std::string> entries;
  if (GConfigurationFile::ParseString(text, entries) != CoreErrorCodes::kSuccess) return {};
  return ServerConfiguration(std::move(entries));
}

std::string ServerConfiguration::Value(const std::string& key, const char* otherwise) const {
  const auto entry = mEntries.find(GStringUtils::OSToLowerCase(key));
  return entry == mEntries.end() ? otherwise : entry->second;
}

// Everybody unless the list says otherwise.
bool ServerConfiguration::Lists(const std::string& key, const std::string& user) const {
  const std::set<std::string> users = Items(Value(key, kEverybody));
  return users.count(user) > 0 || users.count(kEverybody) > 0;
}

bool ServerConfiguration::Knows(const std::string& user) const {
  return Lists("users", user);
}

bool ServerConfiguration::MayActivateAcross(const std::string& user) const {
  return Lists("across-workgroups", user);
}

bool ServerConfiguration::ListsLocalLibraries() const {
  return Value("local-libraries", "yes") != "no";
}

int32_t ServerConfiguration::ServerType() const {
  const std::string text = Value("server-type", "1");
  int32_t type = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), type);
  return error == std::errc() && end == text.data() + text.size() ? type : 1;
}

ServerConfiguration::Workgroup ServerConfiguration::For(const std::string& subfolder,
                                                        const std::string& user) const {
  const std::string prefix = "workgroup." + subfolder + ".";
  const std::string owner = Value(prefix + "owner", "");
  Workgroup workgroup;
  workgroup.personal = !owner.empty();
  workgroup.visible = workgroup.personal ? owner == user : Lists(prefix + "users", user);
  workgroup.exportAllowed = Lists(prefix + "export", user);
  workgroup.refused = Items(Value(prefix + "refused", ""));
  return workgroup;
}

}  // namespace kiln
