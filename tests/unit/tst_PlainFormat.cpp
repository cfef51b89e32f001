#include "PlainFormat.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <cstdio>
#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{

constexpr char UNTOUCHED = '#';
constexpr qsizetype ROOM = 40;

__attribute__((format(printf, 2, 3))) PlainFormat::Outcome Print(QByteArray& target, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const PlainFormat::Outcome outcome =
        PlainFormat::Print(target.data(), static_cast<size_t>(target.size()), format, arguments);
    va_end(arguments);
    return outcome;
}

__attribute__((format(printf, 2, 0))) bool IsPrintedAlike(qsizetype room, const char* format, va_list arguments)
{
    va_list same;
    va_copy(same, arguments);
    QByteArray expected(room, UNTOUCHED);
    const int wanted = std::vsnprintf(expected.data(), static_cast<size_t>(room), format, same);
    va_end(same);
    const auto outcome = wanted < room ? PlainFormat::Outcome::WHOLE : PlainFormat::Outcome::CUT;

    QByteArray target(room + 1, UNTOUCHED);
    return PlainFormat::Print(target.data(), static_cast<size_t>(room), format, arguments) == outcome &&
           std::strcmp(target.constData(), expected.constData()) == 0 && target[room] == UNTOUCHED;
}

// The C library prints the same into a room of each size up to ROOM, and tells whether it was enough.
__attribute__((format(printf, 1, 2))) bool IsPrintedAlike(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    bool isAlike = true;
    for (qsizetype room = 1; room <= ROOM; ++room)
    {
        va_list same;
        va_copy(same, arguments);
        isAlike = isAlike && IsPrintedAlike(room, format, same);
        va_end(same);
    }
    va_end(arguments);
    return isAlike;
}

} // namespace

// The C library is asked what each format means.
class PlainFormatTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ATextWithoutArgumentsIsItsFormat();
    void ANumberIsPrintedAsTheLibraryDoes_data();
    void ANumberIsPrintedAsTheLibraryDoes();
    void ATextIsPrintedAsTheLibraryDoes_data();
    void ATextIsPrintedAsTheLibraryDoes();
    void ManyArgumentsComeInTheirOrder();
    void ALongTextIsCut();
    void AnotherFormatIsLeftToTheLibrary();
};

void PlainFormatTest::ATextWithoutArgumentsIsItsFormat()
{
    QVERIFY(IsPrintedAlike("Starting schedule..."));
    QVERIFY(IsPrintedAlike("%s", ""));
    QByteArray target(ROOM, UNTOUCHED);
    QCOMPARE(Print(target, "Starting schedule..."), PlainFormat::Outcome::WHOLE);
    QCOMPARE(target.constData(), "Starting schedule...");
}

void PlainFormatTest::ANumberIsPrintedAsTheLibraryDoes_data()
{
    Rows<int>::Add({
        {"nothing", 0},
        {"one digit", 7},
        {"a negative number", -42},
        {"the greatest", std::numeric_limits<int>::max()},
        {"the least", std::numeric_limits<int>::min()},
    });
}

void PlainFormatTest::ANumberIsPrintedAsTheLibraryDoes()
{
    const int number = Rows<int>::Current();
    QVERIFY(IsPrintedAlike("%d", number));
    QVERIFY(IsPrintedAlike("delay: %d s", number));
    QVERIFY(IsPrintedAlike("%d%d", number, number));
}

void PlainFormatTest::ATextIsPrintedAsTheLibraryDoes_data()
{
    Rows<const char*>::Add({
        {"an empty text", ""},
        {"one character", "x"},
        {"signs of formats", "100% %s %n %d %%"},
        {"UTF-8", "caf\xc3\xa9 \xe2\x82\xac"},
        {"longer than the room", "a text of more characters than there is room for"},
        {"none", nullptr},
    });
}

void PlainFormatTest::ATextIsPrintedAsTheLibraryDoes()
{
    const char* const text = Rows<const char*>::Current();
    QVERIFY(IsPrintedAlike("Requesting [%s]...", text));
    QVERIFY(IsPrintedAlike("%s%s", text, text));
}

void PlainFormatTest::ManyArgumentsComeInTheirOrder()
{
    QVERIFY(IsPrintedAlike("%s|%d|%s|%d|%s|%d|%s|%d", "a", 1, "b", 2, "c", 3, "d", 4));
}

void PlainFormatTest::ALongTextIsCut()
{
    const QByteArray text(1'000'000, 'x');
    QByteArray target(ROOM, UNTOUCHED);
    QCOMPARE(Print(target, "%s%d", text.constData(), 1), PlainFormat::Outcome::CUT);
    QCOMPARE(target, QByteArray(ROOM - 1, 'x') + '\0');
}

void PlainFormatTest::AnotherFormatIsLeftToTheLibrary()
{
    QByteArray target(ROOM, UNTOUCHED);
    QCOMPARE(Print(target, "%d %%", 1), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%02d", 1), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%+d", 1), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%.3s", "text"), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%ld", 1L), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%u", 1U), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%s 0x%x", "text", 1U), PlainFormat::Outcome::NOT_PLAIN);
    QCOMPARE(Print(target, "%.2f", 98.5), PlainFormat::Outcome::NOT_PLAIN);
}

OZNA_CASE(PlainFormat, PlainFormatTest)
#include "tst_PlainFormat.moc"
