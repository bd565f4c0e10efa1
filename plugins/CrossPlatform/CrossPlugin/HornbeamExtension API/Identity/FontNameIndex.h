#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

/// Finds a PostScript name among many, with the same result as three walks over the names: the first
/// identical one, else the first that matches when stripped, else the first that matches when stripped with
/// specials.
///
/// A name is known by its position. Positions may be added, taken out and renamed in any order.
class FontNameIndex {
 public:
  void Add(size_t position, const std::string& name);
  /// \param name  The one that the position was added with.
  void Remove(size_t position, const std::string& name);
  void Rename(size_t position, const std::string& oldName, const std::string& newName);

  std::optional<size_t> Find(const std::string& name) const;

 private:
  // The positions of one form of a name. Nearly always there is one.
  struct Positions {
    size_t lowest;
    std::set<size_t> others;
  };
  // One map a match level.
  using Forms = std::unordered_map<std::string, Positions>;

  static void AddForm(Forms& forms, const std::string& form, size_t position);
  static void RemoveForm(Forms& forms, const std::string& form, size_t position);

  std::array<Forms, 3> m_forms;
};
