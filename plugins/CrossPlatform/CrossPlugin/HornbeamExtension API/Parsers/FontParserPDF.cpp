#include "Parsers/FontParserPDF.h"

#include <cstring>

#include "Activation/Vocabulary/FontRecord.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

void FontParserPDF::Parse() {
  const OperationTrace trace("FontParserPDF::Parse", "Entering %s()", "FontParserPDF::Parse");
  if (!OpenFile()) return;
  if (FindFileStart()) {
    ProcessToken();  // the rest of the version
    m_nXRefOffset = GetOffsetOfLastXRefSection();
    ProcessXRefSection();
    ProcessObjectsFromRoot();
  }
  AddNotes();
  if (m_metadataObject.nObjectNumber > 0) {
    if (m_vFontRecords.empty()) {
      OutputIndentedAndFormattedString(0,
                                       "Ignoring XMP metadata because no fonts were listed in the PDF Info "
                                       "records; document is probably not PDF compatible.");
    } else {
      ProcessFontMetadata(&m_metadataObject);
    }
  }
  m_file.stream.close();
}

// Searches the first 1000 characters, without going back after a "%" that begins something else.
bool FontParserPDF::FindFileStart() {
  constexpr int kSearchedLength = 1000;
  for (int i = 0; i < kSearchedLength && m_nError == 0; ++i) {
    const int64_t position = GetCurrentPosition();
    if (ReadCharacter() != '%') continue;
    char marker[4] = {};
    for (int j = 0; j < 3; ++j, ++i) marker[j] = ReadCharacter();
    if (std::strcmp(marker, "PDF") == 0) {
      m_nFileStartOffset = position;
      return true;
    }
  }
  return false;
}

void FontParserPDF::ProcessObjectsFromRoot() {
  if (m_rootObject.nObjectNumber > 0) ProcessCatalog(&m_rootObject);
  int64_t nNumPages = 0;
  if (m_pagesObject.nObjectNumber > 0) nNumPages = ProcessPages(&m_pagesObject);
  // A kid can append others.
  m_vVisitedKids.assign(m_xrefTable.EntryCount(), false);
  for (size_t i = 0; i < m_vKids.size() && static_cast<int64_t>(i) < nNumPages && m_nError == 0; ++i) {
    ProcessKids(m_vKids[i]);
  }
  ProcessFonts();
  // Private data may hold a PDF, which may hold private data.
  if (m_illustratorObject.nObjectNumber > 0 && m_nNestingDepth == 0) {
    ProcessIllustratorData(&m_illustratorObject);
  }
}

void FontParserPDF::AddNotes() {
  if (m_bHasEncryption) AddNote("encrypted");
  if (m_bHasXRefStream) AddNote("cross-reference stream");
  if (!m_bHasCatalog) AddNote("no catalog");
  if (m_nError != 0 || (!m_bHasXRefTable && !m_bHasXRefStream)) AddNote("damaged");
}

void FontParserPDF::GetObsoleteGlyphmarkData(bool bWantGlyphMark, CFMutableArrayRef& outFonts) {
  const OperationTrace trace("FontParserPDF::GetObsoleteGlyphmarkData", "Entering %s()",
                             "FontParserPDF::GetObsoleteGlyphmarkData");
  MakeArrayIfNull(outFonts);
  IndexedFontArray fonts(outFonts);
  const auto add = [&](CFMutableDictionaryRef font, EFontSource source) {
    GlyphMarkSupport::PostProcessSingleFontForSlug(font);
    CFStringRef name = FontRecord::GetPostScriptName(font);
    if (name == nullptr || fonts.Find(name)) return;
    fonts.MergeRecord(font);
    NoteSource(name, source);
  };

  for (const PDFFontRecord& record : m_vFontRecords) {
    CFDictionaryRef converted = nullptr;
    ConvertPDFFontToFontRecord(record, &converted, bWantGlyphMark);
    const auto font = adoptCF(const_cast<CFMutableDictionaryRef>(converted));
    add(font.get(), record.bFromMetadata ? EFontSource::kXMPList : EFontSource::kPageResources);
  }
  for (CFIndex i = 0; i < FontRecord::Count(m_illustratorFonts.get()); ++i) {
    const auto font = adoptCF(
        CFDictionaryCreateMutableCopy(kCFAllocatorDefault, 0, FontRecord::At(m_illustratorFonts.get(), i)));
    add(font.get(), EFontSource::kIllustratorData);
  }
}

int FontParserPDF::Save() {
  return 0;
}
