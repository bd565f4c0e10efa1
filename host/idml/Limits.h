#pragma once

#include <cstddef>
#include <cstdint>

/// What a package may ask of its reader. A real document stays far below each of these; a package beyond one
/// is refused with a message, so that no file costs more memory or time than they allow.
namespace idml::limits {

/// Entries in the package's directory. A newspaper of hundreds of pages has some thousands.
inline constexpr std::uint64_t kMaximumEntries = 20'000;

/// One part, unpacked, in bytes.
inline constexpr std::uint64_t kMaximumPartSize = 64ULL << 20;

/// All parts that are read of one package, unpacked, in bytes.
inline constexpr std::uint64_t kMaximumTotalSize = 512ULL << 20;

/// Unpacked size over packed size of a part above kRatioFreeSize. XML text reaches about 40; deflate itself
/// ends near 1030.
inline constexpr std::uint64_t kMaximumRatio = 300;

/// Parts up to this size, unpacked, may have any ratio.
inline constexpr std::uint64_t kRatioFreeSize = 1ULL << 20;

/// Elements inside one another. Tables in tables in anchored groups come to about 40.
inline constexpr int kMaximumDepth = 256;

/// Faces listed in Resources/Fonts.xml.
inline constexpr std::size_t kMaximumFonts = 32'768;

/// Pairs of family and style that text is set in. A type specimen of a large foundry comes to about 3,000.
inline constexpr std::size_t kMaximumUsedFonts = 8'192;

/// Paragraph and character styles together.
inline constexpr std::size_t kMaximumStyles = 20'000;

/// Styles that one paragraph style puts on the beginning of its paragraphs; more are not looked at.
inline constexpr std::size_t kMaximumNestedStyles = 16;

/// Links of all spreads and stories.
inline constexpr std::size_t kMaximumLinks = 200'000;

/// A name of a family, style or font, in bytes. A longer one is no name.
inline constexpr std::size_t kMaximumNameLength = 1'024;

/// What may be stored under one name by PackageWriter, in bytes.
inline constexpr std::size_t kMaximumStoredSize = 16u << 20;

}  // namespace idml::limits
