#include "Support/PrivateBus.h"

#include "Support/WaitUntil.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdlib>

namespace brellin::test {

PrivateBus::PrivateBus(const char *variable)
{
    if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
        return;
    const std::string place = address().toStdString();
    m_daemon.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--address=" + place});
    EXPECT_TRUE(waitUntil([this] { return m_folder.has("bus"); })) << "the daemon did not start";
    ::setenv(variable, place.c_str(), 1);
}

QString PrivateBus::address() const
{
    return QStringLiteral("unix:path=") + QString::fromStdString(m_folder.path("bus").native());
}

} // namespace brellin::test
