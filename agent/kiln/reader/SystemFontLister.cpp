#include "kiln/reader/SystemFontLister.h"

#include <fontconfig/fontconfig.h>
#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <string_view>

#include "kiln/reader/FontText.h"
#include "kiln/reader/FrameStream.h"
#include "kiln/system/Utf8.h"
#include "protocol/FontReading.pb.h"

namespace kiln {
namespace {

struct ConfigDeleter {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};

// UTF-8 as fontconfig keeps it, for a message that takes nothing else.
std::string Text(const FcPattern* pattern, const char* object, int index = 0) {
  FcChar8* value = nullptr;
  if (FcPatternGetString(pattern, object, index, &value) != FcResultMatch) return {};
  std::string text(reinterpret_cast<const char*>(value));
  return IsUtf8(text) ? text : TextFromAscii(text);
}

// fontconfig has the version as the 16.16 number of the font's header.
std::string VersionText(const FcPattern* pattern) {
  int version = 0;
  if (FcPatternGetInteger(pattern, FC_FONTVERSION, 0, &version) != FcResultMatch || version <= 0) return {};
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", version / 65536.0);
  return text;
}

wire::FontKind KindOf(const FcPattern* pattern) {
  const std::string format = Text(pattern, FC_FONTFORMAT);
  if (format == "TrueType") return wire::FONT_KIND_TRUETYPE;
  if (format == "CFF") return wire::FONT_KIND_OPENTYPE;
  return format == "Type 1" || format == "CID Type 1" ? wire::FONT_KIND_POSTSCRIPT : wire::FONT_KIND_UNKNOWN;
}

bool Describe(const FcPattern* pattern, const std::string& excluded, wire::SystemFace& out) {
  out.set_path(Text(pattern, FC_FILE));
  const std::string_view path = out.path();
  if (path.empty() || (path.starts_with(excluded) && path.substr(excluded.size()).starts_with("/")))
    return false;
  FcBool variable = FcFalse;
  FcPatternGetBool(pattern, FC_VARIABLE, 0, &variable);
  wire::ReadFace& face = *out.mutable_face();
  face.set_postscript_name(PostScriptNameFrom(Text(pattern, FC_POSTSCRIPT_NAME)));
  face.set_kind(KindOf(pattern));
  if (variable || face.postscript_name().empty() || face.kind() == wire::FONT_KIND_UNKNOWN) return false;
  int index = 0;
  FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
  face.set_face_index(static_cast<uint32_t>(index));
  // The typographic family stands first, the four-style one behind it where they differ.
  face.set_family_group_name(Text(pattern, FC_FAMILY));
  const std::string second = Text(pattern, FC_FAMILY, 1);
  face.set_family(second.empty() ? face.family_group_name() : second);
  face.set_style(Text(pattern, FC_STYLE));
  face.set_display_name(Text(pattern, FC_FULLNAME));
  face.set_foundry(Text(pattern, FC_FOUNDRY));
  face.set_version(VersionText(pattern));
  struct stat found {};
  if (stat(out.path().c_str(), &found) != 0) return false;
  out.set_size(static_cast<uint64_t>(found.st_size));
  out.set_modified(int64_t{found.st_mtim.tv_sec} * 1'000'000'000 + found.st_mtim.tv_nsec);
  return true;
}

}  // namespace

bool ListSystemFonts(const std::string& excluded, int descriptor) {
  const std::unique_ptr<FcConfig, ConfigDeleter> config(FcInitLoadConfigAndFonts());
  if (!config) return false;
  FcStrList* folders = FcConfigGetFontDirs(config.get());
  while (const FcChar8* folder = folders ? FcStrListNext(folders) : nullptr) {
    wire::SystemListing listing;
    listing.set_folder(reinterpret_cast<const char*>(folder));
    if (!IsUtf8(listing.folder())) continue;
    if (!WriteFrame(descriptor, listing)) break;
  }
  if (folders) FcStrListDone(folders);
  const FcFontSet* fonts = FcConfigGetFonts(config.get(), FcSetSystem);
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    wire::SystemListing listing;
    if (!Describe(fonts->fonts[i], excluded, *listing.mutable_face())) continue;
    if (!WriteFrame(descriptor, listing)) return false;
  }
  return true;
}

}  // namespace kiln
