#pragma once

#include "Agent/Model/ModelServices.h"
#include "Base/Job.h"
#include "Base/Published.h"
#include "System/LocalModelServer.h"

#include <functional>
#include <memory>
#include <vector>

namespace brellin {

/// The language model in the settings: its status, the servers found on this machine, and the one the user has
/// confirmed. Unconfirmed servers only receive a request that checks whether they run. Lives on the main thread.
class ModelSettings : public Model<ModelSettings> {
public:
    Published<QString> status;                      ///< empty until the first answer
    Published<bool> checking;                       ///< a request is in progress
    Published<QString> endpoint;                    ///< address of the confirmed server; empty: none
    Published<std::vector<FoundModelServer>> found; ///< servers that answered, except the confirmed one
    Published<QString> setupHint;                   ///< what to install or start if no server was found; else empty
    Published<QString> error;                       ///< why the last address was refused; else empty

    using Probe = std::function<std::vector<FoundModelServer>(const JobControl &)>;
    /// The services must outlive this object. `probe` searches for servers and runs on a worker.
    explicit ModelSettings(const ModelServices &services, Probe probe = usualProbe());
    ~ModelSettings() override;
    static Probe usualProbe();

    /// Queries status and servers. Ignored while a query is in progress.
    void refresh();
    /// Uses the server at this address, found or typed, from now on.
    void confirm(const QString &address);
    /// Uses no server from now on.
    void forget();

private:
    struct Answer {
        ModelStatus status = ModelStatus::Unavailable;
        std::vector<FoundModelServer> found;
    };

    void store(const QString &address);
    void take(const Answer &answer);

    ModelServices m_services;
    Probe m_probe;
    const std::shared_ptr<QThreadPool> m_pool;
    std::unique_ptr<Job<Answer>> m_job;
};

} // namespace brellin
