#include "ContentView/ItemOrder.h"
#include "ContentView/Listing.h"

#include <cstdio>

using namespace brellin;

/// Reads and sorts a folder like a pane and prints the number of rows: ListFolder FOLDER
int main(int count, char **words)
{
    if (count != 2)
        return 2;
    const Listing listing = readListing(standardised(words[1]), HiddenEntries::Shown, SystemVolumes());
    const DisplayedItems rows = displayed(listing.items, {});
    std::printf("%zu\n", rows.size());
    return listing.error ? 1 : 0;
}
