// Has nothing of its own: the headers of precompiled.h are compiled with it.
