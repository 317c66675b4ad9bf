#include "System/Linux/MimeAppsList.h"

#include <QList>

#include <algorithm>
#include <functional>
#include <optional>

namespace brellin {

namespace {

using Lines = QList<QByteArray>;
using Names = QList<QByteArray>;

bool isHead(const QByteArray &line)
{
    return line.trimmed().startsWith('[');
}

/// The lines behind a group's head and before the next one.
struct GroupLines {
    qsizetype begin;
    qsizetype end;
};

std::optional<GroupLines> groupIn(const Lines &lines, const QByteArray &name)
{
    const auto head = std::ranges::find(lines, '[' + name + ']', [](const QByteArray &line) { return line.trimmed(); });
    if (head == lines.end())
        return std::nullopt;
    const auto next = std::ranges::find_if(head + 1, lines.end(), isHead);
    return GroupLines{head - lines.begin() + 1, next - lines.begin()};
}

/// The index of the key's line; -1 if there is none.
qsizetype keyIn(const Lines &lines, const GroupLines &group, const QByteArray &key)
{
    for (qsizetype line = group.begin; line < group.end; ++line) {
        const qsizetype sign = lines[line].indexOf('=');
        if (sign > 0 && lines[line].first(sign).trimmed() == key)
            return line;
    }
    return -1;
}

Names namesIn(const QByteArray &line)
{
    Names names;
    for (const QByteArray &part : line.sliced(line.indexOf('=') + 1).split(';'))
        if (!part.trimmed().isEmpty())
            names << part.trimmed();
    return names;
}

/// Changes the applications of a type in a group. Without any its line goes.
void change(Lines &lines, const QByteArray &group, const QByteArray &type, const std::function<void(Names &)> &edit)
{
    const std::optional<GroupLines> place = groupIn(lines, group);
    const qsizetype at = place ? keyIn(lines, *place, type) : -1;
    Names names = at >= 0 ? namesIn(lines[at]) : Names();
    const Names before = names;
    edit(names);
    if (names == before)
        return;
    const QByteArray line = type + '=' + names.join(';') + ';';
    if (at >= 0 && names.isEmpty())
        lines.removeAt(at);
    else if (at >= 0)
        lines[at] = line;
    else if (place)
        lines.insert(place->begin, line);
    else
        lines << '[' + group + ']' << line;
}

} // namespace

QByteArray withDefaultApplication(const QByteArray &list, const QString &mimeType, const QString &identifier)
{
    Lines lines = list.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    const QByteArray type = mimeType.toUtf8();
    const QByteArray name = identifier.toUtf8() + ".desktop";
    const auto first = [&name](Names &names) {
        names.removeAll(name);
        names.prepend(name);
    };
    change(lines, "Default Applications", type, first);
    change(lines, "Added Associations", type, first);
    change(lines, "Removed Associations", type, [&name](Names &names) { names.removeAll(name); });
    return lines.join('\n') + '\n';
}

} // namespace brellin
