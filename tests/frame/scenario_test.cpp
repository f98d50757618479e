// Frame scenarios (scenarios.txt, on frame.model): calls into the frame on one
// message, checked against what reached the configuration layer and all that
// the library printed, logged or ran. The fixture's head explains its lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "frame/message.h"
#include "help_objlist.h"

namespace {

using caltofal::Message;

// A fixture file kept beside the tests ("" if it cannot be read).
std::string fixture(const std::string &name) {
  std::ifstream in(std::string(FRAME_FIXTURES) + "/" + name);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

struct Scenario {
  std::string name;
  std::vector<std::pair<int, std::string>> lines;  // (line number, text)
};

void PrintTo(const Scenario &scenario, std::ostream *out) {
  *out << scenario.name;
}

std::vector<Scenario> loadScenarios() {
  std::vector<Scenario> all;
  std::istringstream in(fixture("scenarios.txt"));
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.rfind("== ", 0) == 0) {
      all.push_back({line.substr(3), {}});
    } else if (!line.empty() && line[0] != '#') {
      if (all.empty()) all.push_back({"Preamble", {}});
      all.back().lines.emplace_back(number, line);
    }
  }
  if (all.empty()) all.push_back({"MissingFixture", {{0, "scenarios.txt not found"}}});
  return all;
}

std::string unescape(const std::string &text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    char c = text[++i];
    out += c == 'n' ? '\n' : c == 't' ? '\t' : c == 'e' ? '\033' : c == 's' ? ' ' : c;
  }
  return out;
}

std::string render(const calsim::Request &r) {
  char head[128];
  std::snprintf(head, sizeof head, "%s %u 0x%x %u %u", r.entry.c_str(), r.mainOper, r.listFlags,
                r.owner, r.init);
  std::string out = head;
  for (const auto &obj : r.objects) {
    out += " | " + obj.name + " " + std::to_string(obj.objOper);
    for (const auto &[name, value] : obj.params) out += " " + name + "=" + value;
  }
  return out;
}

// A scenario line: command, words, the text after the first k words, and
// the expected result (after " -> ").
struct Line {
  explicit Line(const std::string &line) {
    std::string text = line;
    if (std::size_t arrow = text.find(" -> "); arrow != std::string::npos) {
      expected = unescape(text.substr(arrow + 4));
      text.resize(arrow);
    }
    std::size_t blank = text.find(' ');
    cmd = text.substr(0, blank);
    rest = blank == std::string::npos ? "" : text.substr(blank + 1);
    std::istringstream split(rest);
    for (std::string word; split >> word;) words.push_back(word);
  }
  // Word i; "(null)" is a NULL pointer and "" an empty text.
  const char *s(std::size_t i) const {
    if (i >= words.size() || words[i] == "(null)") return nullptr;
    return words[i] == "\"\"" ? "" : words[i].c_str();
  }
  long n(std::size_t i) const { return std::stol(words.at(i), nullptr, 0); }
  std::string tail(std::size_t k) const {
    std::size_t at = 0;
    for (std::size_t i = 0; i < k; ++i) at = std::min(rest.find(' ', at), rest.size() - 1) + 1;
    return unescape(rest.substr(at));
  }
  // "RC" or, for calls with a text output, "RC TEXT" ("" for an empty one).
  void result(long rc) const { EXPECT_EQ(std::to_string(rc), expected); }
  void result(long rc, const std::string &text) const {
    EXPECT_EQ(std::to_string(rc) + " " + (text.empty() ? "\"\"" : text), expected);
  }

  std::string cmd, rest, expected;
  std::vector<std::string> words;
};

class Scenarios : public ::testing::TestWithParam<Scenario> {
 protected:
  void TearDown() override {
    unfaltocalLogType = 1;
    unfaltocalLogLevel = 5;
  }
};

TEST_P(Scenarios, Run) {
  fakeos::reset();
  calsim::reset();
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(fixture("frame.model"), "frame.model", &error)) << error;
  Message msg;
  MsgHeader *m = msg.get();
  std::map<std::string, std::string> texts;               // console, stderr, stdout
  std::map<std::string, std::vector<std::string>> lists;  // journal, command
  std::vector<std::pair<int, std::string>> syslog;
  std::size_t sent = 0;
  fakeos::Reply reply;      // the next shell command's
  ObjList *node = nullptr;  // the object that addparam adds to
  for (const auto &[number, text] : GetParam().lines) {
    SCOPED_TRACE("scenarios.txt:" + std::to_string(number) + ": " + text);
    const Line l(text);
    const std::string &cmd = l.cmd;
    if (cmd == "console" || cmd == "stderr" || cmd == "stdout") {
      texts[cmd] += l.tail(0);
    } else if (cmd == "journal" || cmd == "command") {
      lists[cmd].push_back(l.tail(0));
    } else if (cmd == "syslog") {
      syslog.emplace_back(l.n(0), l.tail(1));
    } else if (cmd == "sent") {
      auto requests = calsim::requests();
      ASSERT_LT(sent, requests.size());
      EXPECT_EQ(render(requests[sent++]), l.rest);
    } else if (cmd == "model") {
      ASSERT_TRUE(calsim::loadModelString(l.tail(0), "inline.model", &error)) << error;
    } else if (cmd == "fail") {
      calsim::injectFailure(l.n(0), l.n(1));
    } else if (cmd == "file") {
      fakeos::setFile(l.words.at(0), l.tail(1));
    } else if (cmd == "content") {
      EXPECT_EQ(fakeos::file(l.words.at(0)), l.tail(1));
    } else if (cmd == "failopen") {
      fakeos::failOpen(l.rest);
    } else if (cmd == "reply") {
      reply = fakeos::Reply(l.tail(0));
    } else if (cmd == "replyfail") {
      reply = fakeos::Reply("", 0, true);
    } else if (cmd == "logtype") {
      unfaltocalLogType = l.n(0);
    } else if (cmd == "loglevel") {
      unfaltocalLogLevel = l.n(0);
    } else if (cmd == "time") {
      std::tm when{};
      ASSERT_NE(strptime(l.rest.c_str(), "%d-%m-%Y %T", &when), nullptr);
      fakeos::setTime(when);
    } else if (cmd == "create") {
      HELP_CREATE_OBJ(m, l.n(0), l.n(1), l.n(2));
    } else if (cmd == "addobj") {
      node = help_addObjList(msg.head(), l.rest.c_str(), 0, 0, 0, 0);
    } else if (cmd == "addparam") {
      help_addParamList(node, l.s(0), 0, l.tail(1).c_str(), 0);
    } else if (cmd == "release") {
      msg.release();
      m = msg.get();
    } else if (cmd == "nomessage") {
      m = nullptr;
    } else if (cmd == "main" || cmd == "todb" || cmd == "multi") {
      auto call = cmd == "main"   ? faltocal_send_main
                  : cmd == "todb" ? faltocal_send_main_ToDb
                                  : faltocal_send_main_multi_obj;
      l.result(call(m, l.s(0), l.s(1), l.s(2), l.n(3), l.s(4), l.s(5), l.s(6), l.s(7)));
    } else if (cmd == "array") {
      std::vector<const char *> params{nullptr};
      for (std::size_t i = 4; i < l.words.size(); ++i) params.insert(params.end() - 1, l.s(i));
      l.result(faltocal_send_main_multi_obj_No_variable(m, l.s(0), l.s(1), l.s(2), l.n(3),
                                                        params.data()));
    } else if (cmd == "noarray") {
      l.result(
          faltocal_send_main_multi_obj_No_variable(m, l.s(0), l.s(1), l.s(2), l.n(3), nullptr));
    } else if (cmd == "sendmulti") {
      l.result(faltocal_SendMultiObj(l.n(0), l.n(1), l.n(2), m, l.s(3), l.s(4), l.s(5), l.n(6),
                                     l.s(7), l.s(8), l.s(9), l.s(10)));
    } else if (cmd == "sendquery") {
      l.result(faltocal_sendQuery(m));
    } else if (cmd == "deviceid") {
      l.result(GetDeviceID(l.s(0)));
    } else if (cmd == "macfile") {  // a second word: a NULL output
      char mac[18] = "unchanged";
      const bool noOutput = l.words.size() > 1;
      int rc = zintu_scapi_getMacFromFile(l.s(0), noOutput ? nullptr : mac);
      l.result(rc, noOutput ? "(null)" : mac);
    } else if (cmd == "mac") {
      l.result(zintu_isValidMacAddress(l.tail(0).c_str()));
    } else if (cmd == "ipv4") {
      l.result(zintu_isValidIPv4Address(l.tail(0).c_str()));
    } else if (cmd == "atob") {
      l.result(atob(l.tail(0).c_str()));
    } else if (cmd == "itoa") {
      char digits[16];
      std::memset(digits, 'x', sizeof digits);
      int rc = itoa(l.n(0), digits);
      l.result(rc, digits);
    } else if (cmd == "shell") {  // "(null)": a NULL command and a NULL output buffer
      bool null = l.rest == "(null)";
      std::string command = l.rest == "\"\"" ? "" : l.tail(0);
      fakeos::onCommand(command, reply);
      reply = fakeos::Reply();
      char buf[128];
      std::memset(buf, 'q', sizeof buf);
      char *out = null ? nullptr : buf;
      EXPECT_EQ(get_from_shell(null ? nullptr : command.c_str(), out), out);
      std::string got = null ? "(null)" : std::string(buf, strnlen(buf, sizeof buf));
      if (got.empty()) {
        EXPECT_EQ(std::string(buf, sizeof buf), std::string(sizeof buf, '\0'));
      }
      EXPECT_EQ(got.empty() ? "\"\"" : got, l.expected);
    } else if (cmd == "log") {
      faltocal_logLine(l.n(0), "faltocal{%s, %d}:%s", l.s(1), static_cast<int>(l.n(2)),
                       l.tail(3).c_str());
    } else if (cmd == "header") {
      EXPECT_EQ(m->unMainOper, l.n(0));
      EXPECT_EQ(m->unListFlags, l.n(1));
      EXPECT_EQ(m->unOwner, l.n(2));
      EXPECT_NE(m->pObjList, nullptr);
    } else if (cmd == "names") {
      std::vector<std::string> names;
      for (ObjList *obj : caltofal::objectsOf(msg)) names.emplace_back(obj->sObjName);
      EXPECT_EQ(names, l.words);
    } else if (cmd == "lookup") {
      char buf[256] = "untouched";
      char *out = buf;
      int rc = caltofal_paramValue_get(m->pObjList, l.s(0), l.s(1), &out);
      l.result(rc, buf);
    } else if (cmd == "param") {  // object N of the message (0: NULL); a third word: NULL out
      ObjList *obj = nullptr;
      long index = 0;
      for (ObjList *o : caltofal::objectsOf(msg)) obj = ++index == l.n(0) ? o : obj;
      const char *value = "kept";
      int rc = zintu_GetParamFromObjUnit(obj, l.s(1), l.words.size() > 2 ? nullptr : &value);
      bool inside = false;  // the value is not copied: it points into the message
      for (ParamList *p : caltofal::paramsOf(obj)) inside |= value == p->sParamValue;
      EXPECT_EQ(inside, rc == 0);
      l.result(rc, value);
    } else if (cmd == "value") {
      EXPECT_EQ(calsim::value(l.words.at(0), l.words.at(1)), l.words.at(2));
    } else {
      ADD_FAILURE() << "unknown scenario line";
    }
  }
  EXPECT_EQ(calsim::requests().size(), sent) << "requests that no 'sent' line lists";
  EXPECT_EQ(fakeos::console(), texts["console"]);
  EXPECT_EQ(fakeos::stderrText(), texts["stderr"]);
  EXPECT_EQ(fakeos::stdoutText(), texts["stdout"]);
  EXPECT_EQ(fakeos::syslogLines(), syslog);
  EXPECT_EQ(calsim::journal(), lists["journal"]);
  EXPECT_EQ(fakeos::commands(), lists["command"]);
}

INSTANTIATE_TEST_SUITE_P(Frame, Scenarios, ::testing::ValuesIn(loadScenarios()),
                         [](const auto &info) { return info.param.name; });

}  // namespace
