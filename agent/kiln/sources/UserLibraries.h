#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kiln {

struct FontLibrary;

/// What the user does with libraries by hand. The rules and the codes are told in Kiln.proto with
/// CreateWorkgroupRequest and those behind it. With an error nothing has changed.
class UserLibraries {
 public:
  explicit UserLibraries(FontLibrary& library) : mLibrary(library) {}

  uint32_t Create(const std::string& name, uint32_t& id);
  uint32_t Rename(uint32_t id, const std::string& name);
  uint32_t Delete(uint32_t id);

  /// \param changed  Receives the fonts that are in the library now and weren't before.
  uint32_t PutIn(uint32_t id, std::span<const uint32_t> fontIDs, std::vector<uint32_t>& changed);
  /// \param changed  Receives the fonts that have left the library. Those that are in none now are left to
  ///                 OrphanSweep.
  /// \param kept  Receives those that are active and would be in no library any more.
  uint32_t TakeOut(uint32_t id, std::span<const uint32_t> fontIDs, std::vector<uint32_t>& changed,
                   std::vector<uint32_t>& kept);

 private:
  uint32_t CheckChangeable(uint32_t id) const;
  uint32_t CheckName(const std::string& name, uint32_t id) const;

  FontLibrary& mLibrary;
};

}  // namespace kiln
