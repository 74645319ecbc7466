// The sanitizers end a program that asks for impossibly much memory; here it is asked on purpose,
// and must come back as a null pointer. Both names are fixed by the sanitizers' run time.
extern "C" const char* __asan_default_options();
extern "C" const char* __tsan_default_options();

extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

extern "C" const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
