#pragma once

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <cstddef>
#include <string>

/// What all objects are made of. For the sources of this folder only.
namespace cf {

enum TypeNumber : CFTypeID {
  kNoType,
  kStringType,
  kNumberType,
  kBooleanType,
  kNullType,
  kArrayType,
  kDictionaryType,
  kSetType,
  kDataType,
  kDateType,
  kURLType,
  kUUIDType,
  kErrorType,
  kBundleType,
  kRunLoopType,
  kRunLoopTimerType,
  kTypeCount
};

/// "CFString"; null when there is no such type.
const char* TypeName(CFTypeID type);

/// The count of live objects of a type that aren't constants.
long LiveCount(TypeNumber type);

/// Ends the program with a message.
[[noreturn]] void Die(const char* what, const void* object);

/// An object with its count, made with one reference. Classes derive from it alone, so that the address of
/// the object is that of this base.
class Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  TypeNumber Type() const { return type_; }

  /// `other` has the same type.
  virtual bool Equals(const Object& other) const { return this == &other; }
  virtual CFHashCode Hash() const;
  virtual bool IsMutable() const { return false; }
  /// UTF-8. Containers say what they hold down to `depth` levels.
  virtual std::string Describe(int depth) const;

  void Retain() const;
  void Release() const;
  /// Adds a reference unless the object is already on its way out.
  bool RetainIfLive() const;
  long Count() const;

  /// Lives for ever from now on, and isn't counted among the live objects.
  void MakeConstant();
  bool IsCounted() const { return counted_; }

  /// Ends the program when the object is gone.
  void CheckAlive() const {
    if (mark_ != kAlive) Die("use of an object that is gone, or of something that never was one", this);
  }

  static void* operator new(size_t size);
  static void operator delete(void* memory);

 protected:
  explicit Object(TypeNumber type);
  virtual ~Object();

 private:
  static constexpr UInt32 kAlive = 0x46436C76;
  static constexpr long kConstant = 1L << 60;

  mutable std::atomic<long> count_{1};
  UInt32 mark_ = kAlive;
  const TypeNumber type_;
  bool counted_;
};

/// Objects that this thread makes within the scope aren't counted as live: what the platform keeps for good.
class UncountedScope {
 public:
  explicit UncountedScope(bool uncounted = true);
  ~UncountedScope();
  UncountedScope(const UncountedScope&) = delete;
  UncountedScope& operator=(const UncountedScope&) = delete;

 private:
  bool before_;
};

/// The checked way from a reference to the object: null for NULL and for other types.
template <typename T>
const T* Cast(CFTypeRef reference) {
  if (reference == nullptr) return nullptr;
  const auto* object = static_cast<const Object*>(reference);
  object->CheckAlive();
  return object->Type() == T::kType ? static_cast<const T*>(object) : nullptr;
}

/// As above, and null for an object that may not be changed.
template <typename T>
T* CastMutable(T* reference) {
  const T* object = Cast<T>(reference);
  return object != nullptr && object->IsMutable() ? reference : nullptr;
}

/// Whether the range lies wholly within `count` things.
inline bool IsWithin(CFRange range, size_t count) {
  const auto end = static_cast<CFIndex>(count);
  return range.location >= 0 && range.length >= 0 && range.location <= end &&
         range.length <= end - range.location;
}

/// The part of the range that lies within `count` things; empty at the start when there is none.
inline CFRange Cut(CFRange range, size_t count) {
  const auto end = static_cast<CFIndex>(count);
  if (range.location < 0 || range.length <= 0 || range.location >= end) return {0, 0};
  return {range.location, range.length < end - range.location ? range.length : end - range.location};
}

}  // namespace cf
