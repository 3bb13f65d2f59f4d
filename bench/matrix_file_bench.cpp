// NAME.MAT saved and loaded beside a plain write and read of the same bytes. Files lie in the page cache.

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "base/file_system.hpp"
#include "elements/matrix_file.hpp"
#include "patterns.hpp"
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

/// A band, its file, and room for the bytes of that file.
struct MatrixFile {
  explicit MatrixFile(const Pattern& pattern)
      : equations(pattern.equations),
        width(pattern.width),
        band(Assembled(pattern)),
        size(static_cast<std::size_t>(MatrixFileSize(equations + 1, width + 1))),
        bytes(std::make_unique<char[]>(size)) {}
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

void Save(benchmark::State& state, const Pattern& pattern, double goal) {
  const MatrixFile matrix(pattern);
  const ScratchFile raw("raw.MAT");
  bool rawIsThere = true;
  RunInTurn(state, {"ours over a raw write", goal, true}, Timed([&] { SaveMatrix(matrix.band, matrix.file.Path()); }),
            Timed([&] { rawIsThere = WriteRaw(raw.Path(), matrix.bytes.get(), matrix.size) && rawIsThere; }));
  state.counters["MB"] = static_cast<double>(matrix.size) / 1e6;
  if (!rawIsThere) state.SkipWithError("the plain write failed");
  if (!matrix.IsRight()) state.SkipWithError("the file does not read back");
}

void Load(benchmark::State& state, const Pattern& pattern, double goal) {
  const MatrixFile matrix(pattern);
  SaveMatrix(matrix.band, matrix.file.Path());
  BandMatrix back(matrix.band.EquationBound(), matrix.band.BandBound());
  bool rawIsRead = true;
  RunInTurn(state, {"ours over a raw read", goal, true},
            Timed([&] { LoadMatrix(back, matrix.file.Path(), matrix.equations, matrix.width); }),
            Timed([&] { rawIsRead = ReadRaw(matrix.file.Path(), matrix.bytes.get(), matrix.size) && rawIsRead; }));
  state.counters["MB"] = static_cast<double>(matrix.size) / 1e6;
  if (!rawIsRead) state.SkipWithError("the plain read failed");
  if (!AreEqual(matrix.band, back)) state.SkipWithError("the file does not read back");
}

}  // namespace

void RegisterMatrixFile() {
  struct Band {
    std::string name;
    std::function<Pattern()> make;
    double saved;
  };
  std::vector<Band> bands;
  for (const auto& [equations, width] : {std::pair{60'000, 120}, {30'000, 300}, {20'000, 900}}) {
    bands.push_back({"full/" + std::to_string(width), [n = equations, w = width] { return Full(n, w); }, 2.6});
  }
  for (const int side : {60, 100}) {
    bands.push_back({"plate/" + std::to_string(side), [=] { return Plate(side); }, 0.3});
  }
  for (const Band& band : bands) {
    Register("Save/" + band.name, 15, [=](benchmark::State& state) { Save(state, band.make(), band.saved); });
    Register("Load/" + band.name, 15, [=](benchmark::State& state) { Load(state, band.make(), 2.5); });
  }
}

}  // namespace velmor::bench
