#pragma once

#include "App/Interruption.h"
#include "App/Terminal.h"
#include "Base/Job.h"

#include <QEventLoop>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <optional>
#include <utility>

namespace brellin {

/// Runs work on a worker and waits for it; shows a progress line once it takes longer than a second. Ctrl-C cancels it.
template <class T>
T workWithProgress(Terminal &terminal, std::function<T(JobControl &)> work,
                   const std::function<QString(const JobControl &)> &line)
{
    QEventLoop loop;
    QThreadPool pool;
    Job<T> job;
    const Interruption interruption([&] { job.cancel(); });
    std::optional<T> result;
    QTimer late;
    late.setSingleShot(true);
    job.start(
        pool, std::move(work),
        [&](T done) {
            result.emplace(std::move(done));
            loop.quit();
        },
        [&](const JobControl &control) {
            if (!late.isActive())
                terminal.progress(line(control));
        });
    late.start(1000);
    loop.exec();
    terminal.clearProgress();
    return *std::move(result);
}

} // namespace brellin
