#pragma once

#include <QTabBar>
#include <QWidget>

namespace brellin {

/// The tabs of a window: drag reorders, the middle button and × close, "+" adds.
class TabBar : public QWidget {
    Q_OBJECT
public:
    explicit TabBar(QWidget *parent);

    void insert(int tab, const QString &title);
    void remove(int tab);
    void setTitle(int tab, const QString &title, const QString &toolTip);
    int current() const { return m_bar->currentIndex(); }
    void setCurrent(int tab) { m_bar->setCurrentIndex(tab); }
    int count() const { return m_bar->count(); }

    /// In the tool tip of "+"; empty for none.
    void showKeyOfAdding(const QString &key);

    Q_SIGNAL void currentChanged(int tab);
    Q_SIGNAL void closeRequested(int tab);
    Q_SIGNAL void moved(int from, int to);
    Q_SIGNAL void addRequested();
    Q_SIGNAL void menuRequested(int tab, const QPoint &global);
    /// Marks the tab as the target of a drag; -1 for none.
    void showDrop(int tab);
    /// For installing drop handling on the tabs.
    QTabBar *bar() const { return m_bar; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTabBar *m_bar;
    QWidget *m_plus;
};

} // namespace brellin
