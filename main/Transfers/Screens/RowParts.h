#pragma once

#include "Look/Tokens.h"

#include <QString>

class QHBoxLayout;
class QProgressBar;
class QVBoxLayout;
class QWidget;

namespace brellin {

class ElidedLabel;

/// What the rows of the transfer panel are put together from.
namespace rowParts {

constexpr int wholeBar = 1000; ///< a bar's upper end; with 0 it only moves

/// A symbol before a line of text.
QWidget *makeMark(const QString &symbol, Token token, QWidget *parent);
ElidedLabel *makeBoldLine(const QString &objectName, QWidget *parent);
QProgressBar *makeBar(const QString &objectName, QWidget *parent);
QHBoxLayout *addLine(QVBoxLayout &column);

} // namespace rowParts

} // namespace brellin
