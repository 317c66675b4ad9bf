#pragma once

#include "System/LanguageModel.h"
#include "System/ModelEndpoint.h"
#include "System/ModelWire.h"
#include "System/UserDefaults.h"

#include <mutex>
#include <optional>
#include <vector>

namespace brellin {

/// A model server that was found, for the user to confirm.
struct FoundModelServer {
    ModelEndpoint endpoint;
    ModelServerKind kind = ModelServerKind::OpenAi;
    QString model; ///< empty while it is being loaded

    bool operator==(const FoundModelServer &) const = default;
};

/// A language model served on this machine by a program the user runs. Its address is the setting "agentModelEndpoint",
/// entered or confirmed by the user: nothing is sent before that, and addresses that are not local are never used,
/// whatever the setting says. Thread-safe; call on workers.
class LocalModelServer : public LanguageModel {
public:
    /// The settings must outlive this object.
    explicit LocalModelServer(const UserDefaults &defaults) : m_defaults(defaults) {}

    /// The server's status, cached for a few seconds.
    ModelStatus status() override;
    Result<QString> respond(const QString &instructions, const QString &prompt, std::chrono::milliseconds limit,
                            const JobControl *control) override;

    /// The configured address; nullopt if unset or not allowed.
    static std::optional<ModelEndpoint> endpointIn(const UserDefaults &defaults);
    /// Stores the address chosen by the user; an empty text unsets it.
    static Result<void> setEndpoint(UserDefaults &defaults, const QString &address);

    /// The default addresses of known servers.
    static std::vector<ModelEndpoint> usualEndpoints();
    /// Searches for servers with plain GET requests that reveal nothing. Uses none of them. Blocking.
    static std::vector<FoundModelServer> probe(const std::vector<ModelEndpoint> &endpoints,
                                               const JobControl *control = nullptr);

private:
    /// The state of a server; kind and model are valid if it is available.
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
