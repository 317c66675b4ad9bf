#include "Agent/Screens/DiscardQuestion.h"

namespace brellin {

YesNoSheet *makeDiscardQuestion(const QString &explanation, QWidget *editor)
{
    auto *const question =
        new YesNoSheet(QStringLiteral("Änderungen verwerfen?"), explanation, QStringLiteral("Verwerfen"),
                       ButtonKind::Danger, editor, QStringLiteral("Weiter bearbeiten"));
    question->setObjectName(QStringLiteral("discardQuestion"));
    return question;
}

} // namespace brellin
