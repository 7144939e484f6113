#include "zuml/filters/detail/rowsum.h"

#include <immintrin.h>

namespace zuml_detail {
namespace {

#ifdef __AVX2__
using Vector = __m256i;
inline Vector Load(const void* p) { return _mm256_loadu_si256(static_cast<const Vector*>(p)); }
inline void Store(void* p, Vector v) { _mm256_storeu_si256(static_cast<Vector*>(p), v); }
inline Vector Add(Vector a, Vector b) { return _mm256_add_epi32(a, b); }
inline Vector MultiplyAdd(Vector a, Vector b) { return _mm256_madd_epi16(a, b); }
inline Vector Low(Vector a, Vector b) { return _mm256_unpacklo_epi16(a, b); }
inline Vector High(Vector a, Vector b) { return _mm256_unpackhi_epi16(a, b); }
inline Vector Splat(std::int32_t v) { return _mm256_set1_epi32(v); }
// Interleaving works in halves of 128 bits, so that the sums lie 0-3 8-11, 4-7 12-15.
inline void StoreSums(std::uint32_t* r, Vector low, Vector high) {
  Store(r, _mm256_permute2x128_si256(low, high, 0x20));
  Store(r + 8, _mm256_permute2x128_si256(low, high, 0x31));
}
#else
using Vector = __m128i;
inline Vector Load(const void* p) { return _mm_loadu_si128(static_cast<const Vector*>(p)); }
inline void Store(void* p, Vector v) { _mm_storeu_si128(static_cast<Vector*>(p), v); }
inline Vector Add(Vector a, Vector b) { return _mm_add_epi32(a, b); }
inline Vector MultiplyAdd(Vector a, Vector b) { return _mm_madd_epi16(a, b); }
inline Vector Low(Vector a, Vector b) { return _mm_unpacklo_epi16(a, b); }
inline Vector High(Vector a, Vector b) { return _mm_unpackhi_epi16(a, b); }
inline Vector Splat(std::int32_t v) { return _mm_set1_epi32(v); }
inline void StoreSums(std::uint32_t* r, Vector low, Vector high) {
  Store(r, low);
  Store(r + 4, high);
}
#endif

constexpr std::ptrdiff_t kLanes = sizeof(Vector) / sizeof(std::int16_t);

inline std::int32_t PairOf(const std::int16_t* weights) {
  std::int32_t pair;
  std::memcpy(&pair, weights, sizeof(pair));
  return pair;
}

// N vectors of pixels from r[x] on.
template <int N>
[[gnu::always_inline]] inline void SumBlock16(std::uint32_t* r, const std::int16_t* const* pixels,
                                              const std::int16_t* weights, std::size_t count,
                                              std::ptrdiff_t x) {
  [&]<std::size_t... K>(std::index_sequence<K...>) {
    Vector low[N], high[N];
    ((low[K] = high[K] = Splat(0)), ...);
    for (std::size_t k = 0; k < count; k += 2) {
      const Vector w = Splat(PairOf(weights + k));
      const std::int16_t* p = pixels[k] + x;
      const std::int16_t* q = pixels[k + 1] + x;
      const auto add = [&](Vector& l, Vector& h, std::ptrdiff_t i) {
        const Vector a = Load(p + i), b = Load(q + i);
        l = Add(l, MultiplyAdd(Low(a, b), w));
        h = Add(h, MultiplyAdd(High(a, b), w));
      };
      (add(low[K], high[K], K * kLanes), ...);
    }
    (StoreSums(r + x + K * kLanes, low[K], high[K]), ...);
  }
  (std::make_index_sequence<N>{});
}

}  // namespace

void SumRow16(std::uint32_t* r, const std::int16_t* const* pixels, const std::int16_t* weights,
              std::size_t count, std::ptrdiff_t n) {
  std::ptrdiff_t x = 0;
  for (; n - x >= 4 * kLanes; x += 4 * kLanes) SumBlock16<4>(r, pixels, weights, count, x);
  for (; n - x >= kLanes; x += kLanes) SumBlock16<1>(r, pixels, weights, count, x);
  if (x == n) return;
  if (n >= kLanes) {  // The last results are written twice.
    SumBlock16<1>(r, pixels, weights, count, n - kLanes);
    return;
  }
  for (; x < n; ++x) {
    std::uint32_t sum = 0;
    for (std::size_t k = 0; k < count; ++k) {
      sum += static_cast<std::uint32_t>(pixels[k][x] * weights[k]);
    }
    r[x] = sum;
  }
}

}  // namespace zuml_detail
