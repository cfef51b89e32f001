#include "RejectedText.h"

#include "Rules.h"

QString RejectedText::Of(ScheduleLine& line)
{
    return QStringLiteral("the daemon leaves the line out: ") + Rules::RejectionOf(Entry::Of(line)).Sentence();
}
