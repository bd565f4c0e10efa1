#include "Parsers/PDFObjectReader.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "Utilities/DebugUtils.h"

namespace {

constexpr size_t kPageSize = 1024;
constexpr int64_t kBudgetPerByte = 64;
constexpr int64_t kBudgetAtLeast = int64_t{16} << 20;
// An update adds one table, so that no file comes near this.
constexpr size_t kMaxXRefTables = 65536;
// More kids than a node has, and more fonts than a page has; keeps memory low on a file of digits.
constexpr size_t kMaxObjects = size_t{1} << 18;

}  // namespace

bool PDFObjectReader::OpenFile() {
  m_nError = 0;
  // Dictionaries are a few hundred bytes each, between streams that nobody reads.
  m_file.stream.Buffer().SetPageSize(kPageSize);
  if (!m_file.Open(true)) return false;
  m_nFileLength = std::max<int64_t>(0, m_file.stream.GetStreamLength());
  m_nBudget = m_nFileLength > (INT64_MAX - kBudgetAtLeast) / kBudgetPerByte
                  ? INT64_MAX
                  : m_nFileLength * kBudgetPerByte + kBudgetAtLeast;
  m_nBudget = std::min(m_nBudget, m_nBudgetLimit);
  m_nBytesRead = 0;
  SeekAndReadBlock(0);
  return true;
}

size_t PDFObjectReader::ReadAt(int64_t offset, char* target, size_t count) {
  if (offset < 0 || GetRemainingBudget() <= 0) return 0;
  FileBuffer& buffer = m_file.stream.Buffer();
  if (buffer.ReadPosition() != offset) buffer.pubseekpos(offset, std::ios_base::in);
  const auto read = static_cast<size_t>(buffer.sgetn(target, static_cast<std::streamsize>(count)));
  m_nBytesRead += static_cast<int64_t>(read);
  return read;
}

std::string PDFObjectReader::ReadBytesAt(int64_t offset, size_t count) {
  std::string bytes(count, '\0');
  bytes.resize(ReadAt(offset, bytes.data(), count));
  return bytes;
}

std::string_view PDFObjectReader::BytesAheadAt(int64_t offset) {
  if (offset < 0 || GetRemainingBudget() <= 0) return {};
  FileBuffer& buffer = m_file.stream.Buffer();
  if (buffer.ReadPosition() != offset) buffer.pubseekpos(offset, std::ios_base::in);
  const std::string_view ahead = buffer.Ahead();
  m_nBytesRead += static_cast<int64_t>(ahead.size());
  return ahead;
}

int64_t PDFObjectReader::GetRemainingBudget() {
  // What the reader asks for and what that makes the file give differ: jumps fetch more than they need, and
  // what is read twice may still be in memory. Both are bounded.
  return m_nBudget - std::max(m_nBytesRead, static_cast<int64_t>(m_file.stream.Buffer().BytesFetched()));
}

void PDFObjectReader::ReadBlock() {
  const size_t read = ReadAt(m_nFilePosition, m_block, kBlockSize);
  m_block[read] = '\0';
  m_nBlockLength = static_cast<int>(read);
  m_nBlockPosition = 0;
  m_nFilePosition += static_cast<int64_t>(read);
  if (read == kBlockSize) return;
  OutputIndentedAndFormattedString(0, "FontParserPDF::ReadBlock() got error %d after reading %d bytes", -1,
                                   m_nBlockLength);
  if (read == 0) m_nError = -1;
}

void PDFObjectReader::SeekAndReadBlock(int64_t offset) {
  m_nFilePosition = offset;
  ReadBlock();
}

void PDFObjectReader::GoTo(int64_t offset) {
  if (DebugUtils::IsTraceHeard()) {
    OutputIndentedAndFormattedString(0, "Reading block at file offset %lld (0x%08llx)",
                                     static_cast<long long>(offset), static_cast<unsigned long long>(offset));
  }
  SeekAndReadBlock(offset);
}

std::optional<size_t> PDFObjectReader::FindEntry(const PDFObject& object) {
  if (object.nObjectNumber <= 0 || m_nError != 0) return std::nullopt;
  const std::optional<size_t> entry = m_xrefTable.Find(object.nObjectNumber);
  if (!entry) return std::nullopt;
  // A bad entry isn't the end of the file, which would be an error.
  const int64_t offset = static_cast<int64_t>(m_xrefTable.At(*entry).nOffset) + m_nFileStartOffset;
  if (offset < 0 || offset >= m_nFileLength) return std::nullopt;
  return entry;
}

bool PDFObjectReader::FindObject(const PDFObject& object) {
  const std::optional<size_t> entry = FindEntry(object);
  if (!entry) return false;
  GoTo(static_cast<int64_t>(m_xrefTable.At(*entry).nOffset) + m_nFileStartOffset);
  const int64_t number = GetCurrentNumber();
  const int64_t generation = GetCurrentNumber();
  return m_nError == 0 && number == object.nObjectNumber && generation == object.nGenerationNumber;
}

bool PDFObjectReader::EnterObject(const PDFObject& object, bool* outUnexpectedToken) {
  if (!FindObject(object)) return false;
  const bool isObject = ProcessToken() == "obj";
  if (outUnexpectedToken != nullptr) *outUnexpectedToken = !isObject;
  return isObject;
}

void PDFObjectReader::ProcessObject(std::vector<PDFObject>* outObjects) {
  ProcessToken();
  const bool isArray = m_sCurrentToken == "[";
  if (isArray && (ProcessToken() == "]" || m_sCurrentToken == "endobj")) return;
  while (m_nError == 0) {
    PDFObject object;
    object.nObjectNumber = ToInt32(m_sCurrentToken);
    object.nGenerationNumber = ToInt32(ProcessToken());
    // An array that never ends would go on into the objects behind this one.
    if (isArray && m_sCurrentToken == "endobj") return;
    object.bIsReference = ProcessToken() == "R";
    if (isArray && m_sCurrentToken == "endobj") return;
    if (outObjects != nullptr && outObjects->size() < kMaxObjects) outObjects->push_back(object);
    if (!isArray) return;
    ProcessToken();
    if (m_sCurrentToken.empty() || m_sCurrentToken == "]" || m_sCurrentToken == "endobj") return;
  }
}

PDFObject PDFObjectReader::ProcessFirstObject() {
  std::vector<PDFObject> objects;
  ProcessObject(&objects);
  return objects.empty() ? PDFObject{} : objects.front();
}

void PDFObjectReader::SkipObject() {
  int64_t nesting = 0;
  do {
    const std::string_view token = ProcessToken();
    if (token == "<<" || token == "[" || token == "(") ++nesting;
    if (token == ">>" || token == "]" || token == ")") --nesting;
  } while (nesting > 0 && m_nError == 0);
}

void PDFObjectReader::SkipMediaBox() {
  if (ProcessToken() != "[") return;
  for (int i = 0; i < 5; ++i) ProcessToken();
}

void PDFObjectReader::ReadID() {
  for (int i = 0; i < 256 && m_nError == 0; ++i) {
    if (ReadCharacter() == ']') return;
  }
}

int64_t PDFObjectReader::GetOffsetOfLastXRefSection() {
  constexpr int64_t kTailLength = 100;
  SeekAndReadBlock(std::max<int64_t>(0, m_nFileLength - kTailLength));
  const char* keyword = std::strstr(m_block, "startxref");
  if (keyword == nullptr) return 0;
  const char* digits = std::strpbrk(keyword, "0123456789");
  if (digits == nullptr) return 0;
  int64_t offset = 0;
  return IsNumber({digits, std::strspn(digits, "0123456789")}, &offset) ? offset : 0;
}

void PDFObjectReader::ProcessXRefSection() {
  std::unordered_set<int64_t> visited;
  while (m_nError == 0 && visited.size() < kMaxXRefTables && visited.insert(m_nXRefOffset).second) {
    int64_t offset = 0;
    SeekAndReadBlock(__builtin_add_overflow(m_nXRefOffset, m_nFileStartOffset, &offset) ? -1 : offset);
    if (!ReadXRefKeyword() || !ReadXRefSubsections()) return;
    m_bHasXRefTable = true;
    const int64_t previousOffset = ReadTrailer();
    if (previousOffset == 0) return;
    m_nXRefOffset = previousOffset;
  }
}

bool PDFObjectReader::ReadXRefKeyword() {
  const std::string_view line = ProcessLine();
  static constexpr std::string_view kKeyword = "xref";
  // Some producers write an offset a little too large: the keyword's tail will do.
  for (size_t missing = 0; missing < kKeyword.size(); ++missing) {
    if (line == kKeyword.substr(missing)) {
      m_nFileStartOffset -= static_cast<int64_t>(missing);
      return true;
    }
  }
  m_bHasXRefStream |=
      !line.empty() && line[0] >= '0' && line[0] <= '9' && line.find("obj") != std::string::npos;
  return false;
}

// True at the trailer.
bool PDFObjectReader::ReadXRefSubsections() {
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token.empty()) continue;
    if (token == "trailer") return true;
    int64_t first = 0;
    if (!IsNumber(token, &first)) return false;
    m_xrefTable.BeginSection(first);
    // The count is the file's word: only what is really there is kept.
    const int64_t count = GetCurrentNumber();
    for (int64_t i = 0; i < count && m_nError == 0; ++i) {
      int64_t offset = 0;
      int64_t generation = 0;
      char state = 0;
      if (!TakeXRefEntryInBlock(&offset, &generation, &state)) {
        offset = GetCurrentNumber();
        generation = GetCurrentNumber();
        state = ReadCharacter();
      }
      if (m_nError == 0) m_xrefTable.AddEntry(offset, generation, state != 'f');
    }
  }
  return false;
}

// The offset of the table before, 0 for none.
int64_t PDFObjectReader::ReadTrailer() {
  int64_t previousOffset = 0;
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == ">>") break;
    if (token == "/Size") {
      m_nObjectCount = std::max(m_nObjectCount, GetCurrentNumber());
    } else if (token == "/Prev") {
      previousOffset = GetCurrentNumber();
    } else if (token == "/Root") {
      const PDFObject object = ProcessFirstObject();
      if (m_rootObject.nObjectNumber < 1) m_rootObject = object;  // the newest trailer wins
    } else if (token == "/Encrypt") {
      m_bHasEncryption = true;
      const PDFObject object = ProcessFirstObject();
      if (m_encryptObject.nObjectNumber < 1) m_encryptObject = object;
    } else if (token == "/ID") {
      ReadID();
    }
  }
  return previousOffset;
}
