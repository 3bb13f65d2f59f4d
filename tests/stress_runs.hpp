#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "base/vector3.hpp"
#include "model/model_sizes.hpp"
#include "patch.hpp"
#include "support.hpp"

namespace velmor::testing {

/// Translation and rotation of a point.
struct Motion {
  Vector3 translation, rotation;
};
using MotionField = std::function<Motion(const Vector3& point)>;

/// Writes a model with given displacements, one field per load case, and asks for its stresses without solving.
inline void Impose(const Folder& folder, Model model, const std::vector<MotionField>& fields) {
  model.cases.assign(fields.size(), {});
  model.flags.SolveFlag = 0;
  model.flags.LineStressFlag = model.flags.FEStressFlag = 1;
  folder.Write(model);

  std::ostringstream rvp;
  const bool isSpatial = IsSpatial(model.analysisCode), turns = model.analysisCode >= 2;
  rvp.precision(17);
  rvp << model.nodes.size() << "," << model.analysisCode << "\n";
  for (const MotionField& field : fields) {
    for (const auto& [x, y, z] : model.nodes) {
      const auto [u, r] = field({x, y, z});
      rvp << u.x << "," << u.y;
      if (isSpatial) rvp << "," << u.z;
      if (isSpatial && turns) rvp << "," << r.x << "," << r.y;
      if (turns) rvp << "," << r.z;
      rvp << "\n";
    }
    rvp << "\"END\"\n";
  }
  folder.Write(".RVP", rvp.str());
}

/// The same with the run, which must end well; the output axes of the records in NAME.DAT are turned by the angles, in
/// radians, or not at all.
inline void Recover(const Folder& folder, const Model& model, const std::vector<MotionField>& fields,
                    const std::vector<double>& angles = {}) {
  Impose(folder, model, fields);
  std::ostringstream rot;
  rot.precision(17);
  for (const double angle : angles) rot << angle << "\n";
  if (!angles.empty()) folder.Write(".rot", rot.str());
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0) << (display.notices.empty() ? "" : display.notices.back().description);
}

/// Lines of one file and load case, counted from 1; a load case that is not there fails the test.
inline std::vector<std::vector<double>> Lines(const Folder& folder, const std::string& extension, int loadCase = 1) {
  return folder.Blocks(extension).at(static_cast<std::size_t>(loadCase - 1));
}

/// The items of a line from `first` on, counted as in the file, are these numbers.
inline void ExpectItems(const std::vector<double>& line, int first, const std::vector<double>& expected,
                        double tolerance) {
  const auto before = static_cast<std::size_t>(first - 1);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(line.at(before + i), expected[i], tolerance) << "item " << first + static_cast<int>(i);
  }
}

}  // namespace velmor::testing
