#include "Places/MountDialogue.h"

#include <QRegularExpression>

#include <utility>

namespace brellin {

/// The program's output since the last answer.
struct MountDialogue::Prompt {
    QString kind;    ///< "User", "Domain", "Password" or "Choice"
    QString usual;   ///< the default for an empty answer
    QString message; ///< the lines before the prompt
    QStringList choices;

    static std::optional<Prompt> in(const QString &output);
};

std::optional<MountDialogue::Prompt> MountDialogue::Prompt::in(const QString &output)
{
    static const QRegularExpression end(
        QStringLiteral("(?:^|\\n)(User|Domain|Password|Choice)(?: \\[([^\\n]*)\\])?: $"));
    static const QRegularExpression choice(QStringLiteral("^\\[\\d+\\] (.*)$"));
    const QRegularExpressionMatch found = end.match(output);
    if (!found.hasMatch())
        return std::nullopt;
    Prompt prompt{found.captured(1), found.captured(2), {}, {}};
    QStringList lines;
    for (const QString &line : output.left(found.capturedStart()).split(u'\n', Qt::SkipEmptyParts)) {
        if (const QRegularExpressionMatch one = choice.match(line); one.hasMatch())
            prompt.choices += one.captured(1);
        else
            lines += line.trimmed();
    }
    prompt.message = lines.join(u'\n').trimmed();
    return prompt;
}

namespace {

/// Removes line breaks, so that an answer is a single line of input.
QByteArray line(const QString &text)
{
    QString one = text;
    one.remove(u'\n').remove(u'\r');
    return one.toUtf8() + '\n';
}

} // namespace

MountDialogue::MountDialogue(ServerAddress address, Ask ask) : m_address(std::move(address)), m_ask(std::move(ask)) {}

ServerQuestion MountDialogue::questionFor(const Prompt &prompt) const
{
    ServerQuestion question;
    question.server = m_address.host();
    question.message = prompt.message;
    question.choices = prompt.choices;
    if (prompt.kind == QStringLiteral("Choice"))
        return question;
    // The program asks for name, domain and password, in this order, and skips what the address contains.
    question.user = prompt.kind == QStringLiteral("User");
    question.domain =
        prompt.kind == QStringLiteral("Domain") || (question.user && m_address.scheme() == QStringLiteral("smb"));
    question.password = true;
    question.guestPossible = m_address.scheme() == QStringLiteral("smb") || m_address.scheme() == QStringLiteral("ftp");
    question.again = m_rounds > 0;
    (question.user ? question.knownUser : question.knownDomain) = prompt.usual;
    if (!question.user && !question.domain)
        question.knownDomain.clear();
    return question;
}

bool MountDialogue::beginsRound(const Prompt &prompt) const
{
    return !m_answer || !prompt.message.isEmpty() || m_answered.contains(prompt.kind);
}

bool MountDialogue::ask(const Prompt &prompt)
{
    const bool forPasswordOnly = prompt.kind == QStringLiteral("Password");
    m_answered.clear();
    // A password typed with the address answers the first prompt that asks for nothing else.
    if (forPasswordOnly && m_rounds == 0 && !m_address.password().isEmpty())
        m_answer = ServerAnswer{{}, {}, m_address.password(), false, 0};
    else
        m_answer = m_ask(questionFor(prompt));
    if (prompt.kind != QStringLiteral("Choice"))
        ++m_rounds;
    m_givenUp = !m_answer;
    m_guestWanted = m_answer && m_answer->guest;
    return !m_givenUp && !m_guestWanted;
}

std::optional<QByteArray> MountDialogue::reply(const QByteArray &output)
{
    const std::optional<Prompt> prompt = Prompt::in(QString::fromUtf8(output.mid(m_heard)));
    if (!prompt)
        return QByteArray();
    m_heard = output.size();
    if (beginsRound(*prompt) && !ask(*prompt))
        return std::nullopt;
    m_answered += prompt->kind;
    if (prompt->kind == QStringLiteral("Choice"))
        return line(QString::number(m_answer->choice + 1));
    if (prompt->kind == QStringLiteral("User"))
        return line(m_answer->user);
    return line(prompt->kind == QStringLiteral("Domain") ? m_answer->domain : m_answer->password);
}

} // namespace brellin
