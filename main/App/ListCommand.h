#pragma once

#include "App/Command.h"

#include <QJsonValue>

namespace brellin {

/// Writes a list of records where the command says: to standard output, or to a file that must not exist yet.
ExitCode exportList(const CommandContext &context, const QByteArray &forFile, const QJsonValue &json);

/// The content of the file that an import names.
Result<QByteArray> importedText(const CommandContext &context);

/// What follows the command's name: nothing, "export", "import" or "beispiele", each with as many words as it takes. Else a
/// sentence with the right use.
enum class ListVerb { Show, Export, Import, Examples };
Result<ListVerb> listVerb(const CommandContext &context, const QString &command, const QStringList &known);

} // namespace brellin
