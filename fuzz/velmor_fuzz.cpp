// Whole runs on hostile files, for libFuzzer. VELMOR_FUZZ_TARGET names what the fuzzer's bytes are:
//
//   run            a whole file family, EEM.CTR included, as an archive: "=== TEK" on a line of its own, then the file,
//                  and so on; the files of an earlier run may be among them
//   TEK, MLT, ...  one file of the model models/mixed.txt, which holds an element of every family; the rest is valid
//   EEM.CTR, ...   the same for a file of the program folder
//
// Every run must end by itself and leave no infinity and no NaN in a result if it calls itself complete. Crashes,
// memory and time are watched by the sanitizers and by libFuzzer.

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "run/display.hpp"
#include "run/run_controller.hpp"

namespace velmor {
namespace {

namespace fs = std::filesystem;

/// Nobody looks, and at the main window the person goes away.
class NoDisplay : public Display {
 public:
  void Refresh(const MainWindow&) override {}
  void Refresh(const ProgressWindow&) override {}
  void Refresh(const StressWindow&) override {}
  void MessageBox(const std::string&) override {}
  void Warning(const std::string&) override {}
  void Explain(const FailureNotice&) override {}
  MainWindowAction WaitForUser(const MainWindow&) override { return MainWindowAction::Close; }
  std::optional<std::string> OpenFile(const FileDialog&) override { return std::nullopt; }
  void ShowModal(OptionsWindow&) override {}
  void ShowSummary(const std::vector<std::string>&) override {}
};

using Archive = std::map<std::string, std::string, std::less<>>;  // text by extension

Archive Split(std::string_view text) {
  constexpr std::string_view mark = "=== ";
  Archive files;
  for (std::size_t at = text.find(mark); at != std::string_view::npos;) {
    const std::size_t name = at + mark.size();
    const std::size_t end = text.find('\n', name);
    if (end == std::string_view::npos) break;
    at = text.find(mark, end);
    files[std::string(text.substr(name, end - name))] =
        text.substr(end + 1, at == std::string_view::npos ? at : at - end - 1);
  }
  return files;
}

void Write(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::string Read(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

[[noreturn]] void Fail(const std::string& why) {
  std::fprintf(stderr, "%s\n", why.c_str());
  std::abort();
}

/// A model "m" and a program folder in memory; gone with the process.
class Workplace {
 public:
  Workplace() : root_("/dev/shm/velmor-fuzz-" + std::to_string(::getpid())) {
    fs::create_directories(root_ / "program");
    fs::current_path(root_);  // where relative model paths start from
    model_ = Split(Read(VELMOR_FUZZ_MODEL));
    if (model_.size() < 8) Fail("no model at " VELMOR_FUZZ_MODEL);
  }
  ~Workplace() { fs::remove_all(root_); }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  const Archive& Model() const { return model_; }

  void PutProgramFile(const std::string& name, std::string_view text) const { Write(root_ / "program" / name, text); }

  /// Puts the files there and nothing else, runs, and looks at the results.
  void Run(const Archive& files, const std::map<std::string, std::string>& programFiles) const {
    for (const auto& entry : fs::directory_iterator(root_)) {
      if (entry.is_regular_file()) fs::remove(entry.path());
    }
    for (const char* name : {"ELTYP.DAT", "decmem.DAT", "PLAT.ELM"}) {
      PutProgramFile(name, Read(fs::path(VELMOR_DATA_FOLDER) / name));
    }
    for (const auto& [extension, text] : files) {
      if (extension == "CTR") {
        PutProgramFile("EEM.CTR", "m" + text.substr(std::min(text.size(), text.find('\n'))));
      } else if (!extension.empty() && extension.size() <= 3 && extension.find('/') == std::string::npos) {
        Write(root_ / ("m." + extension), text);
      }
    }
    for (const auto& [name, text] : programFiles) PutProgramFile(name, text);
    NoDisplay display;
    const int status = RunProgram(display, (root_ / "program").string() + "/");
    if (status == 0) ExpectNumbers(files);
  }

  std::string ReadResult(const char* extension) const { return Read(root_ / (std::string("m.") + extension)); }

 private:
  /// No text file that the run has written holds an infinity or something that is no number.
  void ExpectNumbers(const Archive& given) const {
    for (const auto& entry : fs::directory_iterator(root_)) {
      if (!entry.is_regular_file()) continue;
      const std::string extension = entry.path().extension().string();
      if (extension == ".MAT" || given.contains(extension.substr(extension.empty() ? 0 : 1))) continue;
      std::string text = Read(entry.path());
      for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      for (const char* word : {"nan", "inf"}) {
        if (text.find(word) != std::string::npos) Fail(std::string(word) + " in " + entry.path().string());
      }
    }
  }

  fs::path root_;
  Archive model_;
};

/// What a target's file is replaced in: flags that make the run read it, beside the files of an earlier run if it needs
/// them.
class Target {
 public:
  explicit Target(std::string name) : name_(std::move(name)), files_(workplace_.Model()) {
    const auto isOneOf = [&](std::initializer_list<const char*> names) {
      return std::find(names.begin(), names.end(), name_) != names.end();
    };
    if (isOneOf({"VPL", "lcd", "KNK", "ell"}))
      files_["CTR"] = "\n0,1,3,0,1,1,0,0\n";  // no stresses: more runs a second
    if (!isOneOf({"DAT", "MAT", "RVP"})) return;
    workplace_.Run(files_, {});
    for (const char* earlier : {"DAT", "MAT", "RVP"}) {
      const std::string result = workplace_.ReadResult(earlier);
      if (result.empty()) Fail(std::string("the model does not run: no ") + earlier);
      const bool isSolvedAnew = std::string_view(earlier) == "RVP" && name_ != "RVP";  // and looked at then
      if (!isSolvedAnew) files_[earlier] = result;
    }
    files_["CTR"] = name_ == "RVP" ? "\n0,0,3,0,0,0,1,1\n" : "\n0,0,3,0,0,1,1,1\n";
  }

  void Run(std::string_view bytes) {
    if (name_ == "run") {
      workplace_.Run(Split(bytes), {});
    } else if (name_.find('.') != std::string::npos) {
      workplace_.Run(files_, {{name_, std::string(bytes)}});
    } else {
      files_[name_] = bytes;
      workplace_.Run(files_, {});
    }
  }

 private:
  std::string name_;
  Workplace workplace_;
  Archive files_;
};

}  // namespace
}  // namespace velmor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static velmor::Target target = [] {
    const char* const name = std::getenv("VELMOR_FUZZ_TARGET");
    return velmor::Target(name != nullptr ? name : "run");
  }();
  target.Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
