#pragma once

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <type_traits>
#include <utility>

template <typename T>
class RetainPtr;

/// Takes over the reference that a Create or Copy function gave.
template <typename T>
[[nodiscard]] RetainPtr<T> adoptCF(T object);

/// Adds a reference to an object that a Get function or a caller gave.
template <typename T>
[[nodiscard]] RetainPtr<T> retainCF(T object);

/// Holds one reference to an object, or none. T is the reference type: RetainPtr<CFStringRef>.
///
/// adoptCF() and retainCF() are the only ways in, so that each place says which of the two it means.
template <typename T>
class RetainPtr {
  static_assert(std::is_convertible_v<T, CFTypeRef>, "T is a reference type: RetainPtr<CFStringRef>");

 public:
  constexpr RetainPtr() noexcept = default;
  constexpr RetainPtr(std::nullptr_t) noexcept {}
  RetainPtr(const RetainPtr& other) : object_(other.object_) { Retain(); }
  RetainPtr(RetainPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

  /// From a type whose references convert: a mutable one to its immutable one, any to CFTypeRef.
  template <typename U, typename = std::enable_if_t<std::is_convertible_v<U, T>>>
  RetainPtr(const RetainPtr<U>& other) : object_(other.get()) {
    Retain();
  }
  template <typename U, typename = std::enable_if_t<std::is_convertible_v<U, T>>>
  RetainPtr(RetainPtr<U>&& other) noexcept : object_(other.leakRef()) {}

  ~RetainPtr() {
    if (object_ != nullptr) CFRelease(object_);
  }

  RetainPtr& operator=(RetainPtr other) noexcept {
    swap(other);
    return *this;
  }

  [[nodiscard]] T get() const noexcept { return object_; }

  /// Hands the reference to whoever takes the result; this is empty afterwards.
  [[nodiscard]] T leakRef() noexcept { return std::exchange(object_, nullptr); }

  explicit operator bool() const noexcept { return object_ != nullptr; }

  void swap(RetainPtr& other) noexcept { std::swap(object_, other.object_); }

  /// The same object, not merely an equal one.
  friend bool operator==(const RetainPtr& a, const RetainPtr& b) noexcept { return a.object_ == b.object_; }
  friend bool operator==(const RetainPtr& a, std::nullptr_t) noexcept { return a.object_ == nullptr; }

 private:
  explicit RetainPtr(T object) noexcept : object_(object) {}
  void Retain() {
    if (object_ != nullptr) CFRetain(object_);
  }

  friend RetainPtr adoptCF<T>(T object);
  friend RetainPtr retainCF<T>(T object);

  T object_ = nullptr;
};

template <typename T>
RetainPtr<T> adoptCF(T object) {
  return RetainPtr<T>(object);
}

template <typename T>
RetainPtr<T> retainCF(T object) {
  if (object != nullptr) CFRetain(object);
  return RetainPtr<T>(object);
}

template <typename T>
void swap(RetainPtr<T>& a, RetainPtr<T>& b) noexcept {
  a.swap(b);
}
