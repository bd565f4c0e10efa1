#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Memory/RetainPtr.h"

/// What kind of graphic file it is, as far as parsers go.
enum class EFileType : int { kUnknown = 0, kPDF = 1, kEPS = 2 };

/// Where in a file a font's name stood.
enum class EFontSource : int {
  kComment,          ///< EPS: a list in the document structuring comments.
  kSpecification,    ///< EPS: a "%%DocumentFontSpecs" comment.
  kSubset,           ///< EPS: an embedded subset.
  kPageResources,    ///< PDF: a font object that a page's resources name.
  kXMPList,          ///< PDF: the font list of the XMP metadata.
  kIllustratorData,  ///< PDF: Illustrator's private data.
};

/// Reads the fonts of a placed graphic without interpreting it.
///
/// Life: CreateParserWithFile(), Parse() once, then GetError(), GetObsoleteGlyphmarkData() and, for an EPS,
/// Save(); then delete. Parse() and Save() open the file by themselves and close it again.
///
/// Any bytes may stand in the file: what can't be read is skipped, and what was found so far stays.
///
/// Thread: one at a time for each parser; parsers don't know of each other.
class FontParser {
 public:
  FontParser() = default;
  FontParser(const FontParser&) = delete;
  FontParser& operator=(const FontParser&) = delete;
  virtual ~FontParser() = default;

  /// Looks at the file's first bytes and chooses its parser.
  ///
  /// \param readOnly  A parser made so can't save.
  /// \return A parser that the caller deletes; null when the path gives no URL, when the file doesn't open
  ///         (for writing too, unless readOnly), and for a file of unknown type.
  static FontParser* CreateParserWithFile(CFStringRef path, bool readOnly, CFURLPathStyle pathStyle);

  /// Looks for "%PDF" at the offsets 0, 4, 8 ... below 1000.
  ///
  /// \return kPDF when it is there; kUnknown for a file that ends before offset 1000 without it; kEPS for any
  ///         other one, and for one that doesn't open.
  static EFileType DetermineFileTypeOfFile(CFURLRef url, CFStringRef path);

  /// POSIX.
  static CFURLPathStyle GetDefaultSystemPathStyle();

  /// Reads the file and fills the list of fonts. A file that doesn't open leaves it empty, without an error.
  virtual void Parse() = 0;

  /// 0, or -1 when the last Parse() or Save() was ended by a read or write that failed.
  virtual int GetError() const final { return m_nError; }

  /// Appends the records of the fonts found, in their order.
  ///
  /// \param bWantGlyphMark  False gives records with the PostScript name alone.
  /// \param outFonts  When null, receives a new array that the caller owns.
  virtual void GetObsoleteGlyphmarkData(bool bWantGlyphMark, CFMutableArrayRef& outFonts) = 0;

  /// Writes the fonts back into the file. A PDF is never written: nothing happens then.
  ///
  /// \return The error code, 0 when there was nothing to do.
  virtual int Save() = 0;

  /// Where the font of that name, as GetObsoleteGlyphmarkData() gives it, stood.
  EFontSource GetSourceOfFont(CFStringRef postScriptName, EFontSource fallback) const;

  /// What a user should know of the file: "encrypted", "damaged" ...; each once, in the order found.
  const std::vector<std::string>& GetNotes() const { return m_notes; }

 protected:
  /// Remembers where a font stood; the last call for a name counts.
  void NoteSource(CFStringRef postScriptName, EFontSource source);
  void AddNote(std::string_view note);

  /// Makes the array that a caller left to us.
  static void MakeArrayIfNull(CFMutableArrayRef& fonts);

  int m_nError = 0;

 private:
  std::unordered_map<std::string, EFontSource> m_sources;
  std::vector<std::string> m_notes;
};

/// Whether a file's first four bytes, read as a little-endian word, are "%!" and two more.
bool IsMacEPS(long firstWord);
/// Whether they are C5 D0 D3 C6, the header of a DOS EPS binary file in Adobe's published EPS format.
bool IsWindowsEPS(long firstWord);
