#pragma once

#include <string>
#include <vector>

#include "models/model.hpp"

namespace velmor::verification {

using models::Direction;
using models::Material;
using models::Point;
using enum models::Direction;

/// A model with what its run is to find.
struct Model : models::Model {
  bool eigen = false;        // periods and mode shapes instead of load cases
  bool lineStresses = true;  // of bars, beams and gaps, if there are any
};

/// What the files of a finished run hold. Numbers count from 1; asking for what is not there throws.
class Results {
 public:
  /// Reads the files of the model `name` that the run has left.
  Results(const std::string& name, int freedoms);

  /// A displacement or rotation of NAME.RVP. In plane frames the rotation is direction RotZ.
  double Displacement(int node, int direction, int loadCase = 1) const;
  /// The displacement of a node along a direction in space.
  double Along(int node, const Point& direction, int loadCase = 1) const;
  /// A reaction of NAME.KRT.
  double Reaction(int node, int direction, int loadCase = 1) const;
  /// An item of the line of NAME.LES for end 1 or 2 of the given line element, counted among bars, gaps and beams.
  double LineStress(int lineElement, int end, int item, int loadCase = 1) const;
  /// An item of NAME.NSR (global axes) or NAME.NSL (element axes) by line, and of NAME.NLA by element and node.
  const std::vector<std::vector<double>>& GlobalStresses(int loadCase = 1) const;
  const std::vector<std::vector<double>>& LocalStresses(int loadCase = 1) const;
  double AverageLocalStress(int element, int node, int item, int loadCase = 1) const;
  /// Frequencies of NAME.EIG, 1/|T|, in the order found.
  std::vector<double> Frequencies() const;

 private:
  using Blocks = std::vector<std::vector<std::vector<double>>>;
  std::size_t Column(int direction) const;

  int freedoms_, nodes_ = 0;
  Blocks displacements_, reactions_, lines_, global_, local_, averages_, modes_;
};

/// How a run ended that may fail.
struct Ending {
  int status;
  std::string errors;  // standard error, without the folder in its paths
};

/// The release program in a program folder of its own under the system's folder for temporary files, gone with the
/// object. Every model is a run of the program from files to files.
class Program {
 public:
  /// `folder` is the program folder of the build.
  explicit Program(const std::string& folder);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// Runs a model that must come to its end; throws std::runtime_error with what the program said otherwise.
  Results Solve(const Model& model) const;
  /// Runs a model that may fail.
  Ending Run(const Model& model) const;

 private:
  std::string folder_;  // with a slash at its end
};

}  // namespace velmor::verification
