#pragma once

#include "App/Command.h"

#include <QJsonValue>

namespace brellin {

/// Writes a list of records to standard output, or to the given file, which must not exist yet.
ExitCode exportList(const CommandContext &context, const QByteArray &forFile, const QJsonValue &json);

/// Reads the file named by an import.
Result<QByteArray> importedText(const CommandContext &context);

/// Parses "export", "import", "beispiele" or nothing, and checks the number of arguments. Fails with the correct usage.
enum class ListVerb { Show, Export, Import, Examples };
Result<ListVerb> listVerb(const CommandContext &context, const QString &command, const QStringList &known);

} // namespace brellin
