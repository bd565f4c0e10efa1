#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Identity/FontNameIndex.h"
#include "Memory/RetainPtr.h"
#include "Parsers/EPSBinaryHeader.h"
#include "Parsers/FontParser.h"
#include "Parsers/ParsedFile.h"

/// The fonts of an Encapsulated PostScript file, out of its document structuring comments (Adobe's published
/// DSC, version 3), and the GlyphMark data of the "%%DocumentFontSpecs" comment that Save() writes. No
/// PostScript is interpreted.
///
/// A key counts anywhere in a line. A file without a font comment before its "%%EndComments" is read no
/// further than that line; one with a font comment is read to its end, since embedded subsets show only in
/// the body.
///
/// Note given by Parse(): "no EPS header".
class FontParserEPS : public FontParser {
 public:
  /// \param url  May be null. Both are retained.
  /// \param readOnly  True makes Save() do nothing.
  FontParserEPS(CFURLRef url, CFStringRef path, bool readOnly);

  void Parse() override;

  /// The records of the list itself, shared; copies of the names alone without bWantGlyphMark.
  void GetObsoleteGlyphmarkData(bool bWantGlyphMark, CFMutableArrayRef& outFonts) override;

  /// Puts other records in the place of those found, for Save(). Retained; null for none.
  void SetFonts(CFMutableArrayRef fonts) { m_fonts = retainCF(fonts); }

  /// Writes the list into the file as a block of comment lines directly before "%%EndComments", in place, and
  /// mends a DOS binary header: the length of the PostScript section and the start of a TIFF section behind
  /// it. The start of a WMF section is never moved.
  ///
  /// Parse() comes first. Nothing is written, and the result is 0, for an empty list, for a parser made read-
  /// only, and for a file that doesn't open for writing.
  ///
  /// \return 0, or -1 with a note that says why. With -1 the file is untouched when it has no
  /// "%%EndComments",
  ///         or not where Parse() found it; when a 32-bit field of its header can't take the new value; and
  ///         when the disk has no room. A write that fails later is taken back; only when that fails too does
  ///         it leave the file longer and partly moved, and the note says so.
  int Save() override;

  /// The block that Save() writes: one line a record, each ended by CR.
  ///
  /// A value that a quoted attribute can't hold is left out: above 254 bytes of UTF-8, or with a quote, a
  /// line end or NUL. Other values go out as they are, since no escape form exists.
  std::string WriteFontRecordsToBuffer() const;

 private:
  using Handler = bool (FontParserEPS::*)(const char* key, std::string& line, unsigned long keyPosition,
                                          int64_t* lineOffset);
  struct CommentKey;

  int64_t LocatePostScriptSource();
  void ReadComments();
  bool ReadNextLine(std::string* line, int64_t* lineOffset);

  // Each returns whether reading may go on. `line` is the last line read afterwards.
  bool ReadPSCommentDocumentFonts(const char* key, std::string& line, unsigned long keyPosition,
                                  int64_t* lineOffset);
  bool ReadPSCommentDocumentFontSpecs(const char* key, std::string& line, unsigned long keyPosition,
                                      int64_t* lineOffset);
  bool ReadPSCommentDocumentResources(const char* key, std::string& line, unsigned long keyPosition,
                                      int64_t* lineOffset);
  bool ReadPSCommentEmbedFont(const char* key, std::string& line, unsigned long keyPosition,
                              int64_t* lineOffset);

  void RegisterFont(const std::string& name, EFontSource source);
  void RegisterFontWithGlyphMark(const std::string& spec);
  void RemoveFontWithPostScriptName(CFStringRef name);
  void DropRemovedFonts();
  void AppendFont(CFDictionaryRef font, EFontSource source);
  static bool ReadGlyphMarkAttribute(std::stringstream& stream, std::string& name, std::string& value);

  int CheckBeforeSave(int64_t blockLength);
  int InsertBlock(const std::string& block);
  int AllocateGapInFile(int64_t offset, int64_t gapSize);
  void TakeBackGap(int64_t position, int64_t gapSize);

  ParsedFile m_file;
  bool m_readOnly;
  RetainPtr<CFMutableArrayRef> m_fonts;
  int64_t m_endCommentsOffset = 0;  // 0 while "%%EndComments" wasn't found
  EPSBinaryHeader m_header;

  // While Parse() runs, names are found through the index, and records replaced stay in their places until
  // there are many, so that positions stand.
  FontNameIndex m_names;
  std::vector<bool> m_removed;
  size_t m_removedCount = 0;
};
