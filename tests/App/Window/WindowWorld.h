#pragma once

#include "App/Start/WindowComposition.h"
#include "App/Window/MainWindow.h"
#include "App/Window/TabBar.h"
#include "Look/DesktopSettings.h"
#include "Look/Theme.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <fstream>

namespace brellin::test {

/// A real window on an offscreen display, with the real services, showing folder "d" of a temporary home.
class WindowWorld : public ::testing::Test {
protected:
    WindowWorld()
    {
        const Location home = Location(qgetenv("HOME").toStdString());
        std::filesystem::remove_all(home / "d");
        std::filesystem::create_directories(home / "d");
        folder = home / "d";
        Theme::install(*qApp);
        services = std::make_unique<Services>(Services::Writing::OnWorker);
        // Stored by earlier tests for the same folder.
        for (const char16_t *const one : {u"folderArrangements", u"folderViews"})
            EXPECT_TRUE(services->settings().update(QString::fromUtf16(one), [](const auto &) {
                return std::optional(UserDefaults::Change{"{}", false});
            }));
        desktop = std::make_unique<DesktopSettings>(Theme::shared(), nullptr);
        composition = std::make_unique<WindowComposition>(*services, *desktop);
    }

    void open()
    {
        StoredWindow from;
        from.tabs.push_back({QUuid::createUuid(), folder});
        open(from);
    }
    void open(const StoredWindow &from)
    {
        window = new MainWindow(composition->forWindows(), from);
        window->resize(1200, 700); // larger than the offscreen display's default
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void TearDown() override
    {
        delete window;
        window = nullptr;
    }

    Location file(const std::string &name, const std::string &content = "x") const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name) << content;
        return folder / name;
    }
    bool has(const std::string &name) const { return std::filesystem::exists(folder / name); }

    template <class Widget>
    Widget *find(const QString &name) const
    {
        auto *const found = window->findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    /// The first visible widget with this object name.
    template <class Widget>
    Widget *shownOne(const QString &name) const
    {
        for (Widget *const one : window->findChildren<Widget *>(name))
            if (one->isVisible())
                return one;
        return nullptr;
    }
    QAbstractItemView *details() const { return shownOne<QAbstractItemView>(QStringLiteral("detailsView")); }

    /// Empty while the folder is being read.
    QStringList rows() const
    {
        QStringList names;
        if (!details())
            return names;
        const QAbstractItemModel *const model = details()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names.append(model->index(row, 0).data().toString());
        return names;
    }
    bool rowsBecome(const QStringList &wanted) const
    {
        return waitUntil([&] { return rows() == wanted; });
    }
    bool folderBecomes(const Location &wanted) const
    {
        return waitUntil([&] { return pane().current.get() == wanted && details(); });
    }
    QPoint placeOf(const QString &name) const
    {
        const QAbstractItemModel *const model = details()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            if (model->index(row, 0).data().toString() == name) {
                const QRect cell = details()->visualRect(model->index(row, 0));
                return {cell.left() + 40, cell.center().y()};
            }
        ADD_FAILURE() << name.toStdString() << " is not listed";
        return {};
    }
    void click(const QString &name, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) const
    {
        QTest::mouseClick(details()->viewport(), button, keys, placeOf(name));
        QCoreApplication::processEvents();
    }
    void doubleClick(const QString &name) const
    {
        const QPoint place = placeOf(name);
        QTest::mouseClick(details()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(details()->viewport(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    /// Sends a key to the focused widget.
    static void key(int code, Qt::KeyboardModifiers keys = {})
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(code), keys);
        QCoreApplication::processEvents();
    }
    static void type(const QString &text)
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        QCoreApplication::processEvents();
    }
    BrowserModel &pane() const { return *window->state().pane; }

    Location folder;
    std::unique_ptr<Services> services;
    std::unique_ptr<DesktopSettings> desktop;
    std::unique_ptr<WindowComposition> composition;
    MainWindow *window = nullptr;
};

} // namespace brellin::test
