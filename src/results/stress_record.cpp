#include "results/stress_record.hpp"

#include <cmath>

namespace velmor {
namespace {

void WriteRecord(ItemWriter& file, const StressedElement& element, int node, const StressColumns& columns) {
  for (const int item : {element.record, node, element.material, element.type}) file.Item(item);
  for (const double column : columns) file.Item(column);
  file.Line(0, 0, 0, 0);
}

}  // namespace

StressColumns GlobalColumns(const StressState& stress, const Vector3& e1, const Vector3& e2) {
  const auto component = [&](int i, int j) {
    return e1(i) * e1(j) * stress.x + e2(i) * e2(j) * stress.y + (e1(i) * e2(j) + e2(i) * e1(j)) * stress.xy;
  };
  const double bx = stress.bendingX, by = stress.bendingY;
  const Vector3 e3 = Cross(e1, e2);
  return {component(1, 1),
          component(2, 2),
          component(3, 3),
          component(1, 2),
          component(1, 3),
          component(2, 3),
          by * e2.y * e2.y - bx * e1.y * e2.x,
          bx * e1.x * e1.x - by * e2.x * e1.y,
          bx * e3.x * e3.x + by * e3.y * e3.y};
}

Turn TurnBy(double angle) { return {std::cos(angle), std::sin(angle)}; }

StressColumns TurnedColumns(const StressState& stress, const Turn& turn) {
  const auto& [x, y, xy, bx, by] = stress;
  const double cc = turn.c * turn.c, ss = turn.s * turn.s, sc = turn.s * turn.c;
  return {cc * x + ss * y - 2 * sc * xy,
          ss * x + cc * y + 2 * sc * xy,
          0,
          sc * (x - y) + (cc - ss) * xy,
          0,
          0,
          ss * bx + cc * by,
          cc * bx + ss * by,
          0};
}

void StressFiles::WriteStressRecord(const StressedElement& element, int node, const StressState& stress) {
  const StressColumns global = GlobalColumns(stress, element.e1, element.e2);
  WriteRecord(turned_, element, node, TurnedColumns(stress, element.turn));
  WriteRecord(global_, element, node, global);
}

void StressFiles::EndLoadCase() {
  global_.Line("END");
  turned_.Line("END");
}

void StressFiles::Close() {
  global_.Close();
  turned_.Close();
}

}  // namespace velmor
