#pragma once

#include "Base/Location.h"

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <vector>

namespace brellin {

/// Text that is safe on a terminal: control characters, which file names may contain, show as "�".
QString printable(const QString &text);
/// A path for display; "~" for the home folder.
QString printable(const Location &location, const Location &home);

/// The width of a text on a terminal, in cells.
qsizetype cells(const QString &text);

/// The maximum width of each column.
std::vector<qsizetype> columnWidths(const std::vector<QStringList> &rows, std::vector<qsizetype> atLeast = {});

/// The output of a command: results on standard output, messages on standard error, and a progress line if that is a
/// terminal.
class Terminal {
public:
    enum class Progress { Shown, Hidden };
    explicit Terminal(Progress progress);
    ~Terminal();

    void print(const QString &line);
    /// Prints rows with aligned columns, indented by `indent`; the last column is not padded. `widths` sets minimum
    /// widths, to align with other rows.
    void printColumns(const std::vector<QStringList> &rows, qsizetype indent = 2,
                      const std::vector<qsizetype> &widths = {});
    void printJson(const QJsonValue &value);
    void message(const QString &line);
    /// Whether everything printed so far was written to standard output.
    static bool allWritten();

    /// Replaces the progress line, if there is one.
    void progress(const QString &line);
    void clearProgress();

private:
    bool m_showsProgress;
    bool m_progressStands = false;
};

} // namespace brellin
