#include "Look/DetailsSheet.h"

#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr qsizetype mostLines = 500; ///< one label holds them

QString firstOf(const QStringList &lines)
{
    const QString text = lines.mid(0, mostLines).join(u'\n');
    const qsizetype more = lines.size() - mostLines;
    return more > 0 ? text + QStringLiteral("\n… und %1 weitere").arg(german().toString(more)) : text;
}

} // namespace

DetailsSheet::DetailsSheet(const QString &title, const QStringList &lines, QWidget *window)
    : SheetFrame(title, {}, {560, 0}, window)
{
    setObjectName(QStringLiteral("detailsSheet"));
    content()->addWidget(makeBody(firstOf(lines), this));
    QPushButton *const done =
        makeButton(QStringLiteral("Schließen"), ButtonKind::Primary, QStringLiteral("detailsClose"), this);
    buttons()->addWidget(done);
    connect(done, &QAbstractButton::clicked, this, &DetailsSheet::close);
}

} // namespace brellin
