#pragma once

#include "System/LanguageModel.h"

#include <QStringList>

namespace brellin::test {

/// A language model with canned answers, which records its prompts.
class FakeModel : public LanguageModel {
public:
    ModelStatus status() override { return answer.isEmpty() ? ModelStatus::Unavailable : ModelStatus::Available; }
    Result<QString> respond(const QString &, const QString &prompt, std::chrono::milliseconds,
                            const JobControl *) override
    {
        prompts << prompt;
        return answer;
    }

    QString answer; ///< empty: no model
    QStringList prompts;
};

} // namespace brellin::test
