#include "LookAlikes.h"
#include "Meant.h"
#include "Strokes.h"

#include "TaskTable.h"
#include "text/ScheduleFields.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace
{

// Of short names most are a few strokes away from each other.
constexpr qsizetype LETTERS_A_STROKE = 4;
constexpr int MOST_STROKES = 3;

// Words that say what is played, or which input is heard. Those of settings are near enough to their names.
struct Word
{
    const char* text;
    TaskType type;
};

constexpr std::array WORDS{
    Word{"message", TASK_PLAY_MESSAGE}, Word{"playlist", TASK_PLAY_PLAYLIST}, Word{"radio", TASK_PLAY_RADIO_FM},
    Word{"fm", TASK_PLAY_RADIO_FM},     Word{"fmradio", TASK_PLAY_RADIO_FM},  Word{"radiofm", TASK_PLAY_RADIO_FM},
    Word{"stream", TASK_PLAY_STREAM},   Word{"aux", TASK_ENABLE_AUX},         Word{"auxin", TASK_ENABLE_AUX},
    Word{"playaux", TASK_ENABLE_AUX},   Word{"photo", TASK_RECORD_PHOTO},
};

QString NameOf(TaskType type)
{
    const TaskKind* const kind = TaskTable::Find(type);
    return kind->scheduleName != nullptr ? QString::fromLatin1(kind->scheduleName) : QString::number(type);
}

} // namespace

QString Meant::Task(const QString& text)
{
    static const QRegularExpression BETWEEN(QStringLiteral("[ _.()-]"));
    const QString name = LookAlikes::Plain(text).remove(BETWEEN).toLower();
    if (name.isEmpty() || std::ranges::all_of(name, [](QChar sign) { return sign.isDigit(); }))
        return {};
    const auto* const word = std::ranges::find(WORDS, name, [](const Word& each) { return QLatin1String(each.text); });
    if (word != WORDS.end())
        return NameOf(word->type);
    QString nearest;
    int least = static_cast<int>(std::min<qsizetype>(MOST_STROKES, name.size() / LETTERS_A_STROKE)) + 1;
    bool isOne = true;
    const TaskKind* kind = TaskTable::Find(TASK_LIGHT);
    for (int type = 0; kind != nullptr; kind = TaskTable::Find(static_cast<TaskType>(++type)))
    {
        const QString meant = NameOf(static_cast<TaskType>(type));
        for (const char* const each : {kind->scheduleName, kind->logName})
        {
            if (each == nullptr || kind->create == nullptr)
                continue;
            const int distance = Strokes::Between(name, QString::fromLatin1(each).toLower());
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
