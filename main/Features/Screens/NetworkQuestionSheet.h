#pragma once

#include "Look/SheetFrame.h"
#include "Places/ServerQuestion.h"

class QCheckBox;
class QLineEdit;

namespace brellin {

/// A server's question as a sheet. Emits one answer or a cancel, then closes. A password is kept in its field only,
/// until it is emitted.
class NetworkQuestionSheet : public SheetFrame {
    Q_OBJECT
public:
    NetworkQuestionSheet(const ServerQuestion &question, QWidget *window);

    /// Focuses the first empty field, the password before the domain, which is seldom needed.
    void focusFirstGap();
    /// Closes without an answer, when the question is no longer asked.
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
