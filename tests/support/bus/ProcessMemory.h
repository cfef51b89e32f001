#pragma once

#include <QByteArray>
#include <QFile>

// What the system tells of a process's memory, in kilobytes: "VmRSS" for what it holds now, "VmHWM" for the most that
// it ever held. -1 when there is no such process.
[[nodiscard]] inline long MemoryKilobytes(qint64 pid, const QByteArray& field)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        if (line.startsWith(field + ':'))
            return line.simplified().split(' ').value(1).toLong();
    }
    return -1;
}
