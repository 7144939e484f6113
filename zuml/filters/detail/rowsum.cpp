#include "zuml/filters/detail/rowsum.h"

#include <immintrin.h>

#include <cstring>

namespace zuml_detail {
namespace {

#ifdef __AVX2__
using Register = __m256i;
inline Register Load(const void* p) { return _mm256_loadu_si256(static_cast<const Register*>(p)); }
inline void Store(void* p, Register v) { _mm256_storeu_si256(static_cast<Register*>(p), v); }
inline Register Add(Register a, Register b) { return _mm256_add_epi32(a, b); }
inline Register MultiplyAdd(Register a, Register b) { return _mm256_madd_epi16(a, b); }
inline Register Low(Register a, Register b) { return _mm256_unpacklo_epi16(a, b); }
inline Register High(Register a, Register b) { return _mm256_unpackhi_epi16(a, b); }
inline Register Splat(std::int32_t v) { return _mm256_set1_epi32(v); }
// Interleaving works in halves of 128 bits, so that the sums lie 0-3 8-11, 4-7 12-15.
inline void StoreSums(std::uint32_t* r, Register low, Register high) {
  Store(r, _mm256_permute2x128_si256(low, high, 0x20));
  Store(r + 8, _mm256_permute2x128_si256(low, high, 0x31));
}
#else
using Register = __m128i;
inline Register Load(const void* p) { return _mm_loadu_si128(static_cast<const Register*>(p)); }
inline void Store(void* p, Register v) { _mm_storeu_si128(static_cast<Register*>(p), v); }
inline Register Add(Register a, Register b) { return _mm_add_epi32(a, b); }
inline Register MultiplyAdd(Register a, Register b) { return _mm_madd_epi16(a, b); }
inline Register Low(Register a, Register b) { return _mm_unpacklo_epi16(a, b); }
inline Register High(Register a, Register b) { return _mm_unpackhi_epi16(a, b); }
inline Register Splat(std::int32_t v) { return _mm_set1_epi32(v); }
inline void StoreSums(std::uint32_t* r, Register low, Register high) {
  Store(r, low);
  Store(r + 4, high);
}
#endif

constexpr std::ptrdiff_t kLanes = sizeof(Register) / sizeof(std::int16_t);

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
    Register low[N], high[N];
    ((low[K] = high[K] = Splat(0)), ...);
    for (std::size_t k = 0; k < count; k += 2) {
      const Register w = Splat(PairOf(weights + k));
      const std::int16_t* p = pixels[k] + x;
      const std::int16_t* q = pixels[k + 1] + x;
      const auto add = [&](Register& l, Register& h, std::ptrdiff_t i) {
        const Register a = Load(p + i), b = Load(q + i);
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
