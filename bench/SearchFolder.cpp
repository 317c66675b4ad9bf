#include "ContentView/FolderSearch.h"

#include <cstdio>

using namespace brellin;

/// Searches below a folder like a pane and prints the results: SearchFolder FOLDER TEXT
int main(int count, char **words)
{
    if (count != 3)
        return 2;
    const FolderSearchResult result =
        searchFolder({standardised(words[1]), QString::fromUtf8(words[2]), HiddenEntries::Shown});
    for (const FileItem &item : result.items)
        std::puts(item.path().c_str());
    return result.error ? 1 : 0;
}
