#include "Agent/Model/ModelTexts.h"
#include "App/Command.h"
#include "System/LocalModelServer.h"

#include <QJsonObject>

#include <future>

namespace brellin {

namespace {

/// Runs work on a worker and waits for it.
template <class Work>
auto onWorker(Work work)
{
    return std::async(std::launch::async, std::move(work)).get();
}

/// Stores the address given by `--verwenden`, if any.
Result<void> storeEndpoint(const CommandContext &context, UserDefaults &defaults)
{
    const std::vector<std::string> words = context.arguments.values(QStringLiteral("verwenden"));
    if (words.empty())
        return {};
    const QString word = QString::fromStdString(words.back());
    return LocalModelServer::setEndpoint(defaults, word == QStringLiteral("aus") ? QString() : word);
}

QString useHint(const QString &address)
{
    return QStringLiteral("Verwenden: brellin ki --verwenden ") + address;
}

/// Prints the servers that can be confirmed, or what to start.
void printChoice(Terminal &terminal)
{
    const std::vector<FoundModelServer> found =
        onWorker([] { return LocalModelServer::probe(LocalModelServer::usualEndpoints()); });
    for (const FoundModelServer &server : found) {
        const QString address = server.endpoint.text();
        const QString model = server.model.isEmpty() ? QStringLiteral("lädt noch")
                                                     : QStringLiteral("Modell „%1“").arg(printable(server.model));
        terminal.print(QStringLiteral("Gefunden: %1 (%2)").arg(address, model));
        terminal.print(useHint(address));
    }
    if (!found.empty())
        return;
    terminal.print(modelSetupText());
    terminal.print(useHint(QStringLiteral("ADRESSE")));
}

} // namespace

ExitCode runModelCommand(CommandContext &context)
{
    if (!context.arguments.rest().empty())
        return context.refuse(QStringLiteral("So nicht: brellin ki [--verwenden ADRESSE]"));
    UserDefaults &defaults = context.services.forAgent().defaults;
    if (const Result<void> stored = storeEndpoint(context, defaults); !stored)
        return context.refuse(stored.error().message);
    LocalModelServer model(defaults);
    const ModelStatus status = onWorker([&] { return model.status(); });
    if (context.json()) {
        context.terminal.printJson(QJsonObject{{QStringLiteral("available"), status == ModelStatus::Available},
                                               {QStringLiteral("status"), modelStatusText(status)}});
        return ExitCode::Done;
    }
    context.terminal.print(modelStatusText(status));
    if (const std::optional<ModelEndpoint> endpoint = LocalModelServer::endpointIn(defaults))
        context.terminal.print(QStringLiteral("Modell-Server: ") + endpoint->text());
    else if (!context.arguments.has(QStringLiteral("verwenden")))
        printChoice(context.terminal);
    return ExitCode::Done;
}

} // namespace brellin
