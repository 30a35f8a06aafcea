#pragma once

/// The host whose look-up in this process gets no answer, as with a network that lost its name server.
extern const char* const kSilentHost;

/// Lets the look-ups that wait end.
void ReleaseSilentHost();
