#include "elements/table_plate.hpp"

#include "base/failure.hpp"
#include "base/item_reader.hpp"

namespace velmor {
namespace {

/// Energy products of the twelve terms on the square -1..1 by -1..1 for the aspect r = a / b, divided by D / (a b).
Table<12, 12> TermEnergy(double nu, double r) {
  const double rr = r * r, mu = 1 - nu;
  Table<12, 12> Q;
  Q(4, 4) = 16 / rr;
  Q(4, 6) = Q(6, 4) = 16 * nu;
  Q(5, 5) = 8 * mu;
  Q(5, 11) = Q(11, 5) = 8 * mu;
  Q(5, 12) = Q(12, 5) = 8 * mu;
  Q(6, 6) = 16 * rr;
  Q(7, 7) = 48 / rr;
  Q(7, 9) = Q(9, 7) = 16 * nu;
  Q(8, 8) = 16 / (3 * rr) + 32.0 / 3 * mu;
  Q(8, 10) = Q(10, 8) = 16 * nu;
  Q(9, 9) = 16 * rr / 3 + 32.0 / 3 * mu;
  Q(10, 10) = 48 * rr;
  Q(11, 11) = 16 / rr + 72.0 / 5 * mu;
  Q(11, 12) = Q(12, 11) = 16 * nu + 8 * mu;
  Q(12, 12) = 16 * rr + 72.0 / 5 * mu;
  return Q;
}

ItemReader OpenPlateTable(const std::string& path, std::source_location where) {
  try {
    return ItemReader(path, where);
  } catch (const Failure& failure) {
    if (failure.number != error::FileNotFound && failure.number != error::PathAccessError) throw;
    throw Failure(Cause::NoPlateTable, failure.number, failure.what(), path, where);
  }
}

}  // namespace

void LoadPlateTable(const std::string& programFolder, PlateTable& table, std::source_location where) {
  if (table.loaded) return;
  ItemReader file = OpenPlateTable(programFolder + "PLAT.ELM", where);
  for (int r = 1; r <= 12; ++r) {
    for (int c = 1; c <= 12; ++c) table.P(r, c) = file.Number("number of the plate table", where);
  }
  table.loaded = true;
}

double PlateTableScale(int freedom, double a, double b) {
  switch (freedom % 3) {
    case 1:
      return 1;
    case 2:
      return b;
    default:
      return a;
  }
}

Table<12, 12> TablePlateStiffness(const Material& material, double a, double b, const Table<12, 12>& P) {
  // 64 is the square of the table's factor 8.
  const double D = Divide(PlateRigidity(material) / 64, a * b);
  const Table<12, 12> Q = TermEnergy(material.nu, Divide(a, b));
  Table<12, 12> QP;
  for (int l = 4; l <= 12; ++l) {  // the first three terms have no curvature
    for (int k = 4; k <= 12; ++k) {
      if (Q(l, k) == 0) continue;
      for (int j = 1; j <= 12; ++j) QP(l, j) += Q(l, k) * P(k, j);
    }
  }
  Table<12, 12> K;
  for (int i = 1; i <= 12; ++i) {
    for (int j = i; j <= 12; ++j) {
      double sum = 0;
      for (int l = 4; l <= 12; ++l) sum += P(l, i) * QP(l, j);
      K(i, j) = D * PlateTableScale(i, a, b) * PlateTableScale(j, a, b) * sum;
    }
  }
  return K;
}

}  // namespace velmor
