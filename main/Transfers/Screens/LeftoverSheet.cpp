#include "Transfers/Screens/LeftoverSheet.h"

#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/ReasonList.h"

#include <QHBoxLayout>

#include <algorithm>

namespace brellin {

namespace {

constexpr std::size_t shownAtMost = 12;

QString titleFor(std::size_t count)
{
    return counted(static_cast<qint64>(count), QStringLiteral("unfertiges Element entfernen?"),
                   QStringLiteral("unfertige Elemente entfernen?"));
}

QStringList linesFor(const std::vector<Location> &leftovers)
{
    QStringList lines;
    for (const Location &entry : leftovers) {
        if (static_cast<std::size_t>(lines.size()) == shownAtMost)
            return lines << QStringLiteral("… und %1 weitere").arg(leftovers.size() - shownAtMost);
        lines << shownName(entry);
    }
    return lines;
}

} // namespace

LeftoverSheet::LeftoverSheet(const std::vector<Location> &leftovers, QWidget *window)
    : SheetFrame(titleFor(leftovers.size()), {}, {540, 0}, window)
{
    setObjectName(QStringLiteral("leftoverSheet"));
    const QString folder = shownName(leftovers.front().parent_path());
    content()->addWidget(
        makeBody(QStringLiteral("Im Ordner „%1“ blieb etwas von Übertragungen oder Archiven zurück, die nicht zu Ende "
                                "kamen. Gebraucht wird es "
                                "nicht mehr: Entfernt wird eine Vorlage erst, wenn ihre Kopie vollständig ist.")
                     .arg(folder),
                 this));
    auto *const list = new ReasonList(linesFor(leftovers), this);
    list->setObjectName(QStringLiteral("leftovers"));
    content()->addWidget(list);
    content()->addWidget(makeSecondary(QStringLiteral("Sie kommen nicht in den Papierkorb."), this));
    QPushButton *const remove =
        makeButton(QStringLiteral("Endgültig entfernen"), ButtonKind::Danger, QStringLiteral("removeLeftovers"), this);
    QPushButton *const keep =
        makeButton(QStringLiteral("Behalten"), ButtonKind::Primary, QStringLiteral("keepLeftovers"), this);
    m_keep = keep;
    buttons()->addWidget(remove);
    buttons()->addWidget(keep);
    connect(keep, &QPushButton::clicked, this, &SheetFrame::close);
    connect(remove, &QPushButton::clicked, this, [this] {
        if (isHidden())
            return;
        close();
        Q_EMIT removeWanted();
    });
}

void LeftoverSheet::ask()
{
    open();
    m_keep->setFocus(Qt::OtherFocusReason);
}

} // namespace brellin
