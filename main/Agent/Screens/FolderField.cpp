#include "Agent/Screens/FolderField.h"

#include "Guard/PathTexts.h"
#include "Look/Buttons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>

namespace brellin {

void chooseFile(QWidget *parent, const QString &title, const Location &start,
                std::function<void(const Location &)> chosen)
{
    auto *const dialog = new QFileDialog(parent, title, shown(start));
    dialog->setObjectName(QStringLiteral("fileChooser"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Wählen"));
    dialog->setLabelText(QFileDialog::Reject, QStringLiteral("Abbrechen"));
    dialog->setLabelText(QFileDialog::LookIn, QStringLiteral("Suchen in:"));
    dialog->setLabelText(QFileDialog::FileName, QStringLiteral("Datei:"));
    dialog->setLabelText(QFileDialog::FileType, QStringLiteral("Art:"));
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, [chosen = std::move(chosen)](const QString &path) {
        chosen(standardised(Location(QFile::encodeName(path).toStdString())));
    });
    dialog->open();
}

FolderField::FolderField(const QString &accessibleName, const FolderQuestion &question, AskForFolder ask,
                         const Location &home, const QString &objectName, QWidget *parent)
    : QWidget(parent)
    , m_ask(std::move(ask))
    , m_home(home)
    , m_field(new QLineEdit(this))
{
    m_field->setObjectName(objectName);
    m_field->setAccessibleName(accessibleName);
    m_field->addAction(Symbols::icon(QStringLiteral("folder"), Token::Folder), QLineEdit::LeadingPosition);
    QPushButton *const button =
        makeButton(QStringLiteral("Wählen …"), ButtonKind::Link, objectName + QStringLiteral("Choose"), this);
    button->setAccessibleName(accessibleName + QStringLiteral(" wählen"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(6));
    row->addWidget(m_field, 1);
    row->addWidget(button);
    connect(m_field, &QLineEdit::textChanged, this, &FolderField::changed);
    connect(button, &QPushButton::clicked, this, [this, question] { this->ask(question); });
}

QString FolderField::path() const
{
    const QString text = m_field->text().trimmed();
    if (text == u'~')
        return textOf(m_home);
    return text.startsWith(QStringLiteral("~/")) ? textOf(m_home) + text.mid(1) : text;
}

void FolderField::setPath(const QString &path)
{
    m_field->setText(path.isEmpty() || !path.startsWith(u'/') ? path : shownFromHome(locationFromText(path), m_home));
}

void FolderField::setPlaceholder(const QString &text)
{
    m_field->setPlaceholderText(text);
}

void FolderField::ask(FolderQuestion question)
{
    // Start in the folder before the first placeholder.
    const QString fixed = path().section(u'{', 0, 0);
    const bool typed = fixed.startsWith(u'/');
    question.start = typed ? locationFromText(fixed) : m_home;
    if (typed)
        question.purpose.clear();
    m_ask(this, question, [this](const Location &folder) { setPath(textOf(folder)); });
}

} // namespace brellin
