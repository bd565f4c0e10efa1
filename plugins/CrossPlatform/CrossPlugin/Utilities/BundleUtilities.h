#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "Memory/RetainPtr.h"

/// Finding and opening bundles, with trace lines for what fails. Main thread.

/// The bundle at a path; null, with "CFBundleCreate failed on '%s'.", when there is none. Callers add their
/// own line on what they were looking for.
RetainPtr<CFBundleRef> OpenBundleAtPath(const std::string& path);

/// The framework of that name in the private frameworks folder of a loaded bundle; null when any step fails,
/// with a trace line that names the step.
RetainPtr<CFBundleRef> LoadPrivateFramework(CFStringRef bundleIdentifier, const char* frameworkName);

/// The loaded bundle with an identifier: asked for, and if that fails, looked for among all bundles. Null
/// when it isn't loaded. Not retained.
CFBundleRef GetBundleWithIdentifierReliably(CFStringRef bundleIdentifier);
