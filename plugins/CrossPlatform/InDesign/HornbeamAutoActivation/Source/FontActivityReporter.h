#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "UIDRef.h"

/// Tells a host that wants to know it what was done about a document's fonts. Does nothing in the others.
/// Arrays hold font records, may be null and are not owned. Thread: main.
namespace FontActivityReporter {

/// Records that the font manager matched and activated, each with its database ID and with kGM_IsActiveKey as
/// it was before.
void ReportMatched(const UIDRef& document, CFArrayRef fonts);

/// Problem records, apart from those for which another font was chosen.
void ReportProblems(const UIDRef& document, CFArrayRef fonts);

/// Records that were deactivated, from an index on.
void ReportDeactivated(const UIDRef& document, CFArrayRef fonts, CFIndex first);

}  // namespace FontActivityReporter
