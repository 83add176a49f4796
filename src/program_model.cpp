#include "program_model.h"

#include "platform/host_layout.h"
#include "platform/platform.h"
#include "platform/resident_memory.h"
#include "storage/file_scanner.h"

#include <memory>
#include <utility>

namespace kestavon {

AppModel makeModel(const CommandLine& line)
{
    auto environment = currentHostEnvironment();
    if (!line.systemRoot.empty())
        environment.systemRoot = typedPath(line.systemRoot);
    environment.kind = line.layout;
    auto platform = systemPlatform(environment);
    const auto limit = line.memoryLimit > 0 ? line.memoryLimit : FileScanner::standardMemoryLimit;
    auto scanner
        = std::make_shared<FileScanner>(platform.layout.scanExclusions, limit, residentMemoryBytes);
    return {std::move(scanner), std::move(platform)};
}

} // namespace kestavon
