// Stands for another version of the toolkit that a host has loaded: its core library by name.
extern "C" int foreignToolkitVersion() { return 5; }
