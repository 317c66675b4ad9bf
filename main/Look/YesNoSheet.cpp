#include "Look/YesNoSheet.h"

#include "Look/Labels.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brellin {

YesNoSheet::YesNoSheet(const QString &question, const QString &explanation, const QString &accept, ButtonKind kind,
                       QWidget *window, const QString &decline)
    : SheetFrame(question, {}, {500, 0}, window)
{
    content()->addWidget(makeBody(explanation, this));
    // Created first, so that it is focused first.
    QPushButton *const no = makeButton(decline, ButtonKind::Usual, QStringLiteral("cancel"), this);
    QPushButton *const yes = makeButton(accept, kind, QStringLiteral("accept"), this);
    buttons()->addWidget(yes);
    buttons()->addWidget(no);
    connect(no, &QAbstractButton::clicked, this, &YesNoSheet::escape);
    connect(yes, &QAbstractButton::clicked, this, [this] {
        Q_EMIT accepted();
        close();
    });
}

void YesNoSheet::escape()
{
    Q_EMIT declined();
    close();
}

} // namespace brellin
