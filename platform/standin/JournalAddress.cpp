#include "JournalAddress.h"

const char* JournalAddress()
{
    return "/run/systemd/journal/socket";
}
