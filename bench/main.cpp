// Runs the benchmarks and shows them as a table. Options of our own: --turns=N for the turns of every benchmark; all
// others go to Google Benchmark, --benchmark_filter=PATTERN above all.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support.hpp"

namespace {

/// A line for each benchmark: the ratio with its quartiles and its goal, then whatever else it counts.
class Table : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override {
    std::printf("| benchmark | ours, ms | ratio | quartiles | goal | what is compared, and more |\n");
    std::printf("|---|---|---|---|---|---|\n");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) Report(run);
    std::fflush(stdout);
  }

 private:
  static void Report(const Run& run) {
    const std::string name = run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
    if (run.error_occurred) {
      std::printf("| %s | ERROR OCCURRED | | | | %s |\n", name.c_str(), run.error_message.c_str());
      return;
    }
    std::map<std::string, double> counters;
    for (const auto& [key, counter] : run.counters) counters[key] = counter.value;
    const auto take = [&](const char* key, const char* format) {
      const auto found = counters.find(key);
      std::string text;
      if (found != counters.end()) {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, format, found->second);
        text = buffer;
        counters.erase(found);
      }
      return text;
    };
    const std::string ours = take("ours_ms", "%.4g"), ratio = take("ratio", "%.2f"), goal = take("goal", "%.2f");
    std::string spread = take("low", "%.2f"), notes = run.report_label;
    if (!spread.empty()) spread += " .. " + take("high", "%.2f");
    while (!counters.empty()) {
      const std::string key = counters.begin()->first;
      notes += (notes.empty() ? "" : ", ") + key + " " + take(key.c_str(), "%.4g");
    }
    std::printf("| %s | %s | %s | %s | %s | %s |\n", name.c_str(), ours.c_str(), ratio.c_str(), spread.c_str(),
                goal.c_str(), notes.c_str());
  }
};

}  // namespace

int main(int argc, char** argv) {
  constexpr std::string_view turns = "--turns=";
  for (int i = 1; i < argc; ++i) {
    if (!std::string_view(argv[i]).starts_with(turns)) continue;
    velmor::bench::SetTurns(std::atoi(argv[i] + turns.size()));
    std::memmove(argv + i, argv + i + 1, sizeof(char*) * static_cast<std::size_t>(argc - i));
    --argc;
    break;
  }
  velmor::bench::RegisterWholeRuns();  // first, while this process is small: a child's peak of memory begins with it
  velmor::bench::RegisterMachine();
  velmor::bench::RegisterBandSolver();
  velmor::bench::RegisterEigenPasses();
  velmor::bench::RegisterMatrixFile();
  velmor::bench::RegisterText();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
}
