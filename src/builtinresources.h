#pragma once

/// Makes the resources that are built into the program available: icons, Qt's translations and, where the
/// deployment carries its own Qt, qt.conf. Call it before the application object is constructed.
void InitBuiltInResources();
