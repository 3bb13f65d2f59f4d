// The band kernel for processors with AVX-512F; compiled with the compiler's options for it.

#include <immintrin.h>

#include "solve/band_kernel_tiles.hpp"

namespace velmor {
namespace {

struct Avx512 {
  using Vector = __m512d;
  using Mask = __mmask8;
  static constexpr int Lanes = 8;

  static Vector Zero() { return _mm512_setzero_pd(); }
  static Vector Set(double x) { return _mm512_set1_pd(x); }
  static Vector Load(const double* p) { return _mm512_loadu_pd(p); }
  static void Store(double* p, Vector x) { _mm512_storeu_pd(p, x); }
  static Vector Load(const double* p, Mask lanes) { return _mm512_maskz_loadu_pd(lanes, p); }
  static void Store(double* p, Mask lanes, Vector x) { _mm512_mask_storeu_pd(p, lanes, x); }
  static Vector Choose(Vector a, Vector b, Mask lanes) { return _mm512_mask_mov_pd(a, lanes, b); }
  static Vector Multiply(Vector a, Vector b) { return _mm512_mul_pd(a, b); }
  static Vector SubtractProduct(Vector x, Vector a, Vector b) { return _mm512_fnmadd_pd(a, b, x); }
  static Vector Divide(Vector a, Vector b, Mask lanes) { return _mm512_mask_div_pd(a, lanes, a, b); }
  static Vector Max(Vector a, Vector b, Mask lanes) { return _mm512_mask_max_pd(a, lanes, a, b); }
  static Vector Keep(Vector a, Mask lanes) { return _mm512_maskz_mov_pd(lanes, a); }

  static Mask First(int n) {
    const int count = n < 0 ? 0 : n < Lanes ? n : Lanes;
    return static_cast<Mask>((1 << count) - 1);
  }
  static Mask From(int n) { return static_cast<Mask>(~First(n)); }
  static Mask And(Mask a, Mask b) { return a & b; }
  static Mask NonZero(Vector a) { return _mm512_cmp_pd_mask(a, Zero(), _CMP_NEQ_UQ); }
  static bool Any(Mask lanes) { return lanes != 0; }
};

}  // namespace

constinit const BandKernel Avx512Kernel = MakeBandKernel<Avx512>(1300);

}  // namespace velmor
