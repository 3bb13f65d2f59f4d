// Runs all cases of the verification manual:
//   velmor_verify PROGRAM_FOLDER VALUES PAGE           writes the values and the page
//   velmor_verify PROGRAM_FOLDER VALUES PAGE --check   compares with them
// Exit status 0 if every class holds and, for a check, nothing has changed; 1 if not; 2 if a run failed.

#include <exception>
#include <iostream>

#include "models/model_files.hpp"
#include "report.hpp"

namespace {

using namespace velmor::verification;  // NOLINT(google-build-using-namespace): the program is about nothing else

Manual RunAll(const Program& program) {
  return {{Frames(program), Membranes(program), Plates(program), Shells(program), Vibration(program), Contact(program)},
          Pitfalls(program),
          Refusals(program)};
}

int Tell(const std::vector<std::string>& faults) {
  for (const std::string& fault : faults) std::cerr << "verify: " << fault << "\n";
  return faults.empty() ? 0 : 1;
}

int Verify(const std::string& programFolder, const std::string& valuesPath, const std::string& pagePath, bool check) {
  const Program program(programFolder);
  const Manual manual = RunAll(program);
  std::cout << "verify: " << CountByClass(manual) << "\n";
  std::vector<std::string> faults = Faults(manual);
  const ValueTable values = ValuesOf(manual);
  if (!check) {
    velmor::models::WriteText(valuesPath, TextOf(values));
    velmor::models::WriteText(pagePath, PageOf(manual));
    return Tell(faults);
  }
  const ValueTable stored = ReadValues(valuesPath);
  for (const std::string& move : Moves(stored, values)) faults.push_back(move);
  // The page of the stored values, so that the last digits of this machine do not count.
  if (velmor::models::ReadText(pagePath) != PageOf(WithValues(manual, stored))) {
    faults.push_back(pagePath + " is not the page of the stored values; run scripts/verify");
  }
  return Tell(faults);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const bool check = arguments.size() == 4 && arguments[3] == "--check";
  if (arguments.size() != 3 && !check) {
    std::cerr << "usage: velmor_verify PROGRAM_FOLDER VALUES PAGE [--check]\n";
    return 2;
  }
  try {
    return Verify(arguments[0], arguments[1], arguments[2], check);
  } catch (const std::exception& error) {
    std::cerr << "verify: " << error.what() << "\n";
    return 2;
  }
}
