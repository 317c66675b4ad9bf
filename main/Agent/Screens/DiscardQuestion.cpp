#include "Agent/Screens/DiscardQuestion.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brellin {

DiscardQuestion::DiscardQuestion(const QString &explanation, QWidget *editor)
    : SheetFrame(QStringLiteral("Änderungen verwerfen?"), {}, {480, 230}, editor)
{
    setObjectName(QStringLiteral("discardQuestion"));
    content()->addWidget(makeBody(explanation, this));
    content()->addStretch(1);
    // Made first, it has the keys first.
    QPushButton *const goOn =
        makeButton(QStringLiteral("Weiter bearbeiten"), ButtonKind::Usual, QStringLiteral("discardCancel"), this);
    QPushButton *const discard =
        makeButton(QStringLiteral("Verwerfen"), ButtonKind::Danger, QStringLiteral("discardAccept"), this);
    buttons()->addWidget(discard);
    buttons()->addWidget(goOn);
    connect(goOn, &QPushButton::clicked, this, &DiscardQuestion::escape);
    connect(discard, &QPushButton::clicked, this, [this] {
        Q_EMIT accepted();
        close();
    });
}

} // namespace brellin
