#pragma once

#include <set>
#include <string>
#include <vector>

#include "client/FontSystem.h"

/// A font system without fonts: it keeps lists of paths. Files named "bad..." can't be seen.
class FakeFontSystem : public FontSystem {
 public:
  std::vector<bool> AddFiles(const std::vector<std::string>& files) override {
    std::vector<bool> seen;
    for (const std::string& file : files) {
      seen.push_back(!file.starts_with("bad"));
      if (seen.back()) added.insert(file);
    }
    return seen;
  }
  void RemoveFiles(const std::vector<std::string>& files) override {
    ++changes;
    for (const std::string& file : files) added.erase(file);
  }
  void ForgetFiles(const std::vector<std::string>& files) override {
    for (const std::string& file : files) added.erase(file);
  }
  void Reload() override {
    ++reloads;
    inFolders = onDisk;
  }
  std::size_t CountInFolders(const std::set<std::string>& files) override {
    std::size_t count = 0;
    for (const std::string& file : files) count += inFolders.count(file);
    return count;
  }
  bool IsStale() override { return stale; }
  std::chrono::seconds CheckInterval() override { return std::chrono::seconds(0); }

  std::set<std::string> added;
  std::set<std::string> inFolders;  // as far as read
  std::set<std::string> onDisk;
  int changes = 0;
  int reloads = 0;
  bool stale = false;
};
