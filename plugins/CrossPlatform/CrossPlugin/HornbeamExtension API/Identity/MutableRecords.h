#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <vector>

/// Records of an array from anywhere, to be changed in place.
namespace MutableRecords {

/// The element as a record that may be changed: an immutable one gives way to its copy in the array. Null
/// when it is no dictionary. Borrowed.
CFMutableDictionaryRef At(CFMutableArrayRef fonts, CFIndex index);

/// Takes the elements out whose flag is set, in one pass. The flags may be fewer than the elements.
void RemoveMarked(CFMutableArrayRef fonts, const std::vector<bool>& marked);

}  // namespace MutableRecords
