#pragma once

#include "MailScanner/MailRule.h"

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

#include <vector>

namespace brellin {

/// A filed receipt in the overview.
struct OverviewLine {
    QDate day;
    MailDocKind kind = MailDocKind::Rechnung;
    QString company;
    QString amount;
    QString file;
    QString subject;
    QString sender;

    bool operator==(const OverviewLine &) const = default;
};

/// The text of an overview: a CSV file (RFC 4180) with ";" that people open in spreadsheets, which save it in forms of
/// their own. What stands there stays: its byte order mark, line ends, separator and columns, and every record.
class ReceiptOverview {
public:
    /// The name of the file in each area's folder.
    static QString fileName();

    /// Reads a file's content; empty for a new one. Text that is not UTF-8 is read as UTF-16 with a byte order mark, or
    /// else as Windows-1252, which spreadsheets save.
    explicit ReceiptOverview(const QByteArray &content);

    /// Whether writing `content()` converts the file, so that the old bytes should be kept.
    bool isConverted() const { return m_converted; }
    /// Whether a record names this file.
    bool names(const QString &file) const;
    void add(const OverviewLine &line);
    /// Removes the last record with the values that `add` writes, however quoted. Returns false if there is none; somebody may have edited it.
    bool remove(const OverviewLine &line);
    /// The new content, in UTF-8.
    QByteArray content() const;

private:
    struct Record {
        qsizetype begin;
        qsizetype end; ///< behind its line end
        QStringList fields;
    };
    std::vector<Record> records() const;
    Record recordAt(qsizetype begin) const;
    QStringList fieldsOf(const OverviewLine &line) const;
    QString quoted(QString field) const;

    QString m_text; ///< without byte order mark
    bool m_marked = false;
    bool m_converted = false;
    QString m_lineEnd = QStringLiteral("\n");
    QChar m_separator = u';';
    QStringList m_columns;
};

} // namespace brellin
