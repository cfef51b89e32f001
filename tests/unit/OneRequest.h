#pragma once

#include "LogRecorder.h"
#include "PeerRecorder.h"
#include "Task.h"

#include <functional>
#include <memory>

// A record's level and its text, with the source file in brackets and "{status}" or "{error}" where the answer stands.
struct LogText
{
    unsigned int level = 0;
    QByteArray text;
};

// A task whose Run makes one request, and what it has to say for each outcome.
struct OneRequest
{
    QByteArray name;
    std::function<std::unique_ptr<Task>()> make;
    LogLines before; // what it logs ahead of the request
    QString request; // as PeerRequest::Shown has it
    int timeout_ms = 0;
    LogText onBusError; // without a text: the task goes by the status alone
    LogText onRefused;
    LogText onAccepted;

    [[nodiscard]] QString Method() const { return request.section(u' ', 1).section(u'(', 0, 0); }
};

namespace OneRequestRows
{

// Adds the columns, and a row for each of the tasks with each of PeerAnswers::All.
void Add(const QList<OneRequest>& requests);

// Runs the current row's task twice and destroys it: request, records and result have to be those of its answer.
void Check(PeerRecorder& peers);

} // namespace OneRequestRows
