#include "Suite.h"
#include "process/StandardDescriptors.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr int FIRST_OTHER = 3;

bool IsNullDevice(int descriptor)
{
    struct stat found
    {
    };
    struct stat device
    {
    };
    return ::fstat(descriptor, &found) == 0 && ::stat("/dev/null", &device) == 0 && found.st_rdev == device.st_rdev &&
           S_ISCHR(found.st_mode);
}

// What has gone wrong in a process that begins with these descriptors closed; 0 for nothing.
int Fault(int closed)
{
    struct stat before[FIRST_OTHER]
    {
    };
    for (int descriptor = 0; descriptor < FIRST_OTHER; ++descriptor)
    {
        if ((closed & 1 << descriptor) != 0)
            ::close(descriptor);
        else if (::fstat(descriptor, &before[descriptor]) != 0)
            return 1;
    }
    if (!StandardDescriptors::OpenClosed())
        return 2;
    for (int descriptor = 0; descriptor < FIRST_OTHER; ++descriptor)
    {
        struct stat now
        {
        };
        if ((closed & 1 << descriptor) != 0)
        {
            if (!IsNullDevice(descriptor) || ::write(descriptor, "x", 1) != 1)
                return 3;
        }
        else if (::fstat(descriptor, &now) != 0 || now.st_ino != before[descriptor].st_ino)
            return 4;
    }
    return ::open("/dev/null", O_RDONLY) >= FIRST_OTHER ? 0 : 5;
}

} // namespace

class StandardDescriptorsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void WhatIsClosedIsOpenedOnTheNullDevice_data();
    void WhatIsClosedIsOpenedOnTheNullDevice();
};

void StandardDescriptorsTest::WhatIsClosedIsOpenedOnTheNullDevice_data()
{
    QTest::addColumn<int>("closed");
    for (int closed = 0; closed < 1 << FIRST_OTHER; ++closed)
        QTest::addRow("input %s, output %s, error %s", (closed & 1) != 0 ? "closed" : "open",
                      (closed & 2) != 0 ? "closed" : "open", (closed & 4) != 0 ? "closed" : "open")
            << closed;
}

void StandardDescriptorsTest::WhatIsClosedIsOpenedOnTheNullDevice()
{
    QFETCH(int, closed);
    const pid_t child = ::fork();
    QVERIFY(child >= 0);
    if (child == 0)
        ::_exit(Fault(closed));
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

OZNA_CASE(StandardDescriptors, StandardDescriptorsTest)
#include "tst_StandardDescriptors.moc"
