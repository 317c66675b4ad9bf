// Copies a file or folder to a path that does not exist yet: CopyTree SOURCE DESTINATION

#include "Disk/CopyEntry.h"

int main(int count, char **arguments)
{
    if (count != 3)
        return 2;
    return brellin::copyEntry(arguments[1], arguments[2]) ? 0 : 1;
}
