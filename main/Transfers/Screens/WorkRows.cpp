#include "Transfers/Screens/WorkRows.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Transfers/Screens/RowParts.h"

#include <QHBoxLayout>
#include <QProgressBar>

namespace brellin {

using namespace rowParts;

WorkRow::WorkRow(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("panelWork"));
    build();
}

void WorkRow::build()
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(5));
    QHBoxLayout *const head = addLine(*column);
    head->addWidget(makeMark(QStringLiteral("clock"), Token::Accent, this));
    m_title = makeBoldLine(QStringLiteral("workTitle"), this);
    head->addWidget(m_title, 1);
    m_cancel = new SymbolButton(QStringLiteral("x"), QStringLiteral("Abbrechen"), QStringLiteral("workCancel"), this);
    head->addWidget(m_cancel);
    m_bar = makeBar(QStringLiteral("workBar"), this);
    column->addWidget(m_bar);
    m_detail = new ElidedLabel({}, Token::Secondary, 0.92, this);
    m_detail->setObjectName(QStringLiteral("workDetail"));
    column->addWidget(m_detail);
    connect(m_cancel, &QToolButton::clicked, this, [this] {
        m_cancelled = true;
        m_cancel->setEnabled(false);
        m_detail->setText(QStringLiteral("Wird abgebrochen …"));
        Q_EMIT cancelWanted();
    });
}

void WorkRow::show(const PanelWork &work)
{
    m_title->setText(work.title);
    if (!m_cancelled)
        m_detail->setText(work.detail);
    const bool unknown = !work.progress && !m_cancelled && Theme::shared().motion();
    m_bar->setRange(0, unknown ? 0 : wholeBar);
    m_bar->setValue(static_cast<int>(work.progress.value_or(0) * wholeBar));
    m_bar->setAccessibleName(work.title);
    m_cancel->setAccessibleName(QStringLiteral("Abbrechen: ") + work.title);
    setAccessibleName(work.title);
}

NoteRow::NoteRow(const QString &title, const QString &note, QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("transferNote"));
    setAccessibleName(title + QStringLiteral(". ") + note);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, scaled(8)); // space between a note and the operations
    column->setSpacing(scaled(3));
    QHBoxLayout *const head = addLine(*column);
    head->addWidget(makeMark(QStringLiteral("circle-check"), Token::Success, this));
    ElidedLabel *const line = makeBoldLine(QStringLiteral("noteTitle"), this);
    line->setText(title);
    head->addWidget(line, 1);
    auto *const close =
        new SymbolButton(QStringLiteral("x"), QStringLiteral("Schließen"), QStringLiteral("noteClose"), this);
    close->setAccessibleName(QStringLiteral("Schließen: ") + title);
    head->addWidget(close);
    TextLabel *const text = makeSecondary(note, this);
    text->setObjectName(QStringLiteral("noteText"));
    column->addWidget(text);
    connect(close, &QToolButton::clicked, this, &NoteRow::closeWanted);
}

} // namespace brellin
