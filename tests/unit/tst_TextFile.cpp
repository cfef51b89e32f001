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

namespace
{

constexpr int LONG_NAME = 256; // one more than a file can have
constexpr int LINES = 300'000; // too many for what is read at once

QStringList Rest(TextFile& file)
{
    QStringList lines;
    for (QString line; file.ReadLine(line);)
        lines.append(line);
    return lines;
}

QStringList LinesOf(const QString& path)
{
    TextFile file(path);
    return file.Open() ? Rest(file) : QStringList{u"(not opened)"_s};
}

bool NextIs(TextFile& file, const QString& expected)
{
    QString line;
    return file.ReadLine(line) && line == expected;
}

} // namespace

class TextFileTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyARegularFileIsOpened_data();
    void OnlyARegularFileIsOpened();
    void AFileWithoutPermissionIsNotOpened();
    void WithoutADescriptorNothingIsOpened();
    void AFileIsReadLineByLine_data();
    void AFileIsReadLineByLine();
    void ACarriageReturnIsToldWithItsLine_data();
    void ACarriageReturnIsToldWithItsLine();
    void AnEncodingIsToldByItsMark_data();
    void AnEncodingIsToldByItsMark();
    void BlocksDoNotShow_data();
    void BlocksDoNotShow();
    void ATerminatorMayLieAcrossTwoBlocks_data();
    void ATerminatorMayLieAcrossTwoBlocks();
    void ALineOfMegabytesIsReadWhole();
    void AFileThatIsReplacedIsReadOn();
    void AFileThatIsCutIsReadAsFarAsItGoes();
    void AFileThatGrowsIsReadAsItWas_data();
    void AFileThatGrowsIsReadAsItWas();
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
    else if (kind == "below a file"_L1)
        return Data().SchedulePath(u"target/file"_s);
    else if (kind == "long name"_L1)
        return Data().SchedulePath(QString(LONG_NAME, u'x'));
    else if (kind == "empty name"_L1)
        return {};
    return path;
}

void TextFileTest::OnlyARegularFileIsOpened_data()
{
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QString>("reason");
    // The row's name is the kind of file, or a path of the system.
    const auto opened = [](const char* kind) { QTest::newRow(kind) << true << QString(); };
    opened("regular");
    opened("empty");
    opened("link to a file");
    const auto row = [](const char* kind, const QString& reason) { QTest::newRow(kind) << false << reason; };
    const QString other = u"Not a regular file"_s;
    row("folder", u"Is a directory"_s);
    row("pipe", other); // must not wait for a writer either
    row("socket", other);
    row("link to a folder", u"Is a directory"_s);
    row("link to nothing", {});
    row("link to itself", u"Too many levels of symbolic links"_s);
    row("missing", {});
    row("below a file", u"Not a directory"_s);
    row("empty name", {});
    row("long name", u"File name too long"_s);
    row("NUL in the name", u"Invalid argument"_s);
    row("/dev/null", other);
    row("/dev/zero", other);
}

void TextFileTest::OnlyARegularFileIsOpened()
{
    QFETCH(bool, opened);
    QFETCH(QString, reason);
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

void TextFileTest::AFileWithoutPermissionIsNotOpened()
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

void TextFileTest::WithoutADescriptorNothingIsOpened()
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

void TextFileTest::AFileIsReadLineByLine_data()
{
    // Whether the last line has an end is that of the bytes.
    const QString empty = u""_s;
    Rows<QByteArray, QStringList>::Add({
        {"an empty file has no line", "", {}},
        {"lines come in order", "a\nb\nc\n", {u"a"_s, u"b"_s, u"c"_s}},
        {"a last line without terminator is a line", "a\nb", {u"a"_s, u"b"_s}},
        {"one line without terminator is a line", "a", {u"a"_s}},
        {"carriage return and line feed end a line", "a\r\nb\r\n", {u"a"_s, u"b"_s}},
        {"both ends of line may be mixed", "a\r\nb\nc", {u"a"_s, u"b"_s, u"c"_s}},
        {"lone carriage returns are dropped", "a\rb\rc", {u"abc"_s}},
        {"a carriage return at the end is dropped", "a\nb\r", {u"a"_s, u"b"_s}},
        {"all ends of line may be mixed", "a\rb\r\nc\nd\r\r\ne", {u"ab"_s, u"c"_s, u"d"_s, u"e"_s}},
        {"a carriage return that begins a line is dropped", "a\n\rb", {u"a"_s, u"b"_s}},
        {"a lone carriage return is one empty line", "\r", {empty}},
        {"lone carriage returns are one empty line", "a\n\r\r\r", {u"a"_s, empty}},
        {"a lone line feed is one empty line", "\n", {empty}},
        {"empty lines are lines", "\na\n\nb\n", {empty, u"a"_s, empty, u"b"_s}},
        {"blanks at both ends stay", " a \n\tb\t\n", {u" a "_s, u"\tb\t"_s}},
        {"a NUL is a character like others", QByteArray("a\0b\nc\n", 6), {u"a\0b"_s, u"c"_s}},
        {"a block of NULs is text like other", QByteArray(3, '\0') + "\nb", {QString(3, QChar()), u"b"_s}},
        {"a character that the end cuts is left out", "a\ncaf\xc3", {u"a"_s, u"caf"_s}},
        {"a lone first byte of a character is no line", "\xc3", {}},
        {"text is UTF-8", "caf\xc3\xa9\n", {u"caf\u00e9"_s}},
        {"a byte that is no text becomes the replacement character",
         "a\xff"
         "b\nc\n",
         {u"a\ufffdb"_s, u"c"_s}},
    });
}

void TextFileTest::AFileIsReadLineByLine()
{
    const auto& [content, lines] = Rows<QByteArray, QStringList>::Current();
    Data().WriteSchedule(content, u"file"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    QVERIFY(file.Open());
    QVERIFY(file.HasLineEnd());
    QCOMPARE(Rest(file), lines);
    QCOMPARE(file.HasLineEnd(), lines.isEmpty() || content.endsWith('\n'));
    QCOMPARE(file.LineNumber(), lines.size());
    QCOMPARE(file.ReadError(), QString());
}

void TextFileTest::ACarriageReturnIsToldWithItsLine_data()
{
    Rows<QByteArray, QList<bool>>::Add({
        {"none", "a\nb\r\nc", {false, false, false}},
        {"in a line", "a\rb\nc\n", {true, false}},
        {"before an end of line", "a\r\r\nc\r\n", {true, false}},
        {"at the beginning of a line", "a\n\rb\n", {false, true}},
        {"at the end of the file", "a\r\nb\r", {false, true}},
    });
}

void TextFileTest::ACarriageReturnIsToldWithItsLine()
{
    const auto& [content, returns] = Rows<QByteArray, QList<bool>>::Current();
    Data().WriteSchedule(content, u"file"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    QVERIFY(file.Open());
    QVERIFY(!file.HasLoneReturn());
    QList<bool> found;
    for (QString line; file.ReadLine(line);)
        found.append(file.HasLoneReturn());
    QCOMPARE(found, returns);
}

void TextFileTest::AnEncodingIsToldByItsMark_data()
{
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QByteArray>("end");
    for (const char* end : {"\n", "\r\n"})
    {
        const QByteArray name = QByteArray(end).replace('\n', " line feed").replace('\r', " carriage return");
        QTest::newRow("UTF-8 without a mark," + name) << -1 << QByteArray(end);
        QTest::newRow("UTF-8," + name) << static_cast<int>(QStringConverter::Utf8) << QByteArray(end);
        QTest::newRow("UTF-16, little end first," + name)
            << static_cast<int>(QStringConverter::Utf16LE) << QByteArray(end);
        QTest::newRow("UTF-16, big end first," + name)
            << static_cast<int>(QStringConverter::Utf16BE) << QByteArray(end);
        QTest::newRow("UTF-32, little end first," + name)
            << static_cast<int>(QStringConverter::Utf32LE) << QByteArray(end);
    }
}

void TextFileTest::AnEncodingIsToldByItsMark()
{
    QFETCH(int, encoding);
    QFETCH(QByteArray, end);
    // Bytes of the last two characters look like ends of line where they stand alone.
    const QStringList lines{u"1111111|08:30:00"_s, u"caf\u00e9 \u20ac"_s, u""_s, u"\u0d0a\u010d"_s};
    const QString text = lines.join(QString::fromLatin1(end)) + QString::fromLatin1(end);
    QByteArray content = text.toUtf8();
    if (encoding >= 0)
    {
        QStringEncoder encoder(static_cast<QStringConverter::Encoding>(encoding), QStringConverter::Flag::WriteBom);
        content = encoder(text);
        QVERIFY(!content.startsWith('1'));
    }
    Data().WriteSchedule(content, u"file"_s);
    QCOMPARE(LinesOf(Data().SchedulePath(u"file"_s)), lines);
    // A file that ends within a character loses that one, and no line.
    if (encoding == QStringConverter::Utf16LE)
    {
        Data().WriteSchedule(content + 'x', u"file"_s);
        QCOMPARE(LinesOf(Data().SchedulePath(u"file"_s)), lines);
    }
}

void TextFileTest::BlocksDoNotShow_data()
{
    Rows<QByteArray>::Add({
        {"line feed", "\n"},
        {"carriage return and line feed", "\r\n"},
        {"carriage returns and line feed", "\r\r\n"},
    });
}

void TextFileTest::BlocksDoNotShow()
{
    const QByteArray& end = Rows<QByteArray>::Current();
    // Wherever a block ends, within a character or a terminator too, no line shows it.
    constexpr int LENGTHS = 700;
    QStringList lines;
    QByteArray content;
    for (int length = 0; length < LENGTHS; ++length)
    {
        lines.append(QString(length, u'\u20ac'));
        content += lines.last().toUtf8() + end;
    }
    Data().WriteSchedule(content, u"file"_s);
    QCOMPARE(LinesOf(Data().SchedulePath(u"file"_s)), lines);
}

void TextFileTest::ATerminatorMayLieAcrossTwoBlocks_data()
{
    // 65536 bytes are read at once.
    Rows<int>::Add({
        {"both its characters end the first", 65534},
        {"one on each side", 65535},
        {"both begin the second", 65536},
    });
}

void TextFileTest::ATerminatorMayLieAcrossTwoBlocks()
{
    const int length = Rows<int>::Current();
    Data().WriteSchedule(QByteArray(length, 'x') + "\r\nsecond\r\n\r\nfourth", u"file"_s);
    const QStringList expected{QString(length, u'x'), u"second"_s, u""_s, u"fourth"_s};
    QCOMPARE(LinesOf(Data().SchedulePath(u"file"_s)), expected);
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

void TextFileTest::AFileThatIsReplacedIsReadOn()
{
    Data().WriteSchedule("old\n"_ba.repeated(LINES), u"file"_s);
    Data().WriteSchedule("new\n", u"other"_s);
    TextFile file(Data().SchedulePath(u"file"_s));
    QVERIFY(file.Open());
    QVERIFY(NextIs(file, u"old"_s));
    QCOMPARE(::rename(qPrintable(Data().SchedulePath(u"other"_s)), qPrintable(Data().SchedulePath(u"file"_s))), 0);
    QCOMPARE(Rest(file), QStringList(LINES - 1, u"old"_s));
    QCOMPARE(LinesOf(Data().SchedulePath(u"file"_s)), QStringList{u"new"_s});
}

void TextFileTest::AFileThatIsCutIsReadAsFarAsItGoes()
{
    const QString path = Data().SchedulePath(u"file"_s);
    Data().WriteSchedule("line\n"_ba.repeated(LINES), u"file"_s);
    TextFile file(path);
    QVERIFY(file.Open());
    QVERIFY(NextIs(file, u"line"_s));
    // In the middle of a line.
    QCOMPARE(::truncate(qPrintable(path), 5 * (LINES / 2) + 2), 0);
    QCOMPARE(Rest(file), QStringList(LINES / 2 - 1, u"line"_s) + QStringList{u"li"_s});
    QVERIFY(!file.HasLineEnd());
    QCOMPARE(file.ReadError(), QString());
}

void TextFileTest::AFileThatGrowsIsReadAsItWas_data()
{
    Rows<int, int>::Add({
        {"a large file", LINES, LINES},
        // 1048576 bytes, at five a line; the last one is cut.
        {"a small file", 1, 209716},
        {"an empty file", 0, 209716},
    });
}

void TextFileTest::AFileThatGrowsIsReadAsItWas()
{
    const auto& [lines, found] = Rows<int, int>::Current();
    const QString path = Data().SchedulePath(u"file"_s);
    Data().WriteSchedule("line\n"_ba.repeated(lines), u"file"_s);
    TextFile file(path);
    QVERIFY(file.Open());
    QFile writer(path);
    QVERIFY(writer.open(QIODevice::Append | QIODevice::Unbuffered));
    // The writer is always ahead of the reader.
    const QByteArray more = "line\n"_ba.repeated(100000);
    QVERIFY(writer.write(more) == more.size());
    int count = 0;
    for (QString line; file.ReadLine(line) && count <= found; ++count)
    {
        if (count % 10000 == 0)
            QVERIFY(writer.write(more) == more.size());
    }
    QCOMPARE(count, found);
    // What is read of a small file ends within a line.
    QCOMPARE(file.HasLineEnd(), lines == LINES);
    QCOMPARE(file.ReadError(), QString());
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

OZNA_CASE(TextFile, TextFileTest)
#include "tst_TextFile.moc"
