#include "kiln/reader/FaceReader.h"

#include FT_FONT_FORMATS_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H
#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

#include <span>
#include <string>
#include <string_view>

#include "kiln/reader/FontText.h"

namespace kiln {
namespace {

std::string Decoded(const FT_SfntName& name) {
  const bool wide =
      name.platform_id == TT_PLATFORM_MICROSOFT || name.platform_id == TT_PLATFORM_APPLE_UNICODE;
  if (wide) return TextFromUtf16({name.string, name.string_len});
  return TextFromAscii({reinterpret_cast<const char*>(name.string), name.string_len});
}

// English first, since documents are written against those names.
int Rank(const FT_SfntName& name) {
  if (name.platform_id == TT_PLATFORM_MICROSOFT) {
    if (name.language_id == TT_MS_LANGID_ENGLISH_UNITED_STATES) return 4;
    constexpr FT_UShort kPrimaryLanguage = 0x3FF;
    return (name.language_id & kPrimaryLanguage) == 0x009 ? 3 : 1;
  }
  if (name.platform_id == TT_PLATFORM_MACINTOSH) return name.language_id == TT_MAC_LANGID_ENGLISH ? 2 : 0;
  return 1;
}

std::string SfntName(FT_Face face, FT_UShort id) {
  int best = -1;
  std::string text;
  const FT_UInt count = FT_Get_Sfnt_Name_Count(face);
  for (FT_UInt i = 0; i < count; ++i) {
    FT_SfntName name{};
    if (FT_Get_Sfnt_Name(face, i, &name) != 0 || name.name_id != id || Rank(name) <= best) continue;
    std::string candidate = Decoded(name);
    if (candidate.empty()) continue;
    text = std::move(candidate);
    best = Rank(name);
  }
  return text;
}

std::string VendorID(FT_Face face) {
  const auto* table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  if (!table || table->version == 0xFFFF) return {};
  return TextFromAscii({reinterpret_cast<const char*>(table->achVendID), sizeof table->achVendID});
}

void ReadSfntNames(FT_Face face, wire::ReadFace& out) {
  out.set_family(SfntName(face, TT_NAME_ID_FONT_FAMILY));
  out.set_style(SfntName(face, TT_NAME_ID_TYPOGRAPHIC_SUBFAMILY));
  if (out.style().empty()) out.set_style(SfntName(face, TT_NAME_ID_FONT_SUBFAMILY));
  out.set_display_name(SfntName(face, TT_NAME_ID_FULL_NAME));
  out.set_family_group_name(SfntName(face, TT_NAME_ID_TYPOGRAPHIC_FAMILY));
  out.set_version(VersionFrom(SfntName(face, TT_NAME_ID_VERSION_STRING)));
  out.set_foundry(SfntName(face, TT_NAME_ID_MANUFACTURER));
  if (out.foundry().empty()) out.set_foundry(VendorID(face));
}

// Type 1 fonts name no maker; the notice nearly always does.
std::string FoundryInNotice(std::string_view notice) {
  constexpr std::string_view kMakers[] = {"Adobe",    "Bitstream", "URW",  "Linotype", "Monotype", "ITC",
                                          "Berthold", "Bigelow",   "Type", "FontFont", "Emigre"};
  for (const std::string_view maker : kMakers) {
    if (notice.find(maker) != std::string_view::npos) return std::string(maker);
  }
  return {};
}

void ReadType1Names(FT_Face face, wire::ReadFace& out) {
  PS_FontInfoRec info{};
  if (FT_Get_PS_Font_Info(face, &info) != 0) return;
  const auto text = [](const char* value) { return value ? TextFromAscii(value) : std::string(); };
  out.set_version(VersionFrom(text(info.version)));
  out.set_display_name(text(info.full_name));
  out.set_family(text(info.family_name));
  out.set_foundry(FoundryInNotice(text(info.notice)));
}

wire::FontKind KindOf(FT_Face face) {
  const char* format = FT_Get_Font_Format(face);
  const std::string_view name = format ? format : "";
  if (!FT_IS_SFNT(face)) return wire::FONT_KIND_POSTSCRIPT;
  return name == "TrueType" ? wire::FONT_KIND_TRUETYPE : wire::FONT_KIND_OPENTYPE;
}

}  // namespace

bool ReadFaceNames(FT_Face face, wire::ReadFace& out) {
  if (!FT_IS_SCALABLE(face) || face->num_glyphs <= 0) return false;
  out.set_kind(KindOf(face));
  if (FT_IS_SFNT(face)) {
    ReadSfntNames(face, out);
  } else {
    ReadType1Names(face, out);
  }
  if (out.family().empty() && face->family_name) out.set_family(TextFromAscii(face->family_name));
  // The engine knows the style of an instance of a variable font, which the name table's one record doesn't.
  const bool instance = (face->face_index >> 16) != 0;
  if ((out.style().empty() || instance) && face->style_name) out.set_style(TextFromAscii(face->style_name));
  if (out.family_group_name().empty()) out.set_family_group_name(out.family());
  if (out.display_name().empty() || instance) {
    out.set_display_name(out.style().empty() ? out.family() : out.family() + " " + out.style());
  }
  const char* name = FT_Get_Postscript_Name(face);
  out.set_postscript_name(PostScriptNameFrom(name ? name : ""));
  if (out.postscript_name().empty()) out.set_postscript_name(PostScriptNameFrom(out.display_name()));
  if (out.family_group_name().empty()) out.set_family_group_name(out.postscript_name());
  if (out.family().empty()) out.set_family(out.family_group_name());
  return !out.postscript_name().empty();
}

}  // namespace kiln
