#include "Decoding/PdfPage.h"

#include <QPdfDocument>
#include <QPdfSelection>

namespace brellin {

namespace {

constexpr qsizetype mostCharacters = 8000;

}

Result<QString> firstPageText(QIODevice &pdf)
{
    QPdfDocument document;
    document.load(&pdf);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1)
        return failure(QStringLiteral("Das ist keine lesbare PDF-Datei."));
    return document.getAllText(0).text().left(mostCharacters);
}

} // namespace brellin
