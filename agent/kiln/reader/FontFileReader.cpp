#include "kiln/reader/FontFileReader.h"

#include <fcntl.h>
#include <ft2build.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>
#include FT_FREETYPE_H

#include <array>
#include <cerrno>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kiln/reader/FaceReader.h"
#include "kiln/reader/FontChecksums.h"
#include "kiln/reader/FontContainer.h"
#include "protocol/ErrorCodes.h"

namespace kiln {
namespace {

constexpr off_t kLargestFile = 512 << 20;
constexpr off_t kLargestMetrics = 16 << 20;
constexpr size_t kKeptBuffer = 32u << 20;
constexpr FT_Long kMostFaces = 256;
constexpr int kMostRecords = 1024;

using Bytes = std::vector<uint8_t>;

// All of a regular file, in memory: a file that shrinks while it is read must not end the process as a mapped
// one would.
uint32_t ReadAll(const std::string& path, off_t largest, Bytes& out) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return errno == ENOENT || errno == ENOTDIR ? codes::kFileNotFound : codes::kOpenFailed;
  struct stat found {};
  uint32_t error = codes::kSuccess;
  if (fstat(file, &found) != 0) {
    error = codes::kOpenFailed;
  } else if (!S_ISREG(found.st_mode) || found.st_size == 0 || found.st_size > largest) {
    error = codes::kNotAFontFile;
  } else {
    out.resize(static_cast<size_t>(found.st_size));
    size_t filled = 0;
    while (filled < out.size()) {
      const ssize_t count = read(file, out.data() + filled, out.size() - filled);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) error = codes::kOpenFailed;
      if (count <= 0) break;
      filled += static_cast<size_t>(count);
    }
    out.resize(filled);
  }
  close(file);
  return error;
}

uint32_t WriteCopy(const std::string& path, std::span<const uint8_t> bytes) {
  const auto codeOf = [](int error) {
    return error == ENOSPC || error == EDQUOT ? codes::kDiskFull : codes::kFileSystemError;
  };
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return codeOf(errno);
  int error = 0;
  while (!bytes.empty() && error == 0) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count > 0) {
      bytes = bytes.subspan(static_cast<size_t>(count));
    } else if (errno != EINTR) {
      error = errno;
    }
  }
  if (close(file) != 0 && error == 0) error = errno;
  if (error == 0) return codes::kSuccess;
  unlink(path.c_str());
  return codeOf(error);
}

// False when the library of digests has none of this kind.
bool AddDigest(std::span<const uint8_t> bytes, wire::ReadFile& out) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha256(), nullptr) != 1)
    return false;
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (unsigned int i = 0; i < length; ++i) {
    text.push_back(kDigits[digest[i] >> 4]);
    text.push_back(kDigits[digest[i] & 0xF]);
  }
  out.set_sha256(text);
  uint32_t checksum = 0;
  for (int i = 0; i < 4; ++i) checksum = (checksum << 8) | digest[i];
  out.set_checksum(checksum);
  return true;
}

// The metrics of a Type 1 font lie beside it under its name with ".afm".
std::optional<Bytes> MetricsBeside(const std::string& path) {
  const size_t dot = path.rfind('.');
  const size_t slash = path.rfind('/');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return std::nullopt;
  for (const char* extension : {".afm", ".AFM"}) {
    Bytes metrics;
    if (ReadAll(path.substr(0, dot) + extension, kLargestMetrics, metrics) == 0) return metrics;
  }
  return std::nullopt;
}

struct FaceDeleter {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Face = std::unique_ptr<FT_FaceRec_, FaceDeleter>;

Face OpenFace(FT_Library library, const Bytes& file, FT_Long index, FT_Error& error) {
  FT_Face face = nullptr;
  error = FT_New_Memory_Face(library, file.data(), static_cast<FT_Long>(file.size()), index, &face);
  return Face(error == 0 ? face : nullptr);
}

bool ReadOneFace(FT_Face face, FT_Long index, const Bytes& file, const std::optional<Bytes>& metrics,
                 wire::ReadFile& out) {
  wire::ReadFace record;
  record.set_face_index(static_cast<uint32_t>(index));
  if (!ReadFaceNames(face, record)) return false;
  // The first glyph is the one that every font must have; one that can't be loaded is damage.
  if (FT_Load_Glyph(face, 0, FT_LOAD_NO_SCALE) != 0) return false;
  record.set_glyphmark_checksum(GlyphMarkChecksum(face, static_cast<uint32_t>(index >> 16), file));
  record.set_kerning_checksum(metrics ? KerningChecksum(std::string_view(
                                            reinterpret_cast<const char*>(metrics->data()), metrics->size()))
                                      : KerningChecksum(face));
  *out.add_faces() = std::move(record);
  return true;
}

uint32_t ReadFaces(FT_Library library, const Bytes& file, const std::optional<Bytes>& metrics,
                   wire::ReadFile& out) {
  FT_Long faces = 1;
  for (FT_Long i = 0; i < faces; ++i) {
    FT_Error error = 0;
    const Face face = OpenFace(library, file, i, error);
    if (!face) return error == FT_Err_Unknown_File_Format ? codes::kNotAFontFile : codes::kCorrupt;
    if (i == 0) faces = std::min(face->num_faces, kMostFaces);
    if (!ReadOneFace(face.get(), i, file, metrics, out)) return codes::kCorrupt;
    const FT_Long instances = FT_IS_NAMED_INSTANCE(face.get()) ? 0 : face->style_flags >> 16;
    for (FT_Long instance = 1; instance <= instances && out.faces_size() < kMostRecords; ++instance) {
      const FT_Long index = (instance << 16) | i;
      const Face named = OpenFace(library, file, index, error);
      if (named) ReadOneFace(named.get(), index, file, metrics, out);
    }
  }
  return codes::kSuccess;
}

wire::ReadFile Failed(uint32_t error) {
  wire::ReadFile result;
  result.set_error(error);
  return result;
}

}  // namespace

struct FontFileReader::Engine {
  FT_Library library = nullptr;
  Bytes file;
};

FontFileReader::FontFileReader() : mEngine(std::make_unique<Engine>()) {
  FT_Init_FreeType(&mEngine->library);
}

FontFileReader::~FontFileReader() {
  FT_Done_FreeType(mEngine->library);
}

wire::ReadFile FontFileReader::Read(const wire::ReaderJob& job) {
  // One buffer for all files spares the system the handing out of fresh memory for each; a huge one is given
  // back.
  Bytes& file = mEngine->file;
  if (file.capacity() > kKeptBuffer) Bytes().swap(file);
  if (const uint32_t error = ReadAll(job.path(), kLargestFile, file)) return Failed(error);
  const FontContainer container = ContainerOf(file);
  if (container == FontContainer::kNone) return Failed(codes::kNotAFontFile);
  if (container == FontContainer::kSfnt && !TablesAreWithin(file)) return Failed(codes::kCorrupt);
  std::optional<Bytes> metrics;
  if (container == FontContainer::kType1) metrics = MetricsBeside(job.path());

  wire::ReadFile result;
  if (!AddDigest(file, result)) return Failed(codes::kError);
  result.set_size(file.size());
  // Before the engine has touched the bytes, so that the copy is what the hash says.
  if (!job.copy_to().empty()) {
    if (const uint32_t error = WriteCopy(job.copy_to(), file)) return Failed(error);
    if (metrics && WriteCopy(job.copy_to() + ".afm", *metrics) == 0) result.set_has_metrics(true);
  }
  const uint32_t error = ReadFaces(mEngine->library, file, metrics, result);
  if (error == codes::kSuccess) return result;
  if (!job.copy_to().empty()) {
    unlink(job.copy_to().c_str());
    if (result.has_metrics()) unlink((job.copy_to() + ".afm").c_str());
  }
  return Failed(error);
}

}  // namespace kiln
