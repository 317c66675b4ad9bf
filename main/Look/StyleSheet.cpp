#include "Look/StyleSheet.h"

#include "Look/Theme.h"

#include <QFile>
#include <QRegularExpression>

namespace brellin {

namespace {

struct Word {
    const char16_t *name;
    Token token;
};

constexpr Word words[] = {{u"window", Token::Window},       {u"sidebar", Token::Sidebar},
                          {u"content", Token::Content},     {u"card", Token::Card},
                          {u"line", Token::Line},           {u"text", Token::Text},
                          {u"secondary", Token::Secondary}, {u"tertiary", Token::Tertiary},
                          {u"border", Token::FieldBorder},  {u"accent", Token::Accent},
                          {u"soft", Token::AccentSoft},     {u"onaccent", Token::OnAccent},
                          {u"danger", Token::Danger},       {u"dangersoft", Token::DangerSoft}};

QString valueOf(const QString &word, Appearance appearance)
{
    if (word == u"tone")
        return appearance == Appearance::Light ? QStringLiteral("hell") : QStringLiteral("dunkel");
    for (const Word &one : words)
        if (word == QStringView(one.name))
            return tokenColor(one.token, appearance).name();
    return {};
}

} // namespace

/// Replaces "@word" by a colour and "@{12}" by a length scaled with the font.
QString styleSheet(Appearance appearance)
{
    QFile file(QStringLiteral(":/look/controls.qss"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString sheet = QString::fromUtf8(file.readAll());
    static const QRegularExpression place(QStringLiteral("@(?:\\{([0-9.]+)\\}|([a-z]+))"));
    QString made;
    qsizetype from = 0;
    for (auto matches = place.globalMatch(sheet); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        made += QStringView(sheet).mid(from, match.capturedStart() - from);
        made += match.hasCaptured(1) ? QString::number(scaled(match.captured(1).toDouble())) + QStringLiteral("px")
                                     : valueOf(match.captured(2), appearance);
        from = match.capturedEnd();
    }
    made += QStringView(sheet).mid(from);
    return made;
}

} // namespace brellin
