#include "Support/TempTree.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

#include <cstdlib>

/// Home and every XDG folder lead into a folder of this test process before Qt looks at them: a test never sees the
/// account it runs in.
int main(int argc, char **argv)
{
    const brellin::test::TempTree home;
    home.folder("home");
    const std::string root = home.root().native();
    ::setenv("HOME", (root + "/home").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
    ::setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    ::setenv("XDG_STATE_HOME", (root + "/state").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (root + "/cache").c_str(), 1);
    ::setenv("TZ", "Europe/Berlin", 1);
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    return RUN_ALL_TESTS();
}
