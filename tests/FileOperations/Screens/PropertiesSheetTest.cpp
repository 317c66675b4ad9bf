#include "FileOperations/Screens/PropertiesSheet.h"

#include "Disk/Digest.h"
#include "Features/FileTags.h"
#include "Look/Theme.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class PropertiesSheetTest : public testing::Test {
protected:
    PropertiesSheetTest()
    {
        Theme::install(*qApp);
        tree.lines({"brief.pdf=lieber Leser", "Ordner/a.txt=eins", "Ordner/tiefer/b.txt=zwei", "weg->nirgends"});
        std::filesystem::permissions(tree.path("brief.pdf"), std::filesystem::perms(0640));
        window.resize(900, 760);
    }
    ~PropertiesSheetTest() override { delete sheet; }

    void open(std::vector<Location> entries, std::function<bool(const Location &)> mayChange = {})
    {
        auto made = std::make_unique<EntryProperties>(std::move(entries), std::move(mayChange));
        properties = made.get();
        sheet = new PropertiesSheet(std::move(made), &window);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        sheet->begin();
        ASSERT_TRUE(waitUntil(
            [this] { return properties->facts.get() && properties->size.get().state == EntrySize::State::Counted; }));
    }
    template <class Kind>
    Kind *find(const QString &name) const
    {
        Kind *const found = sheet->findChild<Kind *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    void click(const char *name) { QTest::mouseClick(find<QWidget>(QString::fromUtf8(name)), Qt::LeftButton); }
    QString text(const char *label) const { return find<QLabel>(QString::fromUtf8(label))->text(); }
    /// The value of a row, e.g. „kein Zugriff“.
    QString row(const char *label) const
    {
        for (const PreviewFact &fact : properties->facts.get()->rows)
            if (fact.label == QString::fromUtf8(label))
                return fact.value;
        return QStringLiteral("(keine Zeile)");
    }
    void toggle(const char *tag)
    {
        const int before = properties->tagChanges.get();
        click((std::string("vorschau.markierung.") + tag).c_str());
        ASSERT_TRUE(waitUntil([&] { return properties->tagChanges.get() > before; }));
    }

    TempTree tree;
    QWidget window;
    EntryProperties *properties = nullptr;
    QPointer<PropertiesSheet> sheet;
};

} // namespace

TEST_F(PropertiesSheetTest, saysWhatAFileIsAndWhoMayDoWhat)
{
    open({tree.path("brief.pdf")});
    EXPECT_EQ(text("propertiesName"), QStringLiteral("brief.pdf"));
    EXPECT_EQ(text("propertiesKind"), QStringLiteral("PDF-Dokument"));
    EXPECT_EQ(text("propertiesSize"), QStringLiteral("12 Byte"));
    EXPECT_EQ(row("Ort"), shown(tree.root()));
    EXPECT_TRUE(row("Eigentümer").endsWith(QStringLiteral("lesen, schreiben"))) << row("Eigentümer").toStdString();
    EXPECT_TRUE(row("Gruppe").endsWith(QStringLiteral("lesen"))) << row("Gruppe").toStdString();
    EXPECT_EQ(row("Andere"), QStringLiteral("kein Zugriff"));
    EXPECT_EQ(modeText(01755, EntryKind::Folder), QStringLiteral("drwxr-xr-t (1755)"));
    EXPECT_EQ(modeText(04644, EntryKind::File), QStringLiteral("-rwSr--r-- (4644)"));
    EXPECT_EQ(permissionText(5, EntryKind::Folder), QStringLiteral("lesen, öffnen"));
}

TEST_F(PropertiesSheetTest, countsSeveralTogether)
{
    open({tree.path("brief.pdf"), tree.path("Ordner"), tree.path("fehlt")});
    EXPECT_EQ(text("propertiesName"), QStringLiteral("3 Elemente"));
    EXPECT_EQ(text("propertiesKind"), QStringLiteral("1 Ordner, 1 Datei"));
    EXPECT_EQ(text("propertiesSize"), QStringLiteral("20 Byte · 3 Dateien · 1 nicht lesbar"));
    EXPECT_TRUE(text("propertiesError").startsWith(QStringLiteral("fehlt: ")));
    EXPECT_FALSE(find<QWidget>(QStringLiteral("propertiesDigest"))->isVisible());
}

TEST_F(PropertiesSheetTest, tagsFollowWhatIsWritten)
{
    const Location folder = tree.path("Ordner");
    const Location file = tree.path("brief.pdf");
    if (!FileTags::add(QStringLiteral("Rot"), {file}))
        GTEST_SKIP() << "no attributes on this volume";
    open({folder, file});
    EXPECT_EQ(text("propertiesOtherTags"), QStringLiteral("Rot (nicht bei allen)"));
    toggle("Rot");
    EXPECT_EQ(FileTags::tags(folder), QStringList{QStringLiteral("Rot")});
    EXPECT_TRUE(find<QAbstractButton>(QStringLiteral("vorschau.markierung.Rot"))->isChecked());
    toggle("Rot");
    EXPECT_EQ(FileTags::tags(file), QStringList());
    EXPECT_FALSE(find<QAbstractButton>(QStringLiteral("vorschau.markierung.Rot"))->isChecked());
}

TEST_F(PropertiesSheetTest, placesOfTheSystemKeepTheirTags)
{
    open({tree.path("brief.pdf")}, [](const Location &) { return false; });
    toggle("Blau");
    EXPECT_EQ(text("propertiesError"), QStringLiteral("Orte des Systems werden nicht verändert."));
    EXPECT_EQ(FileTags::tags(tree.path("brief.pdf")), QStringList());
}

TEST_F(PropertiesSheetTest, theDigestIsMadeOnRequest)
{
    open({tree.path("brief.pdf")});
    EXPECT_FALSE(find<QWidget>(QStringLiteral("propertiesDigestText"))->isVisible());
    click("propertiesDigest");
    ASSERT_TRUE(waitUntil([this] { return properties->digest.get().state == EntryDigest::State::Done; }));
    click("propertiesDigestCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), QString::fromLatin1(sha256OfBytes("lieber Leser")));
    EXPECT_EQ(text("propertiesDigestText").count(u' '), 7);
}

TEST_F(PropertiesSheetTest, aLinkStandsForItself)
{
    open({tree.path("weg")});
    EXPECT_EQ(row("Ziel"), QStringLiteral("nirgends (gibt es nicht)"));
    EXPECT_FALSE(find<QWidget>(QStringLiteral("vorschau.markierungen"))->isVisible());
    EXPECT_FALSE(find<QWidget>(QStringLiteral("propertiesDigest"))->isVisible());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(sheet && sheet->isVisible());
}
