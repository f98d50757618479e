// Replays the transcripts of models/: each command's exact output, error
// text and exit status; every JSON output must parse. CALTOFAL_UPDATE_GOLDEN=1
// rewrites the outputs of each transcript, keeping its commands and comments.
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tool_runner.h"

namespace clitest {
namespace {

struct Step {
  int line = 0;
  Args args;
  int status = 0;
  std::string out;
  std::string err;
};

std::vector<Step> readTranscript(const std::string &text) {
  std::vector<Step> steps;
  int number = 0;
  for (const std::string &line : splitLines(text)) {
    ++number;
    if (line.rfind("$ ", 0) == 0) {
      steps.push_back(Step{number, words(line.substr(2)), 0, {}, {}});
    } else if (!steps.empty() && !line.empty() && line[0] != '#') {
      std::string rest = line.size() > 2 ? line.substr(2) : std::string();
      if (line[0] == '|') steps.back().out += rest + "\n";
      if (line[0] == '!') steps.back().err += rest + "\n";
      if (line[0] == '?') steps.back().status = std::stoi(rest);
    }
  }
  return steps;
}

// The transcript with each step's output lines replaced by what ran.
std::string rewritten(const std::string &text, const std::vector<Outcome> &outcomes) {
  std::string out;
  std::size_t step = 0;
  auto emit = [&out](char mark, const std::string &lines) {
    for (const std::string &line : splitLines(lines)) {
      out += std::string(1, mark) + (line.empty() ? "" : " " + line) + "\n";
    }
  };
  for (const std::string &line : splitLines(text)) {
    if (!line.empty() && (line[0] == '|' || line[0] == '!' || line[0] == '?')) continue;
    out += line + "\n";
    if (line.rfind("$ ", 0) != 0 || step >= outcomes.size()) continue;
    const Outcome &o = outcomes[step++];
    emit('|', o.out);
    emit('!', o.err);
    if (o.status != 0) out += "? " + std::to_string(o.status) + "\n";
  }
  return out;
}

// Each transcript runs in order on a scratch copy of the model of its name;
// "sample" runs on the bundled sample gateway.
class Transcript : public ::testing::TestWithParam<const char *> {};

TEST_P(Transcript, MatchesTheToolsOutput) {
  const std::string name = GetParam();
  Sandbox box;
  writeFile(box.path("model"),
            name == "sample" ? readFile(CALTOFAL_SAMPLE_MODEL) : fixture(name + ".model"));
  std::vector<Step> steps = readTranscript(fixture(name + ".transcript"));
  ASSERT_FALSE(steps.empty());
  std::vector<Outcome> outcomes;
  for (const Step &step : steps) {
    Args args{"--model", box.path("model")};
    args.insert(args.end(), step.args.begin(), step.args.end());
    Outcome o = box.run(args);
    outcomes.push_back(o);
    std::string where = name + ".transcript:" + std::to_string(step.line);
    EXPECT_TRUE(endedWith(o, {step.status})) << where;
    EXPECT_EQ(o.out, step.out) << where;
    EXPECT_EQ(o.err, step.err) << where;
    if (step.args[0] == "--json" && step.status == 0) {
      EXPECT_TRUE(nlohmann::json::accept(o.out)) << where;
    }
  }
  if (std::getenv("CALTOFAL_UPDATE_GOLDEN") != nullptr) {
    const std::string text = rewritten(fixture(name + ".transcript"), outcomes);
    std::ofstream(std::string(CLI_MODELS) + "/" + name + ".transcript") << text;
  }
}

INSTANTIATE_TEST_SUITE_P(Models, Transcript,
                         ::testing::Values("gateway", "empty", "bridge", "partial", "sample",
                                           "wifi"));

}  // namespace
}  // namespace clitest
