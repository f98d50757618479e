#include "help_text.h"

#include <CLI/CLI.hpp>
#include <vector>

namespace cli {

namespace {

constexpr std::size_t kColumn = 40;

struct Entry {
  std::string usage;
  std::string description;
};

void collect(const CLI::App &parent, const std::string &prefix,
             const std::function<std::string(const std::string &)> &usageOf,
             std::vector<Entry> *entries) {
  for (const CLI::App *sub : parent.get_subcommands([](const CLI::App *) { return true; })) {
    const std::string name = prefix.empty() ? sub->get_name() : prefix + " " + sub->get_name();
    std::string usage = usageOf(name);
    if (std::size_t bar = usage.find(" | "); bar != std::string::npos) usage.resize(bar);
    entries->push_back({usage.empty() ? name : usage, sub->get_description()});
    collect(*sub, name, usageOf, entries);
  }
}

}  // namespace

std::string commandList(const CLI::App &app,
                        const std::function<std::string(const std::string &)> &usageOf) {
  std::vector<Entry> entries;
  collect(app, {}, usageOf, &entries);
  std::string out = "Commands (caltofal COMMAND --help for its options):\n";
  for (const Entry &entry : entries) {
    std::string line = "  " + entry.usage;
    line += line.size() < kColumn ? std::string(kColumn - line.size(), ' ') : "  ";
    out += line + entry.description + "\n";
  }
  return out;
}

void useCommandList(CLI::App &app,
                    const std::function<std::string(const std::string &)> &usageOf) {
  std::string list = commandList(app, usageOf);
  list.pop_back();  // the footer gets its own line end
  app.footer(list);
  // An empty group keeps a command out of the parser's own list.
  for (CLI::App *sub : app.get_subcommands([](const CLI::App *) { return true; })) sub->group("");
}

}  // namespace cli
