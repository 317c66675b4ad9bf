#include "FileOperations/Screens/BatchRenameForm.h"

#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSpinBox>
#include <QStackedLayout>
#include <QToolButton>

#include <initializer_list>
#include <utility>

namespace brellin {

namespace {

using Mode = BatchRenameFields::Mode;

constexpr int biggestNumber = 99'999'999;
constexpr int mostDigits = 9;

/// Fields side by side, each below its title; the number is its share of the width.
QWidget *page(std::initializer_list<std::pair<QWidget *, int>> fields, QWidget *parent)
{
    auto *const made = new QWidget(parent);
    auto *const row = new QHBoxLayout(made);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(12));
    for (const auto &[field, share] : fields) {
        auto *const column = new QVBoxLayout;
        column->setSpacing(scaled(4));
        auto *const label = makeHeading(field->accessibleName(), made);
        label->setBuddy(field);
        column->addWidget(label);
        column->addWidget(field);
        column->addStretch(1);
        row->addLayout(column, share);
    }
    return made;
}

} // namespace

BatchRenameForm::BatchRenameForm(const BatchRenameFields &fields, QWidget *parent)
    : QWidget(parent)
    , m_modes(new QButtonGroup(this))
    , m_pages(new QStackedLayout)
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(12));
    column->addLayout(buildModes());
    for (QWidget *const made : {buildNumber(fields), buildReplace(fields), buildAdd(fields), buildDate()})
        m_pages->addWidget(made);
    column->addLayout(m_pages);
    const int mode = static_cast<int>(fields.mode);
    m_modes->button(mode)->setChecked(true);
    m_pages->setCurrentIndex(mode);
    connect(m_modes, &QButtonGroup::idToggled, this, [this](int chosen, bool on) {
        if (on)
            choose(chosen);
    });
}

QLayout *BatchRenameForm::buildModes()
{
    constexpr std::pair<Mode, const char *> modes[] = {{Mode::Number, "renameModeNumber"},
                                                       {Mode::Replace, "renameModeReplace"},
                                                       {Mode::Add, "renameModeAdd"},
                                                       {Mode::Date, "renameModeDate"}};
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(4));
    for (const auto &[mode, name] : modes) {
        auto *const button = new QToolButton(this);
        button->setObjectName(QString::fromLatin1(name));
        button->setProperty("kind", QStringLiteral("symbol"));
        button->setText(title(mode));
        button->setAccessibleName(title(mode));
        button->setFont(sizedFont(1, QFont::DemiBold));
        button->setMinimumSize(button->fontMetrics().horizontalAdvance(title(mode)) + scaled(24), scaled(32));
        button->setCheckable(true);
        button->setFocusPolicy(Qt::StrongFocus);
        m_modes->addButton(button, static_cast<int>(mode));
        row->addWidget(button);
    }
    row->addStretch(1);
    return row;
}

QWidget *BatchRenameForm::buildNumber(const BatchRenameFields &fields)
{
    m_base = makeField(QStringLiteral("Name"), fields.base, QStringLiteral("renameBase"));
    m_base->setPlaceholderText(QStringLiteral("Name, z. B. Achensee 2026"));
    m_separator = makeField(QStringLiteral("Trenner"), fields.separator, QStringLiteral("renameSeparator"));
    m_start =
        makeNumber(QStringLiteral("Beginnen bei"), 0, biggestNumber, fields.startNumber, QStringLiteral("renameStart"));
    m_digits = makeNumber(QStringLiteral("Stellen"), 1, mostDigits, fields.digits, QStringLiteral("renameDigits"));
    return page({{m_base, 8}, {m_separator, 2}, {m_start, 3}, {m_digits, 2}}, this);
}

QWidget *BatchRenameForm::buildReplace(const BatchRenameFields &fields)
{
    m_find = makeField(QStringLiteral("Suchen"), fields.find, QStringLiteral("renameFind"));
    m_replace = makeField(QStringLiteral("Ersetzen durch"), fields.replaceWith, QStringLiteral("renameReplace"));
    m_replace->setPlaceholderText(QStringLiteral("nichts"));
    return page({{m_find, 1}, {m_replace, 1}}, this);
}

QWidget *BatchRenameForm::buildAdd(const BatchRenameFields &fields)
{
    m_prefix = makeField(QStringLiteral("Vorn anfügen"), fields.prefix, QStringLiteral("renamePrefix"));
    m_suffix =
        makeField(QStringLiteral("Hinten anfügen (vor der Endung)"), fields.suffix, QStringLiteral("renameSuffix"));
    return page({{m_prefix, 1}, {m_suffix, 1}}, this);
}

QWidget *BatchRenameForm::buildDate()
{
    auto *const help =
        makeBody(QStringLiteral("Setzt das Aufnahmedatum (bei Fotos) bzw. das Erstelldatum vor den Namen: "
                                "„2026-09-14 IMG_1234.jpg“."),
                 this);
    help->setObjectName(QStringLiteral("renameDateHelp"));
    help->setAlignment(Qt::AlignTop);
    return help;
}

QLineEdit *BatchRenameForm::makeField(const QString &title, const QString &text, const QString &objectName)
{
    auto *const field = new QLineEdit(text, this);
    field->setObjectName(objectName);
    field->setAccessibleName(title);
    field->setMinimumWidth(scaled(64));
    connect(field, &QLineEdit::textChanged, this, &BatchRenameForm::changed);
    return field;
}

QSpinBox *BatchRenameForm::makeNumber(const QString &title, int least, int most, int value, const QString &objectName)
{
    auto *const field = new QSpinBox(this);
    field->setObjectName(objectName);
    field->setAccessibleName(title);
    field->setRange(least, most);
    field->setValue(value);
    field->setMinimumWidth(scaled(64));
    connect(field, &QSpinBox::valueChanged, this, &BatchRenameForm::changed);
    return field;
}

void BatchRenameForm::choose(int mode)
{
    m_pages->setCurrentIndex(mode);
    Q_EMIT changed();
}

void BatchRenameForm::focusFirstField()
{
    QWidget *const first[] = {m_base, m_find, m_prefix, m_modes->checkedButton()};
    first[m_pages->currentIndex()]->setFocus(Qt::OtherFocusReason);
}

BatchRenameFields BatchRenameForm::fields() const
{
    BatchRenameFields made;
    made.mode = static_cast<Mode>(m_modes->checkedId());
    made.base = m_base->text();
    made.startNumber = m_start->value();
    made.digits = m_digits->value();
    made.separator = m_separator->text();
    made.find = m_find->text();
    made.replaceWith = m_replace->text();
    made.prefix = m_prefix->text();
    made.suffix = m_suffix->text();
    return made;
}

} // namespace brellin
