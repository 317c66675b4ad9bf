#pragma once

#include "FolderChooser/Screens/FolderQuestion.h"

#include <QLineEdit>

#include <functional>

class QPushButton;

namespace brellin {

/// Asks for a file without blocking. `chosen` is called unless the user cancels or `parent` is destroyed.
void chooseFile(QWidget *parent, const QString &title, const Location &start,
                std::function<void(const Location &)> chosen);

/// A field for a folder's path with a button to choose it. Shows paths below the home folder as "~/…".
class FolderField : public QWidget {
    Q_OBJECT
public:
    /// The button asks `question`, beginning at the folder in the field.
    FolderField(const QString &accessibleName, const FolderQuestion &question, AskForFolder ask, const Location &home,
                const QString &objectName, QWidget *parent);

    /// The absolute path, as it is stored; as typed if it is not a path.
    QString path() const;
    void setPath(const QString &path);
    void setPlaceholder(const QString &text);

    Q_SIGNAL void changed();

private:
    void ask(FolderQuestion question);

    AskForFolder m_ask;
    Location m_home;
    QLineEdit *m_field;
};

} // namespace brellin
