#pragma once

/// The literal keys of the dictionaries that cross the entries. Every scalar is a string: numbers are decimal
/// text, booleans "1" or "0".
namespace RecordKeys {

// Font records.
inline constexpr char kPostScriptName[] = "PostScriptName";
inline constexpr char kKind[] = "FontKind";
inline constexpr char kFoundry[] = "Foundry";
inline constexpr char kVersion[] = "Version";
inline constexpr char kKerningChecksum[] = "KerningChecksum";
inline constexpr char kChecksum[] = "Checksum";
inline constexpr char kGlyphMark12Checksum[] = "GlyphMark_1.2_Checksum";
inline constexpr char kOutlineFileSize[] = "OutlineFileSize";
inline constexpr char kOutlineFileName[] = "OutlineFileName";
inline constexpr char kFamily[] = "Family";
inline constexpr char kAssignedFamilyID[] = "AssignedFamilyID";
inline constexpr char kAssignedFamilyName[] = "AssignedFamilyName";
inline constexpr char kPath[] = "Path";
inline constexpr char kPossibleReplacements[] = "PossibleReplacements";  // array of font records
inline constexpr char kDatabaseID[] = "DatabaseID";
inline constexpr char kActivationStatus[] = "ActivationStatus";  // the agent's raw state
inline constexpr char kIsActive[] = "IsActive";
inline constexpr char kIsTemp[] = "IsTemp";
inline constexpr char kIsVault[] = "IsVault";
inline constexpr char kIsSystem[] = "IsSystem";
inline constexpr char kIsLocal[] = "IsLocal";
inline constexpr char kIsAutoActivated[] = "IsAutoActivated";
inline constexpr char kLocation[] = "Location";

// The entry of a font list that is no font: an array of font records.
inline constexpr char kEmbeddedFonts[] = "EmbeddedFonts";

// Workgroup records; a font record holds them too.
inline constexpr char kWorkgroupID[] = "WorkgroupID";
inline constexpr char kWorkgroupName[] = "WorkgroupName";
inline constexpr char kWorkgroupType[] = "WorkgroupType";

// Data of notifications.
inline constexpr char kIsLoggedIn[] = "isLoggedIn";
inline constexpr char kServerType[] = "serverType";
inline constexpr char kText[] = "text";
inline constexpr char kStepIndex[] = "stepIndex";
inline constexpr char kNumSteps[] = "numSteps";

}  // namespace RecordKeys
