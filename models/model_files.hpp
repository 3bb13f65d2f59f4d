#pragma once

#include <string>
#include <vector>

#include "models/model.hpp"

namespace velmor::models {

/// Writes NAME.TEK, .MLT, .VPL, .lcd, .KNK, .ell and .rot (output axes that are not turned); `name` is the model path
/// without extension.
void WriteFamily(const Model& model, const std::string& name);

/// The lines of a result file as numbers, load case by load case: blocks[case][line][item]. "END" closes a load case;
/// what follows the last one, most often nothing, is a block too.
std::vector<std::vector<std::vector<double>>> ReadBlocks(const std::string& path);

/// Throws std::runtime_error where there is no such file.
std::string ReadText(const std::string& path);
/// Throws std::runtime_error where the text does not get to the file.
void WriteText(const std::string& path, const std::string& text);

}  // namespace velmor::models
