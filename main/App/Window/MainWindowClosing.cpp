#include "App/Window/MainWindow.h"
#include "Base/Edition.h"
#include "FileOperations/Screens/BatchRenameSheet.h"
#include "Look/YesNoSheet.h"

#include <QApplication>
#include <QCloseEvent>

/// Asks before closing a window or quitting while work is running.
namespace brellin {

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_mayClose && wouldCutShort()) {
        event->ignore();
        askToClose([this] { closeUnasked(); });
        return;
    }
    Q_EMIT closed();
    QWidget::closeEvent(event);
}

bool MainWindow::isLastWindow() const
{
    return std::ranges::none_of(QApplication::topLevelWidgets(), [this](const QWidget *one) {
        return one != this && one->isVisible() && qobject_cast<const MainWindow *>(one);
    });
}

/// Closing a window ends its batch renames; other work is only cancelled when the last window closes.
bool MainWindow::wouldCutShort() const
{
    const QList<BatchRenameSheet *> renames = findChildren<BatchRenameSheet *>();
    return std::ranges::any_of(renames, &BatchRenameSheet::isRenaming) || (isLastWindow() && m_services.busy());
}

bool MainWindow::mayQuit()
{
    if (!wouldCutShort() && !m_services.busy())
        return true;
    askToClose([this] {
        m_mayClose = true;
        Q_EMIT quitRequested();
    });
    return m_mayClose;
}

void MainWindow::closeUnasked()
{
    m_mayClose = true;
    close();
}

/// Opens above any other sheet, since that sheet may belong to the work to be cancelled.
void MainWindow::askToClose(const std::function<void()> &agreed)
{
    if (m_mayClose || (m_closeQuestion && m_closeQuestion->isVisible()))
        return;
    m_closeQuestion = new YesNoSheet(
        QStringLiteral("%1 arbeitet noch").arg(Edition::name()),
        QStringLiteral("Beim Beenden wird abgebrochen, was gerade läuft. Was fertig ist, bleibt; halb "
                       "kopierte Dateien werden entfernt."),
        QStringLiteral("Abbrechen und beenden"), ButtonKind::Danger, this, QStringLiteral("Weiterarbeiten lassen"));
    m_closeQuestion->setObjectName(QStringLiteral("closeQuestion"));
    connect(m_closeQuestion, &YesNoSheet::accepted, this, agreed);
    m_closeQuestion->open();
}

} // namespace brellin
