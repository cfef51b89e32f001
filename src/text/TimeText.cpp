#include "TimeText.h"

#include "NumberText.h"

namespace
{

const QString TIME_FORMAT = QStringLiteral("hh:mm:ss");
const QString DATE_FORMAT = QStringLiteral("yyyyMMdd");

constexpr int BASE = 10;
constexpr qsizetype TWO_DIGITS = 2;
constexpr QChar TIME_SEPARATOR = u':';

// Where the parts of a plain text are, which has all of its digits.
constexpr qsizetype HOUR = 0;
constexpr qsizetype MINUTE = 3;
constexpr qsizetype SECOND = 6;
constexpr qsizetype TIME_SIZE = 8;
constexpr qsizetype YEAR = 0;
constexpr qsizetype MONTH = 4;
constexpr qsizetype DAY = 6;
constexpr qsizetype DATE_SIZE = 8;

QTime ReadPlainTime(QStringView text)
{
    if (text.size() != TIME_SIZE || text[MINUTE - 1] != TIME_SEPARATOR || text[SECOND - 1] != TIME_SEPARATOR)
        return {};
    const auto hour = NumberText::Digits(text.mid(HOUR, TWO_DIGITS));
    const auto minute = NumberText::Digits(text.mid(MINUTE, TWO_DIGITS));
    const auto second = NumberText::Digits(text.mid(SECOND, TWO_DIGITS));
    return hour && minute && second ? QTime(*hour, *minute, *second) : QTime();
}

QDate ReadPlainDate(QLatin1String text)
{
    if (text.size() != DATE_SIZE)
        return {};
    const auto year = NumberText::Digits(text.mid(YEAR, MONTH - YEAR));
    const auto month = NumberText::Digits(text.mid(MONTH, TWO_DIGITS));
    const auto day = NumberText::Digits(text.mid(DAY, TWO_DIGITS));
    return year && month && day ? QDate(*year, *month, *day) : QDate();
}

void WriteTwoDigits(QString& text, qsizetype position, int number)
{
    text[position] = QLatin1Char(static_cast<char>('0' + number / BASE));
    text[position + 1] = QLatin1Char(static_cast<char>('0' + number % BASE));
}

} // namespace

QTime TimeText::ReadTime(QStringView text)
{
    const QTime plain = ReadPlainTime(text);
    return plain.isValid() ? plain : QTime::fromString(text, TIME_FORMAT);
}

QString TimeText::WriteTime(QTime time)
{
    if (!time.isValid())
        return {};
    QString text(TIME_SIZE, TIME_SEPARATOR);
    WriteTwoDigits(text, HOUR, time.hour());
    WriteTwoDigits(text, MINUTE, time.minute());
    WriteTwoDigits(text, SECOND, time.second());
    return text;
}

QDate TimeText::ReadDate(QLatin1String text)
{
    if (text.isEmpty())
        return {};
    const QDate plain = ReadPlainDate(text);
    return plain.isValid() ? plain : QDate::fromString(QString(text), DATE_FORMAT);
}
