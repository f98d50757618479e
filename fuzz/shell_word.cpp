// The shell quoter. Property: /bin/sh reads the quoted text back as exactly
// the input, as one word (printf '%s|' WORD prints the input and one '|').
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "frame/shell.h"
#include "fuzz.h"

extern char **environ;

namespace {

std::string shellOutput(const std::string &script) {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) fuzz::fail("pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
  const char *argv[] = {"sh", "-c", script.c_str(), nullptr};
  pid_t pid = -1;
  if (posix_spawn(&pid, "/bin/sh", &actions, nullptr, const_cast<char *const *>(argv), environ) !=
      0) {
    fuzz::fail("spawn /bin/sh");
  }
  posix_spawn_file_actions_destroy(&actions);
  close(fds[1]);
  std::string out;
  char buf[4096];
  for (ssize_t n; (n = read(fds[0], buf, sizeof buf)) != 0;) {
    if (n > 0) out.append(buf, static_cast<std::size_t>(n));
  }
  close(fds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  // A command line holds no NUL: the text ends at the first one.
  const std::string input = fuzz::split(data, size).first;
  const std::string word = caltofal::shell::word(input);
  if (shellOutput("printf '%s|' " + word) != input + "|") fuzz::fail("sh reads back the input");
  return 0;
}
