#pragma once

#include <QHash>
#include <QString>
#include <QVariantList>

#include <deque>
#include <utility>

enum AnswerKind : int
{
    ANSWER_REPLY,   // a method return with the values
    ANSWER_ERROR,   // a bus error; values: its name, its message
    ANSWER_SILENCE, // none, ever
    ANSWER_EXIT,    // the process ends in the middle of the call
    ANSWER_LATE,    // a method return with the values, as soon as the next call of the method has come
    ANSWER_LEAVE,   // the service name is given up, then a method return with the values
    ANSWER_BROKEN,  // an empty structure, for which the bus drops the connection
    ANSWER_DIE,     // a method return with the values, then the process ends
};

// A signal that the peer sends beside an answer.
struct SignalBeside
{
    QString name;         // empty: none
    QVariantList values;  // sent as they are typed
    bool isFirst = false; // before the answer, not behind it
    int gap_ms = 0;
};

struct Answer
{
    AnswerKind kind = ANSWER_REPLY;
    QVariantList values; // sent as they are typed
    int delay_ms = 0;
    SignalBeside signal = {};

    // Whether the peer takes the request on: a reply in time whose first value is the status 0.
    [[nodiscard]] bool IsAcceptance() const;
};

// What the simulated peers answer instead of status 0 and neutral values.
class AnswerScript final
{
public:
    // Answers times calls of the method so, after what has been scripted for it before; times 0: all calls that follow,
    // until another answer is added, which takes over at once.
    void Add(const QString& interface, const QString& method, const Answer& answer, int times);

    // The answer to the next call; fallback where none is scripted.
    [[nodiscard]] Answer Take(const QString& interface, const QString& method, const Answer& fallback);

    void Clear();

private:
    struct Entry
    {
        Answer answer;
        int times;
    };

    using Key = std::pair<QString, QString>; // interface and method

    QHash<Key, std::deque<Entry>> m_entries;
};
