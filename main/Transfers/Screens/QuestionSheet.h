#pragma once

#include "Look/SheetFrame.h"
#include "Transfers/TransferQuestion.h"

class QCheckBox;

namespace brellin {

/// Base of the sheets that ask a transfer's question: buttons and an optional check box. Emits one answer, then closes;
/// Esc chooses the last button. Subclasses add the content above the buttons.
class QuestionSheet : public SheetFrame {
    Q_OBJECT
public:
    /// Indices of two buttons, from the left.
    struct Roles {
        qsizetype usual = 0;   ///< focused at first; never one that replaces or deletes
        qsizetype danger = -1; ///< loses data for good
    };
    QuestionSheet(QuestionText text, Roles roles, QSize wanted, QWidget *window);

    /// Opens the sheet with the default button focused.
    void ask();
    /// Closes without an answer, when the question is no longer asked.
    void withdraw() { close(); }

    Q_SIGNAL void answered(const brellin::TransferAnswer &answer);

protected:
    /// Adds the check box below the content.
    void addForAll();
    const QuestionText &text() const { return m_text; }
    void escape() override;
    void confirm() override;

private:
    void answer(const QuestionText::Button &button);

    const QuestionText m_text;
    QWidget *m_usual = nullptr;
    QCheckBox *m_forAll = nullptr;
};

/// Creates the sheet for a question, without opening it.
QuestionSheet *makeQuestionSheet(const TransferQuestion &question, QWidget *window);

/// Elides the name in the question, so that its message fits into the title of a sheet of `sheetWidth` over `window`.
TransferQuestion fittingHead(TransferQuestion question, int sheetWidth, const QWidget *window);

} // namespace brellin
