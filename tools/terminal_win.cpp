#include "terminal.h"

#include <cstdio>
#include <io.h>

bool helpbuild::ErrorStreamIsTerminal()
{
    return _isatty(_fileno(stderr)) != 0;
}
