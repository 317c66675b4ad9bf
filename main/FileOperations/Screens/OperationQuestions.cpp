#include "FileOperations/Screens/OperationQuestions.h"

#include "Look/Attention.h"
#include "Look/YesNoSheet.h"

#include <QApplication>
#include <QWindow>

#include <utility>

namespace brellin {

OperationQuestions::OperationQuestions(FileOperations &operations, QWidget *window)
    : QObject(window)
    , m_operations(operations)
    , m_window(window)
{
    m_operations.question.observe(this, [this](const auto &) { follow(); });
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &OperationQuestions::follow, Qt::QueuedConnection);
    follow();
}

void OperationQuestions::follow()
{
    const std::optional<OperationQuestion> &open = m_operations.question.get();
    const bool asks = open && attentionTo(*m_window) != Attention::Elsewhere;
    if (m_sheet && (!asks || open->id != m_asked))
        std::exchange(m_sheet, nullptr)->close();
    if (asks && !m_sheet)
        ask(*open);
}

void OperationQuestions::ask(const OperationQuestion &question)
{
    m_asked = question.id;
    m_sheet = new YesNoSheet(question.message, question.information, question.accept, ButtonKind::Danger, m_window);
    m_sheet->setObjectName(QStringLiteral("operationQuestion"));
    const auto answer = [this](FileOperations::Answer given) {
        m_sheet.clear();
        m_operations.answer(given);
    };
    connect(m_sheet, &YesNoSheet::accepted, this, [answer] { answer(FileOperations::Answer::Accept); });
    connect(m_sheet, &YesNoSheet::declined, this, [answer] { answer(FileOperations::Answer::Cancel); });
    m_sheet->open();
    if (!QApplication::activeWindow())
        QApplication::alert(m_window);
}

} // namespace brellin
