// export: what the configuration layer holds at or under a path, written in
// the emulator's model-file format, so that a device's configuration can be
// loaded on a PC (sim/cal/README.md describes the format).
#include <algorithm>
#include <cctype>
#include <iostream>
#include <string_view>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"
#include "request.h"

namespace cli {

namespace {

constexpr const char *kMask = "********";

// Parameters whose values are secrets: a name that holds one of these words,
// in any case (Password, KeyPassphrase, SAEPassphrase, RadiusSecret,
// PreSharedKey, WEPKey, vendor X_..._PSK and the like).
constexpr std::string_view kSecretWords[] = {"password", "passphrase", "secret",
                                             "presharedkey", "wepkey", "psk"};

std::string lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return out;
}

bool isSecretName(std::string_view name) {
  const std::string lower = lowered(name);
  return std::any_of(std::begin(kSecretWords), std::end(kSecretWords),
                     [&](std::string_view word) { return lower.find(word) != std::string::npos; });
}

bool isWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
}

// Segments of letters, digits, '_' and '-' joined by single dots.
bool isSectionPath(std::string_view path) {
  if (path.empty() || path.front() == '.' || path.back() == '.') return false;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == '.' ? path[i + 1] == '.' : !isWordChar(path[i])) return false;
  }
  return true;
}

bool isParamName(std::string_view name) {
  return !name.empty() &&
         std::all_of(name.begin(), name.end(), [](char c) { return isWordChar(c) || c == '.'; });
}

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

// The value as the model file reads it back: quoted when it has outer blanks
// or begins with a quote, '"' and '\' escaped inside the quotes.
std::string fileValue(const std::string &value) {
  bool quote = !value.empty() &&
               (isBlank(value.front()) || isBlank(value.back()) || value.front() == '"');
  if (!quote) return value;
  std::string out = "\"";
  for (char c : value) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

// What the format cannot carry: a line break (or any other control character
// but a tab) would end the line early.
bool fitsOneLine(const std::string &value) {
  return std::none_of(value.begin(), value.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t';
  });
}

}  // namespace

int runExport(const Options &options, const std::string &path) {
  Request request;
  int rc = faltocal_send_main_multi_obj_No_variable(request.get(), path.c_str(), "get", "get", 0,
                                                    nullptr);
  if (rc != 0) return reportFailure("cannot export " + path, rc, path);
  const std::vector<ObjectValues> objects = request.answer();

  std::string text = "# caltofal export of " + printable(path) + "\n";
  text += options.showSecrets ? "# secrets shown\n"
                              : "# secrets masked as " + std::string(kMask) +
                                    " (caltofal export --show-secrets keeps them)\n";
  int result = kOk;
  for (const ObjectValues &object : objects) {
    if (!isSectionPath(object.name)) {
      result = reportError("left out object '" + printable(object.name) +
                           "': not a path the model format can hold");
      continue;
    }
    text += "\n[" + object.name + "]\n";
    for (const auto &[name, value] : object.params) {
      if (!isParamName(name) || !fitsOneLine(value)) {
        result = reportError("left out " + object.name + " " + printable(name) +
                             (isParamName(name) ? ": its value holds a line break or control "
                                                  "character"
                                                : ": not a name the model format can hold"));
        continue;
      }
      const bool masked = !options.showSecrets && isSecretName(name) && !value.empty();
      const std::string shown = fileValue(masked ? kMask : value);
      text += name + (shown.empty() ? " =\n" : " = " + shown + "\n");
    }
  }
  std::cout << text;
  return result;
}

}  // namespace cli
