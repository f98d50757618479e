// Test messages for the emulator, built and read with the helper library and
// written as text (the object syntax of cases/README.md).
#pragma once

#include <cstdio>
#include <cstring>

#include "calsim.h"
#include "help_objlist.h"
#include "libcal.h"

namespace simtest {

using Params = std::vector<std::pair<std::string, std::string>>;

// Reads TEXT from AT up to one of STOPS, undoing the escapes.
inline std::string readUntil(const std::string &text, size_t &at, const char *stops) {
  std::string out;
  for (; at < text.size() && !strchr(stops, text[at]); ++at) {
    if (text[at] == '\\' && at + 1 < text.size()) {
      char c = text[++at];
      out += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    } else {
      out += text[at];
    }
  }
  return out;
}

inline std::string unescape(const std::string &text, size_t at = 0) {
  return readUntil(text, at, "");
}

// "PATH{A=1,B=2}", with line breaks and backslashes in values escaped.
inline std::string objectText(const std::string &name, const Params &params) {
  std::string out = name + "{";
  for (const auto &[n, v] : params) {
    out += (out.back() == '{' ? "" : ",") + n + "=";
    for (char c : v) out += c == '\n' ? "\\n" : c == '\\' ? "\\\\" : std::string(1, c);
  }
  return out + "}";
}

// A value list as text, one object a line.
inline std::string dump(ObjList *head) {
  std::string out;
  ObjList *obj;
  HELP_FOR_EACH_OBJ(head, obj) {
    Params params;
    ParamList *p;
    HELP_FOR_EACH_PARAM(obj, p) params.emplace_back(p->sParamName, p->sParamValue);
    out += objectText(obj->sObjName, params) + "\n";
  }
  return out;
}

// A header and list head from the helper, as faltocal_createMessage makes
// them; released with help_delMsg(msg, 0).
inline MsgHeader *newMessage(uint32_t listFlags) {
  auto *msg = static_cast<MsgHeader *>(help_calloc(1, sizeof(MsgHeader), "test", __LINE__));
  msg->unListFlags = listFlags;
  size_t size = (listFlags & SOPT_OBJVALUE_MASK) ? sizeof(ObjList)
                : (listFlags & SOPT_OBJATTR)     ? sizeof(ObjAttrList)
                                                 : sizeof(ObjACSList);
  char *head = static_cast<char *>(help_calloc(1, static_cast<uint32_t>(size), "test", __LINE__));
  // In every kind the two links are the record's last fields.
  auto *links = reinterpret_cast<HelpListLink *>(head + size - 2 * sizeof(HelpListLink));
  links[0].next = links[0].prev = &links[0];
  links[1].next = links[1].prev = &links[1];
  msg->pObjList = head;
  return msg;
}

// A value-list message of the objects written in TEXT; the header words are
// the library's (owner 2).
class Msg {
 public:
  Msg(uint32_t mainOper, uint32_t listFlags, const std::string &text = "")
      : msg_(newMessage(SOPT_OBJVALUE)) {
    *msg_ = {mainOper, listFlags, 2, 1, 0, msg_->pObjList};
    for (size_t at = 0; at < text.size(); ++at) {
      if (text[at] == ' ') continue;
      std::string path = readUntil(text, at, " {");
      uint32_t oper = mainOper == MOPT_SET ? OBJOPT_MODIFY : 0;
      if (size_t colon = path.find(':'); colon != std::string::npos) {
        std::string word = path.substr(0, colon);
        oper = word == "add" ? OBJOPT_ADD : word == "del" ? OBJOPT_DEL : std::stoul(word);
        path.erase(0, colon + 1);
      }
      ObjList *node = help_addObjList(head(), path.c_str(), 0, 0, oper, 0);
      if (text[at] != '{') continue;
      for (++at; at < text.size() && text[at] != '}'; at += text[at] == ',') {
        std::string name = readUntil(text, at, "=,}");
        std::string value = text[at] == '=' ? readUntil(text, ++at, ",}") : "";
        help_addParamList(node, name.c_str(), 0, value.c_str(), 0);
      }
    }
  }
  ~Msg() {
    msg_->unListFlags = SOPT_OBJVALUE;
    help_delMsg(msg_, 0);
  }
  Msg(const Msg &) = delete;
  Msg &operator=(const Msg &) = delete;

  ObjList *head() { return static_cast<ObjList *>(msg_->pObjList); }
  MsgHeader *get() { return msg_; }
  std::string dump() { return simtest::dump(head()); }

 private:
  MsgHeader *msg_;
};

// The request log, one request a line.
inline std::string describe(const std::vector<calsim::Request> &log) {
  std::string out;
  for (const calsim::Request &r : log) {
    char words[128];
    snprintf(words, sizeof words, " main=%u flags=%#x owner=%u init=%u reserved=%u%s", r.mainOper,
             r.listFlags, r.owner, r.init, r.reserved, r.hasList ? "" : " (no list)");
    out += r.entry + (r.hasMessage ? words : " (no message)");
    for (const calsim::RequestObject &o : r.objects) {
      out += " " + objectText(std::to_string(o.objOper) + ":" + o.name, o.params);
    }
    out += "\n";
  }
  return out;
}

}  // namespace simtest
