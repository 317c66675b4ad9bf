#pragma once

#include <QAbstractButton>

#include <optional>

namespace brellin {

/// A card of the start page: symbol and title, a large number with its noun, and a hint. A click opens the card's area;
/// `settingsRequested` is emitted by the settings button, if the area has settings.
class AgentCard : public QAbstractButton {
    Q_OBJECT
public:
    /// The noun behind the number: "Vorschlag" for one, else "Vorschläge".
    struct Noun {
        QString one;
        QString many;
    };
    AgentCard(const QString &symbol, const QString &title, const Noun &noun, const QString &hint,
              const QString &objectName, QWidget *parent);

    void addSettings(const QString &title, const QString &objectName);
    /// nullopt: unknown, shown as a dash.
    void setValue(std::optional<int> value);
    /// A third line in small print; may be empty.
    void setNote(const QString &note);

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

    Q_SIGNAL void settingsRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    int hintHeight(int width) const;
    void paintTexts(QPainter &painter, const QRect &inner) const;
    void describe();

    QString m_symbol;
    Noun m_noun;
    QString m_hint;
    QString m_note;
    std::optional<int> m_value = 0;
    QWidget *m_settings = nullptr;
};

} // namespace brellin
