#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "base/vector3.hpp"
#include "support.hpp"

namespace velmor::testing {

/// Translation and rotation of a point.
struct Motion {
  Vector3 translation, rotation;
};
using MotionField = std::function<Motion(const Vector3& point)>;

/// The plane in which a test places an element: local coordinates x, y along e1, e2.
struct Plane {
  Vector3 e1{1, 0, 0}, e2{0, 1, 0};
  Vector3 Normal() const { return Cross(e1, e2); }
  std::array<double, 3> Point(double x, double y) const {
    const Vector3 p = x * e1 + y * e2;
    return {p.x, p.y, p.z};
  }
};
inline const Plane Flat;
inline const Plane Turned{{2.0 / 3, 1.0 / 3, 2.0 / 3}, {-2.0 / 3, 2.0 / 3, 1.0 / 3}};

/// Writes NAME.rot with an angle in radians for each record of NAME.DAT.
void WriteAngles(const Folder& folder, const std::vector<double>& angles);

/// Writes a model with given displacements, one field per load case, and asks for its stresses without solving.
void Impose(const Folder& folder, Model model, const std::vector<MotionField>& fields,
            const std::vector<double>& angles = std::vector<double>(50));
/// The same with the run, which must end well.
void Recover(const Folder& folder, Model model, const std::vector<MotionField>& fields,
             const std::vector<double>& angles = std::vector<double>(50));

/// The stress stages alone, on the files of an earlier run.
int RunStresses(const Folder& folder, RecordingDisplay& display, int analysisCode = 3);

/// Lines of one file and load case, counted from 1.
std::vector<std::vector<double>> Lines(const Folder& folder, const std::string& extension, int loadCase = 1);

/// The items of a line from `first` on, counted as in the file, are these numbers.
void ExpectItems(const std::vector<double>& line, int first, const std::vector<double>& expected, double tolerance);

/// A display through which a test meddles with the files of a run while a stress stage shows itself.
class MeddlingDisplay : public RecordingDisplay {
 public:
  explicit MeddlingDisplay(std::function<void(const StressWindow&)> meddle) : meddle_(std::move(meddle)) {}
  using RecordingDisplay::Refresh;
  void Refresh(const StressWindow& window) override {
    RecordingDisplay::Refresh(window);
    meddle_(window);
  }

 private:
  std::function<void(const StressWindow&)> meddle_;
};

}  // namespace velmor::testing
