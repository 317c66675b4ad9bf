#include "Agent/Duplicates/SkippedFolders.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

using namespace std::string_view_literals;

constexpr std::array skipped{"node_modules"sv,
                             ".git"sv,
                             "build"sv,
                             "dist"sv,
                             ".next"sv,
                             ".nuxt"sv,
                             "vendor"sv,
                             "Pods"sv,
                             "DerivedData"sv,
                             ".venv"sv,
                             "venv"sv,
                             "__pycache__"sv,
                             "site-packages"sv,
                             ".build"sv,
                             "target"sv,
                             ".gradle"sv,
                             "bower_components"sv,
                             ".svn"sv,
                             ".cache"sv,
                             "Carthage"sv};

} // namespace

bool isSkippedFolder(std::string_view name)
{
    return std::ranges::find(skipped, name) != skipped.end();
}

} // namespace brellin
