#include "LineForm.h"

#include "Entry.h"
#include "engine/Workspace.h"
#include "meant/Cells.h"
#include "meant/FieldFit.h"
#include "meant/LoneDate.h"
#include "meant/LookAlikes.h"
#include "text/StringUtils.h"

#include "TaskTable.h"
#include "words/Kinds.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

struct Separator
{
    QChar sign;
    const char* name;
};

constexpr std::array SEPARATORS{
    Separator{u';', "\";\" separates"},   Separator{u'\t', "a tab separates"}, Separator{u',', "\",\" separates"},
    Separator{u'!', "\"!\" separates"},   Separator{u'/', "\"/\" separates"},  Separator{u'\\', "\"\\\" separates"},
    Separator{u' ', "a blank separates"},
};

constexpr int OTHER_SEPARATOR = 2; // no sign but the right one is taken where both would do

// Whether the lack of a playlist is all that is wrong.
bool IsWellFormed(const ScheduleLine& line)
{
    return !line.IsRejected() || line.rejected->cause == Rejection::Cause::PLAYLIST_FILE ||
           line.rejected->cause == Rejection::Cause::PLAYLIST_EMPTY;
}

bool HasRoom(const QStringList& parameters, const QString& task)
{
    const TaskKind* const kind = TaskTable::Find(Task::NameToType(task));
    return kind == nullptr || static_cast<qsizetype>(Kinds::Of(kind->type).Roles().size()) >= parameters.size();
}

// Parameters that are none of the task's are not carried over.
QString LineOf(FieldFit fit)
{
    while (fit.hasParametersApart && fit.fields.size() > FIELD_PARAMETERS &&
           !HasRoom(fit.fields.mid(FIELD_PARAMETERS), fit.fields[FIELD_TASK]))
        fit.fields.removeLast();
    return fit.Line();
}

LineForm Form(FindingKind kind, Field field, qsizetype position, const QString& text, const QString& advice)
{
    return {kind, Entry::FieldName(field), position, text, advice, std::nullopt};
}

std::optional<LineForm> WithSeparator(const QString& text)
{
    const Separator* best = nullptr;
    FieldFit bestFit = FieldFit::Of(Cells::Of(text, QString(QLatin1Char(FIELD_SEPARATOR))).parts);
    bestFit.cost -= OTHER_SEPARATOR;
    for (const Separator& separator : SEPARATORS)
    {
        if (!text.contains(separator.sign))
            continue;
        const QString signs = QString(QLatin1Char(FIELD_SEPARATOR)) + separator.sign;
        const FieldFit fit = FieldFit::Of(Cells::Of(text, signs).parts);
        if (fit.IsLine() && fit.cost < bestFit.cost)
        {
            best = &separator;
            bestFit = fit;
        }
    }
    if (best == nullptr)
        return std::nullopt;
    LineForm form = Form(FindingKind::SEPARATORS, FIELD_COUNT, text.indexOf(best->sign),
                         QString::fromLatin1(best->name) + QStringLiteral(" the fields"),
                         QStringLiteral("write \"|\" between the fields"));
    if (const QString advice = LoneDate::Advice(bestFit); !advice.isEmpty())
        form.advice = advice;
    else if (!bestFit.LacksTimeOrTask())
        form.meant = LineOf(bestFit);
    return form;
}

QString Names(const std::vector<Field>& fields)
{
    QStringList names;
    for (const Field field : fields)
        names.append(Entry::FieldName(field));
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

// Where that part of the text begins.
qsizetype BeginOf(const QString& text, qsizetype part)
{
    qsizetype begin = 0;
    for (; part > 0; --part)
    {
        const qsizetype separator = text.indexOf(QLatin1Char(FIELD_SEPARATOR), begin);
        if (separator < 0)
            return text.size();
        begin = separator + 1;
    }
    return begin;
}

FindingKind KindOf(const ScheduleLine& line)
{
    constexpr std::array KINDS{FindingKind::FIELD_COUNT, FindingKind::TIME_PARTS, FindingKind::UNKNOWN_TASK,
                               FindingKind::WRONG_PARAMETERS};
    return line.IsRejected() ? KINDS.at(std::min<size_t>(static_cast<size_t>(line.rejected->cause), KINDS.size() - 1))
                             : FindingKind::TEN_FIELDS;
}

// Fields that are missing or too many.
std::optional<LineForm> WithFit(const ScheduleLine& line)
{
    const QStringList parts = Cells::Of(line.text, QString(QLatin1Char(FIELD_SEPARATOR))).parts;
    const FieldFit fit = FieldFit::Of(parts);
    if (parts.size() < 2 || !fit.IsLine())
        return std::nullopt;
    std::optional<LineForm> form;
    if (const QString advice = LoneDate::Advice(fit); !advice.isEmpty())
        return Form(KindOf(line), FIELD_DAY, BeginOf(line.text, FIELD_DAY),
                    QStringLiteral("has a date in the place of day, month and year, beside marked days"), advice);
    if (fit.hasWholeDate)
        form = Form(KindOf(line), FIELD_DAY, BeginOf(line.text, FIELD_DAY),
                    QStringLiteral("has a whole date in the place of day, month and year"),
                    QStringLiteral("write \"|\" between its numbers"));
    else if (!fit.missing.empty())
    {
        const Field field = fit.missing.front();
        form = Form(KindOf(line), field, BeginOf(line.text, field),
                    QStringLiteral("lacks the field%1 %2")
                        .arg(fit.missing.size() > 1 ? QStringLiteral("s") : QString(), Names(fit.missing)),
                    fit.LacksTimeOrTask() ? QStringLiteral("write it there, between \"|\"")
                                          : QStringLiteral("write the missing \"|\" too"));
    }
    else if (!fit.surplus.empty())
        form = Form(KindOf(line), FIELD_COUNT, BeginOf(line.text, fit.surplus.front()),
                    QStringLiteral("a \"|\" too many"), QStringLiteral("take it out"));
    else if (fit.hasParametersApart)
        form = Form(KindOf(line), FIELD_PARAMETERS, BeginOf(line.text, FIELD_COUNT),
                    QStringLiteral("\"|\" stands behind a parameter, so that the task gets none"),
                    QStringLiteral("separate parameters by \",\""));
    if (form && !fit.LacksTimeOrTask())
        form->meant = LineOf(fit);
    return form;
}

// A parameter in quotation marks of its own.
QString WithoutQuotes(const QString& parameters)
{
    static const QRegularExpression QUOTED(QStringLiteral("(^|,)\\s*\"([^\",]*)\"\\s*(?=,|$)"));
    return QString(parameters).replace(QUOTED, QStringLiteral("\\1\\2"));
}

std::optional<LineForm> WithoutQuotes(const Workspace& workspace, const QString& text)
{
    if (!text.contains(u'"') && !text.contains(u'\''))
        return std::nullopt;
    const Cells cells = Cells::Of(text, QString(QLatin1Char(FIELD_SEPARATOR)));
    QStringList parts = cells.parts;
    qsizetype position = cells.quote;
    if (parts.size() == FIELD_COUNT && WithoutQuotes(parts.last()) != parts.last())
    {
        if (position < 0)
            position = text.indexOf(u'"');
        parts.last() = WithoutQuotes(parts.last());
    }
    if (position < 0 || parts.size() <= FIELD_TASK)
        return std::nullopt;
    const QString meant = parts.join(QLatin1Char(FIELD_SEPARATOR));
    if (!IsWellFormed(ScheduleLine::Read(workspace, meant)))
        return std::nullopt;
    LineForm form = Form(FindingKind::QUOTES, FIELD_COUNT, position,
                         QStringLiteral("has quotation marks, which count as characters of the fields"),
                         QStringLiteral("take them out"));
    form.meant = meant;
    return form;
}

std::optional<LineForm> Structure(const Workspace& workspace, const ScheduleLine& line)
{
    if (auto form = WithoutQuotes(workspace, line.text))
        return form;
    const bool hasTooMany = StringUtils::CountTokens(line.text, FIELD_SEPARATOR) > FIELD_COUNT;
    if (IsWellFormed(line) && !hasTooMany)
        return std::nullopt;
    if (line.IsRejected())
    {
        if (auto form = WithSeparator(line.text))
            return form;
    }
    return WithFit(line);
}

constexpr char16_t LAST_ASCII = 0x7f;
constexpr char16_t LAST_LATIN1 = 0xff;

bool HasOnly(const QString& text, char16_t last)
{
    return std::ranges::all_of(text, [last](QChar sign) { return sign.unicode() <= last; });
}

// Whether the daemon reads other fields when the signs are the plain ones.
bool IsReadOtherwise(const QString& text, const QString& plain)
{
    return StringUtils::SplitLineIntoTokens(text, FIELD_SEPARATOR) !=
           StringUtils::SplitLineIntoTokens(plain, FIELD_SEPARATOR);
}

} // namespace

std::optional<LineForm> LineForm::Of(const Workspace& workspace, const ScheduleLine& line)
{
    if (line.isSkipped)
        return std::nullopt;
    // A name may have any sign of Latin-1.
    const bool isPlain = HasOnly(line.text, line.IsRejected() ? LAST_ASCII : LAST_LATIN1);
    const QString plain = isPlain ? line.text : LookAlikes::Plain(line.text);
    if (plain == line.text || !IsReadOtherwise(line.text, plain))
        return Structure(workspace, line);
    const auto place = std::ranges::mismatch(line.text, plain).in1 - line.text.begin();
    LineForm form = Form(FindingKind::NOT_LATIN1, FIELD_COUNT, place,
                         QStringLiteral("has the character U+%1, which only looks like a plain one")
                             .arg(QString::number(line.text[place].unicode(), 16).toUpper().rightJustified(4, u'0')),
                         QStringLiteral("write the plain one"));
    form.meant = plain;
    const ScheduleLine read = ScheduleLine::Read(workspace, plain);
    if (const auto inner = read.isSkipped ? std::nullopt : Structure(workspace, read); inner && inner->meant)
        form.meant = inner->meant;
    return form;
}
