#include "headless/ActivityReport.h"

namespace headless {

void FontActivityLog::AddMatched(const std::string& postScriptName, uint32 databaseID, bool wasActive) {
  const auto [entry, isNew] = m_matchedIndices.emplace(postScriptName, m_activity.matched.size());
  if (isNew) m_activity.matched.emplace_back();
  m_activity.matched[entry->second] = {postScriptName, databaseID, wasActive};
}

void FontActivityLog::AddProblem(const std::string& postScriptName) {
  if (m_problems.insert(postScriptName).second) m_activity.problems.push_back(postScriptName);
}

void FontActivityLog::AddDeactivated(const std::string& postScriptName) {
  if (m_deactivated.insert(postScriptName).second) m_activity.deactivated.push_back(postScriptName);
}

void ActivityReport::ReportMatched(const UIDRef& document, const PMString& postScriptName, uint32 databaseID,
                                   bool wasActive) {
  if (FontActivityLog* log = m_findLog(document)) {
    log->AddMatched(postScriptName.GetUTF8String(), databaseID, wasActive);
  }
}

void ActivityReport::ReportProblem(const UIDRef& document, const PMString& postScriptName) {
  if (FontActivityLog* log = m_findLog(document)) log->AddProblem(postScriptName.GetUTF8String());
}

void ActivityReport::ReportDeactivated(const UIDRef& document, const PMString& postScriptName) {
  if (FontActivityLog* log = m_findLog(document)) log->AddDeactivated(postScriptName.GetUTF8String());
}

}  // namespace headless
