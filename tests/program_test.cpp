// The program as a process: two at a time, stopped by signals, killed, and asked for at a console.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "run/failure_answer.hpp"
#include "support.hpp"

namespace velmor::testing {
namespace {

/// A bar that is lifted off its stop by the stop's limit: its gap never settles, so that the run takes 1001 passes.
Model Restless() {
  Model model;
  model.analysisCode = 1;
  for (const double x : {0.0, 1.0, 2.0}) model.AddNode(x, 0);
  model.AddElement(1, {1, 2}, 1);
  model.AddElement(14, {2, 3}, 2);
  model.materials = {{1, 0, 0, 1}, {1, 0, 0, 1, 0, 1024}};
  model.Fix(1, 2);
  model.Fix(3, 2);
  model.supports.push_back({2, 2});
  model.cases = {{{{2, 1, -1024}}, {}}};
  return model;
}

/// A program folder with the program in it, and processes of it.
struct Program : Folder {
  Program() { std::filesystem::copy_file(VELMOR_PROGRAM, Folder::Program("velmor")); }

  pid_t Start(const std::string& input = "") const {
    WriteText(Folder::Program("input"), input);
    const pid_t process = ::fork();
    if (process != 0) return process;
    const auto connect = [&](const char* file, int flags, int stream) {
      ::dup2(::open(Folder::Program(file).c_str(), flags, 0600), stream);
    };
    connect("input", O_RDONLY, STDIN_FILENO);
    connect("output", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    connect("errors", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    const std::string path = Folder::Program("velmor");
    ::execl(path.c_str(), path.c_str(), nullptr);
    ::_exit(127);
  }
  /// Exit status, or minus the signal that ended the process.
  static int StatusOf(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  /// Starts the restless model and waits for its first passes.
  pid_t StartRestless() const {
    Write(Restless());
    Remove(".RVP");
    const pid_t process = Start();
    for (int i = 0; i < 10'000 && !Has(".RVP"); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(Has(".RVP"));
    return process;
  }
  bool HasControlFile() const { return std::filesystem::exists(Folder::Program("EEM.CTR")); }
  bool HasTemporaryFile() const {
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(File()).parent_path())) {
      if (entry.path().extension() == ".part") return true;
    }
    return false;
  }
};

TEST(Program, EndsCleanlyOnASignal) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const Program program;
    const pid_t process = program.StartRestless();
    ::kill(process, signal);
    EXPECT_EQ(Program::StatusOf(process), 128 + signal);
    EXPECT_FALSE(program.HasControlFile());
    EXPECT_FALSE(program.HasTemporaryFile());
    EXPECT_EQ(program.Displacements().nodes, 3) << "what was written is whole";
  }
}

TEST(Program, LeavesWholeFilesWhenItIsKilledAndStartsAgain) {
  const Program program;
  for (int turn = 0; turn < 10; ++turn) {
    const pid_t process = program.StartRestless();
    std::this_thread::sleep_for(std::chrono::microseconds(777 * turn));
    ::kill(process, SIGKILL);
    EXPECT_EQ(Program::StatusOf(process), -SIGKILL);
    EXPECT_NEAR(program.Displacements()(1, 1, 1), 0, 1e-20);
    EXPECT_EQ(program.Read(".GPD"), "2,3,1,0,0,1,1\n");
  }
  EXPECT_TRUE(program.HasControlFile());
  EXPECT_EQ(Program::StatusOf(program.Start()), exit_status::Complete);
  EXPECT_NEAR(program.Displacements()(1, 2, 1), -512, 1e-9);
  EXPECT_FALSE(program.HasTemporaryFile());
}

TEST(Program, RefusesASecondStartInItsFolder) {
  const Program program;
  const pid_t first = program.StartRestless();
  EXPECT_EQ(Program::StatusOf(program.Start()), exit_status::StartUp);
  EXPECT_TRUE(ReadText(program.Folder::Program("errors")).starts_with("Velmor is running in this program folder"));
  EXPECT_TRUE(program.HasControlFile());
  EXPECT_EQ(Program::StatusOf(first), exit_status::Complete);
}

TEST(Program, IsAskedForAModelAtAConsole) {
  const Program program;
  program.WriteExample("roof-truss");
  std::filesystem::remove(program.Folder::Program("EEM.CTR"));
  const std::string folder = std::filesystem::path(program.File()).parent_path().string();
  const std::string again = "what?\nBrowse " + folder + "/none.tek\n\n";  // no such command, no such file
  const std::string input = again + "options\n4\n99\nready\nbrowse " + folder + "\n1\nrun\n";
  EXPECT_EQ(Program::StatusOf(program.Start(input)), exit_status::Complete);
  EXPECT_NEAR(program.Displacements()(1, 6, 2), -3.978722, 1e-5);
  const std::string output = ReadText(program.Folder::Program("output"));
  for (const char* part : {"There is no file", "[x] ", "   1  ", "Load case 1"}) {
    EXPECT_NE(output.find(part), std::string::npos) << part << "\n" << output;
  }
  EXPECT_EQ(Program::StatusOf(program.Start("quit\n")), exit_status::StartUp);
}

}  // namespace
}  // namespace velmor::testing
