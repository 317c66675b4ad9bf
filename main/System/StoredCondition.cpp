#include "System/StoredCondition.h"

namespace brellin {

QString StoredCondition::text() const
{
    const QString sentence = [this] {
        switch (state) {
        case StoredState::Absent:
            return QStringLiteral("„%1“ gibt es nicht.");
        case StoredState::Whole:
            return QStringLiteral("„%1“ ist in Ordnung.");
        case StoredState::Partly:
            return QStringLiteral("„%1“ ist zum Teil beschädigt: %2");
        case StoredState::Damaged:
            return QStringLiteral("„%1“ ist beschädigt: %2");
        case StoredState::Unreadable:
            return QStringLiteral("„%1“ ist nicht lesbar: %2");
        }
        return QString();
    }();
    return isWhole() ? sentence.arg(shownName(file)) : sentence.arg(shownName(file), lost.join(u' '));
}

Failure StoredCondition::failure() const
{
    return {text(), std::make_error_code(std::errc::illegal_byte_sequence)};
}

} // namespace brellin
