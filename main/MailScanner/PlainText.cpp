#include "MailScanner/PlainText.h"

#include <QChar>

#include <algorithm>

namespace brellin {

namespace {

/// Characters that reorder or hide the text around them. The joiners of emoji and of some scripts are none.
bool disguises(char32_t c)
{
    const bool isJoiner = c == 0x200C || c == 0x200D;
    const QChar::Category category = QChar::category(c);
    return (category == QChar::Other_Format && !isJoiner) || category == QChar::Other_Control ||
           category == QChar::Other_Surrogate;
}

} // namespace

QString plainText(const QString &text)
{
    QList<uint> characters = text.simplified().toUcs4();
    characters.removeIf([](uint c) { return disguises(c); });
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.constData()), characters.size())
        .simplified();
}

QString plainName(const QString &text)
{
    QString name = plainText(text);
    name.replace(u'/', u'-').replace(u':', u'-');
    qsizetype dots = 0;
    while (dots < name.size() && (name[dots] == u'.' || name[dots].isSpace()))
        ++dots;
    return name.mid(dots).trimmed();
}

} // namespace brellin
