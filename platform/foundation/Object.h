#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/foundation/recycle.h"

namespace quorin {

/// A counted object: whoever holds a `Ref` to it keeps it alive.
/// Counts are plain numbers: an object belongs to one thread at a time, and moves to another only
/// through a queue.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// True for the object itself; values override it.
  [[nodiscard]] virtual bool isEqual(const Object& other) const { return this == &other; }

  /// Equal objects have equal hashes.
  [[nodiscard]] virtual std::uint64_t hash() const {
    return reinterpret_cast<std::uintptr_t>(this);
  }

  void retain() const { ++_references; }
  void release() const {
    if (dropReference()) delete this;
  }
  [[nodiscard]] std::uint32_t references() const { return _references; }

  static void* operator new(std::size_t size) { return takeMemory(size); }
  static void* operator new(std::size_t /*size*/, void* memory) { return memory; }
  static void operator delete(void* memory, std::size_t size) { giveMemory(memory, size); }

 protected:
  /// Whether that was the last one.
  [[nodiscard]] bool dropReference() const { return --_references == 0; }

 private:
  friend class Part;
  mutable std::uint32_t _references = 0;
  std::uint32_t _distance = 0;  // of a part: from what it lies in
};

/// An object that may lie in another's memory, and then counts, lives and ends with that one.
class Part : public Object {
 public:
  void retain() const { ++whole()._references; }
  void release() const {
    const Part& counted = whole();
    if (--counted._references == 0) delete &counted;
  }
  [[nodiscard]] std::uint32_t references() const { return whole()._references; }
  [[nodiscard]] bool isWhole() const { return _distance == 0; }

 protected:
  Part() = default;
  /// Requires: it lies in the memory that begins at `whole`.
  explicit Part(const void* whole) { layIn(whole); }
  void layIn(const void* whole) {
    _distance = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this) -
                                           reinterpret_cast<std::uintptr_t>(whole));
  }

  [[nodiscard]] const Part& whole() const {
    return *reinterpret_cast<const Part*>(reinterpret_cast<std::uintptr_t>(this) - _distance);
  }
};

/// A strong reference to an `Object`, or null.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  explicit Ref(T* object) : _object(object) {
    if (_object) _object->retain();
  }
  Ref(const Ref& other) : Ref(other._object) {}
  Ref(Ref&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
      : Ref(static_cast<T*>(other.get())) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
  noexcept : _object(other.take()) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(_object, other._object);
    return *this;
  }
  ~Ref() {
    if (_object) _object->release();
  }

  [[nodiscard]] T* get() const { return _object; }
  /// Gives the reference to the caller.
  [[nodiscard]] T* take() { return std::exchange(_object, nullptr); }
  T& operator*() const { return *_object; }
  T* operator->() const { return _object; }
  /// Takes over a reference.
  [[nodiscard]] static Ref owning(T* object) {
    Ref ref;
    ref._object = object;
    return ref;
  }
  explicit operator bool() const { return _object != nullptr; }
  friend bool operator==(const Ref& a, const Ref& b) { return a._object == b._object; }

 private:
  T* _object = nullptr;
};

/// A new object. A class whose objects differ in size makes them itself.
template <class T, class... Args>
[[nodiscard]] [[gnu::always_inline]] inline Ref<T> make(Args&&... args) {
  if constexpr (requires { T::create(std::forward<Args>(args)...); })
    return T::create(std::forward<Args>(args)...);
  else if constexpr (sizeof...(Args) == 0)
    return Ref<T>(new T);  // without (), which would clear its memory once more
  else
    return Ref<T>(new T(std::forward<Args>(args)...));
}

/// Null on both sides, or equal.
template <class T>
[[nodiscard]] bool areEqual(const Ref<T>& a, const Ref<T>& b) {
  return a && b ? a->isEqual(*b) : !a && !b;
}

}  // namespace quorin
