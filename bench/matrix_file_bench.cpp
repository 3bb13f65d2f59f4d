// NAME.MAT saved and loaded beside a plain write and read of the same bytes. Files lie in the page cache.

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <memory>

#include "base/file_system.hpp"
#include "elements/matrix_file.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

/// A new file with these bytes, in one system call as far as the system goes along.
bool WriteRaw(const std::string& path, const char* bytes, std::size_t count) {
  ::unlink(path.c_str());
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  std::size_t done = 0;
  while (file >= 0 && done < count) {
    const ssize_t written = ::write(file, bytes + done, count - done);
    if (written <= 0) break;
    done += static_cast<std::size_t>(written);
  }
  return ::close(file) == 0 && done == count;
}

bool ReadRaw(const std::string& path, char* bytes, std::size_t count) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::size_t done = 0;
  while (file >= 0 && done < count) {
    const ssize_t got = ::read(file, bytes + done, count - done);
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return ::close(file) == 0 && done == count;
}

bool AreEqual(const BandMatrix& a, const BandMatrix& b) {
  const std::size_t row = sizeof(double) * (static_cast<std::size_t>(a.BandBound()) + 1);
  for (int e = 0; e <= a.EquationBound(); ++e) {
    if (std::memcmp(a.Row(e), b.Row(e), row) != 0) return false;
  }
  return true;
}

/// A full band, its file, and room for the bytes of that file.
struct MatrixFile {
  explicit MatrixFile(const benchmark::State& state)
      : equations(static_cast<int>(state.range(0))),
        width(static_cast<int>(state.range(1))),
        band(equations + 1, width + 1),
        size(static_cast<std::size_t>(MatrixFileSize(equations + 1, width + 1))),
        bytes(std::make_unique<char[]>(size)) {
    FillFullBand(band, equations, width);
  }
  /// True if the file on disk reads back to the band.
  bool IsRight() const {
    BandMatrix back(band.EquationBound(), band.BandBound());
    LoadMatrix(back, file.Path(), equations, width);
    return AreEqual(band, back);
  }

  int equations, width;
  BandMatrix band;
  ScratchFile file{"matrix.MAT"};
  std::size_t size;
  std::unique_ptr<char[]> bytes;
};

void BM_SaveMatrix(benchmark::State& state) {
  const MatrixFile matrix(state);
  const ScratchFile raw("raw.MAT");
  bool rawIsThere = true;
  RunInTurn(
      state, [&] { SaveMatrix(matrix.band, matrix.file.Path()); },
      [&] { rawIsThere = WriteRaw(raw.Path(), matrix.bytes.get(), matrix.size) && rawIsThere; });
  state.counters["MB"] = static_cast<double>(matrix.size) / 1e6;
  if (!rawIsThere) state.SkipWithError("the plain write failed");
  if (!matrix.IsRight()) state.SkipWithError("the file does not read back");
}

void BM_LoadMatrix(benchmark::State& state) {
  const MatrixFile matrix(state);
  SaveMatrix(matrix.band, matrix.file.Path());
  BandMatrix back(matrix.band.EquationBound(), matrix.band.BandBound());
  bool rawIsRead = true;
  RunInTurn(
      state, [&] { LoadMatrix(back, matrix.file.Path(), matrix.equations, matrix.width); },
      [&] { rawIsRead = ReadRaw(matrix.file.Path(), matrix.bytes.get(), matrix.size) && rawIsRead; });
  state.counters["MB"] = static_cast<double>(matrix.size) / 1e6;
  if (!rawIsRead) state.SkipWithError("the plain read failed");
  if (!AreEqual(matrix.band, back)) state.SkipWithError("the file does not read back");
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"equations", "width"})->Args({60'000, 120})->Args({30'000, 300})->Args({20'000, 900});
  benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_SaveMatrix)->Apply(Sizes);
BENCHMARK(BM_LoadMatrix)->Apply(Sizes);

}  // namespace
}  // namespace velmor::bench
