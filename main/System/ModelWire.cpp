#include "System/ModelWire.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace brellin {

namespace {

/// Enough for a name or a few lines.
constexpr int mostTokens = 200;
/// Ollama silently truncates prompts beyond its context, which is short by default.
constexpr int contextTokens = 8192;

Failure senseless()
{
    return {QStringLiteral("Die Antwort des Modell-Servers ist unverständlich."),
            std::make_error_code(std::errc::bad_message)};
}

QJsonObject objectIn(const QByteArray &body)
{
    return QJsonDocument::fromJson(body).object();
}

QJsonObject message(const QString &role, const QString &content)
{
    return {{QStringLiteral("role"), role}, {QStringLiteral("content"), content}};
}

/// The answer after the "thinking" block of a reasoning model.
Result<QString> withoutThoughts(const QString &answer)
{
    QString text = answer.trimmed();
    if (!text.startsWith(QStringLiteral("<think>")))
        return text;
    const QString end = QStringLiteral("</think>");
    const qsizetype at = text.indexOf(end);
    if (at < 0)
        return failure(senseless());
    return text.mid(at + end.size()).trimmed();
}

/// Models that a server forwards to another computer are marked, or show it in their names.
bool runsElsewhere(const QJsonObject &model, const QString &name)
{
    return model.contains(QStringLiteral("remote_host")) || model.contains(QStringLiteral("remote_model")) ||
           name.endsWith(QStringLiteral("-cloud"), Qt::CaseInsensitive) ||
           name.endsWith(QStringLiteral(":cloud"), Qt::CaseInsensitive);
}

/// Embedding models cannot answer.
bool onlyEmbeds(const QJsonObject &model, const QString &name)
{
    const QString family = model[u"details"][u"family"].toString();
    return name.contains(QStringLiteral("embed"), Qt::CaseInsensitive) ||
           family.contains(QStringLiteral("bert"), Qt::CaseInsensitive);
}

} // namespace

QString modelListPath(ModelServerKind kind)
{
    return kind == ModelServerKind::Ollama ? QStringLiteral("/api/tags") : QStringLiteral("/v1/models");
}

QString chatPath(ModelServerKind kind)
{
    return kind == ModelServerKind::Ollama ? QStringLiteral("/api/chat") : QStringLiteral("/v1/chat/completions");
}

QByteArray chatRequest(ModelServerKind kind, const QString &model, const QString &instructions, const QString &prompt)
{
    QJsonObject request{{QStringLiteral("model"), model},
                        {QStringLiteral("stream"), false},
                        {QStringLiteral("messages"), QJsonArray{message(QStringLiteral("system"), instructions),
                                                                message(QStringLiteral("user"), prompt)}}};
    // Reasoning would use up the tokens before the answer.
    if (kind == ModelServerKind::Ollama) {
        request.insert(QStringLiteral("think"), false);
        request.insert(QStringLiteral("options"), QJsonObject{{QStringLiteral("temperature"), 0},
                                                              {QStringLiteral("num_predict"), mostTokens},
                                                              {QStringLiteral("num_ctx"), contextTokens}});
    } else {
        request.insert(QStringLiteral("temperature"), 0);
        request.insert(QStringLiteral("max_tokens"), mostTokens);
        request.insert(QStringLiteral("chat_template_kwargs"), QJsonObject{{QStringLiteral("enable_thinking"), false}});
    }
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

Result<QString> chatAnswer(ModelServerKind kind, const QByteArray &body)
{
    const QJsonObject object = objectIn(body);
    const bool ollama = kind == ModelServerKind::Ollama;
    const QJsonObject choice = ollama ? object : object[u"choices"][0].toObject();
    const QString end = choice[ollama ? u"done_reason" : u"finish_reason"].toString();
    const bool whole = ollama ? choice[u"done"].toBool() : !choice.isEmpty();
    const QJsonValue content = choice[u"message"][u"content"];
    if (!whole || end == QStringLiteral("length") || !content.isString())
        return failure(senseless());
    QString text = TRY(withoutThoughts(content.toString()));
    if (text.isEmpty())
        return failure(senseless());
    return text;
}

Result<QString> usableModel(ModelServerKind kind, const QByteArray &body)
{
    const bool ollama = kind == ModelServerKind::Ollama;
    const QJsonArray list = objectIn(body)[ollama ? u"models" : u"data"].toArray();
    for (const auto &entry : list) {
        const QJsonObject model = entry.toObject();
        QString name = model[ollama ? u"name" : u"id"].toString();
        if (!name.isEmpty() && !runsElsewhere(model, name) && !onlyEmbeds(model, name))
            return name;
    }
    return failure(QStringLiteral("Der Modell-Server hat kein Modell, das auf diesem Rechner läuft."));
}

bool isOllamaVersion(const QByteArray &body)
{
    return objectIn(body)[u"version"].isString();
}

} // namespace brellin
