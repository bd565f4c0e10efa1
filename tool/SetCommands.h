#pragma once

#include <string>
#include <vector>

/// `hornbeam library sets` and what lies below it, as LibraryCommands.h tells. A set is named by its ID,
/// since two may have one name.

struct SetsOptions {
  bool json = false;  ///< one JSON object a set, on one line
};
int RunSets(const SetsOptions& options);

struct MakeSetOptions {
  std::string name;
  std::string library;
  std::vector<std::string> fonts;
};
int RunMakeSet(const MakeSetOptions& options);

struct AddToSetOptions {
  unsigned int id = 0;
  std::vector<std::string> fonts;
};
int RunAddToSet(const AddToSetOptions& options);

struct DeleteSetOptions {
  unsigned int id = 0;
};
int RunDeleteSet(const DeleteSetOptions& options);
