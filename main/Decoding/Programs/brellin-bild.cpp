#include "Decoding/Confinement.h"
#include "Decoding/PdfPage.h"
#include "Disk/Descriptor.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace brellin;

namespace {

enum class Outcome { Done = 0, Failed = 1, WrongUse = 2 };

Result<QString> pdfText(const Location &pdf)
{
    const EntryPlace place = TRY(openPlace(pdf));
    const Descriptor open = TRY(openForReading(place.at()));
    QFile file;
    if (!file.open(open.number(), QIODevice::ReadOnly) || file.isSequential())
        return failure(QStringLiteral("Das ist keine lesbare Datei."));
    TRY(confineThisProcess());
    return firstPageText(file);
}

Outcome run(int argc, char **argv)
{
    if (argc != 3 || std::string_view(argv[1]) != "pdf-text") {
        std::fputs("Aufruf: brellin-bild pdf-text DATEI\n", stderr);
        return Outcome::WrongUse;
    }
    const Result<QString> text = pdfText(argv[2]);
    if (!text) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(text.error().message));
        return Outcome::Failed;
    }
    const QByteArray bytes = text->toUtf8();
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stdout) == size ? Outcome::Done : Outcome::Failed;
}

} // namespace

/// Decodes one file that nobody trusts and prints what is in it. It is called by the other programs, not by people.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Outcome outcome = run(argc, argv);
    // Ends without cleaning up: by now a hostile file may have had its way with what would be cleaned up.
    const bool written = std::fflush(stdout) == 0;
    std::_Exit(static_cast<int>(written ? outcome : Outcome::Failed));
}
