#include <zlib.h>

#include <algorithm>
#include <memory>

#include "Memory/CFVector.h"
#include "Parsers/FontParserPDF.h"
#include "Parsers/UnlinkedFile.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

// Illustrator's own copy of the artwork: text that is much like an EPS, in a private stream of the page.

namespace {

constexpr std::string_view kCompressedTag = "%AI12_CompressedData";
constexpr const char* kZlibVersion = "1.2.11";
constexpr size_t kOutputSize = size_t{256} * 1024;
// Real artwork is far smaller; what decodes to more is made to fill the disk.
constexpr size_t kMaxDecoded = size_t{1} << 30;
constexpr size_t kMaxFollowed = 16;

}  // namespace

void FontParserPDF::ProcessIllustratorData(PDFObject* object) {
  static constexpr const char* kName = "FontParserPDF::ProcessIllustratorData";
  const OperationTrace trace(kName, "Entering %s()", kName);
  if (!EnterObject(*object)) return;
  std::unordered_set<uint64_t> followed{object->Key()};
  while (m_nError == 0) {
    const std::string_view token = ProcessToken();
    if (token == "endobj") return;
    const bool isPrivate = token == "/Private";
    if (!isPrivate && token != "/AIPrivateData2") continue;
    std::vector<PDFObject> objects;
    ProcessObject(&objects);
    if (objects.size() != 1) continue;
    // An object that leads back to itself would be entered for ever.
    if (followed.size() > kMaxFollowed || !followed.insert(objects.front().Key()).second) return;
    if (!EnterObject(objects.front())) return;
    // Once there are fonts, the rest of the data can only name them again.
    if (!isPrivate && ReadAIPrivateStream()) return;
  }
}

// The reader stands at the stream's dictionary. True when a file of fonts came of it.
bool FontParserPDF::ReadAIPrivateStream() {
  FilterType filter = kFilterNone;
  int64_t length = 0;
  int64_t nesting = 0;
  do {
    const std::string_view token = ProcessToken();
    if (token == "<<") {
      ++nesting;
    } else if (token == ">>") {
      --nesting;
    } else if (token == "/Filter") {
      filter = ReadFilter();
    } else if (token == "/Length") {
      length = GetCurrentNumber();  // of a reference, its object number
    }
  } while (nesting > 0 && m_nError == 0);
  if (ProcessToken() != "stream") return false;
  SkipWhitespace();
  return DecodeAIPrivateData(filter, length);
}

// Of several filters the last one counts.
FontParserPDF::FilterType FontParserPDF::ReadFilter() {
  FilterType filter = kFilterNone;
  int64_t nesting = 0;
  do {
    const std::string_view token = ProcessToken();
    if (token == "[") {
      ++nesting;
    } else if (token == "]") {
      --nesting;
    } else {
      filter = token == "/FlateDecode" ? kFilterFlate : kFilterOther;
    }
  } while (nesting > 0 && m_nError == 0);
  return filter;
}

bool FontParserPDF::DecodeAIPrivateData(FilterType filter, int64_t streamLength) {
  static constexpr const char* kName = "FontParserPDF::DecodeAIPrivateData";
  const OperationTrace trace(kName, "Entering %s()", kName);
  if (m_nError != 0) return false;
  int64_t start = GetCurrentPosition();
  const std::string tag = ReadBytesAt(start, kCompressedTag.size());
  if (tag == kCompressedTag) {
    OutputIndentedAndFormattedString(0, "Handling tag '%s' with kFilterFlate decoding", tag.c_str());
    filter = kFilterFlate;
    start += static_cast<int64_t>(tag.size());
  } else {
    OutputIndentedAndFormattedString(0, "Handling tag '%s' with NO decoding", tag.c_str());
  }

  UnlinkedFile file;
  if (!file.IsOpen()) return false;
  OutputIndentedAndFormattedString(0, "Creating temp file \"%s\"", file.Name().c_str());
  bool isDone = false;
  if (filter == kFilterNone) {
    OutputIndentedAndFormattedString(0, "   filter type: none");
    isDone = CopyStream(start, streamLength, &file);
  } else if (filter == kFilterFlate) {
    OutputIndentedAndFormattedString(0, "   filter type: flate");
    isDone = InflateStream(start, &file);
  }
  if (isDone) ParseDecodedFile(file.Path());
  OutputIndentedAndFormattedString(0, "Deleted temp file \"%s\"", file.Name().c_str());
  return m_illustratorFonts.get() != nullptr;
}

// False when the file ends before the stream.
bool FontParserPDF::CopyStream(int64_t start, int64_t length, UnlinkedFile* target) {
  constexpr int64_t kPiece = 65536;
  if (static_cast<uint64_t>(length) > kMaxDecoded) return false;
  while (length > 0) {
    const std::string piece = ReadBytesAt(start, static_cast<size_t>(std::min(length, kPiece)));
    if (piece.empty() || !target->Write(piece.data(), piece.size())) return false;
    start += static_cast<int64_t>(piece.size());
    length -= static_cast<int64_t>(piece.size());
  }
  return true;
}

// The length that the file states isn't needed: zlib data say where they end. Damaged data count as far as
// they could be decoded.
bool FontParserPDF::InflateStream(int64_t start, UnlinkedFile* target) {
  z_stream inflater{};
  if (inflateInit_(&inflater, kZlibVersion, static_cast<int>(sizeof inflater)) != Z_OK) return false;
  const std::unique_ptr<z_stream, int (*)(z_stream*)> inflaterEnd(&inflater, &inflateEnd);
  const auto output = std::make_unique_for_overwrite<char[]>(kOutputSize);

  bool hasOutput = false;
  std::string_view input;
  for (int result = Z_OK; result == Z_OK;) {
    if (inflater.avail_in == 0) {
      input = BytesAheadAt(start);
      if (input.empty()) break;
      start += static_cast<int64_t>(input.size());
      inflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
      inflater.avail_in = static_cast<uInt>(input.size());
    }
    inflater.next_out = reinterpret_cast<Bytef*>(output.get());
    inflater.avail_out = static_cast<uInt>(kOutputSize);
    result = inflate(&inflater, Z_SYNC_FLUSH);
    const size_t produced = kOutputSize - inflater.avail_out;
    if (produced == 0) continue;
    if (target->Size() + produced > kMaxDecoded || !target->Write(output.get(), produced)) return false;
    hasOutput = true;
  }
  return hasOutput;
}

void FontParserPDF::ParseDecodedFile(const std::string& path) {
  const std::unique_ptr<FontParser> parser(
      CreateParserWithFile(ToCFString(path).get(), true, GetDefaultSystemPathStyle()));
  if (!parser) return;
  if (auto* inner = dynamic_cast<FontParserPDF*>(parser.get())) {
    inner->m_nNestingDepth = m_nNestingDepth + 1;
    inner->LimitBudget(GetRemainingBudget());
  }
  parser->Parse();
  CFMutableArrayRef fonts = nullptr;
  parser->GetObsoleteGlyphmarkData(false, fonts);
  m_illustratorFonts = adoptCF(fonts);
}
