#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <unordered_set>
#include <vector>

#include "Memory/RetainPtr.h"
#include "Parsers/PDFFontRecord.h"
#include "Parsers/PDFObjectReader.h"

class UnlinkedFile;

/// Reads the fonts of a PDF or Illustrator file: those that the resources of its pages name, those of the XMP
/// font list, and those of Illustrator's private data.
///
/// It is no PDF interpreter: from the catalog on it looks at each object as a row of tokens, reacts to a few
/// keys and lets the rest pass. So it reads the tables and the dictionaries alone, whatever the file's size,
/// and damage only means that less is found. What it doesn't see: objects in object streams, fonts named in
/// an indirect /Font dictionary or in form XObjects alone, any but the first kid of an inner page tree node.
///
/// Bounds on any file: the bytes read as told at PDFObjectReader, 64 MiB of memory beyond the fonts, 32
/// levels of recursion, 1 GiB of temporary file, which is gone after Parse().
///
/// Notes given: "encrypted", "cross-reference stream", "no catalog", "damaged".
class FontParserPDF : public PDFObjectReader {
 public:
  /// \param url  May be null; `path` counts then. Both are retained.
  FontParserPDF(CFURLRef url, CFStringRef path) : PDFObjectReader(url, path) {}

  void Parse() override;
  void GetObsoleteGlyphmarkData(bool bWantGlyphMark, CFMutableArrayRef& outFonts) override;
  /// Does nothing and returns 0.
  int Save() override;

 protected:
  /// How the data of a stream are packed, as far as it matters.
  enum FilterType : int { kFilterOther = -1, kFilterNone = 0, kFilterFlate = 1 };

  // ---- Pages and resources

  void ProcessCatalog(PDFObject* object);
  /// The value of /Count.
  int64_t ProcessPages(PDFObject* object);
  void ProcessKids(PDFObject kid);
  void ProcessResources();
  void ProcessFontObject();

  // ---- Fonts

  void ProcessFonts();
  void ProcessFontMetadata(PDFObject* object);
  /// \param outFont  Receives a new mutable record that the caller owns.
  static void ConvertPDFFontToFontRecord(const PDFFontRecord& record, CFDictionaryRef* outFont,
                                         bool bWantGlyphMark);
  /// The value of a key in the text of a font dictionary, appended to `outValue`. False when there is none.
  static bool ParseKeyFromGlyphMarkBuffer(const std::string& buffer, const std::string& key,
                                          std::string& outValue);
  static void AddKeyValueToFontRecord(const std::string& buffer, const std::string& key,
                                      CFStringRef recordKey, CFMutableDictionaryRef font);

  // ---- Illustrator's private data

  void ProcessIllustratorData(PDFObject* object);
  /// The reader stands at the first byte of the stream's data. True when a decoded copy was made and read as
  /// a file of fonts.
  bool DecodeAIPrivateData(FilterType filter, int64_t streamLength);

 private:
  bool FindFileStart();
  void ProcessObjectsFromRoot();
  void AddNotes();

  void ProcessKidsType();
  void AppendFirstKid();
  void ProcessResourcesReference(int32_t objectNumber);
  void SkipProcSet();

  void ReadFontDictionary(PDFFontRecord* record);
  void CaptureDictionaryText(int64_t start, int64_t end, PDFFontRecord* record);
  void SkipWidths();
  void ReadXMPFontList();
  void ReadXMPFontName(PDFFontRecord* record);
  void AddXMPFont(PDFFontRecord record);

  bool ReadAIPrivateStream();
  FilterType ReadFilter();
  bool CopyStream(int64_t start, int64_t length, UnlinkedFile* target);
  bool InflateStream(int64_t start, UnlinkedFile* target);
  void ParseDecodedFile(const std::string& path);

  PDFObject m_pagesObject;
  PDFObject m_metadataObject;
  PDFObject m_illustratorObject;
  std::vector<PDFObject> m_vKids;                 // the queue of the page walk
  std::vector<bool> m_vVisitedKids;               // by index in the cross-reference table
  std::vector<PDFObject> m_vFontObjects;          // each once
  std::unordered_set<uint64_t> m_fontObjectKeys;  // of those
  std::vector<int32_t> m_vResourceChain;          // the references that are being followed
  std::vector<PDFFontRecord> m_vFontRecords;      // each name once
  std::unordered_set<std::string> m_fontNames;    // of those
  size_t m_nKeptText = 0;                         // bytes in their GlyphMark buffers
  RetainPtr<CFMutableArrayRef> m_illustratorFonts;
  int m_nNestingDepth = 0;  // 1: in the private data of another file
  bool m_bHasCatalog = false;
};
