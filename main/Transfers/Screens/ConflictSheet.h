#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// A name conflict at the destination: shows both entries side by side and asks what to do.
class ConflictSheet : public QuestionSheet {
    Q_OBJECT
public:
    /// `question` must be about a conflict.
    ConflictSheet(const TransferQuestion &question, QWidget *window);

private:
    ConflictSheet(const ConflictQuestion &conflict, const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
