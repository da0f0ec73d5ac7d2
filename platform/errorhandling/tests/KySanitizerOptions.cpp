// KySanitizerOptions.cpp: tests here ask for more memory than there is; sanitizers shall return null as malloc does.
extern "C"
{
  __attribute__((visibility("default"))) const char* __asan_default_options();
  __attribute__((visibility("default"))) const char* __tsan_default_options();
  const char* __asan_default_options() { return "allocator_may_return_null=1"; }
  const char* __tsan_default_options() { return "allocator_may_return_null=1"; }
}
