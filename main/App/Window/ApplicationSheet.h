#pragma once

#include "Look/SheetFrame.h"
#include "System/ApplicationChoice.h"

class QCheckBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace brellin {

/// Asks with which application to open an entry, of all that are installed; searchable.
class ApplicationSheet : public SheetFrame {
    Q_OBJECT
public:
    /// `kind` is the description of the entry's type, empty if it has none that could be opened "always" with one.
    ApplicationSheet(const QString &name, const QString &kind, QWidget *window);

    /// Shows these, those for the type first, and focuses the search.
    void offer(const std::vector<Application> &applications);

    /// `always`: also for the other files of the type.
    Q_SIGNAL void chosen(const QString &identifier, bool always);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void confirm() override { choose(); }

private:
    void filter(const QString &text);
    void choose();

    QLineEdit *m_search;
    QListWidget *m_list;
    QCheckBox *m_always;
    QPushButton *m_open;
};

} // namespace brellin
