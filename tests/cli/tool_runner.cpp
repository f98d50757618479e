#include "tool_runner.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace clitest {

Sandbox::Sandbox() {
  char tmpl[] = "/tmp/caltofal-cli-XXXXXX";
  if (mkdtemp(tmpl) == nullptr) throw std::runtime_error("mkdtemp failed");
  dir_ = tmpl;
}

Sandbox::~Sandbox() {
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

Outcome Sandbox::run(const Args &args, const std::string &cwd,
                     const std::string &stdoutFile) const {
  std::map<std::string, std::string> vars = {
      {"PATH", "/usr/bin:/bin"},
      {"HOME", path("home")},
      {"XDG_STATE_HOME", path("state")},
      {"ASAN_OPTIONS", "exitcode=99"},
      {"UBSAN_OPTIONS", "halt_on_error=1:exitcode=99:print_stacktrace=1"},
  };
  for (const auto &[name, value] : env) vars[name] = value;
  std::vector<std::string> texts;
  for (const auto &[name, value] : vars) {
    if (!value.empty()) texts.push_back(name + "=" + value);
  }
  Args argText{CALTOFAL_TOOL};
  argText.insert(argText.end(), args.begin(), args.end());
  std::vector<char *> envp;
  std::vector<char *> argv;
  for (std::string &text : texts) envp.push_back(text.data());
  for (std::string &text : argText) argv.push_back(text.data());
  envp.push_back(nullptr);
  argv.push_back(nullptr);

  const std::string out = stdoutFile.empty() ? path("stdout") : stdoutFile;
  const std::string err = path("stderr");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, cwd.empty() ? dir_.c_str() : cwd.c_str());
  pid_t pid = 0;
  int rc = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (rc != 0 || waitpid(pid, &status, 0) != pid) {
    throw std::runtime_error("cannot run the tool in " + cwd + ": " + std::strerror(rc));
  }
  return Outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                 stdoutFile.empty() ? readFile(out) : std::string(), readFile(err)};
}

::testing::AssertionResult endedWith(const Outcome &outcome, std::initializer_list<int> allowed) {
  bool sanitized = outcome.status == 99 || outcome.err.find("Sanitizer") != std::string::npos ||
                   outcome.err.find("runtime error") != std::string::npos;
  for (int status : allowed) {
    if (!sanitized && outcome.status == status) return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "exit status " << outcome.status << "\nstdout:\n"
                                       << outcome.out << "stderr:\n"
                                       << outcome.err;
}

ModelTest::ModelTest() : model_(box_.path("gateway.model")) {
  writeFile(model_, fixture("gateway.model"));
}

Outcome ModelTest::tool(Args args) const {
  args.insert(args.begin(), {"--model", model_});
  return box_.run(args);
}

std::string fixture(const std::string &name) {
  return readFile(CLI_MODELS "/" + name);
}

std::string readFile(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void writeFile(const std::string &path, const std::string &text) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!(out << text)) throw std::runtime_error("cannot write " + path);
}

std::vector<std::string> splitLines(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

Args words(const std::string &text) {
  Args out;
  std::istringstream in(text);
  for (std::string word; in >> word;) out.push_back(word);
  return out;
}

std::vector<Args> commandList(const std::string &text) {
  std::vector<Args> out;
  std::istringstream in(text);
  for (std::string command; std::getline(in, command, ',');) out.push_back(words(command));
  return out;
}

}  // namespace clitest
