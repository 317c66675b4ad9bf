#include "App/Services.h"
#include "Base/German.h"
#include "FileOperations/Unpacking.h"

#include <QCoreApplication>

#include <iostream>

/// Unpacks an archive as the window does, for tries that no command of the terminal makes: brellin-unpack ARCHIVE FOLDER
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(brellin::german());
    if (argc != 3)
        return 2;
    brellin::Services services;
    const brellin::UnpackingServices unpacking{services.files(), services.volumes(),
                                               brellin::Services::decoderProgram(), services.archiveLogs()};
    brellin::JobControl control;
    const auto unpacked = brellin::unpack(argv[1], argv[2], unpacking, control);
    for (const QString &line : unpacked ? unpacked->refused + unpacked->notes : QStringList(unpacked.error().message))
        std::cerr << line.toStdString() << '\n';
    return unpacked && unpacked->refused.isEmpty() ? 0 : 1;
}
