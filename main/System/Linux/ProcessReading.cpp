#include "System/ProcessReading.h"

#include <fstream>
#include <string>

namespace brellin {

std::optional<std::int64_t> bytesReadBy(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/io");
    std::string name;
    std::int64_t bytes = 0;
    while (file >> name >> bytes) {
        if (name == "rchar:")
            return bytes;
    }
    return std::nullopt;
}

} // namespace brellin
