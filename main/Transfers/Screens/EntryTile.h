#pragma once

#include <QWidget>

namespace brellin {

/// One of two entries side by side: symbol, role, size and date.
class EntryTile : public QWidget {
    Q_OBJECT
public:
    enum class Shape { File, Folder };
    struct Entry {
        QString name; ///< determines the symbol
        Shape shape = Shape::File;
    };
    /// `line`: "1,2 MB, 3. September 2026, 14:05"
    EntryTile(const QString &head, const QString &line, Entry entry, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap symbol() const;

    const Entry m_entry;
};

} // namespace brellin
