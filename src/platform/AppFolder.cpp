#include "platform/AppFolder.h"

#include <cstdlib>

namespace orin::platform {

std::filesystem::path ExecutableFolder() {
    std::error_code ec;
    std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return std::filesystem::current_path(ec);
    return exe.parent_path();
}

std::filesystem::path AppFolder() {
    const char* home = std::getenv("ORIN_HOME");
    if (home && *home) return std::filesystem::path(home);
    return ExecutableFolder();
}

}  // namespace orin::platform
