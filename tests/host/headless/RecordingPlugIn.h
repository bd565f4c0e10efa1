#pragma once

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "CServiceProvider.h"
#include "ClassIDs.h"
#include "IDocumentSignalData.h"
#include "IIdleTaskMgr.h"
#include "IPMStream.h"
#include "IResponder.h"
#include "IStartupShutdownService.h"
#include "InterfacePtr.h"
#include "PlugIn.h"

/// A plug-in of a test: hears every document signal, has a start-up service, an idle task and an attribute of
/// each document, and writes down what happens to it. One lives at a time.
class RecordingPlugIn final : public PlugIn {
 public:
  static constexpr ImplementationID kAttributeImpl = 0x00ABCDEF;

  /// An attribute that is kept in the document: a text.
  class Attribute final : public CPMUnknown<IPMUnknown> {
   public:
    static constexpr PMIID kDefaultIID = kFirstPlugInIID + 1;
    using CPMUnknown::CPMUnknown;

    void ReadWrite(IPMStream* stream, ImplementationID) {
      auto length = static_cast<int32>(text.size());
      if (stream->IsWriting() && text.empty()) return;
      stream->XferInt32(&length);
      text.resize(static_cast<std::size_t>(length));
      stream->XferByte(reinterpret_cast<uchar*>(text.data()), length);
    }

    std::string text;
  };

  RecordingPlugIn() { sCurrent = this; }
  ~RecordingPlugIn() override { sCurrent = nullptr; }

  const char* GetName() const override { return "RecordingPlugIn"; }
  std::span<const BossDefinition> GetBosses() const override;

  /// What happened, in order: names of services and signals.
  std::vector<std::string> events;
  /// Called at each signal, after it was written down.
  std::function<void(ServiceID, IDocumentSignalData&)> onSignal;
  /// What the idle task does; its result is the task's.
  std::function<uint32(uint32 appFlags)> onIdle;

  static RecordingPlugIn* sCurrent;
};
