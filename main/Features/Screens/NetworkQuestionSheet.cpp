#include "Features/Screens/NetworkQuestionSheet.h"

#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

QString titleFor(const ServerQuestion &question)
{
    return question.choices.isEmpty() ? QStringLiteral("Anmelden bei „%1“").arg(question.server)
                                      : QStringLiteral("„%1“ ist noch nicht bekannt").arg(question.server);
}

QString subtitleFor(const ServerQuestion &question)
{
    if (!question.choices.isEmpty())
        return QStringLiteral("Verbinde dich nur, wenn du weißt, dass es der richtige Server ist.");
    return QStringLiteral("Das Passwort geht nur an den Server und wird nicht gespeichert.");
}

/// The system's choices are in English.
QString germanChoice(const QString &choice)
{
    struct Word {
        QStringView english;
        QStringView german;
    };
    constexpr Word words[] = {{u"Log In Anyway", u"Trotzdem anmelden"},
                              {u"Cancel Login", u"Nicht anmelden"},
                              {u"Accept", u"Annehmen"},
                              {u"Yes", u"Ja"},
                              {u"No", u"Nein"},
                              {u"Cancel", u"Abbrechen"}};
    const auto found = std::ranges::find(words, QStringView(choice), &Word::english);
    return found == std::end(words) ? choice : found->german.toString();
}

} // namespace

NetworkQuestionSheet::NetworkQuestionSheet(const ServerQuestion &question, QWidget *window)
    : SheetFrame(titleFor(question), subtitleFor(question), {460, 0}, window)
    , m_question(question)
{
    setObjectName(QStringLiteral("networkQuestion"));
    if (m_question.again) {
        auto *const refusal = makeBody(QStringLiteral("Der Server hat diese Angaben nicht angenommen."), this);
        refusal->setToken(Token::Danger);
        refusal->setObjectName(QStringLiteral("networkRefused"));
        content()->addWidget(refusal);
    }
    if (m_question.choices.isEmpty())
        buildFields();
    else
        buildChoices();
}

void NetworkQuestionSheet::buildFields()
{
    if (m_question.user)
        m_user = addField(QStringLiteral("Name"), QStringLiteral("networkUser"), m_question.knownUser);
    if (m_question.domain)
        m_domain = addField(QStringLiteral("Domäne"), QStringLiteral("networkDomain"), m_question.knownDomain);
    if (m_question.password) {
        m_password = addField(QStringLiteral("Passwort"), QStringLiteral("networkPassword"), {});
        m_password->setEchoMode(QLineEdit::Password);
        m_password->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    }
    if (m_question.guestPossible) {
        m_guest = new QCheckBox(QStringLiteral("Als Gast verbinden"), this);
        m_guest->setObjectName(QStringLiteral("networkGuest"));
        content()->addWidget(m_guest);
        connect(m_guest, &QCheckBox::toggled, this, [this](bool guest) { followGuest(guest); });
    }
    auto *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("networkCancel"), this);
    auto *const login =
        makeButton(QStringLiteral("Anmelden"), ButtonKind::Primary, QStringLiteral("networkLogin"), this);
    buttons()->addWidget(cancel);
    buttons()->addWidget(login);
    connect(cancel, &QPushButton::clicked, this, [this] { refuse(); });
    connect(login, &QPushButton::clicked, this, [this] { answer(0); });
}

/// Shows each choice as a button; Return activates none of them.
void NetworkQuestionSheet::buildChoices()
{
    auto *const message = makeBody(m_question.message, this);
    message->setObjectName(QStringLiteral("networkMessage"));
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    content()->addWidget(message);
    auto *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("networkCancel"), this);
    buttons()->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, this, [this] { refuse(); });
    for (qsizetype i = 0; i < m_question.choices.size(); ++i) {
        auto *const button = makeButton(germanChoice(m_question.choices.at(i)), ButtonKind::Usual,
                                        QStringLiteral("networkChoice%1").arg(i), this);
        buttons()->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, i] { answer(i); });
    }
}

QLineEdit *NetworkQuestionSheet::addField(const QString &title, const QString &objectName, const QString &text)
{
    auto *const label = makeHeading(title, this);
    auto *const field = new QLineEdit(text, this);
    field->setObjectName(objectName);
    field->setAccessibleName(title);
    label->setBuddy(field);
    content()->addWidget(label);
    content()->addWidget(field);
    return field;
}

void NetworkQuestionSheet::followGuest(bool guest)
{
    for (QLineEdit *const field : {m_user, m_domain, m_password})
        if (field)
            field->setEnabled(!guest);
}

void NetworkQuestionSheet::answer(qsizetype choice)
{
    if (isHidden())
        return;
    ServerAnswer made;
    made.user = m_user ? m_user->text() : QString();
    made.domain = m_domain ? m_domain->text() : QString();
    made.password = m_password ? m_password->text() : QString();
    made.guest = m_guest && m_guest->isChecked();
    made.choice = choice;
    withdraw();
    Q_EMIT answered(made);
}

void NetworkQuestionSheet::refuse()
{
    if (isHidden())
        return;
    withdraw();
    Q_EMIT refused();
}

void NetworkQuestionSheet::focusFirstGap()
{
    for (QLineEdit *const field : {m_user, m_password, m_domain}) {
        if (field && field->text().isEmpty()) {
            field->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

void NetworkQuestionSheet::withdraw()
{
    if (m_password)
        m_password->clear();
    close();
}

void NetworkQuestionSheet::confirm()
{
    if (m_question.choices.isEmpty())
        answer(0);
}

} // namespace brellin
