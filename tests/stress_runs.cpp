#include "stress_runs.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "model/model_sizes.hpp"

namespace velmor::testing {

void WriteAngles(const Folder& folder, const std::vector<double>& angles) {
  std::ostringstream rot;
  rot.precision(17);
  for (const double angle : angles) rot << angle << "\n";
  folder.Write(".rot", rot.str());
}

void Impose(const Folder& folder, Model model, const std::vector<MotionField>& fields,
            const std::vector<double>& angles) {
  model.cases.assign(fields.size(), {});
  model.flags.SolveFlag = 0;
  model.flags.LineStressFlag = model.flags.FEStressFlag = 1;
  folder.Write(model);
  WriteAngles(folder, angles);

  std::ostringstream rvp;
  rvp.precision(17);
  rvp << model.nodes.size() << "," << model.analysisCode << "\n";
  for (const MotionField& field : fields) {
    for (const auto& [x, y, z] : model.nodes) {
      const auto [u, r] = field({x, y, z});
      rvp << u.x << "," << u.y;
      if (IsSpatial(model.analysisCode)) rvp << "," << u.z;
      if (model.analysisCode == 3) rvp << "," << r.x << "," << r.y;
      if (model.analysisCode >= 2) rvp << "," << r.z;
      rvp << "\n";
    }
    rvp << "\"END\"\n";
  }
  folder.Write(".RVP", rvp.str());
}

void Recover(const Folder& folder, Model model, const std::vector<MotionField>& fields,
             const std::vector<double>& angles) {
  Impose(folder, std::move(model), fields, angles);
  RecordingDisplay display;
  EXPECT_EQ(folder.Run(display), 0);
  for (const FailureNotice& notice : display.notices) ADD_FAILURE() << notice.number << ": " << notice.description;
}

int RunStresses(const Folder& folder, RecordingDisplay& display, int analysisCode) {
  folder.WriteControl(analysisCode, {.MassFlag = 0, .CompileStiffnessFlag = 0, .SolveFlag = 0});
  return folder.Run(display);
}

std::vector<std::vector<double>> Lines(const Folder& folder, const std::string& extension, int loadCase) {
  const auto blocks = folder.Blocks(extension);
  if (static_cast<int>(blocks.size()) < loadCase) {
    ADD_FAILURE() << extension << " has no load case " << loadCase;
    return {};
  }
  return blocks[static_cast<std::size_t>(loadCase - 1)];
}

void ExpectItems(const std::vector<double>& line, int first, const std::vector<double>& expected, double tolerance) {
  std::size_t item = static_cast<std::size_t>(first - 1);
  ASSERT_GE(line.size(), item + expected.size());
  for (const double value : expected) {
    EXPECT_NEAR(line[item], value, tolerance) << "item " << item + 1;
    ++item;
  }
}

}  // namespace velmor::testing
