#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The literal keys of the dictionaries that cross the entries. Every scalar is a string: numbers are decimal
/// text, booleans "1" or "0".
namespace RecordKeys {

// Font records.
inline const CFStringRef kPostScriptName = CFSTR("PostScriptName");
inline const CFStringRef kKind = CFSTR("FontKind");
inline const CFStringRef kFoundry = CFSTR("Foundry");
inline const CFStringRef kVersion = CFSTR("Version");
inline const CFStringRef kKerningChecksum = CFSTR("KerningChecksum");
inline const CFStringRef kChecksum = CFSTR("Checksum");
inline const CFStringRef kGlyphMark12Checksum = CFSTR("GlyphMark_1.2_Checksum");
inline const CFStringRef kOutlineFileSize = CFSTR("OutlineFileSize");
inline const CFStringRef kOutlineFileName = CFSTR("OutlineFileName");
inline const CFStringRef kFamily = CFSTR("Family");
inline const CFStringRef kAssignedFamilyID = CFSTR("AssignedFamilyID");
inline const CFStringRef kAssignedFamilyName = CFSTR("AssignedFamilyName");
inline const CFStringRef kPath = CFSTR("Path");
inline const CFStringRef kPossibleReplacements = CFSTR("PossibleReplacements");  // array of font records
inline const CFStringRef kDatabaseID = CFSTR("DatabaseID");
inline const CFStringRef kActivationStatus = CFSTR("ActivationStatus");  // the agent's raw state
inline const CFStringRef kIsActive = CFSTR("IsActive");
inline const CFStringRef kIsTemp = CFSTR("IsTemp");
inline const CFStringRef kIsVault = CFSTR("IsVault");
inline const CFStringRef kIsSystem = CFSTR("IsSystem");
inline const CFStringRef kIsLocal = CFSTR("IsLocal");
inline const CFStringRef kIsAutoActivated = CFSTR("IsAutoActivated");
inline const CFStringRef kLocation = CFSTR("Location");
inline const CFStringRef kSubDocumentsWithFont = CFSTR("SubDocumentsWithFont");  // array of strings
inline const CFStringRef kStyle = CFSTR("Style");
inline const CFStringRef kDisplayName = CFSTR("DisplayName");

// The entry of a font list that is no font: an array of font records.
inline const CFStringRef kEmbeddedFonts = CFSTR("EmbeddedFonts");

// Workgroup records; a font record holds them too.
inline const CFStringRef kWorkgroupID = CFSTR("WorkgroupID");
inline const CFStringRef kWorkgroupName = CFSTR("WorkgroupName");
inline const CFStringRef kWorkgroupType = CFSTR("WorkgroupType");

inline const CFStringRef kFontCount = CFSTR("FontCount");

// Records of sets, which hold those of their workgroup too.
inline const CFStringRef kSetID = CFSTR("SetID");
inline const CFStringRef kSetName = CFSTR("SetName");
inline const CFStringRef kFontIDs = CFSTR("FontIDs");  // array of decimal texts

// Data of notifications: these alone hold a boolean, and numbers as numbers.
inline const CFStringRef kIsLoggedIn = CFSTR("isLoggedIn");
inline const CFStringRef kServerType = CFSTR("serverType");
inline const CFStringRef kText = CFSTR("text");
inline const CFStringRef kStepIndex = CFSTR("stepIndex");
inline const CFStringRef kNumSteps = CFSTR("numSteps");

}  // namespace RecordKeys
