// File models: surgical write-back, the journal file, and changes made by
// other processes.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "sim_msg.h"

namespace {

using simtest::Msg;

const char kOriginal[] =
    "# Sample gateway\n"
    "[Device.IP.Interface.1]\n"
    "  Enable = true\n"
    "Name=br-lan\n"
    "Alias\t=  \"  padded  \"\n"
    "Empty =\n"
    "\n"
    "# WAN side\n"
    "[Device.IP.Interface.2]\n"
    "Name = wan\n"
    "[Device.IP.Interface.2.Stats]\n"
    "Bytes = 1\n"
    "\n"
    "[Device.PPP.Interface.1]\n"
    "Name = ppp0\n";

// The original text with each (old, new) line block replaced once: the diff.
std::string edited(std::string text,
                   const std::vector<std::pair<std::string, std::string>> &edits) {
  for (const auto &[from, to] : edits) {
    size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
  }
  return text;
}

class WriteBack : public ::testing::Test {
 protected:
  void SetUp() override {
    calsim::reset();
    char tmpl[] = "/tmp/simwbXXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
    path_ = dir_ + "/gateway.model";
  }
  void TearDown() override {
    calsim::reset();
    std::string cmd = "rm -rf '" + dir_ + "'";
    ASSERT_EQ(system(cmd.c_str()), 0);
  }

  void write(const std::string &path, const std::string &text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string read(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }
  void load(const std::string &text) {
    write(path_, text);
    std::string error;
    ASSERT_TRUE(calsim::loadModelFile(path_, &error)) << error;
  }
  static int set(const std::vector<simtest::ReqObj> &objects, bool apply = true) {
    Msg msg(MOPT_SET, SOPT_OBJVALUE, objects);
    return apply ? cal_setValue(msg.get()) : cal_setValueToDb(msg.get());
  }

  std::string dir_;
  std::string path_;
};

TEST_F(WriteBack, ModifyRewritesOnlyTheValues) {
  load(kOriginal);
  ASSERT_EQ(chmod(path_.c_str(), 0640), 0);
  ASSERT_EQ(set({{"Device.IP.Interface.1",
                  {{"Enable", "false"}, {"Name", " lead"}, {"Alias", "plain"}, {"Empty", "now"}},
                  OBJOPT_MODIFY},
                 {"Device.PPP.Interface.1.", {{"Name", "\"q\\"}}, OBJOPT_MODIFY}}),
            0)
      << calsim_lastError();
  EXPECT_EQ(read(path_), edited(kOriginal, {{"  Enable = true\n", "  Enable = false\n"},
                                            {"Name=br-lan\n", "Name=\" lead\"\n"},
                                            {"Alias\t=  \"  padded  \"\n", "Alias\t=  plain\n"},
                                            {"Empty =\n", "Empty = now\n"},
                                            {"Name = ppp0\n", "Name = \"\\\"q\\\\\"\n"}}));
  struct stat st;
  ASSERT_EQ(stat(path_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);

  // What was written reads back the same.
  calsim::reset();
  std::string error;
  ASSERT_TRUE(calsim::loadModelFile(path_, &error)) << error;
  EXPECT_EQ(calsim::value("Device.IP.Interface.1", "Name"), " lead");
  EXPECT_EQ(calsim::value("Device.PPP.Interface.1", "Name"), "\"q\\");

  ASSERT_EQ(set({{"Device.IP.Interface.1", {{"Name", ""}}, OBJOPT_MODIFY}}), 0);
  EXPECT_NE(read(path_).find("\nName=\n"), std::string::npos);
}

TEST_F(WriteBack, AddInsertsAfterTheTablesLastInstanceAndDelRemovesSections) {
  load(kOriginal);
  ASSERT_EQ(set({{"Device.IP.Interface.", {{"Name", "new"}, {"Alias", " x"}}, OBJOPT_ADD}}), 0);
  EXPECT_EQ(read(path_), edited(kOriginal, {{"Bytes = 1\n",
                                             "Bytes = 1\n\n"
                                             "[Device.IP.Interface.3]\n"
                                             "Name = new\n"
                                             "Alias = \" x\"\n"}}));

  ASSERT_EQ(set({{"Device.IP.Interface.3", {}, OBJOPT_DEL}}), 0);
  EXPECT_EQ(read(path_), kOriginal);

  ASSERT_EQ(set({{"Device.IP.Interface.2.", {}, OBJOPT_DEL}}), 0);
  EXPECT_EQ(read(path_), edited(kOriginal, {{"[Device.IP.Interface.2]\n"
                                             "Name = wan\n"
                                             "[Device.IP.Interface.2.Stats]\n"
                                             "Bytes = 1\n",
                                             ""}}));
}

TEST_F(WriteBack, AddWithoutInstancesGoesAfterTheTableOrAtTheEnd) {
  load(
      "[Device.NAT.PortMapping]\n"
      "Note = table\n"
      "[Device.Hosts]\n"
      "HostNumberOfEntries = 0");  // no newline at the end
  ASSERT_EQ(set({{"Device.NAT.PortMapping", {{"Port", "80"}}, OBJOPT_ADD},
                 {"Device.Hosts.Host", {{"MAC", ""}}, OBJOPT_ADD}}),
            0);
  EXPECT_EQ(read(path_),
            "[Device.NAT.PortMapping]\n"
            "Note = table\n"
            "\n"
            "[Device.NAT.PortMapping.1]\n"
            "Port = 80\n"
            "[Device.Hosts]\n"
            "HostNumberOfEntries = 0\n"
            "\n"
            "[Device.Hosts.Host.1]\n"
            "MAC =\n");
}

TEST_F(WriteBack, KeepsCrLfLineEnds) {
  load("[Device.A.1]\r\nX = 1\r\n");
  ASSERT_EQ(set({{"Device.A.1", {{"X", "2"}}, OBJOPT_MODIFY}, {"Device.A", {}, OBJOPT_ADD}}), 0);
  EXPECT_EQ(read(path_), "[Device.A.1]\r\nX = 2\r\n\r\n[Device.A.2]\r\n");
}

TEST_F(WriteBack, JournalFileGetsOneLinePerAppliedObject) {
  load(kOriginal);
  ASSERT_EQ(set({{"Device.IP.Interface.2", {{"Name", "w"}}, OBJOPT_MODIFY},
                 {"Device.IP.Interface", {{"Name", "x"}}, OBJOPT_ADD}}),
            0);
  ASSERT_EQ(set({{"Device.IP.Interface.1", {{"Name", "stored only"}}, OBJOPT_MODIFY}}, false), 0);
  ASSERT_EQ(set({{"Device.IP.Interface.3", {}, OBJOPT_DEL}}), 0);
  const char expected[] =
      "set Device.IP.Interface.2 Name=w\n"
      "add Device.IP.Interface.3 Name=x\n"
      "del Device.IP.Interface.3\n";
  EXPECT_EQ(read(path_ + ".journal"), expected);
  EXPECT_EQ(calsim::journal(), (std::vector<std::string>{"set Device.IP.Interface.2 Name=w",
                                                         "add Device.IP.Interface.3 Name=x",
                                                         "del Device.IP.Interface.3"}));
  EXPECT_EQ(calsim::value("Device.IP.Interface.1", "Name"), "stored only");
}

TEST_F(WriteBack, RefusedSetLeavesTheFileAlone) {
  load(kOriginal);
  EXPECT_EQ(set({{"Device.IP.Interface.1", {{"Name", "x"}}, OBJOPT_MODIFY},
                 {"Device.IP.Interface.1", {{"Bogus", "x"}}, OBJOPT_MODIFY}}),
            -202);
  EXPECT_EQ(read(path_), kOriginal);
  EXPECT_EQ(read(path_ + ".journal"), "");
}

// Another process replacing the file is noticed at the next request.
TEST_F(WriteBack, RereadsAFileChangedByAnotherWriter) {
  load(kOriginal);
  EXPECT_EQ(calsim::value("Device.IP.Interface.2", "Name"), "wan");
  std::string other = dir_ + "/other";
  write(other, "[Device.IP.Interface.2]\nName = changed\n");
  ASSERT_EQ(rename(other.c_str(), path_.c_str()), 0);
  EXPECT_EQ(calsim::value("Device.IP.Interface.2", "Name"), "changed");
  ASSERT_EQ(set({{"Device.IP.Interface.2", {{"Name", "mine"}}, OBJOPT_MODIFY}}), 0);
  EXPECT_EQ(read(path_), "[Device.IP.Interface.2]\nName = mine\n");
}

// Without a pinned model the environment names the file, and a new name
// loads the new file.
TEST_F(WriteBack, FollowsTheEnvironment) {
  std::string a = dir_ + "/a.model", b = dir_ + "/b.model", bad = dir_ + "/bad.model";
  write(a, "[Device.X]\nV = a\n");
  write(b, "[Device.X]\nV = b\n");
  write(bad, "[Device.X]\nV = b\n[Device.X]\n");
  const char *saved = getenv("CALTOFAL_MODEL");
  std::string restore = saved ? saved : "";

  const std::pair<std::string, std::string> steps[] = {
      {a, "Device.X{V=a}"}, {b, "Device.X{V=b}"}, {bad, "-1"}, {a, "Device.X{V=a}"}};
  for (const auto &[path, expected] : steps) {
    SCOPED_TRACE(path);
    setenv("CALTOFAL_MODEL", path.c_str(), 1);
    Msg msg(MOPT_GET, 0x1004, {{"Device.X", {}}});
    int rc = cal_getValue(msg.get());
    EXPECT_EQ(rc == 0 ? msg.dump() : std::to_string(rc), expected);
    if (rc != 0) {
      EXPECT_EQ(calsim_lastError(), bad + ":3: duplicate object Device.X (first at line 1)");
    }
  }
  if (saved) {
    setenv("CALTOFAL_MODEL", restore.c_str(), 1);
  } else {
    unsetenv("CALTOFAL_MODEL");
  }
}

}  // namespace
