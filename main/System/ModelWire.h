#pragma once

#include "Base/Result.h"

#include <QByteArray>
#include <QString>

namespace brellin {

/// The two supported APIs of model servers.
enum class ModelServerKind {
    OpenAi, ///< /v1/chat/completions: llama.cpp's server and many others
    Ollama  ///< /api/chat
};

/// The paths for listing models and for a conversation.
QString modelListPath(ModelServerKind kind);
QString chatPath(ModelServerKind kind);

/// The request body for one short answer: the model, both texts and options, nothing else.
QByteArray chatRequest(ModelServerKind kind, const QString &model, const QString &instructions, const QString &prompt);

/// The answer's text, trimmed and without a leading block of "thoughts". Fails if the response is malformed, empty or
/// truncated.
Result<QString> chatAnswer(ModelServerKind kind, const QByteArray &body);

/// The first model of the list that supports chat and runs locally. Servers may also offer models that they forward to
/// another computer; these are never used.
Result<QString> usableModel(ModelServerKind kind, const QByteArray &body);

/// Whether this is Ollama's response to /api/version.
bool isOllamaVersion(const QByteArray &body);

} // namespace brellin
