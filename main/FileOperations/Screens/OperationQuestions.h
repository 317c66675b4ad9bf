#pragma once

#include "FileOperations/FileOperations.h"

#include <QPointer>

namespace brellin {

class YesNoSheet;

/// Asks over one window what operations want to know. Each window has one: a question stands over the window that the user
/// is in and moves along; while they are in none it stands over all, and one answer holds for all.
class OperationQuestions : public QObject {
    Q_OBJECT
public:
    /// The operations outlive it; it goes with the window, and leaves the question to the others.
    OperationQuestions(FileOperations &operations, QWidget *window);

private:
    void follow();
    void ask(const OperationQuestion &question);

    FileOperations &m_operations;
    QWidget *const m_window;
    QPointer<YesNoSheet> m_sheet;
    int m_asked = 0; ///< what the sheet asks
};

} // namespace brellin
