#pragma once

#include "ContentView/BrowserModel.h"
#include "ContentView/Screens/Crumbs.h"
#include "ContentView/Screens/FileDrop.h"

#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>
#include <QWidget>

class QHBoxLayout;
class QMenu;
class QStackedLayout;

namespace brellin {

/// Where the active pane is: the folders on the way to it as buttons, with a menu of what lies beside each step, or the path
/// as text to type over.
class AddressBar : public QWidget {
    Q_OBJECT
public:
    AddressBar(const KnownFolders &folders, MountWorkers &workers, const Volumes &volumes, QWidget *parent);

    /// Follows this pane from now on; null: nothing.
    void setPane(BrowserModel *pane);
    /// Shows these words instead of a folder ("Aufräum-Agent", "Aufräumen"); an empty list goes back to the pane's.
    void setPage(const QStringList &words);

    /// Puts the path into a field with everything selected (Strg+L).
    void editPath();
    bool isEditing() const;

    /// A step of a page was clicked, counted from 0.
    Q_SIGNAL void pageStepClicked(int step);
    /// Files were dropped onto a step.
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void rebuild();
    void addStep(const QString &title, int step, bool last);
    void addSeparator(int step);
    void openMenu(int step, QWidget *under);
    void fillMenu(QMenu *menu, const FileItems &items, const Location &next);
    void stopEditing();
    void complete(const QString &typed);
    void goTo(int step);

    const KnownFolders &m_folders;
    MountWorkers &m_workers;
    const Volumes &m_volumes;
    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following; ///< its death ends following the pane before
    QStringList m_page;
    std::vector<Crumb> m_crumbs;
    QStackedLayout *m_stack;
    QWidget *m_steps;
    QHBoxLayout *m_row;
    QLineEdit *m_field;
    QStringListModel m_completions;
    Location m_completed; ///< the folder whose entries are offered
    FileCall<Listing> m_siblings;
    FileCall<Listing> m_completing;
};

} // namespace brellin
