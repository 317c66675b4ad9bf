#pragma once

#include "ContentView/BrowserModel.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace brellin {

/// The bar above the results of a search: its filters, and the switch for contents. Hidden while there is no search.
class SearchBar : public QWidget {
    Q_OBJECT
public:
    SearchBar(BrowserModel &pane, QWidget *parent);

    /// Esc.
    Q_SIGNAL void escaped();

    /// Narrower than its content, so that a pane may be.
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QComboBox *addChoice(const QString &title, const QString &objectName, const QStringList &texts);
    void choose();
    void showState();

    BrowserModel &m_pane;
    QComboBox *m_kind;
    QComboBox *m_age;
    QComboBox *m_size;
    QCheckBox *m_contents;
    QPushButton *m_clear;
};

} // namespace brellin
