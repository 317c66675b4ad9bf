#pragma once

#include "Look/Cards.h"
#include "Places/ServerQuestion.h"

class QCheckBox;
class QLineEdit;

namespace brellin {

/// What a server wants to know, as a sheet. Tells one answer, or that none is wanted; then it goes. A password is held in its
/// field only, until it has been told.
class NetworkQuestionSheet : public SheetFrame {
    Q_OBJECT
public:
    NetworkQuestionSheet(const ServerQuestion &question, QWidget *window);

    /// Puts the keys into the first field that is empty, the password before the domain: that is seldom needed.
    void focusFirstGap();
    /// The question is no longer asked: goes without a word.
    void withdraw();

    Q_SIGNAL void answered(const brellin::ServerAnswer &answer);
    Q_SIGNAL void refused();

protected:
    void escape() override { refuse(); }
    void confirm() override;

private:
    void buildFields();
    void buildChoices();
    QLineEdit *addField(const QString &title, const QString &objectName, const QString &text);
    void followGuest(bool guest);
    void answer(qsizetype choice);
    void refuse();

    const ServerQuestion m_question;
    QCheckBox *m_guest = nullptr;
    QLineEdit *m_user = nullptr;
    QLineEdit *m_domain = nullptr;
    QLineEdit *m_password = nullptr;
};

} // namespace brellin
