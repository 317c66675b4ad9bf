#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// What is to be replaced has no Trash to go to: nothing is deleted for good without being asked about here.
class NoTrashSheet : public QuestionSheet {
    Q_OBJECT
public:
    NoTrashSheet(const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
