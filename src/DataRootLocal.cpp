#include "DataRoot.h"

#include <QFile>

namespace
{
constexpr const char* DATA_DIR_VARIABLE = "OZNA_DATA_DIR";
}

QString DataRoot()
{
    return QFile::decodeName(qgetenv(DATA_DIR_VARIABLE));
}
