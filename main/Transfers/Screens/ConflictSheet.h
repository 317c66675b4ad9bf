#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// A name is taken in the destination: both entries side by side, and what is to become of them.
class ConflictSheet : public QuestionSheet {
    Q_OBJECT
public:
    /// `question` is about a conflict.
    ConflictSheet(const TransferQuestion &question, QWidget *window);

private:
    ConflictSheet(const ConflictQuestion &conflict, const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
