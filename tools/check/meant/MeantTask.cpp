#include "LookAlikes.h"
#include "Meant.h"

#include "TaskTable.h"
#include "text/ScheduleFields.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace
{

// Of short names most are a few strokes away from each other.
constexpr qsizetype LETTERS_A_STROKE = 4;
constexpr int MOST_STROKES = 3;

// By how many strokes the texts differ: a letter more, less or other, or two swapped.
int Distance(const QString& left, const QString& right)
{
    const auto width = static_cast<size_t>(right.size()) + 1;
    std::vector<int> before(width);
    std::vector<int> row(width);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 1; i <= left.size(); ++i)
    {
        const std::vector<int> twoBefore = std::exchange(before, row);
        row[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= right.size(); ++j)
        {
            const auto place = static_cast<size_t>(j);
            const int other = left[i - 1] == right[j - 1] ? 0 : 1;
            row[place] = std::min({row[place - 1] + 1, before[place] + 1, before[place - 1] + other});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                row[place] = std::min(row[place], twoBefore[place - 2] + 1);
        }
    }
    return row.back();
}

} // namespace

QString Meant::Task(const QString& text)
{
    static const QRegularExpression BETWEEN(QStringLiteral("[ _.()-]"));
    const QString name = LookAlikes::Plain(text).remove(BETWEEN).toLower();
    if (name.isEmpty() || std::ranges::all_of(name, [](QChar sign) { return sign.isDigit(); }))
        return {};
    QString nearest;
    int least = static_cast<int>(std::min<qsizetype>(MOST_STROKES, name.size() / LETTERS_A_STROKE)) + 1;
    bool isOne = true;
    const TaskKind* kind = TaskTable::Find(TASK_LIGHT);
    for (int type = 0; kind != nullptr; kind = TaskTable::Find(static_cast<TaskType>(++type)))
    {
        const QString meant =
            kind->scheduleName != nullptr ? QString::fromLatin1(kind->scheduleName) : QString::number(type);
        for (const char* const each : {kind->scheduleName, kind->logName})
        {
            if (each == nullptr || kind->create == nullptr)
                continue;
            const int distance = Distance(name, QString::fromLatin1(each).toLower());
            if (distance == least && meant != nearest)
                isOne = false;
            if (distance >= least)
                continue;
            least = distance;
            nearest = meant;
            isOne = true;
        }
    }
    return isOne ? nearest : QString();
}

QString Meant::TaskAndParameters(const QString& text)
{
    static const QRegularExpression BEHIND(QStringLiteral(R"(^([A-Za-z]+)\s*[ ,;:=(]\s*([^)]+)\)?$)"));
    const auto match = BEHIND.match(text);
    const QString task = match.hasMatch() ? Meant::Task(match.captured(1)) : QString();
    return task.isEmpty() ? QString()
                          : task + QLatin1Char(ScheduleFields::FIELD_SEPARATOR) + match.captured(2).trimmed();
}
