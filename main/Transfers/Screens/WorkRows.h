#pragma once

#include <QString>
#include <QWidget>

#include <optional>

class QProgressBar;

namespace brellin {

class ElidedLabel;
class SymbolButton;

/// Something else that is done with files and takes its time: an archive that is being packed, the Trash that is being emptied.
struct PanelWork {
    int id = 0;
    QString title;                  ///< „Komprimiere 3 Elemente“
    QString detail;                 ///< what it is at
    std::optional<double> progress; ///< none where it cannot be told

    bool operator==(const PanelWork &) const = default;
};

/// The row of such work.
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

/// What is to be said of a transfer that is done: stands for a while, or until it is closed.
class NoteRow : public QWidget {
    Q_OBJECT
public:
    NoteRow(const QString &title, const QString &note, QWidget *parent);

    Q_SIGNAL void closeWanted();
};

} // namespace brellin
