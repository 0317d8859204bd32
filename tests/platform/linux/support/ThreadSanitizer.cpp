// What the thread sanitizer is to leave alone in these tests.
// GLib hands work between threads under locks of its own making, on bare futexes, which the sanitizer cannot see: every
// message that GDBus passes on would count as a race. Builds without the sanitizer never call this.

// The name is the sanitizer's own.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
  return "race:libglib-2.0.so\n"
         "race:libgio-2.0.so\n"
         "race:libgobject-2.0.so\n"
         "called_from_lib:libglib-2.0.so\n"
         "called_from_lib:libgio-2.0.so\n"
         "called_from_lib:libgobject-2.0.so\n";
}
// NOLINTEND(bugprone-reserved-identifier)
