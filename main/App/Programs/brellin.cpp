#include "App/CommandLine.h"
#include "App/Heap.h"
#include "Base/German.h"

#include <QCoreApplication>

/// The command line.
int main(int argc, char **argv)
{
    brellin::useOneHeap();
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(brellin::german());
    const std::vector<std::string> words(argv + 1, argv + argc);
    return static_cast<int>(brellin::runCommandLine(words));
}
