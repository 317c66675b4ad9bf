#include "Disk/FileAttributes.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <sys/stat.h>

namespace brellin {

namespace {

// Sorted. Folders that programs treat as one item: removing single files would break them.
constexpr auto packageExtensions =
    std::to_array<std::string_view>({"aplibrary",    "app",           "appex",        "band",       "bundle",
                                     "component",    "download",      "dsym",         "fcpbundle",  "framework",
                                     "garageband",   "imovielibrary", "kext",         "key",        "logicx",
                                     "mdimporter",   "mpkg",          "musiclibrary", "numbers",    "pages",
                                     "photolibrary", "photoslibrary", "pkg",          "playground", "playgroundbook",
                                     "plugin",       "prefpane",      "qlgenerator",  "rtfd",       "safariextension",
                                     "saver",        "scptd",         "sparsebundle", "theater",    "tvlibrary",
                                     "vst3",         "wdgt",          "workflow",     "xcarchive",  "xcodeproj",
                                     "xctest",       "xcworkspace",   "xpc"});

static_assert(std::ranges::is_sorted(packageExtensions));

} // namespace

bool entryExists(const Location &location)
{
    struct stat status;
    // EILSEQ: the volume cannot represent the name.
    return ::lstat(location.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR && errno != EILSEQ);
}

bool isPackageName(std::string_view name)
{
    // Fast path without a copy, since most folders have no dot.
    return name.find('.') != std::string_view::npos &&
           std::ranges::binary_search(packageExtensions, std::string_view(lowerExtensionOf(name)));
}

} // namespace brellin
