// The floor for a launch: what it costs to load the viewer's libraries.

#include "yxhelp.h"

int main(int argc, char**)
{
    // Never so, but the linker doesn't know.
    if (argc < 0)
        YxHelp().ShowCentered();
    return 0;
}
