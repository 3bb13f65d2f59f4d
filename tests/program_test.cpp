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

/// A program folder with the program in it, and processes of it, which work in that folder.
struct Program : Folder {
  Program() { std::filesystem::copy_file(VELMOR_PROGRAM, Folder::Program("velmor")); }

  /// `user`: whose process it is, 0 for that of the test.
  pid_t Start(const std::string& input = "", uid_t user = 0) const {
    WriteText(Folder::Program("input"), input);
    const pid_t process = ::fork();
    if (process != 0) return process;
    if (::chdir(Folder::Program().c_str()) != 0) ::_exit(127);
    ::signal(SIGHUP, SIG_DFL);
    const auto connect = [](const char* file, int flags, int stream) { ::dup2(::open(file, flags, 0600), stream); };
    connect("input", O_RDONLY, STDIN_FILENO);
    connect("output", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    connect("errors", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    if (user != 0 && ::setuid(user) != 0) ::_exit(127);
    ::execl("./velmor", "./velmor", nullptr);
    ::_exit(127);
  }
  /// Exit status, or minus the signal that ended the process.
  static int StatusOf(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  /// Starts a model that takes 1001 passes and waits for the first: a bar that is lifted off its stop by the stop's
  /// limit exactly, with a stiffness equal to its own, so that the factor jumps between 1 and -1/2.
  pid_t StartRestless() const {
    Model model;
    model.analysisCode = 1;
    model.nodes = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    model.AddElement(1, {1, 2}, 1);
    model.AddElement(14, {2, 3}, 2);
    model.materials = {{1, 0, 0, 1}, {1, 0, 0, 1, 0, 1024}};
    model.supports = {{1, 1}, {1, 2}, {2, 2}, {3, 1}, {3, 2}};
    model.cases = {{{{2, 1, -1024}}, {}}};
    Write(model);
    Remove(".RVP");
    const pid_t process = Start();
    for (int i = 0; i < 10'000 && !Has(".RVP"); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(Has(".RVP"));
    return process;
  }
  bool HasControlFile() const { return std::filesystem::exists(Folder::Program("EEM.CTR")); }
  void ExpectNoTemporaryFile() const {
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(File()).parent_path())) {
      EXPECT_NE(entry.path().extension(), ".part");
    }
  }
};

TEST(Program, EndsCleanlyOnASignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const Program program;
    const pid_t process = program.StartRestless();
    ::kill(process, signal);
    EXPECT_EQ(Program::StatusOf(process), 128 + signal);
    EXPECT_FALSE(program.HasControlFile());
    program.ExpectNoTemporaryFile();
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
  EXPECT_NEAR(program.Displacements()(1, 2, 1), -512, 1e-9);  // of the last pass
  EXPECT_TRUE(ReadText(program.Folder::Program("errors")).starts_with("Maximum number of itteration exceeded\n"));
  EXPECT_NE(ReadText(program.Folder::Program("output")).find("after 1001 passes"), std::string::npos);
  program.ExpectNoTemporaryFile();
}

TEST(Program, RefusesASecondStartInItsFolderAloneAndRunsInAnother) {
  const Program program, other;
  other.WriteExample("roof-truss");
  const pid_t first = program.StartRestless(), third = other.Start();
  EXPECT_EQ(Program::StatusOf(program.Start()), exit_status::StartUp);
  EXPECT_TRUE(ReadText(program.Folder::Program("errors")).starts_with("Velmor is running in this program folder"));
  EXPECT_TRUE(program.HasControlFile());
  EXPECT_EQ(Program::StatusOf(third), exit_status::Complete);
  EXPECT_EQ(Program::StatusOf(first), exit_status::Complete);
}

TEST(Program, TakesARelativeModelPathAndTellsByItsStatus) {
  const Program program;
  program.WriteExample("roof-truss");
  program.Remove(".MLT");
  WriteText(program.Folder::Program("EEM.CTR"), "\"../model\"\r\n0,1,3,0,1,1,0,0\r\n");
  EXPECT_EQ(Program::StatusOf(program.Start()), exit_status::BadInput);
  const std::string errors = ReadText(program.Folder::Program("errors"));
  EXPECT_TRUE(errors.starts_with("FILE NOT FOUND: ../model.MLT\nFATAL ERROR, RUN ABORTED\n"));
  EXPECT_EQ(Program::StatusOf(program.Start()), exit_status::StartUp);  // EEM.CTR is gone, nobody is at the buttons
}

TEST(Program, TellsWhatItMayNotTouch) {
  namespace fs = std::filesystem;
  const uid_t nobody = 65534, user = ::geteuid() == 0 ? nobody : 0;  // the superuser may touch everything
  const Program program;
  program.WriteExample("roof-truss");
  const fs::path control = program.Folder::Program("EEM.CTR"), folder = fs::path(program.File()).parent_path();
  fs::permissions(folder, fs::perms::all);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) fs::permissions(entry, fs::perms::all);
  const std::string flags = ReadText(control);
  if (Program::StatusOf(program.Start("", user)) != exit_status::Complete) GTEST_SKIP() << "nobody else can run here";
  const struct {
    fs::path locked;
    const char* message;
  } cases[] = {{program.File(".TEK"), ".TEK: Permission"},
               {program.File(".VPL"), ".VPL: Permission"},
               {program.File(".lcd"), ".lcd: Permission"},
               {folder, ".DAT cannot be written: Permission"}};
  for (const auto& [locked, message] : cases) {
    WriteText(control, flags);
    fs::permissions(control, fs::perms::all);
    program.Remove(".DAT");
    const fs::perms before = fs::status(locked).permissions();
    fs::permissions(locked, locked == folder ? fs::perms{0555} : fs::perms::none);
    EXPECT_EQ(Program::StatusOf(program.Start("", user)), exit_status::Resources) << message;
    fs::permissions(locked, before);
    const std::string errors = ReadText(program.Folder::Program("errors"));
    for (const char* part : {message, "\n  look at the permissions of the folder"}) {
      EXPECT_NE(errors.find(part), std::string::npos) << errors;
    }
    EXPECT_FALSE(fs::exists(control));
  }
}

TEST(Program, IsAskedForAModelAtAConsole) {
  const Program program;
  program.WriteExample("roof-truss");
  std::filesystem::remove(program.Folder::Program("EEM.CTR"));
  const std::string folder = std::filesystem::path(program.File()).parent_path().string();
  const std::string again = "what?\nBrowse " + folder + "/none.tek\n\n";  // no such command, no such file
  const std::string input = again + "options\n4\n99\nready\nbrowse " + folder + "\n1\nrun\n";
  EXPECT_EQ(Program::StatusOf(program.Start(input)), exit_status::Complete);
  EXPECT_EQ(program.Displacements().freedoms, 2) << "the third dimension is switched off";
  EXPECT_NEAR(program.Displacements()(1, 6, 2), -3.978722, 1e-5);
  const std::string output = ReadText(program.Folder::Program("output"));
  for (const char* part : {"There is no file", "[x] ", "   1  ", "Load case 1"}) {
    EXPECT_NE(output.find(part), std::string::npos) << part << "\n" << output;
  }
  EXPECT_EQ(Program::StatusOf(program.Start("quit\n")), exit_status::StartUp);
}

}  // namespace
}  // namespace velmor::testing
