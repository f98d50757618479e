// Runs the built caltofal in a scratch directory of its own: HOME and
// XDG_STATE_HOME point inside it, so no test touches the user's state.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace clitest {

using Args = std::vector<std::string>;

struct Outcome {
  int status = -1;  // exit status; -1 when a signal ended the tool
  std::string out;
  std::string err;
};

class Sandbox {
 public:
  Sandbox();
  ~Sandbox();
  std::string path(const std::string &name) const { return dir_ + "/" + name; }
  // Runs the tool in `cwd` (default: the scratch directory), standard output
  // to `stdoutFile` when one is given.
  Outcome run(const Args &args, const std::string &cwd = {},
              const std::string &stdoutFile = {}) const;

  // Environment changes for the next runs: a variable set, or (empty value) unset.
  std::vector<std::pair<std::string, std::string>> env;

 private:
  std::string dir_;
};

// Passes when the tool ended by itself with one of `allowed` and no
// sanitizer reported anything (sanitizers exit with 99 here).
::testing::AssertionResult endedWith(const Outcome &outcome, std::initializer_list<int> allowed);

// A test on a scratch copy of tests/cli/models/gateway.model.
class ModelTest : public ::testing::Test {
 protected:
  ModelTest();
  Outcome tool(Args args) const;  // with --model naming the copy

  Sandbox box_;
  std::string model_;
};

std::string fixture(const std::string &name);  // a file of tests/cli/models
std::string readFile(const std::string &path);
void writeFile(const std::string &path, const std::string &text);
std::vector<std::string> splitLines(const std::string &text);
Args words(const std::string &text);                     // the text split at blanks
std::vector<Args> commandList(const std::string &text);  // commands apart by commas

}  // namespace clitest
