#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace kiln {

/// The "server.conf" of a font server, in the syntax of GConfigurationFile. What it may say is told in
/// FontServer.h.
class ServerConfiguration {
 public:
  /// \param folder  The server's.
  /// \return Nothing when there is no such file that can be read, or one of more than a megabyte.
  static std::optional<ServerConfiguration> Read(const std::string& folder);
  static std::optional<ServerConfiguration> Parse(const std::string& text);

  bool Knows(const std::string& user) const;
  bool MayActivateAcross(const std::string& user) const;
  bool ListsLocalLibraries() const;
  int32_t ServerType() const;

  struct Workgroup {
    bool visible = false;
    bool personal = false;
    bool exportAllowed = false;
    std::set<std::string> refused;  ///< PostScript names
  };
  /// What the workgroup of that subfolder is for a user.
  Workgroup For(const std::string& subfolder, const std::string& user) const;

  bool operator==(const ServerConfiguration&) const = default;

 private:
  explicit ServerConfiguration(std::map<std::string, std::string> entries) : mEntries(std::move(entries)) {}

  std::string Value(const std::string& key, const char* otherwise) const;
  bool Lists(const std::string& key, const std::string& user) const;

  std::map<std::string, std::string> mEntries;
};

}  // namespace kiln
