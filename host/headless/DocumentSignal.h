#pragma once

#include "CPMUnknown.h"
#include "IDocumentSignalData.h"
#include "ISignalMgr.h"

namespace headless {

/// One signal about a document, on its way from responder to responder.
class DocumentSignal final : public CPMUnknown<ISignalMgr> {
 public:
  DocumentSignal(IPMUnknown* boss, ServiceID service) : CPMUnknown(boss), m_nService(service) {}

  ServiceID GetServiceID() const override { return m_nService; }

 private:
  ServiceID m_nService;
};

/// What it says, and what the responders answered. Every signal starts with the full user interface.
class DocumentSignalData final : public CPMUnknown<IDocumentSignalData> {
 public:
  DocumentSignalData(IPMUnknown* boss, const UIDRef& document, const IDFile& file)
      : CPMUnknown(boss), m_document(document), m_file(file) {}

  UIDRef GetDocument() const override { return m_document; }
  IDFile GetFile() const override { return m_file; }
  bool IsClone() const override { return m_bIsClone; }
  void Set(const IDFile& file, bool isClone, const UIDRef& document, UIFlags uiFlags) override {
    m_file = file;
    m_bIsClone = isClone;
    m_document = document;
    m_nFlags = uiFlags;
  }

  UIFlags Flags() const { return m_nFlags; }

 private:
  UIDRef m_document;
  IDFile m_file;
  bool m_bIsClone = false;
  UIFlags m_nFlags = kFullUI;
};

}  // namespace headless
