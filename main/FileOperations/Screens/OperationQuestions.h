#pragma once

#include "FileOperations/FileOperations.h"

#include <QPointer>

namespace brellin {

class YesNoSheet;

/// Shows the questions of file operations over one window; each window has an instance. A question appears over the
/// active window and moves along with the user. While no window of the program is active it appears over all of them,
/// and one answer settles it.
class OperationQuestions : public QObject {
    Q_OBJECT
public:
    /// The operations must outlive it. Destroyed with the window; open questions then appear in other windows.
    OperationQuestions(FileOperations &operations, QWidget *window);

private:
    void follow();
    void ask(const OperationQuestion &question);

    FileOperations &m_operations;
    QWidget *const m_window;
    QPointer<YesNoSheet> m_sheet;
    int m_asked = 0; ///< id of the question on display
};

} // namespace brellin
