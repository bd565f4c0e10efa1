#pragma once

/// The agent's internal names of the permission columns: what the client library's column getters answer, and
/// what a PermissionRequest names.
namespace kiln {

inline constexpr const char* kCanActivateAcrossWorkgroupsColumn = "canActivateAcrossWorkgroups";
inline constexpr const char* kExportFontsColumn = "exportFonts";

}  // namespace kiln
