#include "directory/DirectorySession.h"

namespace orin {

DirectorySession gSession;

}  // namespace orin
