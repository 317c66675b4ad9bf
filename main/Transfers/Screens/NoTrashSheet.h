#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// Asks before an entry is replaced that cannot be trashed: nothing is deleted for good without this question.
class NoTrashSheet : public QuestionSheet {
    Q_OBJECT
public:
    NoTrashSheet(const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
