// What the sanitizers' run times ask for at the start, under names of their choice. umockdev leaks a little, and has a
// thread of its own, in libraries that are not built for the thread sanitizer.
extern "C" {
const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }                // NOLINT
const char* __lsan_default_suppressions() { return "leak:libumockdev\n"; }                // NOLINT
const char* __tsan_default_suppressions() { return "race:libumockdev\nrace:libglib\n"; }  // NOLINT
}
