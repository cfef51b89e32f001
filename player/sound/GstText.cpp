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
    // Said where a source has no words of its own; a server that refuses the connection is such a case.
    const bool isWordless = g_error_matches(error, GST_STREAM_ERROR, GST_STREAM_ERROR_FAILED) != FALSE;
    const QString text =
        isWordless ? QStringLiteral("it cannot be reached or read") : QString::fromUtf8(error->message).simplified();
    // The first line names a place in the library's source; the cause, where there is one, stands behind it.
    const QString cause = QString::fromUtf8(detail).section(QLatin1Char('\n'), 1, 1).simplified();
    return cause.isEmpty() ? text : text + QStringLiteral(" (") + cause + QLatin1Char(')');
}
