#include "ScheduleDiff.h"

#include "StartChanges.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "engine/RehearsalResult.h"
#include "text/StringUtils.h"
#include "words/DatesText.h"

#include <algorithm>

namespace
{

using Terminal::Colour;

constexpr int TIME_WIDTH = 22;
constexpr int PHRASE_WIDTH = 44;
constexpr qsizetype MOST_DETAILS = 6; // of each side of one change

const QString INDENT = QStringLiteral("    ");
const QString NOT_SET = QStringLiteral("not set");
const QString PLAYING_NOTHING = QStringLiteral("nothing");

enum class Sign : char16_t
{
    COMES = u'+',
    GOES = u'-',
    MOVES = u'~',
    DIFFERS = u'!',
};

Sign SignOf(const StartChange& change)
{
    if (!change.before.isValid())
        return Sign::COMES;
    if (!change.after.isValid())
        return Sign::GOES;
    return change.IsMove() ? Sign::MOVES : Sign::DIFFERS;
}

QString Coloured(Sign sign, const QString& text)
{
    const Colour colour = sign == Sign::COMES ? Colour::GREEN : sign == Sign::GOES ? Colour::RED : Colour::YELLOW;
    return Terminal::Coloured(QChar(static_cast<char16_t>(sign)) + (u' ' + text), colour) + u'\n';
}

QString LineNumbers(const StartChange& change)
{
    if (change.lineBefore != 0 && change.lineAfter != 0)
        return QStringLiteral("  (line %1, then %2)").arg(change.lineBefore).arg(change.lineAfter);
    const int line = std::max(change.lineBefore, change.lineAfter);
    return line == 0 ? QString() : QStringLiteral("  (line %1)").arg(line);
}

QString Details(Sign sign, const QStringList& texts)
{
    QString details;
    for (const QString& text : texts.first(std::min(texts.size(), MOST_DETAILS)))
        details += INDENT + Coloured(sign, StringUtils::Harmless(text));
    if (texts.size() > MOST_DETAILS)
        details += INDENT + Coloured(sign, QStringLiteral("and %1 more").arg(texts.size() - MOST_DETAILS));
    return details;
}

QString Row(const StartChange& change, const QString& dates)
{
    const QString format = QStringLiteral("HH:mm:ss");
    QString time = change.First().toString(format);
    if (change.IsMove())
        time += QStringLiteral(" -> ") + change.after.toString(format);
    return Coloured(SignOf(change), time.leftJustified(TIME_WIDTH - 2) + QStringLiteral("  ") +
                                        StringUtils::Harmless(change.phrase).leftJustified(PHRASE_WIDTH) +
                                        QStringLiteral("  ") + dates + LineNumbers(change)) +
           Details(Sign::GOES, change.lost) + Details(Sign::COMES, change.gained);
}

QString InForceText(const EndState::Values& before, const EndState::Values& after, qint64 end_ms)
{
    EndState::Values all = before;
    all.insert(after.begin(), after.end());
    const auto valueOf = [](const EndState::Values& values, const QString& name) {
        const auto value = values.find(name);
        return value != values.end() ? value->second : name == EndState::PLAYING ? PLAYING_NOTHING : NOT_SET;
    };
    QString text;
    for (const auto& entry : all)
    {
        const QString& name = entry.first;
        const QString old = valueOf(before, name);
        const QString now = valueOf(after, name);
        if (old != now)
            text += INDENT +
                    Coloured(Sign::MOVES, StringUtils::Harmless(QStringLiteral("%1: %2 -> %3").arg(name, old, now)));
    }
    return text.isEmpty() ? text
                          : QStringLiteral("In force at the end, %1 %2:\n")
                                    .arg(Moment::DateText(Moment::LocalDate(end_ms)), Moment::TimeText(end_ms)) +
                                text;
}

} // namespace

QString ScheduleDiff::Text(const Side& before, const Side& after)
{
    QString text;
    const qint64 begin_ms = before.run.begin_ms;
    const qint64 end_ms = std::min(before.run.end_ms, after.run.end_ms);
    for (const auto& [change, dates] :
         StartDiff::Of(Requested::StartsOf(before.run, before.phrases), Requested::StartsOf(after.run, after.phrases)))
        text += Row(change, DatesText::Of(dates, change.First(), begin_ms, end_ms));
    const QString inForce = InForceText(before.inForce.At(before.run), after.inForce.At(after.run), end_ms);
    return text + (text.isEmpty() || inForce.isEmpty() ? QString() : QStringLiteral("\n")) + inForce;
}
