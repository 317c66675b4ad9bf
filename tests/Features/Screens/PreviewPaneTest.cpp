#include "Features/Screens/PreviewPane.h"

#include "Features/PreviewLoader.h"
#include "Look/Theme.h"
#include "Support/FakeClock.h"
#include "Support/FakeDecoder.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class PreviewPaneTest : public testing::Test {
protected:
    PreviewPaneTest()
    {
        pane.resize(262, 700);
        pane.show();
    }
    /// Shows an entry and waits until it is loaded.
    void choose(const Location &entry)
    {
        loader.show(entry);
        EXPECT_TRUE(waitUntil([&] {
            const PreviewContent &content = loader.content.get();
            return content.entry == entry && content.state != PreviewContent::State::Loading;
        })) << entry;
    }
    template <class Widget>
    Widget &child(const QString &name)
    {
        return *pane.findChild<Widget *>(name);
    }
    bool isVisible(const QString &name) { return child<QWidget>(name).isVisible(); }
    QString text(const QString &name) { return child<QLabel>(name).text().remove(QChar(0x200B)); }

    const TempTree tree;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    FakeDecoder decoder;
    FakeClock clock;
    PreviewLoader loader{defaults, volumes, decoder, clock};
    PreviewPane pane{loader, nullptr};
};

} // namespace

TEST_F(PreviewPaneTest, showsWhatIsChosen)
{
    EXPECT_FALSE(isVisible(u"vorschau.karte"_qs));
    choose(tree.file("Ein_sehr_langer_Name_ohne_jede_Stelle_zum_Umbrechen.txt", "Guten Tag"));
    EXPECT_EQ(text(u"vorschau.name"_qs), u"Ein_sehr_langer_Name_ohne_jede_Stelle_zum_Umbrechen.txt"_qs);
    EXPECT_TRUE(text(u"vorschau.art"_qs).endsWith(u" · 9 Byte"));
    EXPECT_EQ(child<QPlainTextEdit>(u"vorschau.text"_qs).toPlainText(), u"Guten Tag"_qs);
    EXPECT_TRUE(isVisible(u"vorschau.text"_qs));
    EXPECT_FALSE(isVisible(u"vorschau.hinweis"_qs));
    pane.setHint(u"Regel „Belege“ würde diese Datei verschieben."_qs);
    EXPECT_TRUE(isVisible(u"vorschau.hinweis"_qs));

    choose(tree.file("Bild.png", "x"));
    EXPECT_TRUE(isVisible(u"vorschau.bild"_qs));
    EXPECT_EQ(child<QWidget>(u"vorschau.bild"_qs).accessibleName(), u"Vorschau von „Bild.png“"_qs);

    choose(tree.path("missing"));
    EXPECT_FALSE(child<QWidget>(u"vorschau.bild"_qs).accessibleDescription().isEmpty()) << "says what is wrong";
    loader.show(std::nullopt);
    EXPECT_FALSE(isVisible(u"vorschau.karte"_qs));
    EXPECT_FALSE(isVisible(u"vorschau.hinweis"_qs));
}

TEST_F(PreviewPaneTest, listsArchives)
{
    decoder.answers.emplace(decoderWords::archive,
                            QByteArray(R"({"entries":[{"name":"a/b.txt","size":7}],"more":true})"));
    choose(tree.file("x.zip", "12345"));
    const auto &list = child<QTreeWidget>(u"vorschau.archiv"_qs);
    ASSERT_EQ(list.topLevelItemCount(), 1);
    EXPECT_EQ(list.topLevelItem(0)->text(0) + list.topLevelItem(0)->text(1), u"a/b.txt7 Byte"_qs);
}

TEST_F(PreviewPaneTest, turnsPages)
{
    decoder.answers.emplace(decoderWords::facts, QByteArray(R"({"pages":2})"));
    choose(tree.file("a.pdf", "x"));
    auto &back = child<QAbstractButton>(u"vorschau.vorigeSeite"_qs);
    auto &forward = child<QAbstractButton>(u"vorschau.naechsteSeite"_qs);
    EXPECT_FALSE(back.isEnabled());
    QTest::mouseClick(&forward, Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return text(u"vorschau.seite"_qs) == u"Seite 2 von 2"_qs; }));
    EXPECT_FALSE(forward.isEnabled());
    EXPECT_TRUE(back.isEnabled());
    choose(tree.file("b.txt", "x"));
    EXPECT_FALSE(back.isVisible());
}

TEST_F(PreviewPaneTest, showsSeveralAsOne)
{
    PreviewSummary three{3, {{u"PNG-Bild"_qs, 2}, {u"Ordner"_qs, 1}}, 2'000'000, false, {}};
    three.onTop = {{tree.path("a.png"), {}, false}, {tree.path("f"), {}, true}};
    pane.setSummary(three);
    EXPECT_TRUE(isVisible(u"previewStack"_qs));
    EXPECT_FALSE(isVisible(u"vorschau.karte"_qs));
    EXPECT_EQ(text(u"vorschau.name"_qs), u"3 Elemente"_qs);
    EXPECT_EQ(text(u"vorschau.art"_qs), u"mindestens 2 MB"_qs);
    EXPECT_EQ(text(u"vorschau.angabe.0"_qs) + text(u"vorschau.angabe.1"_qs), u"21"_qs);
    choose(tree.file("a.txt", "x"));
    EXPECT_FALSE(isVisible(u"previewStack"_qs));
    EXPECT_EQ(text(u"vorschau.name"_qs), u"a.txt"_qs);
    loader.show(std::nullopt);
    pane.setSummary(std::nullopt);
    EXPECT_FALSE(isVisible(u"previewStack"_qs));
    EXPECT_FALSE(isVisible(u"vorschau.name"_qs));
}

TEST_F(PreviewPaneTest, asksForTagsAndShowsThoseThereAre)
{
    choose(tree.file("a.txt", "x"));
    pane.setTags({u"Blau"_qs, u"Wichtig"_qs});
    auto &blue = child<QAbstractButton>(u"vorschau.markierung.Blau"_qs);
    auto &red = child<QAbstractButton>(u"vorschau.markierung.Rot"_qs);
    EXPECT_TRUE(blue.isChecked());
    QSignalSpy asked(&pane, &PreviewPane::tagToggled);
    QTest::mouseClick(&red, Qt::LeftButton);
    QTest::keyClick(&blue, Qt::Key_Space);
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked[0][0].toString() + asked[1][0].toString(), u"RotBlau"_qs);
    EXPECT_TRUE(blue.isChecked() && !red.isChecked()) << "what was asked for is not there yet";
}

TEST_F(PreviewPaneTest, cutsNoTextInLargeLetters)
{
    Theme::install(*qApp).setFontFactor(1.25);
    choose(tree.file("Ein_sehr_langer_Name_ohne_jede_Stelle_zum_Umbrechen.txt", "x"));
    pane.setHint(u"Regel „Rechnungen (PDF) ablegen“ würde diese Datei nach Dokumente verschieben."_qs);
    pane.resize(262, 700);
    QCoreApplication::processEvents();
    EXPECT_LE(pane.widget()->width(), pane.viewport()->width());
    for (const QLabel *label : pane.widget()->findChildren<QLabel *>()) {
        const int needed = label->isVisible() ? label->heightForWidth(label->width()) : 0;
        EXPECT_GE(label->height(), needed) << label->text().toStdString();
    }
    Theme::shared().setFontFactor(1);
}
