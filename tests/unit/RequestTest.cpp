#include "RequestTest.h"

#include "TaskTable.h"

#include <QFile>

using namespace Qt::StringLiterals;

void RequestTest::Begin()
{
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    QFile file(Data().Path() + u"/ozna.ini"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[GENERAL]\nServerIp=10.0.0.5\n") > 0);
    qputenv("OZNA_CONFIG_FILE", QFile::encodeName(file.fileName()));
}

std::unique_ptr<Task> RequestTest::Make(const Request& request)
{
    const QString parameters = request.Schedule().section(u'|', 1);
    const QStringList split = parameters.isEmpty() ? QStringList() : parameters.split(u',');
    const TaskKind* const kind = TaskTable::Find(static_cast<TaskType>(request.Row().kind));
    std::unique_ptr<Task> task = kind->create({u"08:30:00"_s, parameters, split});
    LogRecorder::Clear();
    return task;
}
