#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/LanguageModel.h"
#include "System/PdfText.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace brellin {

/// Lets the local language model choose a sub-folder for a file. Stateless: the same file, folders and answer give the
/// same name.
struct AgentAI {
    static bool isAvailable(LanguageModel &model);
    /// The model's status for the settings.
    static QString statusText(LanguageModel &model);

    /// The name of the chosen folder: one of `existing`, or a new short one. nullopt without a model, after an error,
    /// or for a useless answer. The prompt contains the first 60 of `existing`; `limit` covers everything from reading
    /// the file to the answer.
    static std::optional<QString> folderName(LanguageModel &model, const Location &file, const QStringList &existing,
                                             const PdfText &pdfText, std::chrono::milliseconds limit,
                                             const JobControl *control);

    /// The sub-folders of `base` to sort files into, those with the most entries first. Excludes hidden folders,
    /// packages and symlinks; empty if `base` cannot be read.
    static QStringList existingFolders(const Location &base, const JobControl *control = nullptr);

    /// An excerpt of a file's text for the prompt: the first page of a PDF, or the beginning of text, source code and
    /// JSON. White space is folded; at most 1,200 characters. Empty for all other types.
    static QString textSnippet(const Location &file, const PdfText &pdfText, const JobControl *control = nullptr);

    /// Turns the model's answer into a folder name; nullopt if it is useless.
    static std::optional<QString> sanitize(const QString &answer, const QStringList &existing);
};

} // namespace brellin
