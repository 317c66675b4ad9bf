#pragma once

#include "Agent/Model/ModelServices.h"
#include "Base/Job.h"
#include "Base/Published.h"
#include "System/LocalModelServer.h"

#include <functional>
#include <memory>
#include <vector>

namespace brellin {

/// The language model in the settings: how it is, which servers on this machine wait for the user's word, which one he has
/// confirmed. Nothing is sent to a server but what asks whether it is there. Lives on the main thread.
class ModelSettings : public Model<ModelSettings> {
public:
    Published<QString> status;                      ///< empty until the first answer
    Published<bool> checking;                       ///< an answer is on its way
    Published<QString> endpoint;                    ///< the confirmed server's address; empty: none
    Published<std::vector<FoundModelServer>> found; ///< servers that answer, without the confirmed one
    Published<QString> setupHint;                   ///< what to start, where no server was found; else empty
    Published<QString> error;                       ///< why the last address was not taken; else empty

    using Probe = std::function<std::vector<FoundModelServer>(const JobControl &)>;
    /// The services outlive it. `probe` looks for servers, on a worker.
    explicit ModelSettings(const ModelServices &services, Probe probe = usualProbe());
    ~ModelSettings() override;
    static Probe usualProbe();

    /// Asks anew. While it asks, another call does nothing.
    void refresh();
    /// Uses the server at this address from now on, found or typed.
    void confirm(const QString &address);
    /// Uses none from now on.
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
