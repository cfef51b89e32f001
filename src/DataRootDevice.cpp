#include "DataRoot.h"

QString DataRoot()
{
    return QStringLiteral("/opt/ozna/data");
}
