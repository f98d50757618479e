// Model text: reading it into a Model, and the text forms of values and
// parameter lines that write-back produces.
//
//   # comment                       (first non-blank character '#')
//   [Device.IP.Interface.3]         (an object; no trailing dot)
//   Name = value                    (blanks and tabs around the value dropped)
//   Alias = "  quoted \" value  "   (escapes \" and \\ only)

#include <string>
#include <unordered_set>
#include <vector>

#include "model.h"

namespace calsim {
namespace {

constexpr size_t kMaxNameLength = 255;

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool isNameChar(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-';
}

// A quoted value (text starts with '"'): the unescaped text, or a reason.
bool unquote(std::string_view text, std::string *out, std::string *reason) {
  out->clear();
  for (size_t i = 1; i < text.size(); ++i) {
    char c = text[i];
    if (c == '"') {
      if (i + 1 != text.size()) {
        *reason = "text after the closing quote";
        return false;
      }
      return true;
    }
    if (c == '\\') {
      if (i + 1 == text.size()) break;
      char next = text[++i];
      if (next != '"' && next != '\\') {
        *reason = std::string("bad escape \\") + next + " in quoted value (only \\\" and \\\\)";
        return false;
      }
      c = next;
    }
    out->push_back(c);
  }
  *reason = "unterminated quoted value";
  return false;
}

class Parser {
 public:
  Parser(const std::string &name) : name_(name), model_(std::make_unique<Model>()) {}

  std::unique_ptr<Model> run(std::string_view text, std::string *error) {
    size_t pos = 0;
    while (pos < text.size()) {
      size_t end = text.find('\n', pos);
      const char *eol = "\n";
      if (end == std::string_view::npos) {
        end = text.size();
        eol = "";
      }
      std::string_view content = text.substr(pos, end - pos);
      pos = end + (eol[0] != '\0' ? 1 : 0);
      if (eol[0] != '\0' && !content.empty() && content.back() == '\r') {
        content.remove_suffix(1);
        eol = "\r\n";
      }
      ++lineNo_;
      std::string reason;
      if (!line(content, eol, &reason)) {
        if (error) *error = name_ + ":" + std::to_string(lineNo_) + ": " + reason;
        return nullptr;
      }
    }
    closeObject();
    return std::move(model_);
  }

 private:
  bool line(std::string_view content, const char *eol, std::string *reason) {
    LineIt it = model_->appendLine(std::string(content), eol);
    if (content.find('\0') != std::string_view::npos) {
      *reason = "line contains a NUL character";
      return false;
    }
    std::string_view text = trim(content);
    if (text.empty() || text.front() == '#') return true;
    if (text.front() == '[') return section(text, it, reason);
    return parameter(text, it, reason);
  }

  bool section(std::string_view text, LineIt it, std::string *reason) {
    if (text.back() != ']' || text.size() < 2) {
      *reason = "malformed section header: expected [object path]";
      return false;
    }
    std::string path(trim(text.substr(1, text.size() - 2)));
    if (!path.empty() && path.back() == '.') {
      *reason = "object path " + path + " ends with '.' (write it without the trailing dot)";
      return false;
    }
    if (path.size() > kMaxNameLength) {
      *reason = "object path longer than 255 characters";
      return false;
    }
    if (!isObjectPath(path)) {
      *reason = "malformed section header: bad object path '" + path + "'";
      return false;
    }
    if (const Object *seen = model_->find(path)) {
      *reason = "duplicate object " + path + " (first at line " +
                std::to_string(model_->lineNumber(seen->header)) + ")";
      return false;
    }
    closeObject();
    current_ = model_->appendObject(std::move(path), it);
    return true;
  }

  bool parameter(std::string_view text, LineIt it, std::string *reason) {
    size_t eq = text.find('=');
    std::string_view name = trim(text.substr(0, eq));
    if (eq == std::string_view::npos || name.empty()) {
      *reason = "expected a comment, [object path] or name = value";
      return false;
    }
    if (!isParamName(name)) {
      *reason = "bad parameter name '" + std::string(name) + "' (letters, digits, '_', '.', '-')";
      return false;
    }
    if (current_ == nullptr) {
      *reason = "parameter outside any object";
      return false;
    }
    std::string_view raw = trim(text.substr(eq + 1));
    std::string value;
    if (!raw.empty() && raw.front() == '"') {
      if (!unquote(raw, &value, reason)) return false;
    } else {
      value = std::string(raw);
    }
    if (value.size() > kMaxValueLength) {
      *reason = "value longer than 1023 characters";
      return false;
    }
    if (const Param *seen = pendingParam(name)) {
      *reason = "duplicate parameter " + std::string(name) + " in " + current_->path +
                " (first at line " + std::to_string(model_->lineNumber(seen->line)) + ")";
      return false;
    }
    pending_.push_back(Param{std::string(name), std::move(value), it});
    pendingNames_.push_back(name);
    if (pendingNames_.size() > kScanned) {
      if (manyNames_.empty()) {
        manyNames_.insert(pendingNames_.begin(), pendingNames_.end());
      } else {
        manyNames_.insert(name);
      }
    }
    return true;
  }

  // The current object's parameter of that name, if it has one already. A
  // short list is scanned; a long one is looked up in a set of its names.
  const Param *pendingParam(std::string_view name) const {
    if (pendingNames_.size() > kScanned && manyNames_.count(name) == 0) return nullptr;
    for (size_t i = 0; i < pendingNames_.size(); ++i) {
      if (pendingNames_[i] == name) return &pending_[i];
    }
    return nullptr;
  }

  // The current object gets its parameters at once, in one allocation.
  void closeObject() {
    if (current_ != nullptr) model_->appendParams(*current_, &pending_);
    pending_.clear();
    pendingNames_.clear();
    manyNames_.clear();
  }

  static constexpr size_t kScanned = 32;

  const std::string &name_;
  std::unique_ptr<Model> model_;
  Object *current_ = nullptr;
  int lineNo_ = 0;
  std::vector<Param> pending_;                  // the current object's parameters
  std::vector<std::string_view> pendingNames_;  // their names, in the model text
  std::unordered_set<std::string_view> manyNames_;
};

}  // namespace

bool isParamName(std::string_view name) {
  if (name.empty() || name.size() > kMaxNameLength) return false;
  for (char c : name) {
    if (!isNameChar(c) && c != '.') return false;
  }
  return true;
}

bool isObjectPath(std::string_view path) {
  if (path.empty() || path.size() > kMaxNameLength) return false;
  size_t segment = 0;
  for (char c : path) {
    if (c == '.') {
      if (segment == 0) return false;
      segment = 0;
    } else if (isNameChar(c)) {
      ++segment;
    } else {
      return false;
    }
  }
  return segment != 0;
}

std::string renderValue(std::string_view value) {
  bool quote =
      !value.empty() && (isBlank(value.front()) || isBlank(value.back()) || value.front() == '"');
  if (!quote) return std::string(value);
  std::string out = "\"";
  for (char c : value) {
    if (c == '"' || c == '\\') out.push_back('\\');
    out.push_back(c);
  }
  out.push_back('"');
  return out;
}

std::string rewriteParamLine(const std::string &line, std::string_view value) {
  size_t eq = line.find('=');
  if (eq == std::string::npos) return line;
  size_t start = eq + 1;
  while (start < line.size() && isBlank(line[start])) ++start;
  std::string out = line.substr(0, start);
  std::string rendered = renderValue(value);
  if (rendered.empty()) {
    while (!out.empty() && isBlank(out.back())) out.pop_back();
  } else if (start == line.size() && start == eq + 1) {
    out.push_back(' ');  // `Name =` had no value: write `Name = value`
  }
  return out + rendered;
}

std::unique_ptr<Model> parseModel(std::string_view text, const std::string &name,
                                  std::string *error) {
  return Parser(name).run(text, error);
}

}  // namespace calsim
