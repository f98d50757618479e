// Output forms shared by the commands: aligned text and JSON.
#pragma once

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

using Json = nlohmann::ordered_json;

// The text with control bytes shown as \xNN, so that no value can move the
// cursor or change the terminal.
std::string printable(std::string_view text);

// A record's text field, bounded by its width: full fields carry no terminator.
template <std::size_t N>
std::string fieldText(const char (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

// One JSON value and a line end; bytes that are not UTF-8 become U+FFFD.
void writeJson(std::ostream &out, const Json &value);

// An object of an answer with its parameters, in the order answered.
struct ObjectValues {
  std::string name;
  std::vector<std::pair<std::string, std::string>> params;
};

// The object name on its own line, then "  Name = value" lines with the
// '=' aligned within the object; a blank line between objects.
void writeObjects(std::ostream &out, const std::vector<ObjectValues> &objects);
// [{"object": name, "parameters": {name: value, ...}}, ...] in answer order.
Json objectsJson(const std::vector<ObjectValues> &objects);

// A page of labelled values in titled sections. As text, labels are aligned
// over the whole page; as JSON, the page is one flat object of its keys.
class Page {
 public:
  // Starts a section; a section hidden from text still gives its JSON keys.
  void section(std::string title, bool inText = true);
  // A text value; shown as "-" when empty.
  void text(std::string key, std::string label, const std::string &value);
  void number(std::string key, std::string label, long long value);
  // A number that means on or off; the text shows one of two words.
  void flag(std::string key, std::string label, long long value, const char *on, const char *off);
  // A secret: "********" in both forms unless it is revealed; empty stays empty.
  void secret(std::string key, std::string label, const std::string &value, bool reveal);
  // A number whose text form says what it means.
  void labelled(std::string key, std::string label, long long value, std::string shown);
  // A line of the text form only.
  void note(std::string label, std::string shown);

  void write(std::ostream &out, bool json) const;

 private:
  struct Row {
    std::string key;  // empty: text only
    std::string label;
    Json value;
    std::string shown;
  };
  struct Section {
    std::string title;
    bool inText = true;
    std::vector<Row> rows;
  };
  void add(Row row);

  std::vector<Section> sections_;
};

}  // namespace cli
