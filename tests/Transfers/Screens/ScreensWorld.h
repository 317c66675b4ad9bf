#pragma once

#include "Look/Theme.h"
#include "Support/WaitUntil.h"
#include "Transfers/TransferQueue.h"
#include "Transfers/TransferWorld.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <semaphore>

namespace brellin::test {

/// A window with a focused field, and a queue whose copies can be paused.
class ScreensWorld : public testing::Test {
protected:
    ScreensWorld()
    {
        Theme::install(*qApp).setMotion(false);
        window.resize(1000, 700);
        field = new QLineEdit(&window);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field->setFocus();
    }
    ~ScreensWorld() override
    {
        queue.cancelAll();
        if (holding)
            gate.release(100);
        EXPECT_TRUE(waitUntil([this] { return !queue.busy(); }));
    }

    /// Makes each copy wait at its end for the gate.
    void holdCopies()
    {
        holding = true;
        world.files.afterCopy = [this](const Location &, const Location &) {
            held.release();
            gate.acquire();
        };
    }
    bool copyHeld()
    {
        return waitUntil([this] { return held.try_acquire(); });
    }
    QUuid transfer(std::initializer_list<const char *> names, const Location &destination,
                   TransferKind kind = TransferKind::Copy, const QUuid &pane = QUuid())
    {
        TransferRequest request{{}, destination, kind, pane};
        for (const char *name : names)
            request.sources.push_back(world.home(name));
        return queue.transfer(request);
    }
    bool ended()
    {
        return waitUntil([this] { return !queue.busy(); });
    }
    static QWidget *shownIn(const QWidget &where, const char *name)
    {
        QWidget *found = nullptr;
        for (QWidget *const one : where.findChildren<QWidget *>(QString::fromUtf8(name)))
            found = one->isVisible() ? one : found;
        return found;
    }
    static bool appears(const QWidget &where, const char *name)
    {
        return waitUntil([&] { return shownIn(where, name) != nullptr; });
    }
    static void press(const QWidget &where, const char *name)
    {
        auto *const button = qobject_cast<QAbstractButton *>(shownIn(where, name));
        ASSERT_TRUE(button) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    std::counting_semaphore<> gate{0};
    std::counting_semaphore<> held{0};
    bool holding = false;
    TransferWorld world;
    TransferQueue queue{world.services(), world.clock};
    QWidget window;
    QLineEdit *field = nullptr;
};

} // namespace brellin::test
