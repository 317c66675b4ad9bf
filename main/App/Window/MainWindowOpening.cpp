#include "App/Window/ApplicationSheet.h"
#include "App/Window/FileCommands.h"
#include "App/Window/MainWindow.h"
#include "Disk/FileTypes.h"
#include "Disk/OnWorker.h"
#include "Look/YesNoSheet.h"

#include <algorithm>

namespace brellin {

namespace {

/// The applications for a type first, then the others.
std::vector<Application> offeredFor(const QString &mimeType, const Workspace &workspace,
                                    const ApplicationChoice &choice)
{
    std::vector<Application> offered = workspace.applicationsFor(mimeType);
    for (const Application &one : choice.offeredApplications())
        if (std::ranges::find(offered, one.identifier, &Application::identifier) == offered.end())
            offered.push_back(one);
    return offered;
}

} // namespace

void MainWindow::chooseApplication(const Location &entry)
{
    const std::string name = entry.filename().native();
    const std::string_view extension = extensionOf(name);
    const QString type = fileTypeOf(extension).mimeName;
    auto *const sheet =
        new ApplicationSheet(shownName(entry), type.isEmpty() ? QString() : typeDescription(extension), this);
    onWorker(
        m_services.panes.workers, m_services.folders().home, MountWorkers::Turn::AtOnce, sheet,
        [type, &workspace = m_services.agent.workspace, &choice = m_services.applications] {
            return offeredFor(type, workspace, choice);
        },
        [sheet](const std::vector<Application> &applications) { sheet->offer(applications); });
    connect(sheet, &ApplicationSheet::chosen, this, [this, entry, type](const QString &application, bool always) {
        if (always)
            makeDefault(type, application);
        m_services.operations.openWith({entry}, application);
    });
    sheet->open();
}

void MainWindow::makeDefault(const QString &mimeType, const QString &application)
{
    onWorker(
        m_services.panes.workers, m_services.folders().home, MountWorkers::Turn::AtOnce, this,
        [mimeType, application, &choice = m_services.applications] {
            return choice.setDefaultApplication(mimeType, application);
        },
        [this](const Result<void> &made) {
            if (!made)
                fail(QStringLiteral("Das Programm wurde nicht dauerhaft eingestellt: ") + made.error().message);
        });
}

/// For a machine where no application opens ZIP archives.
void MainWindow::askToUnpack(const Location &archive)
{
    auto *const question = new YesNoSheet(
        QStringLiteral("„%1“ entpacken?").arg(shownName(archive)),
        QStringLiteral("Kein Programm auf diesem Rechner öffnet ZIP-Archive. Der Inhalt kommt in den Ordner, in dem "
                       "das Archiv liegt; das Archiv bleibt."),
        QStringLiteral("Entpacken"), ButtonKind::Primary, this);
    question->setObjectName(QStringLiteral("unpackQuestion"));
    connect(question, &YesNoSheet::accepted, this, [this, archive, asking = QPointer(pane())] {
        if (asking)
            m_files->unpack(archive, *asking);
    });
    question->open();
}

} // namespace brellin
