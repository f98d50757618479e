#include "output.h"

#include <algorithm>
#include <ostream>

namespace cli {

namespace {

constexpr const char *kMask = "********";

}  // namespace

std::string printable(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f) {
      out += "\\x";
      out += kHex[byte >> 4];
      out += kHex[byte & 0xf];
    } else {
      out += c;
    }
  }
  return out;
}

void writeJson(std::ostream &out, const Json &value) {
  out << value.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void writeObjects(std::ostream &out, const std::vector<ObjectValues> &objects) {
  bool first = true;
  for (const ObjectValues &object : objects) {
    if (!first) out << '\n';
    first = false;
    out << printable(object.name) << '\n';
    std::size_t width = 0;
    for (const auto &[name, value] : object.params) width = std::max(width, name.size());
    for (const auto &[name, value] : object.params) {
      out << "  " << printable(name) << std::string(width - name.size(), ' ') << " =";
      if (!value.empty()) out << ' ' << printable(value);
      out << '\n';
    }
  }
}

Json objectsJson(const std::vector<ObjectValues> &objects) {
  Json list = Json::array();
  for (const ObjectValues &object : objects) {
    Json params = Json::object();
    for (const auto &[name, value] : object.params) params[name] = value;
    list.push_back(Json{{"object", object.name}, {"parameters", std::move(params)}});
  }
  return list;
}

void Page::section(std::string title, bool inText) {
  sections_.push_back(Section{std::move(title), inText, {}});
}

void Page::add(Row row) {
  if (sections_.empty()) section({});
  sections_.back().rows.push_back(std::move(row));
}

void Page::text(std::string key, std::string label, const std::string &value) {
  add(Row{std::move(key), std::move(label), value, value.empty() ? "-" : printable(value)});
}

void Page::number(std::string key, std::string label, long long value) {
  add(Row{std::move(key), std::move(label), value, std::to_string(value)});
}

void Page::flag(std::string key, std::string label, long long value, const char *on,
                const char *off) {
  add(Row{std::move(key), std::move(label), value, value != 0 ? on : off});
}

void Page::labelled(std::string key, std::string label, long long value, std::string shown) {
  add(Row{std::move(key), std::move(label), value, std::move(shown)});
}

void Page::secret(std::string key, std::string label, const std::string &value, bool reveal) {
  std::string shown = reveal || value.empty() ? value : kMask;
  add(Row{std::move(key), std::move(label), shown, shown.empty() ? "-" : printable(shown)});
}

void Page::note(std::string label, std::string shown) {
  add(Row{{}, std::move(label), nullptr, std::move(shown)});
}

void Page::write(std::ostream &out, bool json) const {
  if (json) {
    Json object = Json::object();
    for (const Section &section : sections_) {
      for (const Row &row : section.rows) {
        if (!row.key.empty()) object[row.key] = row.value;
      }
    }
    writeJson(out, object);
    return;
  }
  std::size_t width = 0;
  for (const Section &section : sections_) {
    if (!section.inText) continue;
    for (const Row &row : section.rows) width = std::max(width, row.label.size());
  }
  bool first = true;
  for (const Section &section : sections_) {
    if (!section.inText) continue;
    if (!first) out << '\n';
    first = false;
    std::string indent;
    if (!section.title.empty()) {
      out << printable(section.title) << '\n';
      indent = "  ";
    }
    for (const Row &row : section.rows) {
      out << indent << row.label << std::string(width - row.label.size(), ' ') << " : " << row.shown
          << '\n';
    }
  }
}

}  // namespace cli
