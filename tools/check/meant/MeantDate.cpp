#include "LookAlikes.h"
#include "Meant.h"

#include <QDate>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace
{

constexpr int LAST_MONTH = 12;
constexpr int CENTURY = 2000;
constexpr int SHORTEST_YEAR = 100;
constexpr int MOST_DAYS = 31;

const QString FORMAT = QStringLiteral("yyyyMMdd");

// By its English name, of three letters or more; 0 where it is none.
int MonthCalled(const QString& text)
{
    constexpr int SHORTEST = 3;
    const QString name = text.endsWith(u'.') ? text.chopped(1) : text;
    for (int month = 1; month <= LAST_MONTH && name.size() >= SHORTEST; ++month)
    {
        if (QLocale::c().monthName(month).startsWith(name, Qt::CaseInsensitive))
            return month;
    }
    return 0;
}

int WholeYear(int year)
{
    return year < SHORTEST_YEAR ? CENTURY + year : year;
}

QString Told(int year, int month, int day)
{
    return QDate(WholeYear(year), month, day).toString(FORMAT);
}

// day and month of which either may come first, as in America.
QString ToldEither(int year, int first, int second)
{
    if (second > LAST_MONTH)
        return Told(year, first, second);
    return first > LAST_MONTH || first == second ? Told(year, second, first) : QString();
}

QString FromParts(const QString& text)
{
    static const QRegularExpression YEAR_FIRST(QStringLiteral(R"(^(\d{4})[-./ ](\d{1,2})[-./ ](\d{1,2})\.?$)"));
    static const QRegularExpression YEAR_LAST(QStringLiteral(R"(^(\d{1,2})([-./ ]) ?(\d{1,2})[-./ ] ?(\d{4}|\d{2})$)"));
    static const QRegularExpression NAMED(
        QStringLiteral(R"(^(?:(\d{1,2})\.?[- ])?([A-Za-z]{3,9})\.?[- ](?:(\d{1,2})(?:st|nd|rd|th)?,? )?(\d{4})$)"));
    if (const auto match = YEAR_FIRST.match(text); match.hasMatch())
        return Told(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    if (const auto match = YEAR_LAST.match(text); match.hasMatch())
    {
        const int first = match.captured(1).toInt();
        const int second = match.captured(3).toInt();
        const int year = match.captured(4).toInt();
        // Who writes points writes the day first.
        return match.captured(2) == QLatin1String(".") ? Told(year, second, first) : ToldEither(year, first, second);
    }
    const auto match = NAMED.match(text);
    const QString day = match.captured(1) + match.captured(3);
    return match.hasMatch() ? Told(match.captured(4).toInt(), MonthCalled(match.captured(2)), day.toInt()) : QString();
}

QString FromDigits(const QString& text)
{
    static const QRegularExpression DIGITS(QStringLiteral(R"(^(?:\d{6}|\d{8})$)"));
    if (!DIGITS.match(text).hasMatch())
        return {};
    if (text.size() == 6) // yyMMdd
        return Told(text.left(2).toInt(), text.mid(2, 2).toInt(), text.mid(4).toInt());
    const int year = text.left(4).toInt();
    if (year / SHORTEST_YEAR == CENTURY / SHORTEST_YEAR)
    {
        const int month = text.mid(4, 2).toInt();
        const int day = text.mid(6).toInt();
        return month > LAST_MONTH ? Told(year, day, month) : Told(year, month, day);
    }
    return ToldEither(text.mid(4).toInt(), text.left(2).toInt(), text.mid(2, 2).toInt());
}

} // namespace

QString Meant::Date(const QString& text)
{
    static const QRegularExpression CLOCK(QStringLiteral(R"([T ]\d{1,2}:\d{2}(:\d{2})?$)"));
    const QString plain = LookAlikes::Plain(text).simplified().remove(CLOCK);
    if (plain.isEmpty())
        return {};
    QString named = FromParts(plain);
    if (!named.isEmpty())
        return named;
    const QString digits = LookAlikes::Digits(plain);
    const QString parts = FromParts(digits);
    return parts.isEmpty() ? FromDigits(digits) : parts;
}

QStringList Meant::SpotDate(const QString& text)
{
    const QDate date = QDate::fromString(Date(text), FORMAT);
    if (date.isValid())
        return {QString::number(date.day()), QString::number(date.month()), QString::number(date.year())};
    // Two numbers between other signs may be days, or a step of them.
    static const QRegularExpression WITHOUT_YEAR(
        QStringLiteral(
            R"(^(\d{1,2}\. ?\d{1,2}\.?|(?:1[3-9]|2\d|3[01])/\d{1,2}|\d{1,2}\.?[- ][a-z]{3,9}\.?|[a-z]{3,9}\.?[- ]\d{1,2}\D{0,2})$)"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = WITHOUT_YEAR.match(LookAlikes::Plain(text).simplified());
    if (!match.hasMatch())
        return {};
    QString part = match.captured();
    const bool isNamed = std::ranges::any_of(part, [](QChar sign) { return sign.isLetter(); });
    while (part.endsWith(u'.'))
        part.chop(1);
    // A year that has all days.
    QStringList spot = SpotDate(part + (isNamed ? u' ' : part.contains(u'/') ? u'/' : u'.') + QString::number(CENTURY));
    if (!spot.isEmpty())
        spot.last() = QStringLiteral("*");
    return spot;
}

QString Meant::SpotNumber(const QString& text)
{
    static const QRegularExpression NUMBER(QStringLiteral(R"(^0*(\d{1,2})(?:\.|st|nd|rd|th)?$)"));
    static const QRegularExpression ANY(QStringLiteral(R"(^(?:\*+|-+|x|\?|any|all|every)$)"),
                                        QRegularExpression::CaseInsensitiveOption);
    const QString plain = LookAlikes::Plain(text).simplified();
    if (ANY.match(plain).hasMatch())
        return QStringLiteral("*");
    if (const int month = MonthCalled(plain); month != 0)
        return QString::number(month);
    for (const QString& each : {plain, LookAlikes::Digits(plain)})
    {
        const int number = NUMBER.match(each).captured(1).toInt();
        if (number >= 1 && number <= MOST_DAYS)
            return QString::number(number);
    }
    return {};
}

QString Meant::Year(const QString& text)
{
    static const QRegularExpression YEAR(QStringLiteral(R"(^'?(20)?(\d{2})$)"));
    const QString plain = LookAlikes::Plain(text).simplified();
    if (SpotNumber(plain) == QLatin1String("*"))
        return QStringLiteral("*");
    const auto match = YEAR.match(LookAlikes::Digits(plain));
    return match.hasMatch() ? QString::number(CENTURY + match.captured(2).toInt()) : QString();
}
