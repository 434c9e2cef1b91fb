// orin-cli: the batch runs and the templates of ORIN from the command line, for scripts,
// schedulers and tests. The runs go through the same drivers as the desktop's buttons.

#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "cli/CliOptions.h"
#include "cli/RunCommand.h"
#include "cli/TemplateCommand.h"

int main(int argc, char** argv) {
    using namespace orin::cli;
    const std::vector<std::string> args(argv + 1, argv + argc);
    std::string error;
    const std::optional<Command> command = ParseCommandLine(args, error);
    if (!command) {
        std::cerr << "orin-cli: " << error << "\n\n" << UsageText();
        return kExitUsage;
    }
    if (std::holds_alternative<HelpRequest>(*command)) {
        std::cout << UsageText();
        return kExitSuccess;
    }
    if (const auto* run = std::get_if<RunOptions>(&*command)) return RunCommand(*run);
    return TemplateCommand(std::get<TemplateOptions>(*command));
}
