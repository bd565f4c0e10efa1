#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <array>

/// The keys of a font record: the property dictionary through which every part of the system talks about a
/// font.
///
/// Every scalar is a string: a number is decimal text, a boolean the text "1" or "0". A test for true
/// compares with "1" exactly, so an absent key is false; an absent number reads as 0. The constants are built
/// once at load, live for the rest of the process and are never released.
///
/// The agent fills many of these keys. The plug-in never writes AssignedFamily..., PrinterFont, Keywords,
/// Path, SourceDocumentName, SubDocumentsWithFont, PossibleReplacements, MatchedFont, IsVault, IsSystem,
/// IsLocal and Location itself, and keeps them when it copies a record.

/// The font's PostScript name; the one key that every record has.
extern const CFStringRef kGM_PostScriptNameKey;
extern const CFStringRef kGM_KindKey;             ///< Font format, one of the kind values below. String.
extern const CFStringRef kGM_FoundryKey;          ///< Foundry name. String.
extern const CFStringRef kGM_VersionKey;          ///< Font version text. String.
extern const CFStringRef kGM_KerningChecksumKey;  ///< Checksum of the kerning data. Decimal.
extern const CFStringRef kGM_ChecksumKey;         ///< Font checksum, older form. Decimal.
extern const CFStringRef kGM_GlyphMark_1_2_Key;   ///< Font checksum of GlyphMark version 1.2. Decimal.
extern const CFStringRef kGM_OutlineFileSizeKey;  ///< Size of the outline file in bytes. Decimal.
extern const CFStringRef kGM_OutlineFileNameKey;  ///< Name of the outline file. String.
extern const CFStringRef kGM_FamilyKey;           ///< Family name. String.
extern const CFStringRef kGM_AssignedFamilyGroupIDKey;    ///< The font manager's family group. Decimal.
extern const CFStringRef kGM_AssignedFamilyGroupNameKey;  ///< Name of that family group. String.
extern const CFStringRef kGM_PrinterFontKey;              ///< The agent's; passed through.
extern const CFStringRef kGM_KeywordsKey;                 ///< The agent's; passed through.
extern const CFStringRef kGM_PathKey;                     ///< The agent's; passed through.
extern const CFStringRef kGM_SourceDocumentName;          ///< The agent's; passed through.
/// Array of strings: identifiers of the sub-documents that use the font.
extern const CFStringRef kGM_SubDocumentsWithFontKey;
/// The agent's; goes to the resolve dialog with the problem font.
extern const CFStringRef kGM_PossibleReplacementsKey;
/// The font's ID in the font manager's database. Decimal, unsigned 32-bit; 0 means no font.
extern const CFStringRef kGM_DatabaseIDKey;
/// Font record chosen for a problem font; absent while unresolved.
extern const CFStringRef kGM_MatchedFontKey;
/// Decimal: 0 unknown, 1 inactive, 2 active, 3 temporarily active; the agent's raw value until converted.
extern const CFStringRef kGM_ActivationStateKey;
extern const CFStringRef kGM_WorkgroupIDKey;      ///< Workgroup that holds this copy of the font. Decimal.
extern const CFStringRef kGM_WorkgroupNameKey;    ///< Name of that workgroup. String.
extern const CFStringRef kGM_WorkgroupTypeKey;    ///< Type of that workgroup. Decimal.
extern const CFStringRef kGM_IsActiveKey;         ///< The font is active now. Boolean.
extern const CFStringRef kGM_IsTempKey;           ///< The font is only temporarily active. Boolean.
extern const CFStringRef kGM_IsVaultKey;          ///< The font lies in the font manager's vault. Boolean.
extern const CFStringRef kGM_IsSystemKey;         ///< A system font. Boolean.
extern const CFStringRef kGM_IsLocalKey;          ///< The agent's; passed through.
extern const CFStringRef kGM_IsAutoActivatedKey;  ///< The activation came from auto-activation. Boolean.
extern const CFStringRef kGM_LocationKey;         ///< The agent's; passed through.

/// Marks the last entry of a font list that goes to the agent: a dictionary with this key alone, whose value
/// is the array of font records stored in the document. It is no font and has no name.
extern const CFStringRef kGM_EmbeddedFonts;

/// Values of kGM_KindKey.
extern const CFStringRef kGM_Kind_OpenType;
extern const CFStringRef kGM_Kind_Postscript;
extern const CFStringRef kGM_Kind_TrueType;

/// Keys of the font list in a file's Adobe XMP packet.
extern const CFStringRef kAdobeXMPFontData_FamilyKey;
extern const CFStringRef kAdobeXMPFontData_FaceKey;
extern const CFStringRef kAdobeXMPFontData_TypeKey;
extern const CFStringRef kAdobeXMPFontData_VersionStringKey;
extern const CFStringRef kAdobeXMPFontData_CompositeKey;
extern const CFStringRef kAdobeXMPFontData_FontFileNameKey;

namespace GlyphMarkSupport {

/// The keys of a font record in their order, from kGM_PostScriptNameKey to kGM_IsAutoActivatedKey, then the
/// three kind values, then one null entry that ends the list.
extern const std::array<CFStringRef, 34> kAllGlyphMarkCFKeys;

}  // namespace GlyphMarkSupport
