#pragma once

#include "ContentView/BrowserModel.h"
#include "FolderChooser/Screens/FolderQuestion.h"
#include "Look/SheetFrame.h"

class QPushButton;

namespace brellin {

class AddressBar;
class ChooserPlaces;
class ElidedLabel;
class PaneView;
class Pins;
class TextLabel;
class ThumbnailImages;
class VolumeList;

/// What the chooser shows; all must outlive it.
struct FolderChooserServices {
    BrowserServices panes;
    Pins &pins;
    VolumeList &volumes;
    ThumbnailImages *thumbnails;
};

/// Asks for a folder: a pane of folders with path and places. The selected folder is chosen, otherwise the one shown.
/// Return opens, Strg+Return chooses, Strg+L edits the path, Strg+Umschalt+N creates a folder.
class FolderChooser : public SheetFrame {
    Q_OBJECT
public:
    FolderChooser(const FolderChooserServices &services, FolderQuestion question, QWidget *window);
    ~FolderChooser() override;

    /// Shows the sheet and focuses its list.
    void begin();
    BrowserModel &pane() { return *m_pane; }

    /// The folder existed and was allowed a moment before.
    Q_SIGNAL void chosen(const brellin::Location &folder);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildPane();
    void buildButtons();
    void follow();
    Location candidate() const;
    void showCandidate();
    void examine(const std::function<void()> &allowed);
    void refuse(const QString &reason);
    void accept();
    bool runKey(const QKeyEvent &event);

    FolderChooserServices m_services;
    const FolderQuestion m_question;
    std::unique_ptr<BrowserModel> m_pane;
    AddressBar *m_address = nullptr;
    ChooserPlaces *m_places = nullptr;
    PaneView *m_view = nullptr;
    ElidedLabel *m_chosen = nullptr;
    TextLabel *m_refusal = nullptr;
    QPushButton *m_accept = nullptr;
    Location m_shown; ///< the candidate on display
    FileCall<std::optional<QString>> m_examining;
};

} // namespace brellin
