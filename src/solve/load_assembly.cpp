#include "solve/load_assembly.hpp"

#include <array>
#include <cmath>
#include <string>

#include "base/item_reader.hpp"
#include "run/model_warnings.hpp"
#include "run/run.hpp"
#include "run/stage_support.hpp"
#include "solve/element_loads.hpp"
#include "solve/nodal_loads.hpp"
#include "solve/skipped_lines.hpp"

namespace velmor {
namespace {

ElementLoad ReadElementLoad(ItemReader& ell) {
  ElementLoad load;
  const float element = ell.Single("element of a load");
  if (std::abs(element) > 16777216) throw Failure(error::SubscriptOutOfRange, ell.Describe("element of a load"));
  load.element = static_cast<int>(std::nearbyint(element));
  load.direction = ell.Single("direction of an element load");
  load.value = ell.Single("value of an element load");
  return load;
}

/// NAME.ell: one block per load case, in order, until the end of the file.
void ReadElementLoads(Run& run) {
  ItemReader ell(run.File(".ell"));
  SkippedLines skipped;
  std::vector<LineOfLoad> lines;
  for (int loadCase = 1; !ell.AtEnd(); ++loadCase) {
    const int count = ell.Count("number of element loads");
    ell.ExpectItems(count, 3, "element loads");
    for (int i = 1; i <= count; ++i) {
      const ElementLoad load = ReadElementLoad(ell);
      try {
        if (!AddElementLoad(run, loadCase, load)) skipped.Note(ell, "load on element " + std::to_string(load.element));
      } catch (const Failure& failure) {
        throw Failure(failure.number, ell.Describe(failure.what()));
      }
      lines.push_back({loadCase, load.element, load.direction, load.value});
    }
  }
  skipped.Tell(run, "it adds nothing");
  WarnOfUndividedBeams(run, lines);
}

/// Factors of the nodal freedoms x, y, z and the rotations about them under the acceleration of a load case; f(0)
/// holds nothing. `r` is the node's place relative to the centre of an angular acceleration.
std::array<double, 7> AccelerationFactors(int type, double A, const Vector3& r) {
  switch (type) {
    case 1:
      return {0, A, 0, 0, 0, 0, 0};
    case 2:
      return {0, 0, A, 0, 0, 0, 0};
    case 3:
      return {0, 0, 0, A, 0, 0, 0};
    case 4:
      return {0, 0, -A * r.z, A * r.y, A, 0, 0};
    case 5:
      return {0, A * r.z, 0, -A * r.x, 0, A, 0};
    case 6:
      return {0, -A * r.y, A * r.x, 0, 0, 0, A};
    default:
      return {};
  }
}

/// Accelerates what stands in the row of load case c, masses and weights, together with MassVector if V4 is 1.
void AddBodyLoad(Run& run, int c) {
  const auto index = static_cast<std::size_t>(c);
  const auto& V = run.loadCases.LoadCaseValues[index];
  const bool withMasses = V[4] == 1;
  if (withMasses && run.MassVector.Size() != run.sizes.EquationBound()) {
    throw Failure(error::SubscriptOutOfRange,
                  run.File(".lcd") + ": load case " + std::to_string(c) + " needs the masses of the Mass stage");
  }
  const Vector3 centre{V[1], V[2], V[3]};
  for (int n = 1; n <= run.sizes.NodeCount; ++n) {
    const auto f = AccelerationFactors(run.loadCases.LoadCaseType[index], V[0], run.model.Node(n) - centre);
    for (int k = 1; k <= run.sizes.DofPerNode; ++k) {
      const int e = run.sizes.Equation(n, k);
      double& load = run.LoadTable(c, e);
      if (withMasses) load += run.MassVector(e);
      const int factor = run.analysisCode == 2 && k == 3 ? 6 : k;  // the rotation of code 2 is about z
      load *= f[static_cast<std::size_t>(factor)];
    }
  }
}

/// The block of one load case in NAME.KNK.
void AddNodalLoads(Run& run, ItemReader& knk, int c, SkippedLines& skipped) {
  const int count = ReadNodalLoadCount(knk);
  for (int i = 1; i <= count; ++i) {
    const NodalLoad load = ReadNodalLoad(knk, run.analysisCode, run.sizes.NodeCount);
    if (load.direction > run.sizes.DofPerNode) {
      skipped.Note(knk, Describe(load));
    } else {
      run.LoadTable(c, run.sizes.Equation(load.node, load.direction)) += load.value;
    }
  }
}

void AssembleAll(Run& run, SkippedLines& skipped) {
  ReadElementLoads(run);
  ItemReader knk(run.File(".KNK"));
  for (int c = 1; c <= run.LoadCaseCount; ++c) {
    AddNodalLoads(run, knk, c, skipped);
    if (IsAcceleration(run.loadCases.LoadCaseType[static_cast<std::size_t>(c)])) AddBodyLoad(run, c);
  }
}

}  // namespace

void AssembleLoads(Run& run) {
  run.LoadTable.Fill(0);
  SkippedLines skipped;
  const auto failure = Attempt([&] { AssembleAll(run, skipped); });
  skipped.Tell(run, "the model has no such freedom, the load is dropped");
  if (failure) {
    Warn(run, std::string(failure->what()) + ": error " + std::to_string(failure->number) +
                  " ends the load assembly, the loads behind it are left out");
  }
}

}  // namespace velmor
