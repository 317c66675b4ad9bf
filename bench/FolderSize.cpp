// Prints the number of bytes and files in a folder: FolderSize FOLDER

#include "Features/FolderCount.h"

#include <cstdio>

int main(int count, char **arguments)
{
    if (count != 2)
        return 2;
    const auto counted = brellin::countFolder(arguments[1]);
    if (counted)
        std::printf("%lld %lld\n", static_cast<long long>(counted->bytes), static_cast<long long>(counted->files));
    return counted ? 0 : 1;
}
