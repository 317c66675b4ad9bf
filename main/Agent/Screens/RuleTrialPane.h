#pragma once

#include "Agent/Rules/RuleTrial.h"
#include "Agent/Screens/AgentPorts.h"
#include "Look/Tokens.h"

#include <QWidget>

class QPushButton;
class QVBoxLayout;

namespace brellin {

class TextLabel;

/// The live preview beside the rule editor: what the edited rule would take now, and why it would skip a chosen file.
class RuleTrialPane : public QWidget {
    Q_OBJECT
public:
    RuleTrialPane(const AgentPorts &ports, QWidget *parent);

    /// Tries this copy instead of the stored rule.
    void setRule(const CleanupRule &edited);
    void explain(const Location &file);

private:
    void buildExplanation();
    void showOutcome();
    void showWarnings();
    void showExplanation();
    void clear(QVBoxLayout *column);
    void addLine(QVBoxLayout *column, const QString &symbol, Token ink, const QString &text);
    QWidget *fileRow(const TrialFile &file);

    AgentPorts m_ports;
    RuleTrial m_trial;
    CleanupRule m_edited;
    QVBoxLayout *m_warnings;
    TextLabel *m_summary;
    QVBoxLayout *m_files;
    QPushButton *m_choose = nullptr;
    QVBoxLayout *m_explanation = nullptr;
};

} // namespace brellin
