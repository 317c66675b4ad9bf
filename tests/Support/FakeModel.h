#pragma once

#include "System/LanguageModel.h"

#include <QStringList>

namespace brellin::test {

/// A language model that says what the test wants, and remembers what it was asked.
class FakeModel : public LanguageModel {
public:
    ModelStatus status() override { return answer.isEmpty() ? ModelStatus::Unavailable : ModelStatus::Available; }
    Result<QString> respond(const QString &, const QString &prompt, std::chrono::milliseconds,
                            const JobControl *) override
    {
        prompts << prompt;
        return answer;
    }

    QString answer; ///< empty: there is no model
    QStringList prompts;
};

} // namespace brellin::test
