// Text in and out beside the standard streams: a model file of some 50 MB, and its numbers written again.

#include <fstream>
#include <limits>
#include <vector>

#include "base/item_reader.hpp"
#include "base/item_writer.hpp"
#include "support.hpp"

namespace velmor::bench {
namespace {

/// What a reader makes of a model file; two readers that agree have read the same items.
struct Sums {
  double coordinates = 0;
  long long numbers = 0;  // types, nodes and materials
  bool operator==(const Sums&) const = default;
};

/// The coordinates of node i on a curved sheet of nodes in rows of 800: numbers with all their digits.
struct Point {
  double x, y, z;
};
Point NodeAt(int i) {
  const int row = i / 800;
  const double across = 0.013 * (i - 800 * row), along = 0.017 * row;
  return {25 * across / (1 + across), along, across * along / 7};
}

/// NAME.TEK with four-node elements on the sheet. Items are separated by blanks, which a stream can read as well.
void WriteModel(const std::string& path, int nodes) {
  std::ofstream out(path);
  out.precision(std::numeric_limits<double>::max_digits10);
  const int rows = nodes / 800;
  out << nodes << ' ' << (rows - 1) * 799 << '\n';
  for (int i = 0; i < nodes; ++i) {
    const Point p = NodeAt(i);
    out << p.x << ' ' << p.y << ' ' << p.z << '\n';
  }
  for (int r = 0; r + 1 < rows; ++r) {
    for (int c = 1; c < 800; ++c) {
      const int first = 800 * r + c;
      out << 9 << ' ' << first << ' ' << first + 1 << ' ' << first + 801 << ' ' << first + 800 << ' ' << 1 << '\n';
    }
  }
}

Sums ReadByItems(const std::string& path) {
  Sums sums;
  ItemReader model(path);
  const int nodes = model.Count("node count");
  const int elements = model.Count("element count");
  for (int i = 0; i < 3 * nodes; ++i) sums.coordinates += model.Number("coordinate");
  for (int i = 0; i < 6 * elements; ++i) sums.numbers += model.Whole("number");
  return sums;
}

Sums ReadByStream(const std::string& path) {
  Sums sums;
  std::ifstream model(path);
  int nodes = 0, elements = 0;
  model >> nodes >> elements;
  for (int i = 0; i < 3 * nodes; ++i) {
    double value = 0;
    model >> value;
    sums.coordinates += value;
  }
  for (int i = 0; i < 6 * elements; ++i) {
    int number = 0;
    model >> number;
    sums.numbers += number;
  }
  return sums;
}

void ReadModel(benchmark::State& state) {
  const ScratchFile file("model.TEK");
  WriteModel(file.Path(), 640'000);
  state.counters["MB"] = file.MegaBytes();
  Sums ours, peers;
  RunInTurn(state, {"iostream over ours", 6}, Timed([&] { ours = ReadByItems(file.Path()); }),
            Timed([&] { peers = ReadByStream(file.Path()); }));
  if (ours.numbers == 0 || !(ours == peers)) state.SkipWithError("the readers disagree");
}

void WriteByItems(const std::string& path, const std::vector<Point>& points) {
  ItemWriter out(path);
  for (const Point& p : points) out.Line(p.x, p.y, p.z);
  out.Close();
}

void WriteByStream(const std::string& path, const std::vector<Point>& points) {
  std::ofstream out(path);
  out.precision(std::numeric_limits<double>::max_digits10);
  for (const Point& p : points) out << p.x << ',' << p.y << ',' << p.z << '\n';
}

/// Reads every number back; true if none differs.
bool Holds(const std::string& path, const std::vector<Point>& points) {
  ItemReader in(path);
  for (const Point& p : points) {
    if (in.Number("x") != p.x || in.Number("y") != p.y || in.Number("z") != p.z) return false;
  }
  return in.AtEnd();
}

void WriteNumbers(benchmark::State& state) {
  std::vector<Point> points(900'000);
  for (int i = 0; Point & p : points) p = NodeAt(i++);
  const ScratchFile ours("ours.RVP"), peers("peer.RVP");
  RunInTurn(state, {"iostream over ours", 4}, Timed([&] { WriteByItems(ours.Path(), points); }),
            Timed([&] { WriteByStream(peers.Path(), points); }));
  state.counters["MB"] = ours.MegaBytes();
  if (!Holds(ours.Path(), points)) state.SkipWithError("the numbers do not read back");
  if (!Holds(peers.Path(), points)) state.SkipWithError("the stream's numbers do not read back");
}

}  // namespace

void RegisterText() {
  Register("Text/read/NAME.TEK", 5, ReadModel);
  Register("Text/write", 5, WriteNumbers);
}

}  // namespace velmor::bench
