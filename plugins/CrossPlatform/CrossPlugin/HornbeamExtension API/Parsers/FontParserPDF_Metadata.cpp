#include "Parsers/FontParserPDF.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

// The font list of an XMP packet (ISO 16684, property xmpTPg:Fonts), read with the tokenizer of the PDF
// around it: an opening tag comes as "<" and its name, a closing one as "<" and "/name".

void FontParserPDF::ProcessFontMetadata(PDFObject* object) {
  static constexpr const char* kName = "FontParserPDF::ProcessFontMetadata";
  OperationTrace trace(kName, "Entering %s()", kName);
  bool hasUnexpectedToken = false;
  if (EnterObject(*object, &hasUnexpectedToken)) {
    bool isTag = false;
    while (m_nError == 0) {
      const std::string_view token = ProcessToken();
      if (token == "endobj") break;
      if (isTag && token == "xmpTPg:Fonts") {
        OutputIndentedAndFormattedString(0, "Found beginning of XMP font metadata");
        ReadXMPFontList();
      }
      isTag = m_sCurrentToken == "<";
    }
  } else if (hasUnexpectedToken) {
    trace.Exiting("Unexpected token at start of XMP font metadata; exiting %s", kName);
  }
  m_nError = 0;  // a packet that breaks off is no failure of the file
}

void FontParserPDF::ReadXMPFontList() {
  bool isTag = false;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (isTag && token == "/xmpTPg:Fonts") return;
    if (isTag && token == "rdf:li") {
      OutputIndentedAndFormattedString(0, "Found beginning of one font record");
      PDFFontRecord record;
      record.bFromMetadata = true;
      ReadXMPFontName(&record);
      AddXMPFont(std::move(record));
      while (m_nError == 0 && ProcessToken() != ">") {
      }
    }
    isTag = m_sCurrentToken == "<";
  }
}

void FontParserPDF::ReadXMPFontName(PDFFontRecord* record) {
  bool isTag = false;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (isTag && token == "/rdf:li") return;
    if (token == "stFnt:fontName") {
      while (m_nError == 0 && ProcessToken() != ">") {
      }
      if (ProcessToken() != "<") record->sFontName = m_sCurrentToken;  // an empty element names no font
    }
    isTag = m_sCurrentToken == "<";
  }
}

void FontParserPDF::AddXMPFont(PDFFontRecord record) {
  if (record.sFontName.empty()) return;
  if (!m_fontNames.insert(record.sFontName).second) {
    OutputIndentedAndFormattedString(0, "Found '%s' but it's already in m_vFontRecords.  Ignoring.",
                                     record.sFontName.c_str());
    return;
  }
  OutputIndentedAndFormattedString(0, "Adding '%s' to m_vFontRecords", record.sFontName.c_str());
  m_vFontRecords.push_back(std::move(record));
}
