#include "Agent/Screens/ProposalPreview.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/EntryPicture.h"
#include "Agent/Screens/NoticeBar.h"
#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>

#include <algorithm>

namespace brellin {

namespace {

constexpr int pictureSide = 96;

QString headOf(const AgentProposal &proposal)
{
    switch (proposal.kind) {
    case AgentProposal::Kind::Move:
        return QStringLiteral("Wird verschoben");
    case AgentProposal::Kind::Copy:
        return QStringLiteral("Wird kopiert");
    case AgentProposal::Kind::Rename:
        return QStringLiteral("Wird umbenannt");
    case AgentProposal::Kind::Trash:
        return QStringLiteral("Kommt in den Papierkorb");
    }
    return {};
}

} // namespace

ProposalPreview::ProposalPreview(const AgentPorts &ports, const QUuid &proposal, QWidget *window)
    : SheetFrame(QStringLiteral("Vorschlag"), {}, {680, 520}, window)
    , m_ports(ports)
    , m_proposal(proposal)
    , m_problem(new NoticeBar({}, QStringLiteral("previewProblem"), this))
{
    setObjectName(QStringLiteral("agentPreview"));
    buildButtons();
    rebuild();
    content()->addWidget(m_problem);
    content()->addStretch(1);
    m_ports.agent.proposals.observe(this, [this](const auto &) { rebuild(); });
}

const AgentProposal *ProposalPreview::proposal() const
{
    const std::vector<AgentProposal> &all = m_ports.agent.proposals.get();
    const auto found = std::ranges::find(all, m_proposal, &AgentProposal::id);
    return found != all.end() ? &*found : nullptr;
}

void ProposalPreview::rebuild()
{
    const AgentProposal *const one = proposal();
    if (!one)
        return close();
    if (m_shown) {
        m_shown->hide(); // its buttons refer to the old proposal
        m_shown->deleteLater();
    }
    m_shown = new QWidget;
    auto *const column = new QVBoxLayout(m_shown);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(12));
    auto *const files = new QHBoxLayout;
    files->setSpacing(scaled(16));
    files->addWidget(fileCard(headOf(*one), one->source, one->isFolder ? std::nullopt : one->seen), 1);
    if (one->keptCopy)
        files->addWidget(fileCard(QStringLiteral("Bleibt"), *one->keptCopy, one->keptSeen), 1);
    column->addLayout(files);
    if (canKeepInstead(*one)) {
        QPushButton *const keep =
            makeButton(QStringLiteral("Stattdessen diese behalten"), ButtonKind::Usual,
                       QStringLiteral("previewKeepInstead"), m_shown, QStringLiteral("arrow-right-left"));
        keep->setToolTip(QStringLiteral("Behält die linke Datei; die rechte kommt in den Papierkorb."));
        keep->setEnabled(!m_ports.agent.running.get());
        connect(keep, &QPushButton::clicked, this, [this] {
            const Result<void> kept = m_ports.agent.keepInstead(m_proposal);
            m_problem->tell(kept ? QString() : kept.error().message, Token::Danger, Token::DangerSoft);
        });
        column->addWidget(keep, 0, Qt::AlignLeft);
    }
    if (one->destination) {
        column->addWidget(makeHeading(QStringLiteral("Ziel"), m_shown));
        column->addWidget(
            new ElidedLabel(crumbText(*one->destination, m_ports.services.folders.home), Token::Text, 1, m_shown));
    }
    column->addWidget(makeHeading(QStringLiteral("Warum"), m_shown));
    column->addWidget(makeBody(one->reason, m_shown));
    content()->insertWidget(0, m_shown);
}

QWidget *ProposalPreview::fileCard(const QString &head, const Location &entry, const std::optional<FileState> &seen)
{
    auto *const box = new QWidget(m_shown);
    auto *const column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(4));
    column->addWidget(makeHeading(head, box));
    auto *const picture = new QLabel(box);
    const AgentProposal *const one = proposal();
    const EntryShape shape = one && one->isFolder ? EntryShape::Folder : EntryShape::File;
    picture->setPixmap(entryPixmap(m_ports, entry, shape, scaled(pictureSide), devicePixelRatioF()));
    column->addWidget(picture);
    auto *const name = new TextLabel(shownName(entry), Token::Text, 1, QFont::DemiBold, box);
    name->setWordWrap(true);
    column->addWidget(name);
    column->addWidget(
        new ElidedLabel(crumbText(entry.parent_path(), m_ports.services.folders.home), Token::Secondary, 0.92, box));
    if (seen)
        column->addWidget(makeSecondary(sizeText(seen->size) + QStringLiteral(" · geändert ") +
                                            dayText(seen->modified, m_ports.services.clock.now()),
                                        box));
    QPushButton *const reveal =
        makeButton(QStringLiteral("Im Ordner zeigen"), ButtonKind::Link, QStringLiteral("previewReveal"), box);
    connect(reveal, &QPushButton::clicked, this, [this, entry] {
        Q_EMIT showRequested(entry);
        close();
    });
    column->addWidget(reveal, 0, Qt::AlignLeft);
    column->addStretch(1);
    return box;
}

void ProposalPreview::buildButtons()
{
    // Focus the button that changes nothing.
    QPushButton *const done =
        makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("previewDone"), this);
    QPushButton *const never =
        makeButton(QStringLiteral("Nicht mehr vorschlagen"), ButtonKind::Plain, QStringLiteral("previewNever"), this);
    QPushButton *const discard =
        makeButton(QStringLiteral("Vorschlag verwerfen"), ButtonKind::Usual, QStringLiteral("previewDiscard"), this);
    connect(never, &QPushButton::clicked, this, [this] { m_ports.agent.neverPropose({m_proposal}); });
    connect(discard, &QPushButton::clicked, this, [this] { m_ports.agent.discard({m_proposal}); });
    connect(done, &QPushButton::clicked, this, [this] { close(); });
    for (QPushButton *const button : {never, discard, done})
        buttons()->addWidget(button);
}

} // namespace brellin
