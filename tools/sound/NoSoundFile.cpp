// The program is built without a sound library.
#include "SoundFile.h"

bool SoundFile::IsSupported()
{
    return false;
}

SoundFile SoundFile::Read(const QString& /*path*/)
{
    return {};
}
