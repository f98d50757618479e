// The tool's contract beyond single outputs: exit statuses, what set changes
// in the model file, the journal, the working copy and odd arguments.
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "tool_runner.h"

namespace clitest {
namespace {

using Json = nlohmann::ordered_json;

bool exists(const std::string &path) {
  struct stat st {};
  return stat(path.c_str(), &st) == 0;
}

TEST_F(ModelTest, EmptyAndOverlongArgumentsAreUsageErrors) {
  const std::string &m = model_;
  const Args cases[] = {
      {"--model", m},
      {"--model", "", "opmode"},
      {"--model", m, "get", ""},
      {"--model", m, "get", "Device.IP.Interface.1", ""},
      {"--model", m, "get", std::string(256, 'D')},
      {"--model", m, "set", "Device.IP.Interface.1", "Name=" + std::string(1024, 'v')},
      {"--model", m, "set", "Device.IP.Interface.1", std::string(256, 'N') + "=1"},
      {"--model", m, "wan", "dns", ""},
      {"--model", m, "wan", "uci-section", ""},
      {"--model", m, "find", "Device.A", "", "x", "B"},
      {"--model", m, "--fail", "", "lan"},
  };
  for (const Args &args : cases) {
    Outcome o = box_.run(args);
    EXPECT_TRUE(endedWith(o, {2}));
    EXPECT_EQ(splitLines(o.err).back().rfind("usage: caltofal [--model FILE] [--json] ", 0), 0u);
  }
  EXPECT_EQ(readFile(model_), fixture("gateway.model"));
}

// A set, plain or saved from a Wi-Fi page, rewrites just the lines of the
// values it changed.
TEST_F(ModelTest, SetChangesExactlyTheNamedLines) {
  const struct {
    std::string model;
    Args args;
    std::string out;
    std::vector<std::string> changed;  // "[SECTION] BEFORE => AFTER"
  } cases[] = {
      {fixture("gateway.model"),
       {"set", "Device.IP.Interface.1", "Name=lan0", "Enable=false"},
       "Device.IP.Interface.1\n  Name   = lan0\n  Enable = false\napplied\n",
       {"[Device.IP.Interface.1] Enable = true => Enable = false",
        "[Device.IP.Interface.1] Name = br-lan => Name = lan0"}},
      {readFile(CALTOFAL_SAMPLE_MODEL),
       {"wifi", "set", "ssid", "1", "SSID=Garden"},
       "changed  Device.WiFi.SSID.1 SSID: Zintu-5A3C -> Garden\napplied\n",
       {"[Device.WiFi.SSID.1] SSID = Zintu-5A3C => SSID = Garden"}},
  };
  for (const auto &c : cases) {
    writeFile(model_, c.model);
    Outcome o = tool(c.args);
    ASSERT_TRUE(endedWith(o, {0})) << o.err;
    EXPECT_EQ(o.out, c.out);
    const std::vector<std::string> before = splitLines(c.model),
                                   after = splitLines(readFile(model_));
    ASSERT_EQ(before.size(), after.size());
    std::vector<std::string> changed;
    std::string section;
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (before[i].rfind('[', 0) == 0) section = before[i];
      if (before[i] != after[i]) changed.push_back(section + " " + before[i] + " => " + after[i]);
    }
    EXPECT_EQ(changed, c.changed);
  }
}

TEST_F(ModelTest, ValuesTravelVerbatim) {
  const std::string value = "  %s%n \"q\" \\ caf\xc3\xa9 a=b  ";
  ASSERT_TRUE(endedWith(tool({"set", "Device.PPP.Interface.1", "Password=" + value}), {0}));
  Outcome o = tool({"--json", "get", "Device.PPP.Interface.1", "Password"});
  ASSERT_TRUE(endedWith(o, {0}));
  EXPECT_EQ(Json::parse(o.out)[0]["parameters"]["Password"], value);
}

// Only an applied set reaches the journal; its JSON form names the file.
TEST_F(ModelTest, OnlyAnAppliedSetReachesTheJournal) {
  ASSERT_TRUE(endedWith(tool({"set", "--db-only", "Device.IP.Interface.1", "Name=stored"}), {0}));
  EXPECT_FALSE(exists(model_ + ".journal"));
  ASSERT_TRUE(endedWith(tool({"set", "Device.IP.Interface.1", "Name=applied"}), {0}));
  ASSERT_TRUE(endedWith(tool({"set", "--db-only", "Device.IP.Interface.1", "Name=again"}), {0}));
  Json json = Json::parse(tool({"--json", "journal"}).out);
  EXPECT_EQ(json["journal"], model_ + ".journal");
  EXPECT_EQ(json["entries"], Json::array({"set Device.IP.Interface.1 Name=applied"}));
}

// The shipped library and the emulator, as a host program runs them, with a
// failure map from the environment.
TEST_F(ModelTest, FailuresOnDemandComeFromTheEnvironment) {
  const std::string sample = readFile(CALTOFAL_SAMPLE_MODEL);
  writeFile(model_, sample);
  box_.env = {{"CALTOFAL_FAIL", "Device.DHCPv4.Server.=-5,Device.X_ZINTU_CurrentNetwork=-9"}};
  Outcome o = tool({"--json", "lan"});
  ASSERT_TRUE(endedWith(o, {1}));
  // A code other than -1 goes on: the unanswered request's own empty Enable
  // is read, and the DHCP server shows off.
  EXPECT_EQ(Json::parse(o.out)["bDHCPv4Active"], 0);
  EXPECT_EQ(o.err,
            "caltofal: the LAN IPv4 settings: the last request failed: Device.DHCPv4.Server "
            "fails on demand with -5 (CALTOFAL_FAIL)\n");
  o = tool({"opmode"});
  EXPECT_TRUE(endedWith(o, {1}));
  EXPECT_EQ(o.err,
            "caltofal: no operation mode in Device.X_ZINTU_CurrentNetwork: "
            "Device.X_ZINTU_CurrentNetwork fails on demand with -9 (CALTOFAL_FAIL)\n");

  // --fail adds to the environment's map; a failing set changes nothing.
  o = tool({"--fail", "Device.IP.Interface.1=-3", "set", "Device.IP.Interface.1", "Name=x"});
  EXPECT_TRUE(endedWith(o, {1}));
  EXPECT_EQ(readFile(model_), sample);

  box_.env = {{"CALTOFAL_FAIL", "Device.A=-5,Device.B"}};
  o = tool({"get", "Device.IP.Interface.1"});
  EXPECT_TRUE(endedWith(o, {1}));
  EXPECT_EQ(o.out, "");
  EXPECT_EQ(o.err, "caltofal: CALTOFAL_FAIL: entry 2 'Device.B' has no '=' (want PATH=CODE)\n");
}

TEST(WorkingCopy, StartsFromTheSampleAndResets) {
  Sandbox box;
  const std::string sample = readFile(CALTOFAL_SAMPLE_MODEL);
  const std::string copy = box.path("state/caltofal/gateway.model");
  auto name = [&](const std::string &cwd) {
    Outcome o = box.run({"--json", "get", "Device.IP.Interface.1", "Name"}, cwd);
    EXPECT_TRUE(endedWith(o, {0}));
    return Json::parse(o.out).at(0).at("parameters").at("Name").get<std::string>();
  };
  const std::string original = name("/");
  EXPECT_EQ(readFile(copy), sample);

  ASSERT_TRUE(endedWith(box.run({"set", "Device.IP.Interface.1", "Name=" + original + "-x"}), {0}));
  EXPECT_EQ(readFile(CALTOFAL_SAMPLE_MODEL), sample);
  EXPECT_NE(readFile(copy), sample);
  EXPECT_TRUE(exists(copy + ".journal"));
  EXPECT_EQ(name(box.path("state")), original + "-x");

  Outcome reset = box.run({"reset"});
  EXPECT_TRUE(endedWith(reset, {0}));
  EXPECT_EQ(reset.out, "removed " + copy + "; the next command starts from the sample\n");
  EXPECT_FALSE(exists(copy));
  EXPECT_FALSE(exists(copy + ".journal"));
  EXPECT_EQ(box.run({"reset"}).out, "nothing to reset: no working copy at " + copy + "\n");
  EXPECT_EQ(name("/"), original);
}

TEST(WorkingCopy, LivesUnderHomeWithoutAnAbsoluteStateHome) {
  for (const char *state : {"", "relative/state"}) {
    Sandbox box;
    box.env = {{"XDG_STATE_HOME", state}};
    EXPECT_TRUE(endedWith(box.run({"get", "Device"}), {0}));
    EXPECT_TRUE(exists(box.path("home/.local/state/caltofal/gateway.model"))) << state;
    EXPECT_FALSE(exists(box.path("relative")));
  }
}

TEST_F(ModelTest, ModelPathsAreTakenFromTheCurrentDirectory) {
  ASSERT_EQ(mkdir(box_.path("sub").c_str(), 0700), 0);
  Outcome o = box_.run({"--model", "../gateway.model", "set", "Device.IP.Interface.1", "Name=rel"},
                       box_.path("sub"));
  EXPECT_TRUE(endedWith(o, {0}));
  EXPECT_NE(readFile(model_).find("\nName = rel\n"), std::string::npos);

  EXPECT_EQ(box_.run({"--model", "missing.model", "opmode"}).err,
            "caltofal: cannot use the model missing.model: No such file or directory\n");
  writeFile(box_.path("broken.model"), "Enable = true\n");
  Outcome broken = box_.run({"--model", "broken.model", "get", "Device"});
  EXPECT_TRUE(endedWith(broken, {1}));
  EXPECT_NE(broken.err.find("broken.model:1: "), std::string::npos) << broken.err;
}

TEST_F(ModelTest, OddArgumentsNeverCrash) {
  const std::string odd[] = {
      "",
      std::string(10000, 'A'),
      "\xff\xfe\x80 not utf-8",
      "%s%n%s%n%x",
      "-",
      "..",
      "Device.IP.Interface.1.&",
      "x\n[Device.Evil]\nName = y",
      "'; touch pwned #",
      "\x1b]0;title\x07\x1b[2J",
  };
  // '@' stands for the odd text.
  const std::vector<Args> forms = commandList(
      "--model @ opmode, get @, get Device.IP.Interface.1 @, set Device.IP.Interface.1 @, "
      "set Device.IP.Interface.1 Name=@, set Device.IP.Interface.1 @=1, set --db-only @ Name=1, "
      "--json host @, wan dns @ --static, --json wan dns @, wan uci-section @, "
      "wan lower-layers @");
  for (const std::string &x : odd) {
    for (Args args : forms) {
      for (std::string &arg : args) {
        std::size_t at = arg.find('@');
        if (at != std::string::npos) arg.replace(at, 1, x);
      }
      if (args[0] != "--model") args.insert(args.begin(), {"--model", model_});
      Outcome o = box_.run(args);
      EXPECT_TRUE(endedWith(o, {0, 1, 2})) << args[2] << " [" << x.substr(0, 20);
      EXPECT_EQ((o.out + o.err).find('\x1b'), std::string::npos) << "terminal control passed";
      if (o.status == 0 && o.out.rfind("{", 0) == 0) {
        EXPECT_TRUE(Json::accept(o.out)) << o.out;
      }
    }
  }
  EXPECT_EQ(readFile(model_).find("[Device.Evil]"), std::string::npos);
  EXPECT_FALSE(exists(box_.path("pwned")));
  EXPECT_TRUE(endedWith(tool({"get", "Device.IP.Interface.1"}), {0}));
}

TEST_F(ModelTest, OutputThatCannotBeWrittenIsAFailure) {
  Outcome o = box_.run({"--model", model_, "get", "Device.IP.Interface.1"}, {}, "/dev/full");
  EXPECT_TRUE(endedWith(o, {1}));
  EXPECT_EQ(o.err, "caltofal: cannot write the output\n");
}

}  // namespace
}  // namespace clitest
