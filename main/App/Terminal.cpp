#include "App/Terminal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace brellin {

namespace {

void write(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

qsizetype terminalWidth()
{
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

/// Printable ASCII, one cell each; spares looking up the category.
bool isPlain(QChar c)
{
    return c >= u' ' && c <= u'~';
}

} // namespace

QString printable(const QString &text)
{
    if (std::ranges::all_of(text, isPlain))
        return text;
    QString clean = text;
    for (QChar &c : clean) {
        if (isPlain(c))
            continue;
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format || c.isNonCharacter())
            c = QChar::ReplacementCharacter;
    }
    return clean;
}

QString printable(const Location &location, const Location &home)
{
    // Compared by their texts: comparing paths takes them apart.
    if (location.native() != home.native() && home.has_relative_path() && isAtOrBelow(location, home))
        return printable(QStringLiteral("~/") +
                         shown(std::string_view(location.native()).substr(home.native().size() + 1)));
    return printable(shown(location));
}

qsizetype cells(const QString &text)
{
    return std::ranges::count_if(text, [](QChar c) {
        return isPlain(c) ||
               (!c.isLowSurrogate() && c.category() != QChar::Mark_NonSpacing && c.category() != QChar::Mark_Enclosing);
    });
}

Terminal::Terminal(Progress progress) : m_showsProgress(progress == Progress::Shown && ::isatty(STDERR_FILENO) == 1) {}

Terminal::~Terminal()
{
    clearProgress();
}

void Terminal::print(const QString &line)
{
    clearProgress();
    write(stdout, line + u'\n');
}

std::vector<qsizetype> columnWidths(const std::vector<QStringList> &rows, std::vector<qsizetype> atLeast)
{
    for (const QStringList &row : rows) {
        atLeast.resize(std::max(atLeast.size(), static_cast<std::size_t>(row.size())));
        for (qsizetype column = 0; column < row.size(); ++column) {
            qsizetype &width = atLeast[static_cast<std::size_t>(column)];
            width = std::max(width, cells(row[column]));
        }
    }
    return atLeast;
}

void Terminal::printColumns(const std::vector<QStringList> &rows, qsizetype indent,
                            const std::vector<qsizetype> &widths)
{
    const std::vector<qsizetype> all = columnWidths(rows, widths);
    for (const QStringList &row : rows) {
        QString line(indent, u' ');
        for (qsizetype column = 0; column < row.size(); ++column) {
            line += row[column];
            if (column + 1 < row.size())
                line.resize(line.size() + all[static_cast<std::size_t>(column)] - cells(row[column]) + 2, u' ');
        }
        while (line.endsWith(u' '))
            line.chop(1);
        print(line);
    }
}

void Terminal::printJson(const QJsonValue &value)
{
    clearProgress();
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    const QByteArray text = document.toJson(QJsonDocument::Compact);
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    std::fputc('\n', stdout);
}

void Terminal::message(const QString &line)
{
    clearProgress();
    std::fflush(stdout);
    write(stderr, line + u'\n');
}

bool Terminal::allWritten()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

void Terminal::progress(const QString &line)
{
    if (!m_showsProgress)
        return;
    const QString text = printable(line).left(terminalWidth() - 1);
    write(stderr, QStringLiteral("\r\x1b[K") + text);
    std::fflush(stderr);
    m_progressStands = true;
}

void Terminal::clearProgress()
{
    if (!m_progressStands)
        return;
    write(stderr, QStringLiteral("\r\x1b[K"));
    std::fflush(stderr);
    m_progressStands = false;
}

} // namespace brellin
