#pragma once

#include <QString>

#include <gst/gst.h>

namespace GstText
{

// What an error message of a pipeline says, in one line.
QString ErrorOf(GstMessage* message);

} // namespace GstText
