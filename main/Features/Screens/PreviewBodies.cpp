#include "Features/Screens/PreviewBodies.h"

#include "Base/German.h"
#include "Look/Theme.h"

#include <QFontDatabase>
#include <QHeaderView>

namespace brellin {

namespace {

/// No frame of its own, but a focus ring.
QString bareStyle(const QString &widget)
{
    return QStringLiteral("%1 { border: 2px solid transparent; background: transparent; padding: 0; } "
                          "%1:focus { border: 2px solid %2; border-radius: 6px; padding: 0; }")
        .arg(widget, color(Token::Accent).name());
}

} // namespace

PreviewTextView::PreviewTextView(double factor, QWidget *parent) : QPlainTextEdit(parent), m_factor(factor)
{
    setAccessibleName(QStringLiteral("Text der Datei"));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setTabChangesFocus(true);
    connect(&Theme::shared(), &Theme::changed, this, &PreviewTextView::dress);
    dress();
}

void PreviewTextView::dress()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(sizedFont(m_factor).pointSizeF());
    setFont(fixed);
    setStyleSheet(bareStyle(QStringLiteral("QPlainTextEdit")));
}

void PreviewTextView::showText(const PreviewText &text)
{
    if (toPlainText() != text.text)
        setPlainText(text.text);
}

PreviewArchiveList::PreviewArchiveList(double factor, QWidget *parent) : QTreeWidget(parent), m_factor(factor)
{
    setAccessibleName(QStringLiteral("Inhalt des Archivs"));
    setColumnCount(2);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setTextElideMode(Qt::ElideLeft); // the end of a path matters most
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    connect(&Theme::shared(), &Theme::changed, this, &PreviewArchiveList::dress);
    dress();
}

void PreviewArchiveList::dress()
{
    setFont(sizedFont(m_factor));
    setStyleSheet(bareStyle(QStringLiteral("QTreeWidget")));
}

void PreviewArchiveList::showArchive(const PreviewArchive &archive)
{
    clear();
    QList<QTreeWidgetItem *> rows;
    rows.reserve(static_cast<qsizetype>(archive.entries.size()));
    for (const PreviewArchiveEntry &entry : archive.entries) {
        auto *const row = new QTreeWidgetItem({entry.name, entry.size ? sizeText(*entry.size) : QString()});
        row->setToolTip(0, entry.name);
        row->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        row->setForeground(1, palette().color(QPalette::PlaceholderText));
        rows.append(row);
    }
    addTopLevelItems(rows);
}

QString remarkOf(const PreviewBody &body)
{
    if (const auto *archive = std::get_if<PreviewArchive>(&body))
        return archive->remark;
    const auto *text = std::get_if<PreviewText>(&body);
    return text && text->cutOff ? QStringLiteral("Nur der Anfang wird gezeigt.") : QString();
}

} // namespace brellin
