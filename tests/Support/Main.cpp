#include "Support/Isolation.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    const brellin::test::Isolation isolation;
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    return RUN_ALL_TESTS();
}
