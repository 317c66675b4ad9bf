#pragma once

#include "Transfers/Screens/QuestionSheet.h"

namespace brellin {

/// Obstacles found before a transfer starts, as a list of names and reasons.
class ObstacleSheet : public QuestionSheet {
    Q_OBJECT
public:
    ObstacleSheet(const TransferQuestion &question, QWidget *window);
};

} // namespace brellin
