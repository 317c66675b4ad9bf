#pragma once

#include "ContentView/BrowserModel.h"
#include "ContentView/Screens/FileDrop.h"
#include "Places/Crumbs.h"

#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>
#include <QWidget>

class QHBoxLayout;
class QMenu;
class QStackedLayout;

namespace brellin {

class FieldReason;

/// The active pane's path as buttons, each followed by a menu of the folders inside it, or as an editable text with
/// completion.
class AddressBar : public QWidget {
    Q_OBJECT
public:
    AddressBar(const KnownFolders &folders, MountWorkers &workers, const Volumes &volumes, QWidget *parent);

    /// Shows this pane from now on; null shows nothing.
    void setPane(BrowserModel *pane);
    /// Shows these crumbs of a page instead of a folder, e.g. "Aufräum-Agent", "Aufräumen"; empty shows the folder
    /// again.
    void setPage(const QStringList &words);

    /// Shows the path in a text field, selected (Strg+L).
    void editPath();
    bool isEditing() const;

    /// Emitted for crumbs of a page; `step` counts from 0.
    Q_SIGNAL void pageStepClicked(int step);
    /// Return or Esc in the field: the focus belongs to what is shown.
    Q_SIGNAL void left();
    /// Middle click on a crumb's folder.
    Q_SIGNAL void backgroundTabRequested(const brellin::Location &folder);
    /// Emitted when files are dropped on a crumb's folder.
    Q_SIGNAL void dropped(const brellin::DroppedFiles &files);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void rebuild();
    QWidget *addStep(const QString &title, int step, bool last);
    QWidget *addSeparator(int step);
    void addOverflow();
    void fit();
    void openOverflow();
    void openMenu(int step, QWidget *under);
    void fillMenu(QMenu *menu, const FileItems &items, const Location &next);
    void showField();
    bool mayTakeFocus() const;
    void stopEditing();
    void showRefused(const std::optional<RefusedPath> &refused);
    void showRefusedFile();
    void complete(const QString &typed);
    void goTo(int step);

    const KnownFolders &m_folders;
    MountWorkers &m_workers;
    const Volumes &m_volumes;
    QPointer<BrowserModel> m_pane;
    std::unique_ptr<QObject> m_following; ///< receiver of observers; replaced to stop observing the previous pane
    QStringList m_page;
    std::vector<Crumb> m_crumbs;
    QStackedLayout *m_stack;
    QWidget *m_steps;
    QHBoxLayout *m_row;
    QLineEdit *m_field;
    FieldReason *m_reason;
    std::vector<std::vector<QWidget *>> m_stepWidgets; ///< of each step: its crumb and the separator behind it
    QWidget *m_overflow = nullptr;                     ///< stands for the steps that do not fit
    QStringListModel m_completions;
    /// The folder as typed of the completion's entries, and whether these include hidden ones.
    std::optional<std::pair<QString, HiddenEntries>> m_completed;
    FileCall<Listing> m_siblings;
    FileCall<Listing> m_completing;
};

} // namespace brellin
