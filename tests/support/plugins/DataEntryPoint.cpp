// What should be a function is data: a variable, a constant (KIND is const), or a variable of each
// thread (KIND is thread_local). The name is that of every entry point.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" __attribute__((visibility("default"))) KIND int AutoCli_RegisterNamespaces;
KIND int AutoCli_RegisterNamespaces = 1;
// NOLINTEND(readability-identifier-naming)
