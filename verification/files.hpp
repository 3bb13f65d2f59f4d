#pragma once

#include <string>
#include <vector>

#include "model.hpp"

namespace velmor::verification {

/// Writes NAME.TEK, .MLT, .VPL, .lcd, .KNK, .ell and .rot; `name` is the model path without extension.
void WriteFamily(const Model& model, const std::string& name);

/// Writes the control file of a run of all stages that the model needs.
void WriteControl(const Model& model, const std::string& name, const std::string& path);

/// The lines of a result file as numbers, load case by load case; "END" closes one.
std::vector<std::vector<std::vector<double>>> ReadBlocks(const std::string& path);

std::string ReadText(const std::string& path);
void WriteText(const std::string& path, const std::string& text);

}  // namespace velmor::verification
