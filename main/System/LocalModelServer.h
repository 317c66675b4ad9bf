#pragma once

#include "System/LanguageModel.h"
#include "System/ModelEndpoint.h"
#include "System/ModelWire.h"
#include "System/UserDefaults.h"

#include <mutex>
#include <optional>
#include <vector>

namespace brellin {

/// A model server that answers, for the user to confirm.
struct FoundModelServer {
    ModelEndpoint endpoint;
    ModelServerKind kind = ModelServerKind::OpenAi;
    QString model; ///< empty while it is loaded

    bool operator==(const FoundModelServer &) const = default;
};

/// The language model of a server on this machine that the user runs himself. Its address is the setting
/// "agentModelEndpoint", set or confirmed by him: before that nothing is sent, and an address that leads anywhere else is
/// never used, whatever the setting says. Callable from every worker.
class LocalModelServer : public LanguageModel {
public:
    /// The settings outlive it.
    explicit LocalModelServer(const UserDefaults &defaults) : m_defaults(defaults) {}

    /// What the server said in the last few seconds, or says now.
    ModelStatus status() override;
    Result<QString> respond(const QString &instructions, const QString &prompt, std::chrono::milliseconds limit,
                            const JobControl *control) override;

    /// The address in the settings; nothing where it is unset or not allowed.
    static std::optional<ModelEndpoint> endpointIn(const UserDefaults &defaults);
    /// Stores the address that the user wants; an empty text unsets it.
    static Result<void> setEndpoint(UserDefaults &defaults, const QString &address);

    /// The addresses at which the known servers listen unless told otherwise.
    static std::vector<ModelEndpoint> usualEndpoints();
    /// Looks for servers, by plain GET requests that tell nothing. Uses none of them. Blocking.
    static std::vector<FoundModelServer> probe(const std::vector<ModelEndpoint> &endpoints,
                                               const JobControl *control = nullptr);

private:
    /// What a server is at one moment; kind and model hold where it is available.
    struct State {
        ModelStatus status = ModelStatus::Unavailable;
        ModelServerKind kind = ModelServerKind::OpenAi;
        QString model;
    };
    struct Known {
        ModelEndpoint endpoint;
        State state;
        std::chrono::steady_clock::time_point when;
    };

    static State examine(const ModelEndpoint &endpoint, std::chrono::steady_clock::time_point deadline,
                         const JobControl *control);
    static State examineList(const ModelEndpoint &endpoint, ModelServerKind kind,
                             std::chrono::steady_clock::time_point deadline, const JobControl *control);
    State stateOf(const ModelEndpoint &endpoint, std::chrono::milliseconds limit, const JobControl *control);
    void forget();

    const UserDefaults &m_defaults;
    std::mutex m_mutex;
    std::optional<Known> m_known;
};

} // namespace brellin
