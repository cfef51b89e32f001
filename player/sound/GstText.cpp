#include "sound/GstText.h"

#include "sound/GstHandle.h"

QString GstText::ErrorOf(GstMessage* message)
{
    GError* error = nullptr;
    char* detail = nullptr;
    gst_message_parse_error(message, &error, &detail);
    const GlibHandle<GError> ownedError(error);
    const GlibHandle<char> ownedDetail(detail);
    if (error == nullptr)
        return QStringLiteral("unknown error");
    const QString text = QString::fromUtf8(error->message).simplified();
    // The first line names a place in the library's source; the cause, where there is one, stands behind it.
    const QString cause = QString::fromUtf8(detail).section(QLatin1Char('\n'), 1, 1).simplified();
    return cause.isEmpty() ? text : text + QStringLiteral(" (") + cause + QLatin1Char(')');
}
