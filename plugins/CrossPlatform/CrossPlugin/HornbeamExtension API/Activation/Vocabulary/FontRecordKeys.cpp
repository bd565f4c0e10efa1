#include "Activation/Vocabulary/FontRecordKeys.h"

const CFStringRef kGM_PostScriptNameKey = CFSTR("PostScriptName");
const CFStringRef kGM_KindKey = CFSTR("FontKind");
const CFStringRef kGM_FoundryKey = CFSTR("Foundry");
const CFStringRef kGM_VersionKey = CFSTR("Version");
const CFStringRef kGM_KerningChecksumKey = CFSTR("KerningChecksum");
const CFStringRef kGM_ChecksumKey = CFSTR("Checksum");
const CFStringRef kGM_GlyphMark_1_2_Key = CFSTR("GlyphMark_1.2_Checksum");
const CFStringRef kGM_OutlineFileSizeKey = CFSTR("OutlineFileSize");
const CFStringRef kGM_OutlineFileNameKey = CFSTR("OutlineFileName");
const CFStringRef kGM_FamilyKey = CFSTR("Family");
const CFStringRef kGM_AssignedFamilyGroupIDKey = CFSTR("AssignedFamilyID");
const CFStringRef kGM_AssignedFamilyGroupNameKey = CFSTR("AssignedFamilyName");
const CFStringRef kGM_PrinterFontKey = CFSTR("PrinterFont");
const CFStringRef kGM_KeywordsKey = CFSTR("Keywords");
const CFStringRef kGM_PathKey = CFSTR("Path");
const CFStringRef kGM_SourceDocumentName = CFSTR("SourceDocumentName");
const CFStringRef kGM_SubDocumentsWithFontKey = CFSTR("SubDocumentsWithFont");
const CFStringRef kGM_PossibleReplacementsKey = CFSTR("PossibleReplacements");
const CFStringRef kGM_DatabaseIDKey = CFSTR("DatabaseID");
const CFStringRef kGM_MatchedFontKey = CFSTR("MatchedFont");
const CFStringRef kGM_ActivationStateKey = CFSTR("ActivationStatus");
const CFStringRef kGM_WorkgroupIDKey = CFSTR("WorkgroupID");
const CFStringRef kGM_WorkgroupNameKey = CFSTR("WorkgroupName");
const CFStringRef kGM_WorkgroupTypeKey = CFSTR("WorkgroupType");
const CFStringRef kGM_IsActiveKey = CFSTR("IsActive");
const CFStringRef kGM_IsTempKey = CFSTR("IsTemp");
const CFStringRef kGM_IsVaultKey = CFSTR("IsVault");
const CFStringRef kGM_IsSystemKey = CFSTR("IsSystem");
const CFStringRef kGM_IsLocalKey = CFSTR("IsLocal");
const CFStringRef kGM_IsAutoActivatedKey = CFSTR("IsAutoActivated");
const CFStringRef kGM_LocationKey = CFSTR("Location");

const CFStringRef kGM_EmbeddedFonts = CFSTR("EmbeddedFonts");

const CFStringRef kGM_Kind_OpenType = CFSTR("OpenType");
const CFStringRef kGM_Kind_Postscript = CFSTR("Postscript");
const CFStringRef kGM_Kind_TrueType = CFSTR("TrueType");

const CFStringRef kAdobeXMPFontData_FamilyKey = CFSTR("AdobeXMPFontData_Family");
const CFStringRef kAdobeXMPFontData_FaceKey = CFSTR("AdobeXMPFontData_Face");
const CFStringRef kAdobeXMPFontData_TypeKey = CFSTR("AdobeXMPFontData_Type");
const CFStringRef kAdobeXMPFontData_VersionStringKey = CFSTR("AdobeXMPFontData_VersionString");
const CFStringRef kAdobeXMPFontData_CompositeKey = CFSTR("AdobeXMPFontData_Composite");
const CFStringRef kAdobeXMPFontData_FontFileNameKey = CFSTR("AdobeXMPFontData_FontFileName");

namespace GlyphMarkSupport {

// Defined behind the keys, in their source: within one source they are built first.
const std::array<CFStringRef, 34> kAllGlyphMarkCFKeys = {
    kGM_PostScriptNameKey,
    kGM_KindKey,
    kGM_FoundryKey,
    kGM_VersionKey,
    kGM_KerningChecksumKey,
    kGM_ChecksumKey,
    kGM_GlyphMark_1_2_Key,
    kGM_OutlineFileSizeKey,
    kGM_OutlineFileNameKey,
    kGM_FamilyKey,
    kGM_AssignedFamilyGroupIDKey,
    kGM_AssignedFamilyGroupNameKey,
    kGM_PrinterFontKey,
    kGM_KeywordsKey,
    kGM_PathKey,
    kGM_SourceDocumentName,
    kGM_SubDocumentsWithFontKey,
    kGM_PossibleReplacementsKey,
    kGM_DatabaseIDKey,
    kGM_MatchedFontKey,
    kGM_ActivationStateKey,
    kGM_WorkgroupIDKey,
    kGM_WorkgroupNameKey,
    kGM_WorkgroupTypeKey,
    kGM_IsActiveKey,
    kGM_IsTempKey,
    kGM_IsVaultKey,
    kGM_IsSystemKey,
    kGM_IsLocalKey,
    kGM_IsAutoActivatedKey,
    kGM_Kind_OpenType,
    kGM_Kind_Postscript,
    kGM_Kind_TrueType,
    nullptr,
};

}  // namespace GlyphMarkSupport
