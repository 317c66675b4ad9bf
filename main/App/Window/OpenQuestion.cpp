#include "App/Window/OpenQuestion.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brellin {

OpenQuestion::OpenQuestion(const Location &program, QWidget *window)
    : SheetFrame(QStringLiteral("„%1“ ist ein Programm").arg(shownName(program)), {}, {480, 250}, window)
{
    setObjectName(QStringLiteral("openQuestion"));
    content()->addWidget(
        makeBody(QStringLiteral("Beim Öffnen wird es gestartet und darf alles, was du darfst. Starte es "
                                "nur, wenn du weißt, woher es kommt."),
                 this));
    content()->addWidget(new ElidedLabel(shown(program), Token::Secondary, 0.92, this));
    content()->addStretch(1);
    QPushButton *const no = makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("cancel"), this);
    QPushButton *const yes = makeButton(QStringLiteral("Starten"), ButtonKind::Danger, QStringLiteral("start"), this);
    buttons()->addWidget(yes);
    buttons()->addWidget(no);
    no->setDefault(true);
    connect(no, &QAbstractButton::clicked, this, &SheetFrame::close);
    connect(yes, &QAbstractButton::clicked, this, [this] {
        Q_EMIT confirmed();
        close();
    });
}

} // namespace brellin
