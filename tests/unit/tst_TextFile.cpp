#include "OrdinaryUser.h"
#include "TextFile.h"
#include "UnitTest.h"

#include <QFileInfo>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TextFileTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyARegularFileIsOpened_data();
    void OnlyARegularFileIsOpened();
    void AFileWithoutPermissionIsNotOpened();
    void AFileIsReadLineByLine_data();
    void AFileIsReadLineByLine();
    void ALineOfMegabytesIsReadWhole();
    void AReadErrorIsTold();

private:
    [[nodiscard]] QString PathOf(const QString& kind);
};

// Makes a file of that kind and names it.
QString TextFileTest::PathOf(const QString& kind)
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
    else if (kind == "empty name"_L1)
        return {};
    return path;
}

void TextFileTest::OnlyARegularFileIsOpened_data()
{
    QTest::addColumn<bool>("opened");
    // The row's name is the kind of file, or a path of the system.
    const auto row = [](const char* kind, bool opened) { QTest::newRow(kind) << opened; };
    row("regular", true);
    row("empty", true);
    row("link to a file", true);
    row("folder", false);
    row("pipe", false); // must not wait for a writer either
    row("socket", false);
    row("link to a folder", false);
    row("link to nothing", false);
    row("link to itself", false);
    row("missing", false);
    row("empty name", false);
    row("NUL in the name", false);
    row("/dev/null", false);
    row("/dev/zero", false);
}

void TextFileTest::OnlyARegularFileIsOpened()
{
    QFETCH(bool, opened);
    const QString kind = QString::fromUtf8(QTest::currentDataTag());
    const QString path = PathOf(kind);
    const QStringList absent{u"link to nothing"_s, u"link to itself"_s, u"missing"_s, u"empty name"_s};
    if (kind != "NUL in the name"_L1)
        QCOMPARE(QFileInfo::exists(path), !absent.contains(kind));

    TextFile file(path);
    QCOMPARE(file.Open(), opened);
}

void TextFileTest::AFileWithoutPermissionIsNotOpened()
{
    const QString path = Data().SchedulePath(u"file"_s);
    Data().WriteSchedule("line\n", u"file"_s);
    for (const QString& folder : {Data().Path(), QFileInfo(path).path()})
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0755) == 0);
    const auto canOpen = [&path](mode_t mode) {
        if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
            return mode == 0;
        const OrdinaryUser user;
        TextFile file(path);
        return file.Open();
    };
    QVERIFY(canOpen(0644));
    QVERIFY(!canOpen(0000));
}

void TextFileTest::AFileIsReadLineByLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char* name, const QByteArray& content, const QStringList& lines) {
        QTest::newRow(name) << content << lines;
    };
    const QString empty = u""_s;
    row("an empty file has no line", "", {});
    row("lines come in order", "a\nb\nc\n", {u"a"_s, u"b"_s, u"c"_s});
    row("a last line without terminator is a line", "a\nb", {u"a"_s, u"b"_s});
    row("one line without terminator is a line", "a", {u"a"_s});
    row("carriage return and line feed end a line", "a\r\nb\r\n", {u"a"_s, u"b"_s});
    row("both ends of line may be mixed", "a\r\nb\nc", {u"a"_s, u"b"_s, u"c"_s});
    row("a lone line feed is one empty line", "\n", {empty});
    row("empty lines are lines", "\na\n\nb\n", {empty, u"a"_s, empty, u"b"_s});
    row("blanks at both ends stay", " a \n\tb\t\n", {u" a "_s, u"\tb\t"_s});
    row("a NUL is a character like others", QByteArray("a\0b\nc\n", 6), {u"a\0b"_s, u"c"_s});
    row("text is UTF-8", "caf\xc3\xa9\n", {u"caf\u00e9"_s});
    row("a byte that is no text becomes the replacement character",
        "a\xff"
        "b\nc\n",
        {u"a\ufffdb"_s, u"c"_s});
}

void TextFileTest::AFileIsReadLineByLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, lines);
    Data().WriteSchedule(content, u"file"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    QVERIFY(file.Open());
    QStringList found;
    for (QString line; file.ReadLine(line);)
        found.append(line);
    QCOMPARE(found, lines);
    QCOMPARE(file.ReadError(), QString());
}

void TextFileTest::ALineOfMegabytesIsReadWhole()
{
    constexpr int LENGTH = 5'000'000;
    Data().WriteSchedule(QByteArray(LENGTH, 'x') + "\nnext", u"file"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    QVERIFY(file.Open());
    QString line;
    QVERIFY(file.ReadLine(line));
    QCOMPARE(line.size(), LENGTH);
    QVERIFY(file.ReadLine(line));
    QCOMPARE(line, u"next"_s);
    QVERIFY(!file.ReadLine(line));
}

void TextFileTest::AReadErrorIsTold()
{
    // The system shows a process's memory as a regular file, and has nothing at its start.
    TextFile file(u"/proc/self/mem"_s);
    QVERIFY(file.Open());
    QString line;
    QVERIFY(!file.ReadLine(line));
    QCOMPARE(file.ReadError(), u"Input/output error"_s);
}

QTEST_GUILESS_MAIN(TextFileTest)
#include "tst_TextFile.moc"
