#pragma once

#include <QString>
#include <QWidget>

#include <optional>

class QProgressBar;

namespace brellin {

class ElidedLabel;
class SymbolButton;

/// Another file operation that takes long, such as packing an archive or emptying the Trash.
struct PanelWork {
    int id = 0;
    QString title;                  ///< „Komprimiere 3 Elemente“
    QString detail;                 ///< the current step
    std::optional<double> progress; ///< nullopt: unknown

    bool operator==(const PanelWork &) const = default;
};

/// The row of such an operation.
class WorkRow : public QWidget {
    Q_OBJECT
public:
    explicit WorkRow(QWidget *parent);

    void show(const PanelWork &work);

    Q_SIGNAL void cancelWanted();

private:
    void build();

    bool m_cancelled = false;
    ElidedLabel *m_title = nullptr;
    ElidedLabel *m_detail = nullptr;
    QProgressBar *m_bar = nullptr;
    SymbolButton *m_cancel = nullptr;
};

/// A remark on a finished transfer; stays for a while, or until it is closed.
class NoteRow : public QWidget {
    Q_OBJECT
public:
    NoteRow(const QString &title, const QString &note, QWidget *parent);

    Q_SIGNAL void closeWanted();
};

} // namespace brellin
