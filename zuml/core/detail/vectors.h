/// Vectors of pixels, as wide as the processor's registers that the library is compiled for. They
/// stay inside this source: what they compute is the same for every width.
#pragma once

#include <cstddef>
#include <cstring>

namespace zuml_detail {

#ifdef __AVX2__
inline constexpr std::size_t kVectorBytes = 32;
#else
inline constexpr std::size_t kVectorBytes = 16;
#endif

/// As many T as fill `Bytes`, by default a register.
template <class T, std::size_t Bytes = kVectorBytes>
struct VectorOf {
  typedef T Type __attribute__((vector_size(Bytes)));
  static constexpr std::ptrdiff_t kLanes = Bytes / sizeof(T);
};
template <class T, std::size_t Bytes = kVectorBytes>
using Vector = typename VectorOf<T, Bytes>::Type;

/// A vector of the pixels from p on, or one pixel; p need not be aligned.
template <class V, class T>
[[gnu::always_inline]] inline V LoadVector(const T* p) {
  V v;
  std::memcpy(&v, p, sizeof(V));
  return v;
}
template <class V, class T>
[[gnu::always_inline]] inline void StoreVector(T* p, const V& v) {
  std::memcpy(p, &v, sizeof(V));
}

}  // namespace zuml_detail
