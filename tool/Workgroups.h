#pragma once

#include <optional>
#include <string>
#include <vector>

#include "KilnConnection.h"
#include "PlugInLogic.h"

/// A library or workgroup as the user knows it.
struct Workgroup {
  int id = 0;        ///< FontManagerInterface::kAllWorkgroups for all of them together
  std::string name;  ///< as it is shown, UTF-8
  long type = 0;     ///< of the agent
  unsigned long fontCount = 0;
  bool isSelected = false;  ///< it is where documents' fonts are looked for

  bool IsAll() const { return id == FontManagerInterface::kAllWorkgroups; }
  bool IsSystem() const;
  /// As calls to the agent want it.
  unsigned int AgentID() const { return static_cast<unsigned int>(id); }
};

/// The libraries that Kiln lists, under the names that the plug-in shows, with the system's and, where the
/// user may work in all of them together, one that stands for that. Thread: main.
class Workgroups {
 public:
  /// \return Nothing when Kiln can't be asked; standard error says so.
  static std::optional<Workgroups> Read(const KilnConnection& kiln, const PlugInLogic& logic);

  const std::vector<Workgroup>& All() const { return m_workgroups; }

  /// The library of that name, else of that ID; "all" is all of them together.
  ///
  /// \return Null when there is none; standard error says so.
  const Workgroup* Find(const std::string& nameOrID) const;

  /// The same, without the one that stands for all.
  const Workgroup* FindOne(const std::string& nameOrID) const;

  /// Empty for an ID that isn't listed.
  std::string NameOf(unsigned int id) const;

  /// The IDs of all but the system's, as a scope for calls to the agent.
  std::vector<unsigned int> UserIDs() const;

 private:
  std::vector<Workgroup> m_workgroups;
};
