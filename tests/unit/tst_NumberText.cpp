#include "OddTexts.h"
#include "Suite.h"
#include "UnitTest.h"
#include "text/NumberText.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

std::optional<int> ByLibrary(const QString& text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

bool IsReadAlike(const QString& text)
{
    const QByteArray latin1 = text.toLatin1();
    return NumberText::ToInt(text) == ByLibrary(text) &&
           NumberText::ToInt(QLatin1String(latin1)) == ByLibrary(QString::fromLatin1(latin1));
}

} // namespace

// The library is asked what each text means: no text may be read in another way than it does.
class NumberTextTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ANumberIsReadUpToTheLimits();
    void EveryShortTextIsReadAsTheLibraryDoes();
    void EveryBeginningIsReadAsTheLibraryDoes();
    void AnOddNumberIsReadAsTheLibraryDoes();
    void OnlyDigitsAreDigits();
};

void NumberTextTest::ANumberIsReadUpToTheLimits()
{
    constexpr qint64 GREATEST = std::numeric_limits<int>::max();
    constexpr qint64 LEAST = std::numeric_limits<int>::min();
    for (const qint64 around : {LEAST, qint64{-1000000000}, qint64{0}, qint64{1000000000}, GREATEST, 10 * GREATEST})
    {
        for (qint64 number = around - 300; number <= around + 300; ++number)
            QVERIFY2(IsReadAlike(QString::number(number)), qPrintable(QString::number(number)));
    }
    QCOMPARE(NumberText::ToInt(u"-12"_s), -12);
    QCOMPARE(NumberText::ToInt(u"007"_s), 7);
    QCOMPARE(NumberText::ToInt(u"2147483648"_s), std::nullopt);
}

void NumberTextTest::EveryShortTextIsReadAsTheLibraryDoes()
{
    const QString& signs = OddTexts::SIGNS;
    QVERIFY(IsReadAlike({}));
    for (const QChar first : signs)
    {
        QVERIFY(IsReadAlike(first));
        for (const QChar second : signs)
        {
            QVERIFY(IsReadAlike(QString(first) + second));
            for (const QChar third : signs)
                QVERIFY2(IsReadAlike(QString(first) + second + third), qPrintable(QString(first) + second + third));
        }
    }
}

void NumberTextTest::EveryBeginningIsReadAsTheLibraryDoes()
{
    for (int code = 0; code <= 0xffff; ++code)
    {
        const QChar sign(code);
        QVERIFY2(IsReadAlike(sign + u"1"_s), qPrintable(QString::number(code, 16)));
        QVERIFY2(IsReadAlike(sign + u"nf"_s), qPrintable(QString::number(code, 16)));
        QVERIFY2(IsReadAlike(u"1"_s + sign), qPrintable(QString::number(code, 16)));
        QVERIFY2(IsReadAlike(u"1"_s + sign + u"1"_s), qPrintable(QString::number(code, 16)));
    }
}

void NumberTextTest::AnOddNumberIsReadAsTheLibraryDoes()
{
    OddTexts odd;
    for (int i = 0; i < 50000; ++i)
    {
        const QString text = odd.Spoil(QString::number(odd.Pick(1 << odd.Pick(31)) - odd.Pick(3)));
        QVERIFY2(IsReadAlike(text), qPrintable(text));
    }
}

void NumberTextTest::OnlyDigitsAreDigits()
{
    QCOMPARE(NumberText::Digits(u"0"_s), 0);
    QCOMPARE(NumberText::Digits(u"999999999"_s), 999999999);
    for (const auto& text : {u""_s, u"1000000000"_s, u"-1"_s, u"+1"_s, u" 1"_s, u"1 "_s, u"1x"_s, u"/"_s, u":"_s})
        QCOMPARE(NumberText::Digits(text), std::nullopt);
}

OZNA_CASE(NumberText, NumberTextTest)
#include "tst_NumberText.moc"
