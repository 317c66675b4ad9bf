#pragma once

#include <QWidget>

class QLineEdit;
class QPushButton;

namespace brellin {

class TextLabel;

/// Says below a field why its text was refused, and marks the field. Hides when the field does or is edited; deleted
/// with the field.
class FieldReason : public QWidget {
    Q_OBJECT
public:
    explicit FieldReason(QLineEdit *field);

    /// An empty `action` shows no button.
    void show(const QString &reason, const QString &action = {});
    void clear();

    Q_SIGNAL void actionClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void mark(const QString &reason);
    void place();

    QLineEdit *m_field;
    TextLabel *m_text;
    QPushButton *m_action;
};

} // namespace brellin
