#include "Base/Graphemes.h"

#include <QTextBoundaryFinder>

namespace brellin {

qsizetype endOfGraphemes(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (count > 0 && finder.toNextBoundary() >= 0)
        --count;
    return finder.position() < 0 ? text.size() : finder.position();
}

QString firstGraphemes(const QString &text, int count)
{
    return text.left(endOfGraphemes(text, count));
}

} // namespace brellin
