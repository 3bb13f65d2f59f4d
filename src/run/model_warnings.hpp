#pragma once

#include <string>
#include <vector>

#include "base/table.hpp"

namespace velmor {

struct Run;
struct Support;

/// Tells a warning on the display and keeps it for the summary. The same text is told once in a run.
void Warn(Run& run, const std::string& text);

/// What was met of one kind: how many, and the first.
struct Finding {
  int count = 0, first = 0;
  void Note(int which) {
    if (count++ == 0) first = which;
  }
};

// Warnings before trust: where a model asks more of the elements and the solver than they can give. One line a kind,
// with the count and the first element, node or freedom; every text begins with "model: ". They change no result.
// The limits that they speak of are relative to the model unless the solver itself goes by an absolute number.

/// Shapes that a type does not know, type 8 beside what does not fit its third freedom, bending types without
/// rotations, nodes out of a plane model, nodes without an element. From the model tables, by the Kol stage.
void WarnOfElements(Run& run);

/// Thin elements of type 6, plane strain where a type does not carry it through, and drilling stiffness,
/// pivot limit and stiffness of supports against the stiffness of the model. By the EEM stage when GlobalBand is
/// complete.
void WarnOfStiffness(Run& run);

/// A line of NAME.ell: a uniform load on an element along one of its local axes.
struct LineOfLoad {
  int loadCase = 0, element = 0;
  double direction = 0, value = 0;
};

/// Beams that carry a uniform load across their axis in runs of too few elements. By the load assembly.
void WarnOfUndividedBeams(Run& run, const std::vector<LineOfLoad>& loads);

/// Prescribed displacements beside further load cases, which hold the freedom at zero. By the Sys stage.
void WarnOfPrescribedDisplacements(Run& run, const std::vector<Support>& supports);

/// Freedoms whose diagonal is not above `tinyPivot`, and loads on them. By the Sys stage before it holds them.
void WarnOfLooseFreedoms(Run& run, double tinyPivot);

/// Pivots that the elimination has left next to nothing of: of `diagonal`, which GlobalBand had before it; by
/// equations, both from 1. Rounding takes a mechanism's pivot for 1e-16 of its diagonal more often than for 0.
Finding WeakPivots(const Run& run, const Column& diagonal);

/// The weak pivots of the run. By the Sys stage, in gap runs by the gap stage at its end.
void WarnOfWeakPivots(Run& run);

/// Unequal masses of the freedoms that no support holds: MassDiagonal(e), e from 1. By the eigen stage.
void WarnOfUnequalMasses(Run& run, const Column& MassDiagonal, const std::vector<Support>& supports);

/// What an eigen run makes of a model that asks more of it: prescribed values, gaps, more support lines than equations.
void WarnOfEigenModel(Run& run, const std::vector<Support>& supports);

/// Gaps that the iteration left where no one-sided support can be, by element records: shortened beyond their limit, or
/// pulling at it; and gaps whose factor would still change. By the gap stage at its end.
void WarnOfGaps(Run& run, const Finding& lost, const Finding& pulling, const Finding& unsettled);

}  // namespace velmor
