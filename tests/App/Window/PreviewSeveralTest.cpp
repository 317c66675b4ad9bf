#include "App/Window/WindowWorld.h"

#include <QLabel>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class PreviewSeveralTest : public WindowWorld {
protected:
    PreviewSeveralTest()
    {
        file("a.txt", "12345");
        file("b.txt", "123");
        file("unter/c.txt", "1234");
    }
    QString label(const char *name) const
    {
        return find<QLabel>(QString::fromLatin1(name))->text().remove(QChar(0x200B));
    }
    bool isVisible(const char *name) const { return find<QWidget>(QString::fromLatin1(name))->isVisible(); }
};

} // namespace

TEST_F(PreviewSeveralTest, thePreviewSummarisesWhatIsSelectedAndFollows)
{
    open();
    click(QStringLiteral("a.txt"));
    EXPECT_TRUE(waitUntil([this] { return label("vorschau.name") == QStringLiteral("a.txt"); }));
    click(QStringLiteral("b.txt"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return label("vorschau.name") == QStringLiteral("2 Elemente"); }));
    EXPECT_EQ(label("vorschau.art"), QStringLiteral("8 Byte"));
    EXPECT_TRUE(isVisible("previewStack"));
    click(QStringLiteral("unter"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return label("vorschau.art") == QStringLiteral("12 Byte"); }))
        << "the folder is counted: " << label("vorschau.art").toStdString();
    EXPECT_EQ(label("vorschau.angabe.0"), QStringLiteral("2"));
    std::filesystem::remove(folder / "a.txt");
    EXPECT_TRUE(waitUntil([this] { return label("vorschau.name") == QStringLiteral("2 Elemente"); }));
    click(QStringLiteral("b.txt"));
    EXPECT_TRUE(waitUntil([this] { return label("vorschau.name") == QStringLiteral("b.txt"); }));
    EXPECT_FALSE(isVisible("previewStack"));
    QTest::mouseClick(details()->viewport(), Qt::LeftButton, {}, QPoint(60, details()->viewport()->height() - 5));
    EXPECT_TRUE(waitUntil([this] { return !isVisible("vorschau.name"); })) << "nothing is selected";
}
