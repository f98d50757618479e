// Replays the transcripts of cases/ (README.md there says how they read).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim_msg.h"

namespace {

std::string readFile(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in) << "cannot read " << path;
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string fixture(const std::string &name) {
  return readFile(SIM_CASES "/" + name);
}

class Transcript : public ::testing::TestWithParam<const char *> {
 protected:
  void SetUp() override {
    calsim::reset();
    char tmpl[] = "/tmp/simXXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
  }
  void TearDown() override {
    calsim::reset();
    unsetenv("CALTOFAL_MODEL");
    unsetenv("CALTOFAL_FAIL");
    std::filesystem::remove_all(dir_);
  }

  // Replaces a scratch file through a rename, as another process would.
  void put(const std::string &name, const std::string &text) {
    std::ofstream(dir_ + "/new", std::ios::binary) << text;
    EXPECT_EQ(rename((dir_ + "/new").c_str(), (dir_ + "/" + name).c_str()), 0);
  }

  std::string run(const std::string &step) {
    if (step[0] >= '0' && step[0] <= '9') {  // "Nx STEP": the step N times
      std::string out;
      for (int n = std::stoi(step); n > 0; --n) out += run(step.substr(step.find(' ') + 1));
      return out;
    }
    std::istringstream in(step);
    std::string verb, arg, out, error;
    in >> verb;
    std::getline(in >> std::ws, arg);
    size_t slash = verb.find('/');
    uint32_t mainOper = slash == std::string::npos ? 0 : std::stoul(verb.substr(slash + 1));
    verb = verb.substr(0, slash);
    size_t flagsEnd = verb == "get" ? arg.find(' ') : 0;
    if (verb == "get" || verb == "set" || verb == "setdb") {
      simtest::Msg msg(mainOper        ? mainOper
                       : verb == "get" ? MOPT_GET
                                       : MOPT_SET,
                       flagsEnd ? std::stoul(arg.substr(0, flagsEnd), nullptr, 0) : SOPT_OBJVALUE,
                       flagsEnd < arg.size() ? arg.substr(flagsEnd) : "");
      int rc = verb == "get"   ? cal_getValue(msg.get())
               : verb == "set" ? cal_setValue(msg.get())
                               : cal_setValueToDb(msg.get());
      error = calsim_lastError();
      if (rc != 0 || !error.empty()) out = std::to_string(rc) + " " + error + "\n";
      out += msg.dump();
    } else if (verb == "load" || verb == "text") {
      calsim::reset();
      bool text = verb == "text";
      if (!calsim::loadModelString(text ? simtest::unescape(arg) : fixture(arg), text ? "m" : arg,
                                   &error)) {
        out = error + "\n";
      }
    } else if (verb == "file") {
      if (!arg.empty()) {
        calsim::reset();
        put(arg, fixture(arg));
        std::filesystem::permissions(model_ = dir_ + "/" + arg, std::filesystem::perms(0604));
      }
      if (!calsim::loadModelFile(model_, &error)) out = error + "\n";
    } else if (verb == "put") {
      put(arg.substr(0, arg.find(' ')), simtest::unescape(arg, arg.find(' ') + 1));
    } else if (verb == "cat") {
      out = readFile(arg.empty() ? model_ : dir_ + "/" + arg);
    } else if (verb == "mode") {
      char mode[16];
      snprintf(mode, sizeof mode, "%o\n",
               static_cast<unsigned>(std::filesystem::status(model_).permissions()));
      out = mode;
    } else if (verb == "journal") {
      for (const std::string &line : calsim::journal()) out += line + "\n";
    } else if (verb == "requests") {
      out = simtest::describe(calsim::requests());
    } else if (verb == "inject") {
      calsim::injectFailure(std::stoi(arg), std::stoi(arg.substr(arg.find(' '))));
    } else if (verb == "env") {
      setenv("CALTOFAL_MODEL", (dir_ + "/" + arg).c_str(), 1);
    } else if (verb == "fail") {  // the failure map; "fail" alone unsets it
      if (arg.empty()) {
        unsetenv("CALTOFAL_FAIL");
      } else {
        setenv("CALTOFAL_FAIL", simtest::unescape(arg).c_str(), 1);
      }
    } else if (verb == "check") {
      out = calsim_failureMapProblem(simtest::unescape(arg).c_str());
      out = out.empty() ? "fine\n" : out + "\n";
    } else if (verb == "reset") {
      calsim::reset();
    } else {
      ADD_FAILURE() << "unknown step " << verb;
    }
    for (size_t at; (at = out.find(dir_)) != std::string::npos;)
      out.replace(at, dir_.size(), "DIR");
    return out;
  }

  std::string dir_, model_;
};

TEST_P(Transcript, Replays) {
  const std::string name = std::string(GetParam()) + ".transcript";
  struct Step {
    int line;
    std::string command, expected;
  };
  std::vector<Step> steps;
  std::istringstream text(fixture(name));
  int number = 0;
  for (std::string line; std::getline(text, line);) {
    ++number;
    if (line.rfind("$ ", 0) == 0) {
      steps.push_back({number, line.substr(2), ""});
    } else if (!steps.empty() && line.rfind("|", 0) == 0) {
      steps.back().expected += (line.size() > 2 ? line.substr(2) : "") + "\n";
    } else if (!steps.empty() && line.rfind("< ", 0) == 0) {
      steps.back().expected += fixture(line.substr(2));
    } else if (!line.empty() && line[0] != '#') {
      ADD_FAILURE() << name << ":" << number << ": unreadable line";
    }
  }
  ASSERT_FALSE(steps.empty());
  for (const Step &step : steps) {
    EXPECT_EQ(run(step.command), step.expected) << name << ":" << step.line << ": " << step.command;
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, Transcript,
                         ::testing::Values("model_text", "get", "set", "writeback", "journal",
                                           "environment", "emulator", "failures"),
                         [](const auto &info) { return std::string(info.param); });

}  // namespace
