#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// What speaks against a transfer before its first byte, as a list of names and reasons.
class ObstacleSheet : public QuestionSheet {
    Q_OBJECT
public:
    ObstacleSheet(const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
