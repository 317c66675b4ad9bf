#include "App/Window/PreviewSide.h"

#include "Features/Screens/PreviewPane.h"
#include "Places/Crumbs.h"

#include <QVBoxLayout>

namespace brellin {

namespace {

QString deedOf(const RuleForecast &forecast, const KnownFolders &folders)
{
    const QString folder = forecast.destination ? wayTo(forecast.destination->parent_path(), folders) : QString();
    switch (forecast.kind) {
    case AgentProposal::Kind::Move:
        if (forecast.chosenByModel && forecast.destination)
            return QStringLiteral("in einen Ordner in %1 verschieben").arg(wayTo(*forecast.destination, folders));
        return QStringLiteral("nach %1 verschieben").arg(folder);
    case AgentProposal::Kind::Copy:
        return QStringLiteral("nach %1 kopieren").arg(folder);
    case AgentProposal::Kind::Rename:
        return QStringLiteral("in „%1“ umbenennen")
            .arg(forecast.destination ? shownName(*forecast.destination) : QString());
    case AgentProposal::Kind::Trash:
        return QStringLiteral("in den Papierkorb legen");
    }
    return {};
}

} // namespace

QString hintText(const RuleForecast &forecast, const KnownFolders &folders)
{
    if (forecast.verdict == RuleVerdict::NoRule || !forecast.rule)
        return {};
    const QString would =
        QStringLiteral("Regel „%1“ würde diese Datei %2").arg(forecast.rule->name, deedOf(forecast, folders));
    if (forecast.verdict == RuleVerdict::Protected)
        return would + QStringLiteral(" – aber sie ist geschützt.");
    if (forecast.verdict == RuleVerdict::TargetRefused)
        return would + QStringLiteral(" – aber in dieses Ziel legt der Agent nie etwas.");
    if (forecast.verdict == RuleVerdict::AlreadyCopied)
        return would + QStringLiteral(" – aber die Kopie steht schon dort.");
    if (forecast.verdict == RuleVerdict::NamedByScript)
        return would + QStringLiteral(" – aber ein Skript benutzt sie.");
    return would + QStringLiteral(".");
}

PreviewSide::PreviewSide(const WindowServices &services, QWidget *parent)
    : QWidget(parent)
    , m_agent(services.agent)
    , m_folders(services.folders())
    , m_loader(services.defaults(), services.panes.volumes, services.decoder, services.clock)
    , m_forecaster(services.agent.services.forRules())
    , m_pane(new PreviewPane(m_loader, this, &services.thumbnails))
{
    setObjectName(QStringLiteral("previewSide"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_pane);
    connect(m_pane, &PreviewPane::tagToggled, this, &PreviewSide::tagToggled);
    m_forecaster.forecast.observe(this, [this](const std::optional<RuleForecast> &forecast) {
        m_pane->setHint(forecast ? hintText(*forecast, m_folders) : QString());
    });
    m_agent.agent.rules.observe(this, [this](const auto &) { askForHint(); });
    m_agent.agent.profiles.observe(this, [this](const auto &) { askForHint(); });
}

void PreviewSide::show(const FileItem *selected, const std::optional<PreviewSummary> &several)
{
    if (selected && m_item == *selected)
        return;
    if (!selected && !m_item) {
        m_pane->setSummary(several);
        return;
    }
    m_item = selected ? std::optional(*selected) : std::nullopt;
    if (m_item)
        m_pane->setTags(m_item->tags);
    m_loader.show(m_item ? std::optional(m_item->location()) : std::nullopt);
    m_pane->setSummary(several);
    askForHint();
}

void PreviewSide::askForHint()
{
    m_pane->setHint({});
    const bool file = m_item && !m_item->isFolder && m_item->link == LinkState::None;
    m_forecaster.show(file ? std::optional(m_item->location()) : std::nullopt, m_agent.agent.rules.get(),
                      m_agent.agent.profiles.get());
}

} // namespace brellin
