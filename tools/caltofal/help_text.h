// The command list of `caltofal --help`: every command, nested ones too, on
// one line each with its arguments and what it does.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace cli {

// `usageOf` gives a command's usage line ("wan dns IFACE [--static]"); of a
// line with alternatives ("A | B") the first is shown.
std::string commandList(const CLI::App &app,
                        const std::function<std::string(const std::string &)> &usageOf);

// Shows the command list instead of the parser's list of top-level commands.
void useCommandList(CLI::App &app,
                    const std::function<std::string(const std::string &)> &usageOf);

}  // namespace cli
