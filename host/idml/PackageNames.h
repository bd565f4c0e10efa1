#pragma once

/// The names that the format fixes, and ours.
namespace idml {

inline constexpr char kMimeTypePart[] = "mimetype";
inline constexpr char kMimeType[] = "application/vnd.adobe.indesign-idml-package";
inline constexpr char kDesignMapPart[] = "designmap.xml";

/// What is stored under a name lies in a part of its own, which other programs leave alone: the design map
/// doesn't name it, and META-INF is the place for such parts (OpenDocument packages, part 3, section 3.2).
inline constexpr char kStoredPartPrefix[] = "META-INF/com.hornbeam.";

}  // namespace idml
