#pragma once

#include "Base/Result.h"

#include <QByteArray>
#include <QString>

namespace brellin {

/// The two forms in which model servers are spoken to.
enum class ModelServerKind {
    OpenAi, ///< /v1/chat/completions: llama.cpp's server and many others
    Ollama  ///< /api/chat
};

/// The path that lists the models, and the one that takes a conversation.
QString modelListPath(ModelServerKind kind);
QString chatPath(ModelServerKind kind);

/// The body that asks for one short answer: the model, both texts and options, nothing else.
QByteArray chatRequest(ModelServerKind kind, const QString &model, const QString &instructions, const QString &prompt);

/// The text in the body of an answer, trimmed and without the thoughts that some models put in front. An answer that is
/// malformed, empty or was cut off is a failure.
Result<QString> chatAnswer(ModelServerKind kind, const QByteArray &body);

/// The first model of a list that can be talked to and runs on this machine: a server may offer models that it passes on to
/// a computer elsewhere, and such a one is never used.
Result<QString> usableModel(ModelServerKind kind, const QByteArray &body);

/// Whether this is what Ollama answers to /api/version.
bool isOllamaVersion(const QByteArray &body);

} // namespace brellin
