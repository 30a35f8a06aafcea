#include "terminal.h"

#include <unistd.h>

bool helpbuild::ErrorStreamIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}
