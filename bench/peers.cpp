#include "peers.hpp"

#include <algorithm>
#include <vector>

#include "support.hpp"

#ifdef VELMOR_OPENBLAS
extern "C" {
void dpbtrf_(const char*, const int*, const int*, double*, const int*, int*, std::size_t);
void dpbtrs_(const char*, const int*, const int*, const int*, const double*, const int*, double*, const int*, int*,
             std::size_t);
void dgemm_(const char*, const char*, const int*, const int*, const int*, const double*, const double*, const int*,
            const double*, const int*, const double*, double*, const int*, std::size_t, std::size_t);
void openblas_set_num_threads(int);
char* openblas_get_corename();
}
#endif

namespace velmor::bench {

#ifdef VELMOR_OPENBLAS

double PeerSeconds(const Pattern& pattern, int loadCases) {
  const int n = pattern.equations, ld = pattern.width, diagonals = ld - 1;
  static std::vector<double> band, loads;  // a lower band by columns
  band.assign(static_cast<std::size_t>(ld) * static_cast<std::size_t>(n), 0.0);
  loads.assign(static_cast<std::size_t>(loadCases) * static_cast<std::size_t>(n), 1.0);
  for (std::size_t e = 0; e < pattern.rows.size(); ++e) {
    std::copy(pattern.rows[e].begin(), pattern.rows[e].end(), band.begin() + static_cast<std::ptrdiff_t>(e) * ld);
  }
  openblas_set_num_threads(1);
  int info = 0;
  return Timed([&] {
    dpbtrf_("L", &n, &diagonals, band.data(), &ld, &info, 1);
    dpbtrs_("L", &n, &diagonals, &loadCases, band.data(), &ld, loads.data(), &n, &info, 1);
  })();
}

double MultiplicationRate() {
  constexpr int n = 1024;
  static const std::vector<double> a(std::size_t{n} * n, 0.5), b(std::size_t{n} * n, 0.25);
  static std::vector<double> c(std::size_t{n} * n);
  openblas_set_num_threads(1);
  const double one = 1, zero = 0;
  const double seconds =
      Timed([&] { dgemm_("N", "N", &n, &n, &n, &one, a.data(), &n, b.data(), &n, &zero, c.data(), &n, 1, 1); })();
  return 2e-9 * n * n * n / seconds;
}

const char* PeerName() { return openblas_get_corename(); }

#else

double PeerSeconds(const Pattern&, int) { return 0; }
double MultiplicationRate() { return 0; }
const char* PeerName() { return "no OpenBLAS"; }

#endif

}  // namespace velmor::bench
