#pragma once

#include "IPMUnknown.h"

class IApplication;

/// The running host, and the object that its process-wide interfaces are asked of: IFontMgr, IIdleTaskMgr,
/// ICommandProcessor, Facade::ILinkFacade, IFontActivityReport, and what plug-ins added to it.
class ISession : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ISESSION;

  /// \return With a reference for the caller; null while the application is not up yet.
  virtual IApplication* QueryApplication() = 0;

  /// Whether the calling thread is the one that may show dialogs and change documents. Thread: any.
  virtual bool IsMainThreadDomain() const = 0;
};

namespace host_sdk_detail {
inline ISession* gSession = nullptr;
}

/// The session that the host gave this plug-in through PlugIn::SetSession(), no reference; null before that
/// and after the host took it back.
inline ISession* GetExecutionContextSession() {
  return host_sdk_detail::gSession;
}
