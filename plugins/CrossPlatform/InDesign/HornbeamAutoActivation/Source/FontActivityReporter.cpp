#include "FontActivityReporter.h"

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "IFontActivityReport.h"
#include "ISession.h"
#include "InterfacePtr.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"

namespace {

/// Calls `report(sink, record, name)` for each named record.
template <class Report>
void ForEachNamed(CFArrayRef fonts, CFIndex first, Report report) {
  const InterfacePtr<IFontActivityReport> sink(GetExecutionContextSession(), UseDefaultIID());
  if (!sink) {
    return;
  }
  for (CFIndex i = first; i < FontRecord::Count(fonts); ++i) {
    CFDictionaryRef record = FontRecord::At(fonts, i);
    if (CFStringRef name = FontRecord::GetPostScriptName(record); name != nullptr) {
      report(*sink.get(), record, PMString(ToStdString(name)));
    }
  }
}

}  // namespace

namespace FontActivityReporter {

void ReportMatched(const UIDRef& document, CFArrayRef fonts) {
  ForEachNamed(fonts, 0, [&](IFontActivityReport& sink, CFDictionaryRef record, const PMString& name) {
    if (const uint32_t id = FontRecord::GetDatabaseID(record); id != 0) {
      sink.ReportMatched(document, name, id, XCFUtils::GetBoolFromDictString(record, kGM_IsActiveKey));
    }
  });
}

void ReportProblems(const UIDRef& document, CFArrayRef fonts) {
  ForEachNamed(fonts, 0, [&](IFontActivityReport& sink, CFDictionaryRef record, const PMString& name) {
    if (!CFDictionaryContainsKey(record, kGM_MatchedFontKey)) {
      sink.ReportProblem(document, name);
    }
  });
}

void ReportDeactivated(const UIDRef& document, CFArrayRef fonts, CFIndex first) {
  ForEachNamed(fonts, first, [&](IFontActivityReport& sink, CFDictionaryRef, const PMString& name) {
    sink.ReportDeactivated(document, name);
  });
}

}  // namespace FontActivityReporter
