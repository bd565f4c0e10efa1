#pragma once

#include <algorithm>

#include "KilnTestHome.h"

/// A home for tests of where the library's fonts come from.
class KilnSourcesHome : public KilnTestHome {
 protected:
  KilnSourcesHome() {
    StartKiln();
    Connect();
  }
  // A child that the killed Kiln was just starting keeps its socket open for a moment longer.
  void Connect() {
    for (int tries = 1;; ++tries) {
      try {
        mClient = std::make_unique<WireClient>();
        return;
      } catch (const std::runtime_error&) {
        if (tries == 10) throw;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      }
    }
  }
  void RestartKiln() {
    mClient.reset();
    KillKiln();
    StartKiln();
    Connect();
  }

  /// A font of the file's name.
  void PutFont(const std::string& folder, const std::string& name) const {
    mFiles.Write(folder + "/" + name + ".ttf", FontBuilder{name}.TrueType());
  }

  kiln::wire::ServerMessage Ask(const kiln::wire::ClientMessage& request) { return mClient->Ask(request); }
  bool WaitFor(kiln::wire::ServerMessage::BodyCase kind) { return mClient->WaitForEvent(kind).has_value(); }
  /// The kind of the next run that ends.
  kiln::wire::ReplicationKind WaitForReplication() {
    for (;;) {
      const auto event = mClient->WaitForEvent(kiln::wire::ServerMessage::kReplication);
      if (!event) throw std::runtime_error("Kiln has ended");
      if (event->replication().stopped()) return event->replication().kind();
    }
  }

  /// "name:type:fonts name:type:fonts", without System.
  std::string Workgroups() {
    kiln::wire::ClientMessage request;
    request.mutable_workgroups();
    const auto reply = Ask(request).workgroups();
    std::string text;
    for (const auto& one : reply.workgroups()) {
      const std::string name = one.name().starts_with("Font Library") ? "Own" : one.name();
      text += (text.empty() ? "" : " ") + name + ":" + std::to_string(one.type()) + ":" +
              std::to_string(one.font_count());
    }
    return text;
  }
  uint32_t WorkgroupID(const std::string& name) {
    kiln::wire::ClientMessage request;
    request.mutable_workgroups();
    const auto reply = Ask(request).workgroups();
    const auto found = std::find_if(reply.workgroups().begin(), reply.workgroups().end(),
                                    [&name](const auto& one) { return one.name() == name; });
    return found == reply.workgroups().end() ? 0 : found->id();
  }
  bool IsAllowed(const std::string& column, uint32_t workgroup = 0) {
    kiln::wire::ClientMessage request;
    request.mutable_permission()->set_across_workgroups(workgroup == 0);
    request.mutable_permission()->set_column_id(column);
    request.mutable_permission()->set_workgroup_id(workgroup);
    return Ask(request).permission().allowed();
  }

  /// Font files of the vault.
  std::vector<std::string> VaultFiles() const {
    std::vector<std::string> files;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(mHome.Folder().Path("data/kiln/vault")))
      if (entry.is_regular_file()) files.push_back(entry.path());
    return files;
  }
  /// Behind an event that says so, the file follows within the same moment.
  bool VaultComesTo(size_t files) const {
    for (int i = 0; i < 500 && VaultFiles().size() != files; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return VaultFiles().size() == files;
  }

  std::unique_ptr<WireClient> mClient;
};
