#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "CPMUnknown.h"
#include "IFontActivityReport.h"
#include "headless/HeadlessHost.h"

namespace headless {

/// Keeps what plug-ins report of one document's fonts.
class FontActivityLog {
 public:
  void AddMatched(const std::string& postScriptName, uint32 databaseID, bool wasActive);
  void AddProblem(const std::string& postScriptName);
  void AddDeactivated(const std::string& postScriptName);

  const HeadlessHost::FontActivity& Activity() const { return m_activity; }

 private:
  HeadlessHost::FontActivity m_activity;
  std::unordered_map<std::string, std::size_t> m_matchedIndices;
  std::unordered_set<std::string> m_problems;
  std::unordered_set<std::string> m_deactivated;
};

/// The session's IFontActivityReport: hands each report to the log of its document.
class ActivityReport final : public CPMUnknown<IFontActivityReport> {
 public:
  /// Gives the log of a document; null for one that the host doesn't know, whose reports are dropped.
  using FindLog = std::function<FontActivityLog*(const UIDRef&)>;

  ActivityReport(IPMUnknown* boss, FindLog findLog) : CPMUnknown(boss), m_findLog(std::move(findLog)) {}

  void ReportMatched(const UIDRef& document, const PMString& postScriptName, uint32 databaseID,
                     bool wasActive) override;
  void ReportProblem(const UIDRef& document, const PMString& postScriptName) override;
  void ReportDeactivated(const UIDRef& document, const PMString& postScriptName) override;

 private:
  FindLog m_findLog;
};

}  // namespace headless
