#pragma once

#include "Look/Tokens.h"

#include <QString>

class QHBoxLayout;
class QProgressBar;
class QVBoxLayout;
class QWidget;

namespace brellin {

class ElidedLabel;

/// Building blocks of the transfer panel's rows.
namespace rowParts {

constexpr int wholeBar = 1000; ///< maximum of a progress bar; 0 makes it indeterminate

/// A symbol in front of a line of text.
QWidget *makeMark(const QString &symbol, Token token, QWidget *parent);
ElidedLabel *makeBoldLine(const QString &objectName, QWidget *parent);
QProgressBar *makeBar(const QString &objectName, QWidget *parent);
QHBoxLayout *addLine(QVBoxLayout &column);

} // namespace rowParts

} // namespace brellin
