#pragma once

#include <memory>

#include "FontManagerInterface/FontManagerInterface.h"
#include "KilnConnection.h"

/// The plug-in's own logic in this process, without a host: how it finds fonts and names libraries, and the
/// preferences that it keeps. Connecting settles the selected library by the plug-in's rules, as opening a
/// document does.
///
/// One a process. The connection must outlive it. Thread: main.
class PlugInLogic {
 public:
  /// \return Null when Kiln has no usable library or doesn't fit; standard error says so.
  static std::unique_ptr<PlugInLogic> Start(const KilnConnection& kiln);

  ~PlugInLogic();
  PlugInLogic(const PlugInLogic&) = delete;
  PlugInLogic& operator=(const PlugInLogic&) = delete;

  FontManagerInterface& GetManager() const { return m_manager; }

 private:
  explicit PlugInLogic(FontManagerInterface& manager) : m_manager(manager) {}

  FontManagerInterface& m_manager;
};
