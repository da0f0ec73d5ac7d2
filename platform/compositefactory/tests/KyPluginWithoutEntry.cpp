// A shared object that is no plug-in library.
extern "C" __attribute__((visibility("default"))) int KyPluginWithoutEntry() { return 0; }
