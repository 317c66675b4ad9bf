#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/LanguageModel.h"
#include "System/PdfText.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace brellin {

/// Lets the language model on this machine choose a sub-folder for a file. No state: the same file, folders and answer give
/// the same name.
struct AgentAI {
    static bool isAvailable(LanguageModel &model);
    /// What the settings say about the model.
    static QString statusText(LanguageModel &model);

    /// The chosen folder's name: one of `existing` where it fits, else a new short one. Nothing without a model, after an
    /// error, or when the answer is of no use. The model is told of the first 60 of `existing`; `limit` is for everything
    /// from reading the file to the answer.
    static std::optional<QString> folderName(LanguageModel &model, const Location &file, const QStringList &existing,
                                             const PdfText &pdfText, std::chrono::milliseconds limit,
                                             const JobControl *control);

    /// The names of the folders in `base` that a file can be sorted into, those with the most entries first. Hidden ones,
    /// packages and links are left out; a folder that cannot be read has none.
    static QStringList existingFolders(const Location &base, const JobControl *control = nullptr);

    /// The beginning of a file's text for the model: of a PDF its first page, of text, source code and JSON the beginning;
    /// white space folded, at most 1,200 characters. Empty for all else.
    static QString textSnippet(const Location &file, const PdfText &pdfText, const JobControl *control = nullptr);

    /// A folder name made of the model's answer; nothing when it is of no use.
    static std::optional<QString> sanitize(const QString &answer, const QStringList &existing);
};

} // namespace brellin
