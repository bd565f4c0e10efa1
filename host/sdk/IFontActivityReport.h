#pragma once

#include "IPMUnknown.h"
#include "PMString.h"
#include "UIDRef.h"

/// The host's sink for what a plug-in has done about a document's fonts, so that a host without a user
/// interface can say so. Offered by the session, in hosts that want to know; a plug-in queries for it each
/// time and goes on without it where there is none:
///
///     InterfacePtr<IFontActivityReport> report(GetExecutionContextSession(), UseDefaultIID());
///     if (report) report->ReportMatched(docRef, psName, databaseID, wasActive);
///
/// Reports are taken in the order in which they come and may repeat; the host keeps the last one of a name.
/// Thread: main.
class IFontActivityReport : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_IFONTACTIVITYREPORT;

  /// A font that the document needs has been found and activated, or was active already.
  ///
  /// \param document  The document that needs it, open at this moment.
  /// \param postScriptName  The font's PostScript name as the font manager gives it. UTF-8.
  /// \param databaseID  The font manager's number for it; never 0.
  /// \param wasActive  True when it was active before the document asked for it.
  virtual void ReportMatched(const UIDRef& document, const PMString& postScriptName, uint32 databaseID,
                             bool wasActive) = 0;

  /// A font that the document needs is still without a match after everything was tried.
  virtual void ReportProblem(const UIDRef& document, const PMString& postScriptName) = 0;

  /// A font has really been deactivated, because the document that needed it closes. Reported while the
  /// document is still known to the host, at the latest in answer to the after-close signal.
  virtual void ReportDeactivated(const UIDRef& document, const PMString& postScriptName) = 0;
};
