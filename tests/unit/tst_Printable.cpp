#include "Suite.h"
#include "UnitTest.h"
#include "text/LineFields.h"
#include "text/Printable.h"
#include "text/StringUtils.h"

using namespace Qt::StringLiterals;

// What stands in place of a line's texts, against the library's own copies of them.
class PrintableTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ATextIsThatOfTheLibrary();
    void ALongTextIsWhole();
    void EveryBlankIsTrimmedAsTheLibraryDoes();
    void FieldsAreTheTokensOfALine();
    void ParametersAreTheNinthOfNineFields();
};

void PrintableTest::ATextIsThatOfTheLibrary()
{
    for (int code = 0; code <= 0xffff; ++code)
    {
        const QString text = u"a"_s + QChar(code) + u"b"_s;
        QCOMPARE(QByteArray(Printable(text).Text()), QByteArray(qPrintable(text)));
        const QByteArray latin1 = text.toLatin1();
        QCOMPARE(QByteArray(Printable(QLatin1String(latin1)).Text()),
                 QByteArray(qPrintable(QString::fromLatin1(latin1))));
    }
    QCOMPARE(QByteArray(Printable(QString()).Text()), QByteArray());
    QCOMPARE(QByteArray(Printable(QLatin1String()).Text()), QByteArray());
    QCOMPARE(QByteArray(Printable(u"\U0001f514"_s).Text()), "\xf0\x9f\x94\x94"_ba);
}

void PrintableTest::ALongTextIsWhole()
{
    for (int length = 250; length < 260; ++length)
    {
        for (const QString& end : {u"x"_s, u"\u00e9"_s})
        {
            const QString text = QString(length, u'a') + end;
            QCOMPARE(QByteArray(Printable(text).Text()), text.toUtf8());
            QCOMPARE(QByteArray(Printable(QLatin1String(text.toLatin1())).Text()), text.toUtf8());
        }
    }
}

void PrintableTest::EveryBlankIsTrimmedAsTheLibraryDoes()
{
    for (int code = 0; code <= 0xff; ++code)
    {
        if (code == '|')
            continue;
        const QString sign = QChar(code);
        for (const QString& text :
             {sign, sign + u"a b"_s, u"a b"_s + sign, sign + sign + u"a"_s + sign, u"a"_s + sign + u"b"_s})
        {
            QCOMPARE(StringUtils::FirstTokens(text, '|', 1), QStringList{text.trimmed()});
        }
    }
}

void PrintableTest::FieldsAreTheTokensOfALine()
{
    for (const QString& line : {u""_s, u"|"_s, u"a"_s, u" a | b "_s,
                                u"1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3,70"_s, u"a|b|c|d|e|f|g|h|i|j|k"_s,
                                u"||||||||"_s, u"|||||||||"_s, u"caf\u00e9|\u20ac|\U0001f514"_s, u"a|b|c|d|e|f|g|h|"_s})
    {
        const LineFields fields(line);
        QStringList tokens = StringUtils::SplitLineIntoTokens(line, '|');
        QCOMPARE(fields.Count(), tokens.size());
        if (tokens.size() <= ScheduleFields::FIELD_TASK)
            tokens.clear();
        for (int field = 0; field < ScheduleFields::FIELD_COUNT; ++field)
            QCOMPARE(QString(fields[static_cast<ScheduleFields::Field>(field)]), tokens.value(field));
    }
}

void PrintableTest::ParametersAreTheNinthOfNineFields()
{
    QCOMPARE(LineFields(u"1|2|3|4|5|6|7|8"_s).Parameters(), QLatin1String());
    QCOMPARE(LineFields(u"1|2|3|4|5|6|7|8|"_s).Parameters(), QLatin1String());
    QCOMPARE(LineFields(u"1|2|3|4|5|6|7|8| a,b "_s).Parameters(), QLatin1String("a,b"));
    QCOMPARE(LineFields(u"1|2|3|4|5|6|7|8|a,b|"_s).Parameters(), QLatin1String("a,b"));
    QCOMPARE(LineFields(u"1|2|3|4|5|6|7|8|a,b|10"_s).Parameters(), QLatin1String());
}

OZNA_CASE(Printable, PrintableTest)
#include "tst_Printable.moc"
