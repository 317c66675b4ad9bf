#include "Decoding/PdfPage.h"

#include "System/DecoderProtocol.h"

#include <QElapsedTimer>
#include <QJsonArray>
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

Result<QJsonObject> pageTexts(QIODevice &pdf, int first)
{
    constexpr qsizetype enoughCharacters = 200'000;
    constexpr qsizetype enoughPages = 100;
    constexpr qint64 enoughTime = 2000; // ms
    QPdfDocument document;
    document.load(&pdf);
    if (document.status() != QPdfDocument::Status::Ready || first >= document.pageCount())
        return failure(undecodable());
    QElapsedTimer time;
    time.start();
    QJsonArray texts;
    qsizetype characters = 0;
    for (int page = first; page < document.pageCount(); ++page) {
        const QString text = document.getAllText(page).text().left(enoughCharacters);
        texts.append(text);
        characters += text.size();
        if (characters >= enoughCharacters || texts.size() >= enoughPages || time.hasExpired(enoughTime))
            break;
    }
    return QJsonObject{{QStringLiteral("pages"), document.pageCount()}, {QStringLiteral("texts"), texts}};
}

} // namespace brellin
