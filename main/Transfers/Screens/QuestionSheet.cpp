#include "Transfers/Screens/QuestionSheet.h"

#include "Look/Buttons.h"
#include "Look/Theme.h"
#include "Transfers/Screens/ConflictSheet.h"
#include "Transfers/Screens/NoTrashSheet.h"
#include "Transfers/Screens/ObstacleSheet.h"

#include <QCheckBox>
#include <QGridLayout>

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

QString *nameIn(TransferQuestion &question)
{
    if (auto *const conflict = std::get_if<ConflictQuestion>(&question.about))
        return &conflict->name;
    if (auto *const noTrash = std::get_if<NoTrashQuestion>(&question.about))
        return &noTrash->name;
    return nullptr;
}

/// Cell of a button: one row, or two that end at the last column where one would be too wide for large text.
std::pair<int, int> cellOf(qsizetype index, qsizetype count)
{
    constexpr qsizetype mostInARow = 4;
    constexpr qsizetype columns = 3;
    if (count <= mostInARow)
        return {0, static_cast<int>(index)};
    const qsizetype cell = index + 2 * columns - count;
    return {static_cast<int>(cell / columns), static_cast<int>(cell % columns)};
}

} // namespace

QuestionSheet::QuestionSheet(QuestionText text, Roles roles, QSize wanted, QWidget *window)
    : SheetFrame(text.message, {}, wanted, window)
    , m_text(std::move(text))
{
    auto *const grid = new QGridLayout;
    grid->setSpacing(scaled(8));
    buttons()->addLayout(grid);
    for (qsizetype index = 0; const QuestionText::Button &button : m_text.buttons) {
        const ButtonKind kind = index == roles.usual    ? ButtonKind::Primary
                                : index == roles.danger ? ButtonKind::Danger
                                                        : ButtonKind::Usual;
        QPushButton *const made = makeButton(button.title, kind, QStringLiteral("answer-") + button.title, this);
        const auto [row, column] = cellOf(index, std::ssize(m_text.buttons));
        grid->addWidget(made, row, column);
        connect(made, &QPushButton::clicked, this, [this, button] { answer(button); });
        if (index++ == roles.usual)
            m_usual = made;
    }
}

void QuestionSheet::ask()
{
    open();
    m_usual->setFocus(Qt::OtherFocusReason);
}

void QuestionSheet::addForAll()
{
    if (m_text.forAll.isEmpty())
        return;
    m_forAll = new QCheckBox(m_text.forAll, this);
    m_forAll->setObjectName(QStringLiteral("forAll"));
    content()->addWidget(m_forAll);
}

void QuestionSheet::escape()
{
    answer(m_text.buttons.back());
}

void QuestionSheet::answer(const QuestionText::Button &button)
{
    if (isHidden())
        return;
    TransferAnswer given = button.answer;
    if (auto *const conflict = std::get_if<ConflictAnswer>(&given); conflict && m_forAll)
        conflict->forAll = m_forAll->isChecked();
    // Close first: the next question may open at once.
    close();
    Q_EMIT answered(given);
}

TransferQuestion fittingHead(TransferQuestion question, int sheetWidth, const QWidget *window)
{
    QString *const name = nameIn(question);
    if (!name)
        return question;
    const QString whole = std::exchange(*name, QString());
    const QFontMetrics metrics(sizedFont(1.3, QFont::Bold));
    const int sheet = std::min(scaled(sheetWidth), window->window()->width() - scaled(48));
    const int room = sheet - scaled(56) - metrics.horizontalAdvance(textOf(question).message);
    *name = metrics.elidedText(whole, Qt::ElideMiddle, room);
    return question;
}

QuestionSheet *makeQuestionSheet(const TransferQuestion &question, QWidget *window)
{
    if (std::holds_alternative<ConflictQuestion>(question.about))
        return new ConflictSheet(question, window);
    if (std::holds_alternative<NoTrashQuestion>(question.about))
        return new NoTrashSheet(question, window);
    return new ObstacleSheet(question, window);
}

void QuestionSheet::confirm()
{
    static_cast<QPushButton *>(m_usual)->click();
}

} // namespace brellin
