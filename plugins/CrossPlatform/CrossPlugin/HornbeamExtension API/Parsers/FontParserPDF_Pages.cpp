#include <algorithm>

#include "Parsers/FontParserPDF.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

// The walk from the catalog to the fonts that pages name. Objects are rows of tokens here: of a dictionary
// inside another one, the keys count as if they stood in the outer one.

namespace {

constexpr size_t kMaxResourceDepth = 32;
constexpr size_t kMaxFontObjects = size_t{1} << 17;

bool IsBox(std::string_view token) {
  return token == "/MediaBox" || token == "/CropBox" || token == "/BleedBox" || token == "/TrimBox" ||
         token == "/ArtBox";
}

}  // namespace

void FontParserPDF::ProcessCatalog(PDFObject* object) {
  static constexpr const char* kName = "FontParserPDF::ProcessCatalog";
  OperationTrace trace(kName, "Entering %s()", kName);
  bool hasUnexpectedToken = false;
  if (!EnterObject(*object, &hasUnexpectedToken)) {
    if (hasUnexpectedToken) trace.Exiting("Unexpected token at start of catalog; exiting %s", kName);
    return;
  }
  m_bHasCatalog = true;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == "endobj") return;
    if (token == "/Type" || token == "/PageMode") {
      ProcessToken();
    } else if (token == "/Metadata") {
      m_metadataObject = ProcessFirstObject();
      OutputIndentedAndFormattedString(0, "Found metadata:  object %d", m_metadataObject.nObjectNumber);
    } else if (token == "/Pages") {
      m_pagesObject = ProcessFirstObject();
    } else if (token == "/Names") {
      ProcessObject(nullptr);
    }
  }
}

int64_t FontParserPDF::ProcessPages(PDFObject* object) {
  static constexpr const char* kName = "FontParserPDF::ProcessPages";
  OperationTrace trace(kName, "Entering %s()", kName);
  bool hasUnexpectedToken = false;
  if (!EnterObject(*object, &hasUnexpectedToken)) {
    if (hasUnexpectedToken) trace.Exiting("Warning:  unexpected token.  Exiting %s", kName);
    return 0;
  }
  int64_t nNumPages = 0;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == "endobj") break;
    if (token == "/Type") {
      ProcessToken();
    } else if (token == "/Kids") {
      ProcessObject(&m_vKids);
    } else if (token == "/Count") {
      nNumPages = GetCurrentNumber();
    } else if (token == "/Rotate") {
      GetCurrentNumber();
    } else if (token == "/Font") {
      ProcessFontObject();
    } else if (IsBox(token)) {
      SkipMediaBox();
    }
  }
  return nNumPages;
}

void FontParserPDF::ProcessKids(PDFObject kid) {
  static constexpr const char* kName = "FontParserPDF::ProcessKids";
  OperationTrace trace(kName, "Entering %s()", kName);
  bool hasUnexpectedToken = false;
  if (!EnterObject(kid, &hasUnexpectedToken)) {
    if (hasUnexpectedToken) trace.Exiting("Warning:  unexpected token.  Exiting %s", kName);
    return;
  }
  // A second visit would find the same fonts, and a loop in the tree would never end. An object that was
  // found has the one generation that the file gives it, so that its entry stands for both numbers.
  const std::optional<size_t> entry = FindEntry(kid);
  if (!entry || m_vVisitedKids[*entry]) return;
  m_vVisitedKids[*entry] = true;

  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == "endobj") return;
    if (token == "/Type") {
      ProcessKidsType();
    } else if (token == "/Kids") {
      AppendFirstKid();
    } else if (token == "/Count" || token == "/Rotate") {
      GetCurrentNumber();
    } else if (token == "/Parent") {
      ProcessObject(nullptr);
    } else if (token == "/Resources") {
      ProcessResources();
    } else if (token == "/Font") {
      ProcessFontObject();
    } else if (token == "/Illustrator") {
      OutputIndentedAndFormattedString(0, "   found illustrator data...");
      std::vector<PDFObject> objects;
      ProcessObject(&objects);
      if (!objects.empty()) m_illustratorObject = objects.front();
    } else if (IsBox(token)) {
      SkipMediaBox();
    }
  }
}

// The key behind the type is looked at here, and spent when it is none of these: resources that stand there
// aren't seen.
void FontParserPDF::ProcessKidsType() {
  const std::string_view type = ProcessToken();
  if (type != "/Page" && type != "/Pages") return;
  const std::string_view token = ProcessToken();
  if (token == "/Kids") {
    AppendFirstKid();
  } else if (token == "/Parent") {
    OutputIndentedAndFormattedString(0, "   ignoring parent...");
    ProcessObject(nullptr);
  } else if (token == "/Rotate") {
    GetCurrentNumber();
  } else if (IsBox(token)) {
    SkipMediaBox();
  }
}

// Of an inner node only the first kid is followed.
void FontParserPDF::AppendFirstKid() {
  std::vector<PDFObject> kids;
  ProcessObject(&kids);
  if (kids.empty()) return;
  OutputIndentedAndFormattedString(0, " appending kid %d", kids.front().nObjectNumber);
  m_vKids.push_back(kids.front());
}

void FontParserPDF::ProcessResources() {
  static constexpr const char* kName = "FontParserPDF::ProcessResources";
  const OperationTrace trace(kName, "Entering %s()", kName);
  int64_t nesting = 0;
  bool hasToken = true;
  ProcessToken();
  if (m_sCurrentToken == "<<") {
    nesting = 1;
    hasToken = false;
  } else if (IsNumber(m_sCurrentToken, nullptr)) {
    ProcessResourcesReference(ToInt32(m_sCurrentToken));
    return;
  }
  for (; m_nError == 0; hasToken = false) {
    const std::string_view token = hasToken ? m_sCurrentToken : ProcessToken();
    if (token == "endobj" || token == "]") return;
    if (token == "<<") {
      ++nesting;
    } else if (token == ">>") {
      if (--nesting <= 0) return;
    } else if (token == "/ProcSet") {
      SkipProcSet();
    } else if (token == "/Font") {
      ProcessFontObject();
    } else if (token == "/Pattern") {
      ProcessLine();
    } else if (token == "/Properties" || token == "/ExtGState") {
      SkipObject();
    }
  }
}

// Reads the rest of a reference, and the resources there; the reader stands behind the reference afterwards.
void FontParserPDF::ProcessResourcesReference(int32_t objectNumber) {
  const int32_t generation = ToInt32(ProcessToken());
  if (ProcessToken() != "R") return;
  const int64_t position = GetCurrentPosition();
  const bool isLoop =
      std::find(m_vResourceChain.begin(), m_vResourceChain.end(), objectNumber) != m_vResourceChain.end();
  if (!isLoop && m_vResourceChain.size() < kMaxResourceDepth) {
    m_vResourceChain.push_back(objectNumber);
    if (EnterObject({objectNumber, generation, true})) ProcessResources();
    m_vResourceChain.pop_back();
  }
  GoTo(position);
}

void FontParserPDF::SkipProcSet() {
  if (ProcessToken() != "[") return;
  for (int64_t nesting = 1; nesting > 0 && m_nError == 0;) {
    const std::string_view token = ProcessToken();
    if (token == "[") ++nesting;
    if (token == "]") --nesting;
  }
}

void FontParserPDF::ProcessFontObject() {
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == ">>") return;
    if (token.empty() || token == "<<") continue;
    // The token is the font's name on the page; the font itself is named by every page that uses it.
    std::vector<PDFObject> objects;
    ProcessObject(&objects);
    for (const PDFObject& object : objects) {
      if (m_vFontObjects.size() >= kMaxFontObjects) break;
      if (m_fontObjectKeys.insert(object.Key()).second) m_vFontObjects.push_back(object);
    }
  }
}
