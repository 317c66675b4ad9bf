#include "Support/Isolation.h"

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

#include <cstdlib>

/// Uses real windows, rendered offscreen.
int main(int argc, char **argv)
{
    const brellin::test::Isolation isolation;
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    return RUN_ALL_TESTS();
}
