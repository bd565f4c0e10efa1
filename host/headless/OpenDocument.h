#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "headless/ActivityReport.h"
#include "headless/DocumentDataBase.h"
#include "headless/HeadlessHost.h"

namespace headless {

/// A document from its open on: while it is open its objects, and for good what was noted of it.
class OpenDocument {
 public:
  /// Reads a package and makes the document's objects.
  ///
  /// \param fonts  Outlives the time in which the document is open.
  /// \param additions  See DocumentDataBase.
  /// \return null on failure, with one sentence in `error`.
  static std::unique_ptr<OpenDocument> Read(const std::string& path, InstalledFonts& fonts,
                                            std::span<const InterfaceFactory> additions, std::string& error);

  bool IsOpen() const { return m_pDataBase != nullptr; }

  /// The null reference once it is closed.
  UIDRef Ref() const;
  const std::string& Name() const { return m_pContent->name; }
  const IDFile& File() const { return m_pContent->file; }
  FontActivityLog& Log() { return m_log; }
  HeadlessHost::OpenAlert& Alert() { return m_alert; }

  std::vector<HeadlessHost::UsedFont> UsedFonts() const;

  /// Notes what the alert after the open has to say now.
  void NoteAlert(bool suppressed);

  void RebindFamilies();

  /// Stores the attributes that have changed since they were read or stored. \return false on failure, with
  /// the file as it was and one sentence in `error`.
  bool WriteAttributes(std::string& error);

  /// Lets go of the objects; the database's address stays good until Forget().
  void TakeDown() { m_pDataBase->TakeDown(); }
  void Forget() { m_pDataBase.reset(); }

 private:
  OpenDocument() = default;

  std::shared_ptr<DocumentContent> m_pContent;
  std::unique_ptr<DocumentDataBase> m_pDataBase;
  FontActivityLog m_log;
  HeadlessHost::OpenAlert m_alert;
};

}  // namespace headless
