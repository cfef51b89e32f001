#include "LookAlikes.h"
#include "Meant.h"

#include <QRegularExpression>
#include <QTime>

#include <array>

namespace
{

constexpr int NOON_HOUR = 12;

// Hour and minute, with any sign between; perhaps seconds, and their fraction.
const QString PARTED =
    QStringLiteral(R"(^t?(\d{1,2}) ?[:.,;h_-]+ ?(\d{2})(?: ?(?:[:.,;m'_-]+ ?(\d{2}))?)?(?:[.,]0+)?)");
const QString TOGETHER = QStringLiteral(R"(^(\d{2})(\d{2})(\d{2})?)");
const QString HOUR = QStringLiteral(R"(^(\d{1,2})(?=[a-z ]))");
const QString TAIL = QStringLiteral(R"( ?(?:s|m|z|h|hrs|hours|uhr|:)? ?([ap])?\.?m?\.?$)");

QTime Read(const QString& text, const QRegularExpression& pattern)
{
    const auto match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    int hour = match.captured(1).toInt();
    const QString half = match.captured(pattern.captureCount());
    if (half == QLatin1String("p") && hour < NOON_HOUR)
        hour += NOON_HOUR;
    else if (half == QLatin1String("a") && hour == NOON_HOUR)
        hour = 0;
    const bool hasMinute = pattern.captureCount() > 2;
    return {hour, hasMinute ? match.captured(2).toInt() : 0, hasMinute ? match.captured(3).toInt() : 0};
}

// "0" for the letter is meant among digits only: "8 o'clock" is none.
QString WithDigits(const QString& text)
{
    static const QRegularExpression AMONG_DIGITS(QStringLiteral("[OolI0-9]{1,2}(?=[:.hH]|[OolI0-9]|$|[ ])"));
    QString digits = text;
    auto matches = AMONG_DIGITS.globalMatch(text);
    while (matches.hasNext())
    {
        const auto match = matches.next();
        digits.replace(match.capturedStart(), match.capturedLength(), LookAlikes::Digits(match.captured()));
    }
    return digits;
}

} // namespace

QString Meant::Time(const QString& text)
{
    const QString plain = WithDigits(LookAlikes::Plain(text).simplified()).toLower();
    static const std::array PATTERNS{QRegularExpression(PARTED + TAIL), QRegularExpression(TOGETHER + TAIL),
                                     QRegularExpression(HOUR + TAIL)};
    if (plain.isEmpty())
        return {};
    for (const QRegularExpression& pattern : PATTERNS)
    {
        const QTime time = Read(plain, pattern);
        if (time.isValid())
            return time.toString(QStringLiteral("HH:mm:ss"));
    }
    return {};
}
