#include "App/Window/EditableFocus.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace brellin {

bool isEditable(const QWidget *widget)
{
    if (const auto *const field = qobject_cast<const QLineEdit *>(widget))
        return !field->isReadOnly();
    if (const auto *const text = qobject_cast<const QPlainTextEdit *>(widget))
        return !text->isReadOnly();
    if (const auto *const text = qobject_cast<const QTextEdit *>(widget))
        return !text->isReadOnly();
    if (const auto *const choice = qobject_cast<const QComboBox *>(widget))
        return choice->isEditable();
    return qobject_cast<const QAbstractSpinBox *>(widget) != nullptr;
}

} // namespace brellin
