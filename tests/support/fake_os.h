// The fake side of the library's OS seam for unit tests: records every
// command line, serves canned command output and files, and captures the
// console, syslog, standard output and standard error.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fakeos {

struct Reply {
  Reply() = default;
  Reply(std::string out, int st = 0, bool fails = false)  // NOLINT: brace-initialised in tests
      : output(std::move(out)), status(st), startFails(fails) {}

  std::string output;       // what the command prints
  int status = 0;           // wait status (system()/pclose() result)
  bool startFails = false;  // openCommand returns nullptr / run returns -1
  std::vector<std::pair<std::string, std::string>> writes;  // files the command writes
};

// Forget everything: commands, replies, files, captures, fixed time, sleeps.
void reset();

// Reply for one exact command line (otherwise: no output, status 0).
void onCommand(const std::string &command, Reply reply);
// Every command line run so far, in order (run and openCommand alike).
std::vector<std::string> commands();

void setFile(const std::string &path, const std::string &content);
std::optional<std::string> file(const std::string &path);
// openFile of this path fails even if the file exists.
void failOpen(const std::string &path);
// exists() is true for files and for paths named here.
void addPath(const std::string &path);

// Everything written to the console, concatenated, and write by write.
std::string console();
std::vector<std::string> consoleWrites();
void setConsoleFails(bool fails);  // consoleWrite returns -1

std::vector<std::pair<int, std::string>> syslogLines();
std::string stdoutText();
std::string stderrText();

// The local time the seam reports; without one the conversion fails.
void setTime(const std::tm &when);
std::vector<unsigned> sleeps();

// Off: command lines, console, syslog, stdout and stderr are not kept (long
// runs with many calls); reset() turns it on again.
void setCapture(bool on);

}  // namespace fakeos
