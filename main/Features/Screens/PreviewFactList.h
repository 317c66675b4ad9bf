#pragma once

#include "Features/PreviewContent.h"

#include <QWidget>

#include <vector>

class QGridLayout;

namespace brellin {

class TextLabel;

/// Labels and values in two columns.
class PreviewFactList : public QWidget {
    Q_OBJECT

public:
    explicit PreviewFactList(QWidget *parent);

    void setFacts(const std::vector<PreviewFact> &facts);

private:
    struct Row {
        TextLabel *label;
        TextLabel *value;
    };
    void addRow();

    QGridLayout *m_grid;
    std::vector<Row> m_rows; ///< created on demand, hidden when unused
};

} // namespace brellin
