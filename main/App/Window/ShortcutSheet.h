#pragma once

#include "App/Window/Shortcuts.h"
#include "Look/SheetFrame.h"

class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace brellin {

class TextLabel;

/// A field that takes the next key as its content instead of acting on it.
class KeyField : public QWidget {
    Q_OBJECT
public:
    explicit KeyField(QWidget *parent);
    void setText(const QString &text);

    Q_SIGNAL void typed(const QKeySequence &key);
    /// Esc.
    Q_SIGNAL void left();

    QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
};

/// All commands with their keys, searchable; the keys can be changed.
class ShortcutSheet : public SheetFrame {
    Q_OBJECT
public:
    /// `shortcuts` must outlive it.
    ShortcutSheet(Shortcuts &shortcuts, QWidget *window);

protected:
    /// Return on a command: a new key for it.
    void confirm() override;

private:
    void build();
    void buildChanging();
    void fill();
    void showCurrent();
    std::optional<CommandId> current() const;
    void take(const Result<void> &changed);

    Shortcuts &m_shortcuts;
    QLineEdit *m_search;
    QTreeWidget *m_table;
    KeyField *m_field;
    QPushButton *m_remove;
    QPushButton *m_reset;
    QPushButton *m_resetAll;
    TextLabel *m_refusal;
};

} // namespace brellin
