#pragma once
// Where the program keeps Orin.ini, Event.log and its trace logs: beside the executable, as
// operators expect, unless the environment variable ORIN_HOME names another folder (for
// installs where the executable's folder is read-only, and for tests).

#include <filesystem>

namespace orin::platform {

// The folder of the running executable.
std::filesystem::path ExecutableFolder();

// ORIN_HOME when it is set and not empty, else ExecutableFolder().
std::filesystem::path AppFolder();

}  // namespace orin::platform
