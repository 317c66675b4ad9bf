// Prints the SHA-256 of a file: DigestFile FILE

#include "Disk/Digest.h"

#include <cstdio>

int main(int count, char **arguments)
{
    if (count != 2)
        return 2;
    const auto digest = brellin::sha256(arguments[1]);
    if (digest)
        std::puts(digest->constData());
    return digest ? 0 : 1;
}
