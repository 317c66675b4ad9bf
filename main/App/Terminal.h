#pragma once

#include "Base/Location.h"

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <vector>

namespace brellin {

/// Text as it may stand on a terminal: control characters, which a file name may hold, shown as "�".
QString printable(const QString &text);
/// A place for reading: below the home folder with "~".
QString printable(const Location &location, const Location &home);

/// How wide a text stands on a terminal, in cells.
qsizetype cells(const QString &text);

/// The widest cell of each column.
std::vector<qsizetype> columnWidths(const std::vector<QStringList> &rows, std::vector<qsizetype> atLeast = {});

/// The output of a command: results on standard output, messages on standard error, and a line of progress where somebody
/// is watching.
class Terminal {
public:
    enum class Progress { Shown, Hidden };
    explicit Terminal(Progress progress);
    ~Terminal();

    void print(const QString &line);
    /// Rows with their columns below each other, each line indented by `indent`; the last column is left as it is. `widths`
    /// widens the columns to those of other rows.
    void printColumns(const std::vector<QStringList> &rows, qsizetype indent = 2,
                      const std::vector<qsizetype> &widths = {});
    void printJson(const QJsonValue &value);
    void message(const QString &line);
    /// Whether everything printed so far has reached standard output.
    static bool allWritten();

    /// Replaces the line of progress, if there is one.
    void progress(const QString &line);
    void clearProgress();

private:
    bool m_showsProgress;
    bool m_progressStands = false;
};

} // namespace brellin
