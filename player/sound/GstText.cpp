#include "sound/GstText.h"

#include "sound/GstHandle.h"

QString GstText::ErrorOf(GstMessage* message)
{
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const GlibHandle<GError> owned(error);
    return error != nullptr ? QString::fromUtf8(error->message).simplified() : QStringLiteral("unknown error");
}
