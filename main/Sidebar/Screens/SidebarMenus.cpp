#include "Sidebar/Screens/SidebarMenus.h"

#include "Features/FileTags.h"
#include "Look/Symbols.h"
#include "Look/TagSymbols.h"

#include <QMenu>

#include <span>

namespace brellin {

namespace {

struct Entry {
    const char16_t *title;
    const char16_t *name; ///< object name of the action, for tests
    const char16_t *symbol;
    std::function<void()> SidebarActions::*run;
};

/// The menu's entries in order, by group.
constexpr Entry opening[] = {
    {u"Öffnen", u"open", u"folder-open", &SidebarActions::open},
    {u"In neuem Tab öffnen", u"openInNewTab", u"square-plus", &SidebarActions::openInNewTab},
};
constexpr Entry editing[] = {
    {u"Umbenennen", u"rename", u"text-cursor-input", &SidebarActions::rename},
    {u"Nach oben", u"moveUp", u"arrow-up", &SidebarActions::moveUp},
    {u"Nach unten", u"moveDown", u"arrow-down", &SidebarActions::moveDown},
};
constexpr Entry looks[] = {
    {u"Symbol …", u"chooseSymbol", u"shapes", &SidebarActions::chooseSymbol},
    {u"Bild …", u"chooseImage", u"image", &SidebarActions::chooseImage},
    {u"Bild entfernen", u"removeImage", u"image-off", &SidebarActions::removeImage},
};
constexpr Entry closing[] = {
    {u"An Schnellzugriff anheften", u"pin", u"pin", &SidebarActions::pin},
    {u"Auswerfen", u"eject", u"eject", &SidebarActions::eject},
    {u"Eigenschaften", u"properties", u"info", &SidebarActions::properties},
    {u"Aus Schnellzugriff entfernen", u"unpin", u"pin-off", &SidebarActions::unpin},
};

QString text(const char16_t *literal)
{
    return QString::fromUtf16(literal);
}

void add(QMenu &menu, std::span<const Entry> entries, const SidebarActions &actions)
{
    for (const Entry &entry : entries) {
        const std::function<void()> &run = actions.*entry.run;
        if (!run)
            continue;
        QAction *const action = menu.addAction(Symbols::icon(text(entry.symbol)), text(entry.title), run);
        action->setObjectName(text(entry.name));
    }
}

void addColors(QMenu &menu, const SidebarRow &row, const SidebarActions &actions)
{
    if (!actions.setColor)
        return;
    QMenu *const colors = menu.addMenu(Symbols::icon(QStringLiteral("palette")), QStringLiteral("Farbe"));
    colors->setObjectName(QStringLiteral("colors"));
    for (const FileTags::PaletteTag &tag : FileTags::all) {
        const QString name = tag.name.toString();
        const TagMark mark = name == row.colorName ? TagMark::All : TagMark::None;
        QAction *const action = colors->addAction(tagIcon(QColor::fromRgb(tag.color), mark), name,
                                                  [set = actions.setColor, name] { set(name); });
        action->setObjectName(QStringLiteral("color") + name);
    }
    colors->addSeparator();
    QAction *const none = colors->addAction(QStringLiteral("Keine"), [set = actions.setColor] { set(std::nullopt); });
    none->setObjectName(QStringLiteral("colorNone"));
    none->setEnabled(row.colorName.has_value());
}

} // namespace

QMenu *makeSidebarMenu(const SidebarRow &row, const SidebarActions &actions, QWidget *parent)
{
    auto *const menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("sidebarMenu"));
    menu->setAccessibleName(row.title);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (actions.toggleFold)
        menu->addAction(row.expanded ? QStringLiteral("Zuklappen") : QStringLiteral("Aufklappen"), actions.toggleFold)
            ->setObjectName(QStringLiteral("toggleFold"));
    add(*menu, opening, actions);
    menu->addSeparator();
    add(*menu, editing, actions);
    menu->addSeparator();
    add(*menu, looks, actions);
    addColors(*menu, row, actions);
    menu->addSeparator();
    add(*menu, closing, actions);
    if (!menu->isEmpty())
        return menu;
    delete menu;
    return nullptr;
}

} // namespace brellin
