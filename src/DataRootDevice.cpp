#include "DataRoot.h"

QString DataRoot()
{
    return QString::fromLatin1(DEVICE_DATA_ROOT);
}
