#include "base/ToolError.h"
#include "commands/RehearsalText.h"

// In the place of CalendarText where the tool is built without libical.

std::unique_ptr<RehearsalText> RehearsalText::Calendar(qint64 /*from_ms*/, qint64 /*until_ms*/, const QString& /*file*/)
{
    throw ToolError(QStringLiteral("--ics: this ozna-schedule was built without libical, which writes calendars"));
}
