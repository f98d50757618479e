// Internal message handling: an owned request message that is released on
// every path, ranges over an answer's objects and parameters, and bounded
// copies into fixed record fields.
#pragma once

#include <cstddef>
#include <cstring>

#include "caltofal.h"
#include "help_objlist.h"

namespace caltofal {

// A request message on the caller's stack. release() frees its lists and
// zeroes the header for the next request; the destructor releases too.
class Message {
 public:
  Message() = default;
  Message(const Message &) = delete;
  Message &operator=(const Message &) = delete;
  ~Message() { release(); }

  MsgHeader *get() { return &header_; }
  ObjList *head() const { return static_cast<ObjList *>(header_.pObjList); }
  bool empty() const { return header_.pObjList == nullptr; }
  void release() {
    help_delMsg(&header_, 1);
    header_ = MsgHeader{};
  }

 private:
  MsgHeader header_{};
};

// Ranges over a value-kind object list and an object's parameters.
template <typename Node, std::size_t Offset>
class LinkRange {
 public:
  class iterator {
   public:
    explicit iterator(HelpListLink *at) : at_(at) {}
    Node *operator*() const {
      return reinterpret_cast<Node *>(reinterpret_cast<char *>(at_) - Offset);
    }
    iterator &operator++() {
      at_ = at_->next;
      return *this;
    }
    bool operator!=(const iterator &other) const { return at_ != other.at_; }

   private:
    HelpListLink *at_;
  };
  explicit LinkRange(HelpListLink *head) : head_(head) {}
  iterator begin() const { return iterator(head_ != nullptr ? head_->next : nullptr); }
  iterator end() const { return iterator(head_); }

 private:
  HelpListLink *head_;
};

using ObjRange = LinkRange<ObjList, offsetof(ObjList, xOlist)>;
using ParamRange = LinkRange<ParamList, offsetof(ParamList, xPlist)>;

inline ObjRange objectsOf(const void *listHead) {
  auto *head = static_cast<ObjList *>(const_cast<void *>(listHead));
  return ObjRange(head != nullptr ? &head->xOlist : nullptr);
}
inline ObjRange objectsOf(const Message &msg) {
  return objectsOf(msg.head());
}
inline ParamRange paramsOf(ObjList *obj) {
  return ParamRange(obj != nullptr ? &obj->xParamList : nullptr);
}

// Names compared over at most 256 characters, exactly.
inline bool sameName(const char *a, const char *b) {
  // Most names compared differ at once: the first character decides them.
  return a[0] == b[0] && std::strncmp(a, b, 256) == 0;
}

// snprintf(dst, width, "%s", src): at most width-1 characters and a NUL.
void copyCut(char *dst, std::size_t width, const char *src);
// The text's characters without a terminator (the record is zero-filled),
// never more than width-1 of them so the field keeps a terminator.
void copyChars(char *dst, std::size_t width, const char *src);

// strncpy(dst, src, n): the text's first n bytes at most, the rest of the n
// bytes zeroed; no terminator when the text has n characters or more.
void copyPadded(char *dst, const char *src, std::size_t n);

// snprintf into a fixed buffer where cutting the text at the buffer is meant.
void formatCut(char *dst, std::size_t width, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

template <std::size_t N>
void copyCut(char (&dst)[N], const char *src) {
  copyCut(dst, N, src);
}
template <std::size_t N>
void copyChars(char (&dst)[N], const char *src) {
  copyChars(dst, N, src);
}

}  // namespace caltofal
