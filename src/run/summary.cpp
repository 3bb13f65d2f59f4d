#include "run/summary.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>

#include "base/file_system.hpp"
#include "elements/matrix_file.hpp"
#include "run/run.hpp"

namespace velmor {
namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
  std::array<char, 400> text;
  const int length = std::snprintf(text.data(), text.size(), format, values...);
  return {text.data(), std::min(static_cast<std::size_t>(length), text.size() - 1)};
}

std::string Bytes(std::int64_t bytes) {
  const double size = static_cast<double>(bytes);
  if (bytes < 10'000) return Format("%.0f bytes", size);
  return bytes < 10'000'000 ? Format("%.0f kB", size / 1e3) : Format("%.0f MB", size / 1e6);
}

void AddModel(const Run& run, std::vector<std::string>& lines) {
  if (run.sizes.DofPerNode == 0) return;  // no stage has read the head of NAME.DAT
  const ModelSizes& sizes = run.sizes;
  lines.push_back("Model " + run.modelName +
                  Format(": %d nodes, %d element records, %d equations, half bandwidth %d, matrix ", sizes.NodeCount,
                         sizes.ElementCount, sizes.EquationCount(), sizes.BandInput) +
                  Bytes(MatrixFileSize(sizes.EquationBound(), sizes.BandBound())));
  if (!PreparesModel(run.flags)) return;
  std::map<int, int> elementsOfType;
  for (int e = 1; e <= run.model.elementCount; ++e) ++elementsOfType[run.model.elements(e, 0)];
  for (const auto& [type, count] : elementsOfType) {
    const std::string name = type > 0 ? run.model.types.name[static_cast<std::size_t>(type)] : "passive";
    lines.push_back(Format("  %6d of type %d, %s", count, type, name.c_str()));
  }
}

/// The longest side of the box around the nodes.
double ModelExtent(const ModelTables& model) {
  double extent = 0;
  for (int k = 1; k <= 3 && model.nodeCount > 0; ++k) {
    double low = model.nodeCoordinates(1, k), high = low;
    for (int n = 2; n <= model.nodeCount; ++n) {
      low = std::min(low, model.nodeCoordinates(n, k));
      high = std::max(high, model.nodeCoordinates(n, k));
    }
    extent = std::max(extent, high - low);
  }
  return extent;
}

/// Sums of forces per direction; what is only the rounding of sums of the size `scale` shows as 0.
std::string Sums(const char* what, const std::array<double, 7>& sums, double scale, int analysisCode) {
  std::string line = Format("  sum of %s:", what);
  const int translations = IsSpatial(analysisCode) ? 3 : 2;
  for (int k = 1; k <= translations; ++k) {
    const double sum = sums[static_cast<std::size_t>(k)];
    line += Format(" %s %.6g", FreedomName(analysisCode, k), std::abs(sum) < 1e-9 * scale ? 0 : sum);
  }
  return line;
}

double LargestOf(const std::array<double, 7>& sums) {
  double largest = 0;
  for (double sum : sums) largest = std::max(largest, std::abs(sum));
  return largest;
}

void AddLoadCases(const Run& run, std::vector<std::string>& lines) {
  const double extent = ModelExtent(run.model);
  int number = 0;
  for (const RunReport::LoadCase& figures : run.report.loadCases) {
    std::string line = Format("Load case %d \"%s\": ", ++number, figures.name.c_str());
    if (figures.node == 0) {
      line += "nothing moves";
    } else {
      line += Format("largest displacement %.6g at node %d in %s", figures.largest, figures.node,
                     FreedomName(run.analysisCode, figures.freedom));
    }
    lines.push_back(line);
    if (extent > 0 && std::abs(figures.largest) > 10 * extent) {
      lines.push_back("  HUGE: more than ten times the model's size. Is it supported, and are its units right?");
    }
    const double scale = std::max(LargestOf(figures.applied), LargestOf(figures.reaction));
    lines.push_back(Sums("loads", figures.applied, scale, run.analysisCode));
    if (run.report.hasReactions) lines.push_back(Sums("reactions", figures.reaction, scale, run.analysisCode));
  }
}

void AddDynamicsAndGaps(const RunReport& report, std::vector<std::string>& lines) {
  for (std::size_t mode = 0; mode < report.periods.size(); ++mode) {
    const double T = report.periods[mode];
    lines.push_back(Format("Mode %zu: period %.6g, frequency %.6g", mode + 1, T, T == 0 ? 0 : 1 / T));
  }
  if (report.gapPasses > 0) {
    lines.push_back(Format("Gaps: %d, open %d, after %d passes", report.gaps, report.openGaps, report.gapPasses));
  }
}

void AddFilesAndTimes(const RunReport& report, std::vector<std::string>& lines) {
  for (const std::string& file : report.files) lines.push_back("Written: " + file + ", " + Bytes(FileSize(file)));
  std::string times = "Seconds:";
  for (const RunReport::Stage& stage : report.stages) times += Format(" %s %.3f", stage.caption.c_str(), stage.seconds);
  lines.push_back(times);
}

}  // namespace

std::vector<std::string> Summary(const Run& run) {
  std::vector<std::string> lines;
  AddModel(run, lines);
  AddLoadCases(run, lines);
  AddDynamicsAndGaps(run.report, lines);
  AddFilesAndTimes(run.report, lines);
  for (const std::string& warning : run.report.warnings) lines.push_back("Warning: " + warning);
  return lines;
}

}  // namespace velmor
