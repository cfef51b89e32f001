#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "text/TextFile.h"

#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

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
    void AFileIsReadLineByLine_data();
    void AFileIsReadLineByLine();
    void ACarriageReturnIsToldWithItsLine();
    void AnEncodingIsToldByItsMark();
    void BlocksDoNotShow();
    void ATerminatorMayLieAcrossTwoBlocks();
    void ALineOfMegabytesIsReadWhole();
    void AFileThatIsReplacedIsReadOn();
    void AFileThatIsCutIsReadAsFarAsItGoes();
    void AFileThatGrowsIsReadAsItWas();
    void AReadErrorIsTold();

private:
    // Writes the file, and names it.
    [[nodiscard]] QString Written(const QByteArray& content);
};

QString TextFileTest::Written(const QByteArray& content)
{
    Data().WriteSchedule(content, u"file"_s);
    return Data().SchedulePath(u"file"_s);
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
    TextFile file(Written(content));
    QVERIFY(file.Open());
    QVERIFY(file.HasLineEnd());
    QCOMPARE(Rest(file), lines);
    QCOMPARE(file.HasLineEnd(), lines.isEmpty() || content.endsWith('\n'));
    QCOMPARE(file.LineNumber(), lines.size());
    QCOMPARE(file.ReadError(), QString());
}

void TextFileTest::ACarriageReturnIsToldWithItsLine()
{
    const QList<std::pair<QByteArray, QList<bool>>> files{
        {"a\nb\r\nc", {false, false, false}}, {"a\rb\nc\n", {true, false}}, {"a\r\r\nc\r\n", {true, false}},
        {"a\n\rb\n", {false, true}},          {"a\r\nb\r", {false, true}},
    };
    for (const auto& [content, returns] : files)
    {
        TextFile file(Written(content));
        QVERIFY(file.Open());
        QVERIFY(!file.HasLoneReturn());
        QList<bool> found;
        for (QString line; file.ReadLine(line);)
            found.append(file.HasLoneReturn());
        QCOMPARE(found, returns);
    }
}

void TextFileTest::AnEncodingIsToldByItsMark()
{
    // Bytes of the last two characters look like ends of line where they stand alone.
    const QStringList lines{u"1111111|08:30:00"_s, u"caf\u00e9 \u20ac"_s, u""_s, u"\u0d0a\u010d"_s};
    for (const QString& end : {u"\n"_s, u"\r\n"_s})
    {
        const QString text = lines.join(end) + end;
        QCOMPARE(LinesOf(Written(text.toUtf8())), lines);
        for (const auto encoding :
             {QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE, QStringConverter::Utf32LE})
        {
            QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
            const QByteArray content = encoder(text);
            QVERIFY(!content.startsWith('1'));
            QCOMPARE(LinesOf(Written(content)), lines);
            // A file that ends within a character loses that one, and no line.
            if (encoding == QStringConverter::Utf16LE)
                QCOMPARE(LinesOf(Written(content + 'x')), lines);
        }
    }
}

void TextFileTest::BlocksDoNotShow()
{
    // Wherever a block ends, within a character or a terminator too, no line shows it.
    constexpr int LENGTHS = 700;
    for (const QByteArray end : {"\n", "\r\n", "\r\r\n"})
    {
        QStringList lines;
        QByteArray content;
        for (int length = 0; length < LENGTHS; ++length)
        {
            lines.append(QString(length, u'\u20ac'));
            content += lines.last().toUtf8() + end;
        }
        QCOMPARE(LinesOf(Written(content)), lines);
    }
}

void TextFileTest::ATerminatorMayLieAcrossTwoBlocks()
{
    constexpr int BLOCK = 16384; // bytes that are read at once
    for (const int length : {BLOCK - 2, BLOCK - 1, BLOCK, 4 * BLOCK - 1})
    {
        const QStringList expected{QString(length, u'x'), u"second"_s, u""_s, u"fourth"_s};
        QCOMPARE(LinesOf(Written(QByteArray(length, 'x') + "\r\nsecond\r\n\r\nfourth")), expected);
    }
}

void TextFileTest::ALineOfMegabytesIsReadWhole()
{
    const QString line(5'000'000, u'x');
    QCOMPARE(LinesOf(Written(line.toLatin1() + "\nnext")), (QStringList{line, u"next"_s}));
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
    const QString path = Written("line\n"_ba.repeated(LINES));
    TextFile file(path);
    QVERIFY(file.Open());
    QVERIFY(NextIs(file, u"line"_s));
    // In the middle of a line.
    QCOMPARE(::truncate(qPrintable(path), 5 * (LINES / 2) + 2), 0);
    QCOMPARE(Rest(file), QStringList(LINES / 2 - 1, u"line"_s) + QStringList{u"li"_s});
    QVERIFY(!file.HasLineEnd());
    QCOMPARE(file.ReadError(), QString());
}

void TextFileTest::AFileThatGrowsIsReadAsItWas()
{
    // Of a small file 1048576 bytes, at five a line; the last one is cut.
    for (const auto& [lines, found] : {std::pair(LINES, LINES), {1, 209716}, {0, 209716}})
    {
        const QString path = Written("line\n"_ba.repeated(lines));
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
