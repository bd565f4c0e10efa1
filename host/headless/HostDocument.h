#pragma once

#include <memory>
#include <utility>

#include "CPMUnknown.h"
#include "IDocument.h"
#include "headless/DocumentContent.h"

namespace headless {

/// The document itself. Nothing here changes its text, so it is never modified.
class HostDocument final : public CPMUnknown<IDocument> {
 public:
  HostDocument(IPMUnknown* boss, std::shared_ptr<const DocumentContent> content, const UIDRef& workSpace)
      : CPMUnknown(boss), m_pContent(std::move(content)), m_workSpace(workSpace) {}

  PMString GetName() const override { return m_pContent->name; }
  bool IsModified() const override { return false; }
  IDataBase* GetDataBase() const override { return m_pContent->database; }
  bool IsConvertedFromID2() const override { return false; }
  UIDRef GetDocWorkSpace() const override { return m_workSpace; }

 private:
  std::shared_ptr<const DocumentContent> m_pContent;
  UIDRef m_workSpace;
};

}  // namespace headless
