#pragma once

#include <map>

#include "CPMUnknown.h"
#include "IDocumentSignalData.h"
#include "IResponder.h"
#include "InterfacePtr.h"

class LoomInterface;

/// Where the life of a document enters the plug-in. Opening activates its fonts, closing gives them back,
/// saving hands them to the font manager. After each signal it decides whether the host's own alerts about
/// missing fonts stay quiet: those for fonts on their way are not worth showing.
///
/// Does nothing at all while the plug-in is off, nobody is logged in, or the UI framework is missing; a
/// document that comes by then is not known at its close either, which is no failure.
///
/// Thread: main.
class HornbeamResponder : public CPMUnknown<IResponder> {
 public:
  using CPMUnknown::CPMUnknown;

  void Respond(ISignalMgr* signal) override;

  void DuringNewDocument(const UIDRef& document);
  void BeforeOpenDocument(const UIDRef& document);
  /// The whole work of an open.
  ///
  /// \param seed  Receives the host's font change seed before anything was activated.
  void DuringOpenDocument(const UIDRef& document, int& seed);
  void AfterOpenDocument(const UIDRef& document);
  void BeforeSaveDocument(const UIDRef& document);
  void AfterSaveDocument(const UIDRef& document);
  void BeforeSaveAsDoc(const UIDRef& document);
  void AfterSaveAsDoc(const UIDRef& document);
  void BeforeSaveACopyDoc(const UIDRef& document);
  void AfterSaveACopyDoc(const UIDRef& document);
  void BeforeCloseDocument(const UIDRef& document);
  void AfterCloseDocument(const UIDRef& document);

 private:
  void HandleSignal(ISignalMgr& signal);
  void Dispatch(ServiceID trigger, const UIDRef& document, InterfacePtr<IDocumentSignalData>& data,
                LoomInterface& loom);
  void BroadcastFontChange();

  /// The host's font change seed at the last open.
  static int g_nOldSeed;
  /// The documents now inside DuringOpenDocument(), by UID.
  static std::map<UID, bool> openingDocuments;
};
