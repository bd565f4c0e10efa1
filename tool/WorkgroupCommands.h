#pragma once

#include <string>
#include <vector>

/// `hornbeam library workgroups` and what lies below it, and `hornbeam library select`, as LibraryCommands.h
/// tells. A library is named by its name or its ID.

struct WorkgroupsOptions {
  bool json = false;  ///< one JSON object a library, on one line
};
int RunWorkgroups(const WorkgroupsOptions& options);

struct MakeWorkgroupOptions {
  std::string name;
};
int RunMakeWorkgroup(const MakeWorkgroupOptions& options);

struct RenameWorkgroupOptions {
  std::string library;
  std::string name;
};
int RunRenameWorkgroup(const RenameWorkgroupOptions& options);

struct DeleteWorkgroupOptions {
  std::string library;
};
int RunDeleteWorkgroup(const DeleteWorkgroupOptions& options);

struct WorkgroupFontsOptions {
  std::string library;
  std::vector<std::string> fonts;
};
/// Puts fonts, all of a name, into a library.
int RunPutFonts(const WorkgroupFontsOptions& options);
/// Takes them out of it; those that no other library holds are deleted, unless they are active.
int RunTakeFonts(const WorkgroupFontsOptions& options);

struct SelectOptions {
  std::string library;  ///< "all" for all together
};
/// Sets where the fonts of documents are looked for.
int RunSelect(const SelectOptions& options);
