#pragma once

#include "Look/Cards.h"
#include "Transfers/TransferQuestion.h"

class QCheckBox;

namespace brellin {

/// A question of a transfer as a sheet: its buttons in their order, its check box where it has one. Tells one answer, then
/// it goes; Esc is its last button. What stands above the buttons is put there by whoever derives from it.
class QuestionSheet : public SheetFrame {
    Q_OBJECT
public:
    /// What two of the buttons are: counted from the left.
    struct Roles {
        qsizetype usual = 0;   ///< has the keys at first; never one that replaces or deletes
        qsizetype danger = -1; ///< loses something for good
    };
    QuestionSheet(QuestionText text, Roles roles, QSize wanted, QWidget *window);

    /// Opens it with the keys on the usual button.
    void ask();
    /// It is no longer asked: goes without an answer.
    void withdraw() { close(); }

    Q_SIGNAL void answered(const brellin::TransferAnswer &answer);

protected:
    /// Below what stands in the sheet.
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

/// The sheet for a question, not yet open.
QuestionSheet *makeQuestionSheet(const TransferQuestion &question, QWidget *window);

/// The question with its name shortened in the middle so that its message fits into the head of a sheet over `window` that is
/// to be `sheetWidth` wide.
TransferQuestion fittingHead(TransferQuestion question, int sheetWidth, const QWidget *window);

} // namespace brellin
