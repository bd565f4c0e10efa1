#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

/// Names, matches and merges of font records: what turns the name in a document into the right font, and the
/// data that finds the same font again elsewhere.
///
/// A GlyphMark array is a mutable array of mutable font records (Activation/Vocabulary/FontRecordKeys.h), one
/// a font. Its stored form is the GlyphMark slug: the UTF-8 text of an XML property list in Apple's published
/// format, version 1.0, with the array at its root, holding the ten sluggable keys alone.
///
/// Records come from foreign documents: an element that is no dictionary and a value of the wrong type are
/// passed over as if they weren't there, and stay where they are.
///
/// Results are status codes unless told otherwise: 0 success, -50 a bad parameter, 1000
/// (kErrorHornbeamNotRunning) no font manager. Objects from Create... belong to the caller; arguments are
/// never owned.
///
/// Thread: the caller's; those that ask the font manager, the main thread.
namespace GlyphMarkSupport {

// ---- Names

/// The name reduced to its ASCII letters and digits. "#" goes with the digits behind it, and nothing behind
/// the second "-" counts.
std::string StripIllegalPostScriptCharacters(const std::string& name);

/// The base name of a Multiple Master instance: everything before the first underscore at or behind "MM_" or
/// "MM-". Null when the name is none.
CFStringRef CreateResolvedMMFontName(CFStringRef name);

/// The same in place. Null, and a name that is none, is left alone.
void ResolveMMFontString(std::string* name);
void ResolveDictionaryMMFontName(CFMutableDictionaryRef font);

/// Takes one layer off a name that a driver or a subset added to: first a prefix such as "ABCDEF+", otherwise
/// what follows the last separator. Repeated on its own output until it answers false.
///
/// \param bufferSize  Size of `outName` in bytes; the result is cut to it and ended by a zero byte.
/// \param outName  May be `name` itself. Unchanged when the answer is false.
bool PSNameMightHaveCruftAppended(const char* name, unsigned long bufferSize, char* outName);

// ---- Records

/// Whether the record's value is that text, ignoring case. False for a null argument or an absent key.
bool KeyValueIs(CFDictionaryRef dict, CFStringRef key, CFStringRef value);

/// A record with that name alone, or an empty one for null.
CFMutableDictionaryRef CreateGlyphMarkDictionary(CFStringRef postScriptName);

/// Whether a slug stores the key: PostScript name, kind, foundry, version, the three checksums, outline file
/// size and name, family.
bool IsSluggableKey(CFStringRef key);

/// Each takes out what a slug doesn't store, and returns true if anything went.
bool RemoveUnsluggableKeysFromDictionary(CFMutableDictionaryRef font);
bool RemoveUnsluggableGlyphMarkKeys(CFMutableArrayRef fonts);

// ---- Values of the older font manager

/// How far a kind is mapped. The system asks for the full mapping alone.
enum class ExtentOfMapping : int { kFull = 0 };

/// The kind in today's words; the same one when there is nothing to map. Borrowed.
CFStringRef MapLarderFontTypeToHornbeamFontType(CFStringRef kind, ExtentOfMapping extent);
/// Writes it back; true if the value changed.
bool MapLarderFontTypeToHornbeamFontType(CFMutableDictionaryRef font, ExtentOfMapping extent);

/// "unknown" in any case becomes "--", an all lower-case name gets its words capitalised, any other stays.
CFStringRef CreateLarderFoundryNameFromHornbeamFoundryName(CFStringRef name);
/// Writes it back; true if the value changed.
bool MapLarderFoundryNameToHornbeamFoundryName(CFMutableDictionaryRef font);

/// Gives a missing old checksum the 1.2 value, and takes away a kerning checksum that can't be one. True if
/// the record changed.
bool FixGlyphMarkChecksumsIfNeeded(CFMutableDictionaryRef font);

/// All three repairs on a record that came out of a slug; true if it changed. False without a font manager.
bool PostProcessSingleFontForSlug(CFMutableDictionaryRef font);
void PostProcessGlyphMarkSlug(CFMutableArrayRef fonts);

// ---- Arrays

/// Finds a name: an exact match anywhere beats one that differs in punctuation, and that one beats a match of
/// the stripped names; within a level the lowest index wins.
///
/// \param outIndex  May be null; written on a match only.
bool DoesArrayContainFontWithPostScriptName(CFArrayRef fonts, CFStringRef name, long* outIndex);

/// Appends a record for the name, without the characters that a PostScript name can't hold.
///
/// \return True if an entry was added: not for null, not for a name with nothing left, and, unless duplicates
///         are allowed, not for one that is there already.
bool AddFontToArray(CFStringRef postScriptName, CFMutableArrayRef fonts, bool allowDuplicates);

/// Appends the record, or puts it in the place of the entry of its name when it has more keys.
void MergeGlyphmarkDictionaryIntoArray(CFMutableArrayRef fonts, CFDictionaryRef font);

/// Merges every named record of one array into another. A known name takes over the keys that it lacks when
/// nothing disagrees; otherwise the record with more keys stands. Linear in practice.
void MergeFontsIntoFontsArray(CFArrayRef srcFontArray, CFMutableArrayRef dstFontArray);

/// Appends the chosen font of every problem record.
///
/// \return False if any record has none; the walk goes to the end all the same. True for an empty array.
bool AllFontsResolved(CFArrayRef fonts, CFMutableArrayRef outMatchedFonts);

// ---- Data from the font manager

/// The font manager's best match for the record.
///
/// \param outBest  Receives a mutable copy that the caller owns; untouched when there is none, which alone is
///        no failure.
/// \return The lookup's code; -50 without record or font manager.
int GetGlyphMarkDataForBestMatch(CFMutableDictionaryRef fontRecord, long workgroupID,
                                 CFMutableDictionaryRef* outBest);

/// Fills each record from the font manager's best match. A record that it does not know stays as it was.
///
/// \param workgroupID  Scope of the search; -2 for all workgroups.
/// \param excludeInactiveFonts  Keep only fonts that are active at the end.
/// \param bGetAllFontInfo  Keep keys that a slug doesn't store.
/// \param tryFamilyNames  With excludeInactiveFonts: search by family where the name finds nothing.
/// \return 1000 without a connected font manager and -50 for null, both with nothing changed; 1000 from a
///         lookup ends the walk, and the array is not to be used then; otherwise the code of the last lookup
///         made.
int AppendGlyphMarkDataToFonts(CFMutableArrayRef fonts, long workgroupID, bool excludeInactiveFonts,
                               bool bGetAllFontInfo, bool tryFamilyNames);

/// The slug of the array.
///
/// \param outSlug  Receives a new string that the caller owns; untouched when the array can't be serialised.
/// \return 0, or -50 for a null argument.
int CreateXMLGlyphMarkSlug(CFArrayRef fontData, CFStringRef* outSlug);

}  // namespace GlyphMarkSupport
