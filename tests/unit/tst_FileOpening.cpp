#include "OrdinaryUser.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "text/TextFile.h"

#include <QFileInfo>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// Which files a schedule or a playlist may be.
class FileOpeningTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyARegularFileIsOpened_data();
    void OnlyARegularFileIsOpened();
    void AFileWithoutPermissionIsNotOpened();
    void WithoutADescriptorNothingIsOpened();

private:
    [[nodiscard]] QString PathOf(const QString& kind);
};

// Makes a file of that kind and names it.
QString FileOpeningTest::PathOf(const QString& kind)
{
    const QString path = Data().SchedulePath(u"file"_s);
    const QByteArray name = QFile::encodeName(path);
    Data().WriteSchedule("line\n", u"target"_s);
    if (kind == "regular"_L1)
        Data().WriteSchedule("line\n", u"file"_s);
    else if (kind == "empty"_L1)
        Data().WriteSchedule("", u"file"_s);
    else if (kind == "folder"_L1)
        ::mkdir(name.constData(), 0700);
    else if (kind == "pipe"_L1)
        ::mkfifo(name.constData(), 0600);
    else if (kind == "socket"_L1)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, name.constData(), sizeof address.sun_path);
        const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
        static_cast<void>(::bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address));
        ::close(server);
    }
    else if (kind == "link to a file"_L1)
        QFile::link(Data().SchedulePath(u"target"_s), path);
    else if (kind == "link to a folder"_L1)
        QFile::link(Data().Path(), path);
    else if (kind == "link to nothing"_L1)
        QFile::link(Data().SchedulePath(u"missing"_s), path);
    else if (kind == "link to itself"_L1)
        QFile::link(path, path);
    else if (kind == "NUL in the name"_L1)
        return Data().SchedulePath(u"target"_s) + u"\0x"_s;
    else if (kind.startsWith(u'/'))
        return kind;
    else if (kind == "below a file"_L1)
        return Data().SchedulePath(u"target/file"_s);
    else if (kind == "long name"_L1)
        return Data().SchedulePath(QString(256, u'x'));
    else if (kind == "empty name"_L1)
        return {};
    return path;
}

void FileOpeningTest::OnlyARegularFileIsOpened_data()
{
    // The row's name is the kind of file, or a path of the system.
    const QString other = u"Not a regular file"_s;
    Rows<bool, QString>::Add({
        {"regular", true, {}},
        {"empty", true, {}},
        {"link to a file", true, {}},
        {"folder", false, u"Is a directory"_s},
        {"pipe", false, other}, // must not wait for a writer either
        {"socket", false, other},
        {"link to a folder", false, u"Is a directory"_s},
        {"link to nothing", false, {}},
        {"link to itself", false, u"Too many levels of symbolic links"_s},
        {"missing", false, {}},
        {"below a file", false, u"Not a directory"_s},
        {"empty name", false, {}},
        {"long name", false, u"File name too long"_s},
        {"NUL in the name", false, u"Invalid argument"_s},
        {"/dev/null", false, other},
        {"/dev/zero", false, other},
    });
}

void FileOpeningTest::OnlyARegularFileIsOpened()
{
    const auto& [opened, reason] = Rows<bool, QString>::Current();
    const QString kind = QString::fromUtf8(QTest::currentDataTag());
    const QString path = PathOf(kind);
    const QStringList absent{u"link to nothing"_s, u"link to itself"_s, u"missing"_s,
                             u"below a file"_s,    u"empty name"_s,     u"long name"_s};
    if (kind != "NUL in the name"_L1)
        QCOMPARE(QFileInfo::exists(path), !absent.contains(kind));

    TextFile file(path);
    errno = ENOENT; // of some earlier call
    QCOMPARE(file.Open(), opened);
    QCOMPARE(file.OpenError(), reason);
}

void FileOpeningTest::AFileWithoutPermissionIsNotOpened()
{
    const QString path = Data().SchedulePath(u"file"_s);
    Data().WriteSchedule("line\n", u"file"_s);
    for (const QString& folder : {Data().Path(), QFileInfo(path).path()})
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0755) == 0);
    const auto open = [&path](mode_t mode) {
        if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
            return u"no such mode"_s;
        const OrdinaryUser user;
        TextFile file(path);
        return file.Open() ? u"opened"_s : file.OpenError();
    };
    QCOMPARE(open(0644), u"opened"_s);
    QCOMPARE(open(0000), u"Permission denied"_s);
}

void FileOpeningTest::WithoutADescriptorNothingIsOpened()
{
    Data().WriteSchedule("line\n", u"file"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool isOpen = file.Open();
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QVERIFY(!isOpen);
    QCOMPARE(file.OpenError(), u"Too many open files"_s);
}

OZNA_CASE(FileOpening, FileOpeningTest)
#include "tst_FileOpening.moc"
