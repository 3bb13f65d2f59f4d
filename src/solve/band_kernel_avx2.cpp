// The band kernel for processors with AVX2 and FMA; compiled with the compiler's options for them.

#include <immintrin.h>

#include "solve/band_kernel_tiles.hpp"

namespace velmor {
namespace {

struct Avx2 {
  using Vector = __m256d;
  using Mask = __m256i;  // all bits of a lane set or none
  static constexpr int Lanes = 4;

  static Vector Zero() { return _mm256_setzero_pd(); }
  static Vector Set(double x) { return _mm256_set1_pd(x); }
  static Vector Load(const double* p) { return _mm256_loadu_pd(p); }
  static void Store(double* p, Vector x) { _mm256_storeu_pd(p, x); }
  static Vector Load(const double* p, Mask lanes) { return _mm256_maskload_pd(p, lanes); }
  static void Store(double* p, Mask lanes, Vector x) { _mm256_maskstore_pd(p, lanes, x); }
  static Vector Choose(Vector a, Vector b, Mask lanes) { return _mm256_blendv_pd(a, b, _mm256_castsi256_pd(lanes)); }
  static Vector Multiply(Vector a, Vector b) { return _mm256_mul_pd(a, b); }
  static Vector SubtractProduct(Vector x, Vector a, Vector b) { return _mm256_fnmadd_pd(a, b, x); }
  static Vector Divide(Vector a, Vector b, Mask lanes) { return Choose(a, _mm256_div_pd(a, b), lanes); }
  static Vector Max(Vector a, Vector b, Mask lanes) { return Choose(a, _mm256_max_pd(a, b), lanes); }
  static Vector Keep(Vector a, Mask lanes) { return Choose(Zero(), a, lanes); }

  static Mask First(int n) {
    const int count = n < 0 ? 0 : n < Lanes ? n : Lanes;
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(OnThenOff + Lanes - count));
  }
  static Mask From(int n) { return _mm256_xor_si256(First(n), _mm256_set1_epi64x(-1)); }
  static Mask And(Mask a, Mask b) { return _mm256_and_si256(a, b); }
  static Mask NonZero(Vector a) { return _mm256_castpd_si256(_mm256_cmp_pd(a, Zero(), _CMP_NEQ_UQ)); }
  static bool Any(Mask lanes) { return _mm256_movemask_epi8(lanes) != 0; }

 private:
  static constexpr long long OnThenOff[2 * Lanes] = {-1, -1, -1, -1, 0, 0, 0, 0};
};

}  // namespace

constinit const BandKernel Avx2Kernel = MakeBandKernel<Avx2>(400);

}  // namespace velmor
