#pragma once

#include "FileOperations/BatchRenamePlan.h"

#include <QWidget>

class QButtonGroup;
class QLineEdit;
class QSpinBox;
class QStackedLayout;
class QVBoxLayout;

namespace brellin {

/// The four methods of renaming several entries, with the fields of the selected one. Keeps the input of the others.
class BatchRenameForm : public QWidget {
    Q_OBJECT
public:
    explicit BatchRenameForm(const BatchRenameFields &fields, QWidget *parent);

    BatchRenameFields fields() const;
    /// Focuses the first field of the selected method.
    void focusFirstField();

    Q_SIGNAL void changed();

private:
    QLayout *buildModes();
    QWidget *buildNumber(const BatchRenameFields &fields);
    QWidget *buildReplace(const BatchRenameFields &fields);
    QWidget *buildAdd(const BatchRenameFields &fields);
    QWidget *buildDate();
    QLineEdit *makeField(const QString &title, const QString &text, const QString &objectName);
    QSpinBox *makeNumber(const QString &title, int least, int most, int value, const QString &objectName);
    void choose(int mode);

    QButtonGroup *m_modes;
    QStackedLayout *m_pages;
    QLineEdit *m_base = nullptr;
    QLineEdit *m_separator = nullptr;
    QSpinBox *m_start = nullptr;
    QSpinBox *m_digits = nullptr;
    QLineEdit *m_find = nullptr;
    QLineEdit *m_replace = nullptr;
    QLineEdit *m_prefix = nullptr;
    QLineEdit *m_suffix = nullptr;
};

} // namespace brellin
