#include "LookAlikes.h"
#include "Meant.h"

#include "text/ScheduleFields.h"

#include <QLocale>
#include <QRegularExpression>
#include <QStringList>

#include <array>

using ScheduleFields::DAYS_A_WEEK;

namespace
{

const QString NO_DAY = QStringLiteral("0000000");
const QString LETTERS = QStringLiteral("MTWTFSS");

struct Word
{
    const char* text;
    const char* days;
};

constexpr std::array WORDS{
    Word{"daily", "1111111"},    Word{"every day", "1111111"}, Word{"everyday", "1111111"}, Word{"all", "1111111"},
    Word{"all days", "1111111"}, Word{"always", "1111111"},    Word{"*", "1111111"},        Word{"weekday", "1111100"},
    Word{"weekdays", "1111100"}, Word{"workdays", "1111100"},  Word{"weekend", "0000011"},  Word{"weekends", "0000011"},
};

// Counted from 0; -1 where it is no day. A number counts from 1, as the calendar does.
int DayCalled(const QString& text)
{
    for (int day = 0; day < DAYS_A_WEEK; ++day)
    {
        const QString name = QLocale::c().dayName(day + 1);
        const bool isPlural = text.compare(name + u's', Qt::CaseInsensitive) == 0;
        if (text == QString::number(day + 1) || isPlural ||
            (text.size() >= 2 && name.startsWith(text, Qt::CaseInsensitive)))
            return day;
    }
    return -1;
}

// Names and ranges of days, as "Mon-Wed, Fri".
QString FromNames(const QString& text)
{
    static const QRegularExpression BETWEEN(QStringLiteral(R"(\s*(?:,|;|\+|&|/|\band\b|\s)\s*)"));
    static const QRegularExpression RANGE(QStringLiteral(R"(\s*(?:-|\bto\b|\.\.)\s*)"));
    QString days = NO_DAY;
    QString joined = text;
    joined.replace(RANGE, QStringLiteral("-"));
    for (const QString& part : joined.split(BETWEEN, Qt::SkipEmptyParts))
    {
        const QStringList ends = part.split(u'-');
        const int first = DayCalled(ends.first());
        const int last = DayCalled(ends.last());
        if (first < 0 || last < 0 || ends.size() > 2)
            return {};
        for (int day = first;; day = (day + 1) % DAYS_A_WEEK)
        {
            days[day] = u'1';
            if (day == last)
                break;
        }
    }
    return days;
}

// A sign for each day, as "MTWTF--", "xxxxx.." or "1 1 1 1 1 0 0".
QString FromSigns(const QString& text)
{
    static const QRegularExpression BETWEEN(QStringLiteral("[ ,;/:]"));
    static const QString ON = QStringLiteral("xXyYjJ+");
    static const QString OFF = QStringLiteral("-._nN");
    const QString signs = QString(text).remove(BETWEEN);
    const QString digits = LookAlikes::Digits(signs);
    static const QRegularExpression DIGITS(QStringLiteral("^(?:[01]-)*[01]$"));
    if (DIGITS.match(digits).hasMatch() && digits.size() == 2 * DAYS_A_WEEK - 1)
        return QString(digits).remove(u'-');
    if (signs.size() != DAYS_A_WEEK)
        return {};
    QString days = NO_DAY;
    for (int day = 0; day < DAYS_A_WEEK; ++day)
    {
        const bool isLetter = signs[day].toUpper() == LETTERS[day];
        if (digits[day] == u'1' || ON.contains(signs[day]) || isLetter)
            days[day] = u'1';
        else if (digits[day] != u'0' && !OFF.contains(signs[day]))
            return {};
    }
    return days;
}

} // namespace

QString Meant::Days(const QString& text)
{
    const QString plain = LookAlikes::Plain(text).simplified();
    if (plain.isEmpty())
        return {};
    for (const Word& word : WORDS)
    {
        if (plain.compare(QLatin1String(word.text), Qt::CaseInsensitive) == 0)
            return QLatin1String(word.days);
    }
    // A spreadsheet makes one 0 of seven.
    static const QRegularExpression NONE(QStringLiteral("^0+$"));
    if (NONE.match(plain).hasMatch())
        return NO_DAY;
    static const QRegularExpression EVERY(QStringLiteral("^1{8,}$"));
    if (EVERY.match(plain).hasMatch())
        return QLatin1String(WORDS.front().days);
    const QString days = FromSigns(plain);
    // A row of digits alone is not a list of days.
    static const QRegularExpression LIST(QStringLiteral("[^01]"));
    return days.isEmpty() && plain.contains(LIST) && plain.size() > 1 ? FromNames(plain) : days;
}
